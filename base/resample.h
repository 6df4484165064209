// High-quality scaling of premultiplied RGBA8 pixels (Lanczos, three lobes). Pure functions; any thread.
#pragma once

#include <cstdint>
#include <span>

namespace pintle {

/// Redraws `source` (sourceWidth × sourceHeight pixels, R, G, B, A per pixel, rows from the top without gaps)
/// over the whole of `target` (targetWidth × targetHeight, same layout), replacing what is there. Every side
/// is at least 1. No colour exceeds its alpha in the result.
void resample(std::span<const std::uint8_t> source, int sourceWidth, int sourceHeight,
              std::span<std::uint8_t> target, int targetWidth, int targetHeight);

}  // namespace pintle
