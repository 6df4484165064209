// The one image type of the program: premultiplied RGBA8 pixels, immutable and shared. Copying a Bitmap
// copies a reference. Safe to read from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "base/geometry.h"

namespace pintle {

class Bitmap {
  public:
    /// Makes a bitmap of `width` × `height` pixels whose bytes `fill` writes: R, G, B, A per pixel, rows from
    /// the top, `width` × 4 bytes a row, colour premultiplied by alpha. The bytes are uninitialised before.
    /// Absent when a side is below 1 or the memory cannot be had.
    static std::optional<Bitmap> create(std::int64_t width, std::int64_t height,
                                        const std::function<void(std::span<std::uint8_t>)>& fill);

    /// A bitmap over `width` × `height` × 4 bytes that `pixels` keeps alive and nobody changes.
    /// Absent when a side is below 1.
    static std::optional<Bitmap> sharing(std::int64_t width, std::int64_t height,
                                         std::shared_ptr<const std::uint8_t> pixels);

    int width() const { return width_; }
    int height() const { return height_; }
    /// In points; one point is one pixel.
    Size size() const { return {static_cast<double>(width_), static_cast<double>(height_)}; }
    std::span<const std::uint8_t> bytes() const { return {pixels_.get(), byteCount()}; }
    /// The four bytes R, G, B, A of a pixel, counted from the top-left corner.
    std::span<const std::uint8_t, 4> pixel(int x, int y) const;

    /// Same size and same pixels.
    friend bool operator==(const Bitmap& a, const Bitmap& b);

  private:
    Bitmap(int width, int height, std::shared_ptr<const std::uint8_t> pixels)
        : width_(width), height_(height), pixels_(std::move(pixels)) {}
    std::size_t byteCount() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * 4;
    }

    int width_;
    int height_;
    std::shared_ptr<const std::uint8_t> pixels_;
};

}  // namespace pintle
