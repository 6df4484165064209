#include "base/bitmap.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace pintle {
namespace {

constexpr std::int64_t kMaxBytes = std::numeric_limits<std::int32_t>::max();

bool sizeIsUsable(std::int64_t width, std::int64_t height) {
    return width >= 1 && height >= 1 && width <= kMaxBytes / 4 && height <= kMaxBytes / 4 / width;
}

}  // namespace

std::optional<Bitmap> Bitmap::create(std::int64_t width, std::int64_t height,
                                     const std::function<void(std::span<std::uint8_t>)>& fill) {
    if (!sizeIsUsable(width, height)) return std::nullopt;
    const auto count = static_cast<std::size_t>(width * height * 4);
    std::unique_ptr<std::uint8_t[]> bytes(new (std::nothrow) std::uint8_t[count]);
    if (!bytes) return std::nullopt;
    fill({bytes.get(), count});
    std::uint8_t* raw = bytes.release();
    return Bitmap(static_cast<int>(width), static_cast<int>(height),
                  std::shared_ptr<const std::uint8_t>(raw, [raw](const std::uint8_t*) { delete[] raw; }));
}

std::optional<Bitmap> Bitmap::sharing(std::int64_t width, std::int64_t height,
                                      std::shared_ptr<const std::uint8_t> pixels) {
    if (!sizeIsUsable(width, height) || !pixels) return std::nullopt;
    return Bitmap(static_cast<int>(width), static_cast<int>(height), std::move(pixels));
}

std::span<const std::uint8_t, 4> Bitmap::pixel(int x, int y) const {
    const auto offset =
        (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)) * 4;
    return std::span<const std::uint8_t, 4>(pixels_.get() + offset, 4);
}

bool operator==(const Bitmap& a, const Bitmap& b) {
    if (a.width_ != b.width_ || a.height_ != b.height_) return false;
    if (a.pixels_ == b.pixels_) return true;
    const auto left = a.bytes();
    return std::equal(left.begin(), left.end(), b.bytes().begin());
}

}  // namespace pintle
