// Single values in the settings files of KDE: every other byte of the file stays as it is. Pure functions
// over text that strangers wrote; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pintle::wayland {

/// The value of a key in a group, without the spaces around it; the last one counts. Absent where it is not
/// set.
std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key);

/// The text with that value in its place, in a new line at the end of the group or in a group of its own.
/// Absent value: without the key's lines, and without the group when nothing else is in it.
std::string withKeyFileValue(std::string_view text, std::string_view group, std::string_view key,
                             const std::optional<std::string>& value);

}  // namespace pintle::wayland
