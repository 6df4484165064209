#include "base/text.h"

#include <fmt/format.h>
#include <cmath>

namespace pintle {

std::string shortestDouble(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    std::string text = fmt::format("{}", value);
    if (text.find_first_of(".e") == std::string::npos) text += ".0";
    return text;
}

}  // namespace pintle
