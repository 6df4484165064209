#include "platform/x11/overlay/overlay_shape.h"

#include <algorithm>

namespace pintle::overlay {
namespace {

constexpr std::uint8_t kHalfOpaque = 128;

}  // namespace

std::vector<ShapeRectangle> opaqueShape(const Bitmap& image) {
    std::vector<ShapeRectangle> shape;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width();) {
            if (image.pixel(x, y)[3] < kHalfOpaque) {
                ++x;
                continue;
            }
            const int first = x;
            while (x < image.width() && image.pixel(x, y)[3] >= kHalfOpaque) ++x;
            const auto above = std::find_if(shape.rbegin(), shape.rend(), [&](const ShapeRectangle& each) {
                return each.x == first && each.width == x - first && each.y + each.height == y;
            });
            if (above != shape.rend())
                ++above->height;
            else
                shape.push_back({static_cast<std::int16_t>(first), static_cast<std::int16_t>(y),
                                 static_cast<std::uint16_t>(x - first), 1});
        }
    }
    return shape;
}

}  // namespace pintle::overlay
