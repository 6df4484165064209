// Turns parsed images into RGBA pixels at a scale. Keeps tables and scratch memory between images; use each
// from one thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/resample.h"
#include "cursor/xcursor_image.h"

namespace pintle {

class ImageDrawer {
  public:
    /// Pixels.
    struct Sides {
        std::int64_t width = 0;
        std::int64_t height = 0;
    };

    /// The sides of `image` at `scale`: its own at exactly 1.0, else the products truncated toward zero, of
    /// which either may be 0. Absent when the image has a side below 1. A product outside 64 bits ends the
    /// program.
    static std::optional<Sides> sides(const XCursorImage& image, double scale);

    /// Writes the pixels of the image drawn at `sides`, at least 1 each; `out` holds four bytes per pixel.
    void draw(const XCursorImage& image, Sides sides, std::span<std::uint8_t> out);

  private:
    Resampler resampler_;
    std::vector<std::uint8_t> rgba_;
};

}  // namespace pintle
