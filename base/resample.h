// High-quality scaling of premultiplied RGBA8 pixels: Lanczos with three lobes, in two passes. A Resampler
// keeps its weight tables and scratch memory between images; use each from one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <tuple>
#include <vector>

#include "base/resample_block.h"

namespace pintle {

class Resampler {
  public:
    /// Redraws `source` (sourceWidth × sourceHeight pixels; R, G, B, A per pixel, rows from the top without
    /// gaps) over the whole of `target` (targetWidth × targetHeight, same layout), replacing what is there.
    /// Every side is at least 1. No colour exceeds its alpha in the result, and no value is further than one
    /// level from what exact arithmetic gives.
    void draw(std::span<const std::uint8_t> source, std::int64_t sourceWidth, std::int64_t sourceHeight,
              std::span<std::uint8_t> target, std::int64_t targetWidth, std::int64_t targetHeight);

  private:
    const ResampleAxis& axis(std::int64_t from, std::int64_t to, std::int64_t begin, std::int64_t end);

    /// By source length, target length and first target position.
    std::map<std::tuple<std::int64_t, std::int64_t, std::int64_t>, ResampleAxis> axes_;
    ResampleScratch scratch_;
};

}  // namespace pintle
