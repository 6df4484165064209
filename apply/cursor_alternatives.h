// Other names of the same shape, tried when a theme lacks the name that identification answered. Only names
// that show the same thing stand together: a wrong shape is worse than the desktop's own cursor.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace pintle {

/// The names to try for an identified name, itself first, in order of preference.
std::span<const std::string_view> cursorAlternatives(std::string_view name);

/// Whether a theme can have a cursor of this name: the name stands in some group of alternatives.
bool isThemeCursorName(std::string_view name);

}  // namespace pintle
