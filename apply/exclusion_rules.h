// Which applications must see the desktop's own cursors. Pure; shared by the registration's triggers and the
// overlay.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace pintle {

/// Whether `name` contains one of the entries, whatever the letter case of both; tested in the order given.
bool containsAnyIgnoringCase(std::string_view name, std::span<const std::string> entries);

/// Whether an application of that name is excluded: it contains a built-in entry in any letter case, or it is
/// a name of the user's list, whole and in its case.
bool isExcludedApplication(std::string_view name, std::span<const std::string> builtIn,
                           std::span<const std::string> usersList);

}  // namespace pintle
