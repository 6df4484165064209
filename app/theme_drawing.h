// What stands for a theme of which there is no picture yet: a pointer of our own that looks like the theme's
// as far as its name says so, or else the initials of the name. Pure; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "themes/cursor_handedness.h"

namespace pintle {

/// Quiet tints of the plate under initials. The view has a colour of the plate and one of the letters for
/// each.
enum class TileTint : std::uint8_t { slate, teal, violet, blue, green, red };

struct ThemeDrawing {
    enum class Kind : std::uint8_t { letters, pointer };
    enum class Shape : std::uint8_t { plain, rounded, angular };
    enum class Fill : std::uint8_t {
        /// The name has a word for a shape and none for a colour.
        none,
        /// One colour.
        plain,
        /// Two colours in turn.
        stripes,
        /// All colours from the tip on, one into the next.
        blend,
    };

    Kind kind = Kind::letters;

    Shape shape = Shape::plain;
    /// For the left hand: the tip on the right.
    bool mirrored = false;
    Fill fill = Fill::none;
    /// 0xRRGGBB; as many as the fill has.
    std::vector<std::uint32_t> colours;
    /// 0xRRGGBB; what the fill stands out from on any ground.
    std::uint32_t outline = 0;

    /// One or two letters; empty for a name without a letter or digit, and for a pointer.
    std::string letters;
    TileTint tint = TileTint::slate;

    friend bool operator==(const ThemeDrawing&, const ThemeDrawing&) = default;
};

/// The last word that names a colour fills the pointer, "Modern" rounds it, "Original" gives it corners. Case
/// and accents are ignored. A name with none of these words gets the initials of its first word, the family,
/// and of the last other one, on the family's tint. Words in parentheses name the hand and are ignored:
/// `handedness` gives it.
ThemeDrawing themeDrawing(std::string_view name, CursorHandedness handedness);

}  // namespace pintle
