// Text of numbers as the log lines print them.
#pragma once

#include <string>

namespace pintle {

/// The shortest decimal text that reads back as the same double, always with a fraction: 1.0, 1.5, 0.1.
/// Independent of the locale.
std::string shortestDouble(double value);

}  // namespace pintle
