#include "platform/x11/cursors/core_glyphs.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace pintle::x11 {
namespace {

constexpr std::string_view kFont = "cursor";
constexpr std::uint8_t kDepth = 32;
/// Each glyph is drawn into a square with room around it, so that none reaches into its neighbour's.
constexpr int kSquare = 48;
constexpr int kRoom = 8;
constexpr int kLargestGlyph = kSquare - 2 * kRoom;
constexpr std::uint32_t kOpaque = 0xFF000000;
constexpr std::uint32_t kForeground = 1;
constexpr std::uint32_t kBackground = 2;

// Numbers as the protocol's appendix on the cursor font gives them.
constexpr std::array<std::pair<std::string_view, std::uint8_t>, 29> kGlyphs = {{
    {"X_cursor", 0},
    {"bottom_left_corner", 12},
    {"bottom_right_corner", 14},
    {"bottom_side", 16},
    {"circle", 24},
    {"cross", 30},
    {"cross_reverse", 32},
    {"crosshair", 34},
    {"diamond_cross", 36},
    {"double_arrow", 42},
    {"fleur", 52},
    {"hand1", 58},
    {"hand2", 60},
    {"left_ptr", 68},
    {"left_side", 70},
    {"pirate", 88},
    {"plus", 90},
    {"question_arrow", 92},
    {"right_ptr", 94},
    {"right_side", 96},
    {"sb_h_double_arrow", 108},
    {"sb_v_double_arrow", 116},
    {"tcross", 130},
    {"top_left_arrow", 132},
    {"top_left_corner", 134},
    {"top_right_corner", 136},
    {"top_side", 138},
    {"watch", 150},
    {"xterm", 152},
}};

struct Metrics {
    int width = 0;
    int height = 0;
    int hotspotX = 0;
    int hotspotY = 0;
};

/// The size that the server gives a cursor whose mask has these measures: it holds the origin, which is the
/// hotspot.
Metrics metricsOf(const xcb_charinfo_t& mask) {
    const int left = std::min<int>(mask.left_side_bearing, 0);
    const int right = std::max<int>(mask.right_side_bearing, 0);
    const int top = std::max<int>(mask.ascent, 0);
    const int bottom = std::max<int>(mask.descent, 0);
    return {right - left, top + bottom, -left, top};
}

std::uint16_t channel(std::uint32_t color, int shift) {
    return static_cast<std::uint16_t>((color >> shift & 0xFF) * 0x101);
}

}  // namespace

std::optional<TwoColorShape> twoColorShapeOf(std::uint32_t width, std::uint32_t height,
                                             std::uint32_t hotspotX, std::uint32_t hotspotY,
                                             std::span<const std::uint32_t> pixels) {
    std::array<std::uint32_t, 2> colors{};
    std::size_t count = 0;
    std::vector<std::uint32_t> shape;
    shape.reserve(pixels.size());
    for (const auto pixel : pixels) {
        if (pixel >> 24 == 0) {
            shape.push_back(0);
            continue;
        }
        if (pixel >> 24 != 0xFF) return std::nullopt;
        std::size_t which = 0;
        while (which < count && colors[which] != pixel) ++which;
        if (which == colors.size()) return std::nullopt;
        if (which == count) colors[count++] = pixel;
        shape.push_back(static_cast<std::uint32_t>(which + 1));
    }
    if (count == 0) return std::nullopt;
    return TwoColorShape{fingerprintOf(width, height, hotspotX, hotspotY, shape), colors[0] & ~kOpaque,
                         colors[count - 1] & ~kOpaque};
}

CoreGlyphs::CoreGlyphs(XConnection& connection) {
    auto* const c = connection.get();
    const xcb_font_t font = xcb_generate_id(c);
    const auto opened = xcb_open_font_checked(c, font, kFont.size(), kFont.data());
    const Reply<xcb_query_font_reply_t> measures(xcb_query_font_reply(c, xcb_query_font(c, font), nullptr));
    if (connection.firstError({opened}) != 0) return;
    if (!measures) {
        xcb_close_font(c, font);
        return;
    }
    const std::span characters(xcb_query_font_char_infos(measures.get()),
                               static_cast<std::size_t>(xcb_query_font_char_infos_length(measures.get())));
    const std::size_t offset = measures->min_char_or_byte2;
    const auto measure = [&](std::size_t number) {
        return number >= offset && number - offset < characters.size()
                   ? metricsOf(characters[number - offset])
                   : Metrics{};
    };

    // Row by row: a glyph, and beside it its mask.
    const xcb_pixmap_t pixmap = xcb_generate_id(c);
    const xcb_gcontext_t context = xcb_generate_id(c);
    constexpr std::uint16_t width = 2 * kSquare;
    constexpr std::uint16_t height = kGlyphs.size() * kSquare;
    const xcb_rectangle_t everything{0, 0, width, height};
    xcb_create_pixmap(c, kDepth, pixmap, connection.root(), width, height);
    const std::array<std::uint32_t, 2> clear = {0, font};
    xcb_create_gc(c, context, pixmap, XCB_GC_FOREGROUND | XCB_GC_FONT, clear.data());
    xcb_poly_fill_rectangle(c, pixmap, context, 1, &everything);
    const std::uint32_t set = 0xFFFFFFFF;
    xcb_change_gc(c, context, XCB_GC_FOREGROUND, &set);
    for (std::size_t i = 0; i < kGlyphs.size(); ++i) {
        const std::uint8_t number = kGlyphs[i].second;
        const auto metrics = measure(number + std::size_t{1});
        for (int mask = 0; mask < 2; ++mask) {
            const std::array<std::uint8_t, 3> item = {1, 0, static_cast<std::uint8_t>(number + mask)};
            xcb_poly_text_8(
                c, pixmap, context, static_cast<std::int16_t>(mask * kSquare + kRoom + metrics.hotspotX),
                static_cast<std::int16_t>(static_cast<int>(i) * kSquare + kRoom + metrics.hotspotY),
                item.size(), item.data());
        }
    }
    const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        c, xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0, 0, width, height, ~0U), nullptr));
    xcb_free_gc(c, context);
    xcb_free_pixmap(c, pixmap);
    xcb_close_font(c, font);
    xcb_flush(c);
    const auto size = std::size_t{width} * height * 4;
    if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < size) return;

    const std::span bytes(xcb_get_image_data(image.get()), size);
    const auto drawn = [&](int x, int y) {
        const auto at = (static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)) * 4;
        return bytes[at] != 0;
    };
    for (std::size_t i = 0; i < kGlyphs.size(); ++i) {
        const auto& [name, number] = kGlyphs[i];
        const auto metrics = measure(number + std::size_t{1});
        if (metrics.width > kLargestGlyph || metrics.height > kLargestGlyph) continue;
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < metrics.height; ++y) {
            for (int x = 0; x < metrics.width; ++x) {
                const int row = static_cast<int>(i) * kSquare + kRoom + y;
                const bool visible = drawn(kSquare + kRoom + x, row);
                const auto color = drawn(kRoom + x, row) ? kForeground : kBackground;
                pixels.push_back(visible ? kOpaque | color : 0);
            }
        }
        const auto shape = twoColorShapeOf(static_cast<std::uint32_t>(metrics.width),
                                           static_cast<std::uint32_t>(metrics.height),
                                           static_cast<std::uint32_t>(metrics.hotspotX),
                                           static_cast<std::uint32_t>(metrics.hotspotY), pixels);
        if (shape) known_.emplace(shape->fingerprint, Known{name, number, shape->first == kForeground});
    }
}

std::optional<CoreGlyph> CoreGlyphs::find(const TwoColorShape& shape) const {
    const auto found = known_.find(shape.fingerprint);
    if (found == known_.end()) return std::nullopt;
    const auto& [name, number, firstIsForeground] = found->second;
    return CoreGlyph{name, number, firstIsForeground ? shape.first : shape.second,
                     firstIsForeground ? shape.second : shape.first};
}

xcb_cursor_t makeGlyphCursor(XConnection& connection, const CoreGlyph& glyph) {
    auto* const c = connection.get();
    const xcb_font_t font = xcb_generate_id(c);
    const xcb_cursor_t made = xcb_generate_id(c);
    xcb_open_font(c, font, kFont.size(), kFont.data());
    xcb_create_glyph_cursor(c, made, font, font, glyph.number, static_cast<std::uint16_t>(glyph.number + 1),
                            channel(glyph.foreground, 16), channel(glyph.foreground, 8),
                            channel(glyph.foreground, 0), channel(glyph.background, 16),
                            channel(glyph.background, 8), channel(glyph.background, 0));
    xcb_close_font(c, font);
    return made;
}

}  // namespace pintle::x11
