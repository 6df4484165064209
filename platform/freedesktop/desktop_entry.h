// The few keys of a desktop entry that an autostart entry of this program has, and the quoting of its
// command. Pure functions over text that strangers may have written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pintle {

/// A command line of one word as the value of the key Exec, quoted so that it is read back as `program`.
std::string execValue(std::string_view program);

/// The first word of the value of the key Exec. Absent when there is none or its quoting is broken.
std::optional<std::string> execProgram(std::string_view value);

/// The raw value of a key in the group "Desktop Entry"; the first setting counts. Absent when it is not
/// there.
std::optional<std::string> desktopEntryValue(std::string_view text, std::string_view key);

}  // namespace pintle
