// Image files that only this fake can read: a mark, the size and the pixels.
#pragma once

#include <algorithm>
#include <cstring>

#include "platform/image_service.h"

namespace pintle {

class FakeImageService : public ImageService {
  public:
    std::optional<std::vector<std::uint8_t>> encodePng(const Bitmap& image) override {
        ++encoded;
        if (encodingFails) return std::nullopt;
        std::vector<std::uint8_t> file = {'F', 'P', 'N', 'G'};
        const std::int32_t sides[2] = {image.width(), image.height()};
        const auto* raw = reinterpret_cast<const std::uint8_t*>(sides);
        file.insert(file.end(), raw, raw + sizeof sides);
        file.insert(file.end(), image.bytes().begin(), image.bytes().end());
        return file;
    }
    std::optional<Bitmap> decodePng(std::span<const std::uint8_t> bytes) override {
        if (bytes.size() < 12 || std::memcmp(bytes.data(), "FPNG", 4) != 0) return std::nullopt;
        std::int32_t sides[2];
        std::memcpy(sides, bytes.data() + 4, sizeof sides);
        const auto pixels = bytes.subspan(12);
        if (pixels.size() != static_cast<std::size_t>(sides[0]) * static_cast<std::size_t>(sides[1]) * 4)
            return std::nullopt;
        return Bitmap::create(sides[0], sides[1], [&](std::span<std::uint8_t> out) {
            std::copy(pixels.begin(), pixels.end(), out.begin());
        });
    }

    bool encodingFails = false;
    int encoded = 0;
};

}  // namespace pintle
