// The cursors that programs take from the server's font "cursor" where no cursor theme is set. They have no
// names; they are known by the shapes of the font's glyphs, whatever colours a program gives them. Main
// thread.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

#include "platform/x11/cursors/cursor_picture.h"
#include "platform/x11/x_connection.h"

namespace pintle::x11 {

/// A picture of one or two colours, each of whose pixels is opaque or invisible.
struct TwoColorShape {
    /// The same for all colours.
    Fingerprint fingerprint = 0;
    /// 0xRRGGBB: the colour of the first visible pixel, and the other one; equal when there is none.
    std::uint32_t first = 0;
    std::uint32_t second = 0;
};

/// Absent for pictures of any other kind. Pixels are 0xAARRGGBB, row by row from the top.
std::optional<TwoColorShape> twoColorShapeOf(std::uint32_t width, std::uint32_t height,
                                             std::uint32_t hotspotX, std::uint32_t hotspotY,
                                             std::span<const std::uint32_t> pixels);

/// A glyph as a program made a cursor of it.
struct CoreGlyph {
    /// Of the table of names.
    std::string_view name;
    /// Its number in the font; the number after it is that of its mask.
    std::uint16_t number = 0;
    /// 0xRRGGBB.
    std::uint32_t foreground = 0;
    std::uint32_t background = 0;
};

class CoreGlyphs {
  public:
    /// Draws the glyphs, where nobody sees it. Knows none when the server has no such font.
    explicit CoreGlyphs(XConnection& connection);

    /// Absent when the shape is that of none of the glyphs that have a name in the table.
    std::optional<CoreGlyph> find(const TwoColorShape& shape) const;

  private:
    struct Known {
        std::string_view name;
        std::uint16_t number = 0;
        bool firstIsForeground = false;
    };
    std::map<Fingerprint, Known> known_;
};

/// A cursor of the glyph, owned by the caller; an id without a cursor when the server refuses it.
xcb_cursor_t makeGlyphCursor(XConnection& connection, const CoreGlyph& glyph);

}  // namespace pintle::x11
