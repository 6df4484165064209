#include "cursor/xcursor_image.h"

#include <array>
#include <bit>
#include <cstring>

#include "cursor/image_drawer.h"

namespace pintle {
namespace {

/// 0xAARRGGBB to the word whose bytes in memory are R, G, B, A.
constexpr std::uint32_t rgbaWord(std::uint32_t pixel) {
    if constexpr (std::endian::native == std::endian::little)
        return (pixel & 0xFF00FF00) | (pixel >> 16 & 0x000000FF) | (pixel << 16 & 0x00FF0000);
    return pixel << 8 | pixel >> 24;
}

}  // namespace

void writeRgba(std::span<const std::uint32_t> from, std::uint8_t* to) {
    // Blocks of a fixed length in a local array are what compilers turn into vector code without being asked
    // to optimise harder.
    std::array<std::uint32_t, 32> block;
    while (from.size() >= block.size()) {
        std::memcpy(block.data(), from.data(), sizeof block);
        for (auto& pixel : block) pixel = rgbaWord(pixel);
        std::memcpy(to, block.data(), sizeof block);
        from = from.subspan(block.size());
        to += sizeof block;
    }
    for (const auto pixel : from) {
        const auto word = rgbaWord(pixel);
        std::memcpy(to, &word, sizeof word);
        to += sizeof word;
    }
}

std::optional<Bitmap> XCursorImage::nsImage() const { return scaledNSImage(1.0); }

std::optional<Bitmap> XCursorImage::scaledNSImage(double scale) const {
    const auto sides = ImageDrawer::sides(*this, scale);
    if (!sides) return std::nullopt;
    return Bitmap::create(sides->width, sides->height,
                          [&](std::span<std::uint8_t> out) { ImageDrawer().draw(*this, *sides, out); });
}

}  // namespace pintle
