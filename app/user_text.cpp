#include "app/user_text.h"

#include <algorithm>
#include <cmath>

namespace pintle {
namespace {

constexpr auto kPercent = translatable("Pintle", "%1%");

}  // namespace

std::string UserText::english() const {
    if (source.empty()) return argument;
    auto text = source;
    if (const auto place = text.find("%1"); place != std::string::npos) text.replace(place, 2, argument);
    return text;
}

long long wholePercent(double value) {
    if (std::isnan(value)) return 0;
    // A preference file may hold any number.
    constexpr double kLargest = 1e15;
    return std::llround(std::clamp(value * 100, -kLargest, kLargest));
}

UserText percentText(double value) { return UserText(kPercent, std::to_string(wholePercent(value))); }

}  // namespace pintle
