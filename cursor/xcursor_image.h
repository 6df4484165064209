// One image of an Xcursor file as the reader yields it. Value record; pixels are immutable and shared, so
// copies are cheap and may be read from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/bitmap.h"

namespace pintle {

/// A run of 0xAARRGGBB values inside memory that `storage` keeps alive.
class SharedPixels {
  public:
    SharedPixels() = default;
    SharedPixels(std::shared_ptr<const std::uint32_t> first, std::size_t count)
        : first_(std::move(first)), count_(count) {}
    std::span<const std::uint32_t> values() const { return {first_.get(), count_}; }

  private:
    std::shared_ptr<const std::uint32_t> first_;
    std::size_t count_ = 0;
};

struct XCursorImage {
    /// Nominal size, from the table of contents.
    std::int64_t size = 0;
    /// Pixels.
    std::int64_t width = 0;
    std::int64_t height = 0;
    /// Pixels from the top-left corner; may lie outside the image.
    std::int64_t xhot = 0;
    std::int64_t yhot = 0;
    /// Milliseconds this frame is shown, as stored.
    std::uint32_t delay = 0;
    /// width × height values 0xAARRGGBB, rows from the top, colour premultiplied by alpha as stored.
    SharedPixels pixels;

    /// The image at its own size. Absent when a side is below 1 or the memory cannot be had.
    std::optional<Bitmap> nsImage() const;
    /// The image redrawn at `scale`; its sides are the products truncated toward zero. The hotspot is the
    /// caller's to scale. Absent when a side becomes 0. A product outside 64 bits ends the program.
    std::optional<Bitmap> scaledNSImage(double scale) const;
};

}  // namespace pintle
