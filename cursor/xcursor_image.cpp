#include "cursor/xcursor_image.h"

#include <cstdio>
#include <cstdlib>

#include "base/resample.h"
#include "cursor/scaled_size.h"

namespace pintle {
namespace {

void writeRgba(std::span<const std::uint32_t> from, std::uint8_t* to) {
    for (const auto pixel : from) {
        *to++ = static_cast<std::uint8_t>(pixel >> 16);
        *to++ = static_cast<std::uint8_t>(pixel >> 8);
        *to++ = static_cast<std::uint8_t>(pixel);
        *to++ = static_cast<std::uint8_t>(pixel >> 24);
    }
}

}  // namespace

std::optional<Bitmap> XCursorImage::nsImage() const {
    return Bitmap::create(width, height, [&](std::span<std::uint8_t> bytes) {
        writeRgba(pixels.values().first(bytes.size() / 4), bytes.data());
    });
}

std::optional<Bitmap> XCursorImage::scaledNSImage(double scale) const {
    if (width < 1 || height < 1) return std::nullopt;
    if (scale == 1.0) return nsImage();
    const auto newWidth = truncatedProduct(width, scale);
    const auto newHeight = truncatedProduct(height, scale);
    const auto source = nsImage();
    if (!source) return std::nullopt;
    return Bitmap::create(newWidth, newHeight, [&](std::span<std::uint8_t> bytes) {
        Resampler().draw(source->bytes(), width, height, bytes, newWidth, newHeight);
    });
}

}  // namespace pintle
