// The log of a Linux process. Made by the root in its first stage. Any thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/log.h"

namespace pintle {

/// System lines go to standard error and to syslog (user facility, "pintle"), output lines to standard
/// output, each at once and as one line. A reader that went away does not end the process.
std::unique_ptr<Log> makeSystemLog();

/// The line with control characters, line separators included, written out as \n, \t or \x1b.
std::string oneLine(std::string_view line);

}  // namespace pintle
