#include "apply/cursor_strip.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/resample.h"

namespace pintle {
namespace {

void drawAtSize(Resampler& resampler, const Bitmap& frame, int width, int height,
                std::span<std::uint8_t> out) {
    const auto bytes = frame.bytes();
    if (frame.width() == width && frame.height() == height) {
        std::copy(bytes.begin(), bytes.end(), out.begin());
        return;
    }
    resampler.draw(bytes, frame.width(), frame.height(), out, width, height);
}

}  // namespace

std::optional<Bitmap> composeStrip(std::span<const Bitmap> frames) {
    if (frames.empty()) return std::nullopt;
    if (frames.size() == 1) return frames.front();
    const int width = frames.front().width();
    const int height = frames.front().height();
    Resampler resampler;
    const auto frameBytes = frames.front().bytes().size();
    return Bitmap::create(width, static_cast<std::int64_t>(height) * static_cast<std::int64_t>(frames.size()),
                          [&](std::span<std::uint8_t> out) {
                              for (std::size_t i = 0; i < frames.size(); ++i)
                                  drawAtSize(resampler, frames[i], width, height,
                                             out.subspan(i * frameBytes, frameBytes));
                          });
}

}  // namespace pintle
