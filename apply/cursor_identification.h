// Which X11 cursor name a desktop cursor stands for: exact pixels, then the shape of its alpha mask, then
// what lies under the mouse, then the geometry of its hotspot. Pure; the overlay asks on every tick.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometry.h"

namespace pintle {

/// The alpha bytes of an image drawn into 16 × 16 pixels, rows from the top.
using AlphaSignature = std::array<std::uint8_t, 256>;

/// One standard cursor of the platform in the index that identification compares with.
struct KnownCursor {
    /// X11 name.
    std::string name;
    /// Lossless encoding of its image; equal bytes mean equal images.
    std::vector<std::uint8_t> encoded;
    AlphaSignature signature{};
};

/// What the platform reports of the cursor it would show now.
struct CurrentCursorFacts {
    /// False when the platform gives no current cursor; the rest is then empty.
    bool present = false;
    std::span<const std::uint8_t> encoded;
    /// From the image's top-left corner.
    Point hotspot;
    Size size;
};

/// Sum over all positions of the absolute differences: 0 for equal masks.
int shapeDistance(const AlphaSignature& a, const AlphaSignature& b);

/// The known cursor whose mask is nearest, when it is nearer than 2000. Of equal ones the first.
std::optional<std::string> nameByShape(std::span<const KnownCursor> known, const AlphaSignature& signature);

/// "xterm" for text elements, "pointer" for links, absent for anything else.
std::optional<std::string> nameForAccessibilityRole(std::string_view role);

/// The last resort: from the hotspot's place in the image and the image's proportions.
std::string nameByGeometry(Point hotspot, Size size);

/// The first rule that answers wins. `signature` is asked at most once and only when exact comparison fails,
/// `accessibility` only when the shape is unknown.
std::string identifyByDirectComparison(std::span<const KnownCursor> known, const CurrentCursorFacts& current,
                                       const std::string& currentCursorName,
                                       const std::function<AlphaSignature()>& signature,
                                       const std::function<std::optional<std::string>()>& accessibility);

}  // namespace pintle
