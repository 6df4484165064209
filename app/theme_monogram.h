// What stands for a theme of which there is no picture yet: two letters and a tint, both taken from its name,
// so that a list of such themes can be told apart at a glance. Pure; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pintle {

/// Quiet tints of a tile. The user interface has a colour of the tile and one of the letters for each.
enum class TileTint : std::uint8_t { slate, graphite, ice, amber, red, green, blue, violet, teal };

struct ThemeMonogram {
    /// One or two letters; empty for a name without a letter or digit.
    std::string letters;
    TileTint tint = TileTint::slate;
    friend bool operator==(const ThemeMonogram&, const ThemeMonogram&) = default;
};

/// The tint is that of the last word that names a colour; a name without one takes the tint of its family,
/// the first word. The letters are the initials of the family and of the last other word that names no
/// colour. What stands in parentheses, the hand, has a mark of its own and counts for nothing here.
ThemeMonogram themeMonogram(std::string_view name);

}  // namespace pintle
