// Image files. Stateless; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/bitmap.h"

namespace pintle {

class ImageService {
  public:
    virtual ~ImageService() = default;
    /// A complete PNG file, or absent when the image cannot be encoded.
    virtual std::optional<std::vector<std::uint8_t>> encodePng(const Bitmap& image) = 0;
    /// Absent when the bytes are no image that can be decoded.
    virtual std::optional<Bitmap> decodePng(std::span<const std::uint8_t> bytes) = 0;
};

}  // namespace pintle
