#include "apply/cursor_strip.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace pintle {
namespace {

void drawAtSize(const Bitmap& frame, int width, int height, std::span<std::uint8_t> out) {
    const auto bytes = frame.bytes();
    if (frame.width() == width && frame.height() == height) {
        std::copy(bytes.begin(), bytes.end(), out.begin());
        return;
    }
    auto* target = out.data();
    for (std::int64_t y = 0; y < height; ++y) {
        const auto row = static_cast<int>(y * frame.height() / height);
        for (std::int64_t x = 0; x < width; ++x) {
            const auto pixel = frame.pixel(static_cast<int>(x * frame.width() / width), row);
            target = std::copy(pixel.begin(), pixel.end(), target);
        }
    }
}

}  // namespace

std::optional<Bitmap> composeStrip(std::span<const Bitmap> frames) {
    if (frames.empty()) return std::nullopt;
    if (frames.size() == 1) return frames.front();
    const int width = frames.front().width();
    const int height = frames.front().height();
    const auto frameBytes = frames.front().bytes().size();
    return Bitmap::create(width, static_cast<std::int64_t>(height) * static_cast<std::int64_t>(frames.size()),
                          [&](std::span<std::uint8_t> out) {
                              for (std::size_t i = 0; i < frames.size(); ++i)
                                  drawAtSize(frames[i], width, height,
                                             out.subspan(i * frameBytes, frameBytes));
                          });
}

}  // namespace pintle
