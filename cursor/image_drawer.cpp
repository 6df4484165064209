#include "cursor/image_drawer.h"

#include <cstddef>

#include "base/rgba.h"
#include "cursor/scaled_size.h"

namespace pintle {

std::optional<ImageDrawer::Sides> ImageDrawer::sides(const XCursorImage& image, double scale) {
    if (image.width < 1 || image.height < 1) return std::nullopt;
    if (scale == 1.0) return Sides{image.width, image.height};
    return Sides{truncatedProduct(image.width, scale), truncatedProduct(image.height, scale)};
}

void ImageDrawer::draw(const XCursorImage& image, Sides sides, std::span<std::uint8_t> out) {
    const auto source = image.pixels.values();
    if (sides.width == image.width && sides.height == image.height) {
        writeRgba(source, out.data());
        return;
    }
    rgba_.resize(source.size() * 4);
    writeRgba(source, rgba_.data());
    resampler_.draw(rgba_, image.width, image.height, out, sides.width, sides.height);
}

}  // namespace pintle
