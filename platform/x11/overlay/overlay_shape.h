// The part of an image that shows where no compositor blends it: a set of rectangles cut from its alpha.
// Pure.
#pragma once

#include <cstdint>
#include <vector>

#include "base/bitmap.h"

namespace pintle::overlay {

struct ShapeRectangle {
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    friend bool operator==(const ShapeRectangle&, const ShapeRectangle&) = default;
};

/// Runs of pixels that are at least half opaque, row by row from the top; equal runs of neighbouring rows are
/// one rectangle.
std::vector<ShapeRectangle> opaqueShape(const Bitmap& image);

}  // namespace pintle::overlay
