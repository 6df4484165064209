#include "cursor/xcursor_image.h"

#include "cursor/image_drawer.h"

namespace pintle {
std::optional<Bitmap> XCursorImage::nsImage() const { return scaledNSImage(1.0); }

std::optional<Bitmap> XCursorImage::scaledNSImage(double scale) const {
    const auto sides = ImageDrawer::sides(*this, scale);
    if (!sides) return std::nullopt;
    return Bitmap::create(sides->width, sides->height,
                          [&](std::span<std::uint8_t> out) { ImageDrawer().draw(*this, *sides, out); });
}

}  // namespace pintle
