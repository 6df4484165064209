// High-quality scaling of premultiplied RGBA8 pixels: Lanczos with three lobes, in two passes. A Resampler
// keeps its weight tables and scratch memory between images; use each from one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <tuple>
#include <vector>

#include "base/resample_block.h"
#include "base/resample_fixed.h"

namespace pintle {

class Resampler {
  public:
    /// Redraws `source` (sourceWidth × sourceHeight pixels; R, G, B, A per pixel, rows from the top without
    /// gaps) over the whole of `target` (targetWidth × targetHeight, same layout), replacing what is there.
    /// Every side is at least 1. No colour exceeds its alpha in the result, and no value is further than one
    /// level from what exact arithmetic gives.
    void draw(std::span<const std::uint8_t> source, std::int64_t sourceWidth, std::int64_t sourceHeight,
              std::span<std::uint8_t> target, std::int64_t targetWidth, std::int64_t targetHeight);

    /// How many windows of weights it has computed so far.
    std::uint64_t windowsComputed() const { return windowsComputed_; }

    /// The weights around one target position, from its first source position on; they add up to 1.
    struct Window {
        std::int64_t first = 0;
        std::vector<double> weights;
    };

  private:
    /// The windows of one ratio. As far as it has few different ones, positions whose distance is a multiple
    /// of the period see the same weights; of a very long side the windows are those of evenly spread places
    /// between two positions. A window may begin before the image or end behind it.
    struct Windows {
        std::int64_t from = 0;
        std::int64_t to = 0;
        std::vector<std::optional<Window>> byResidue;
    };
    ResampleAxis makeAxis(std::int64_t from, std::int64_t to, std::int64_t begin, std::int64_t end);
    std::vector<std::optional<Window>>& windowsFor(std::int64_t from, std::int64_t to, std::int64_t count);
    Window windowAt(std::int64_t i, std::int64_t from, std::int64_t to);
    const ResampleAxis& axis(std::int64_t from, std::int64_t to, std::int64_t begin, std::int64_t end);

    /// By source length, target length and first target position.
    std::map<std::tuple<std::int64_t, std::int64_t, std::int64_t>, ResampleAxis> axes_;
    /// The last two ratios, one for each direction.
    std::array<Windows, 2> windows_;
    std::size_t newerWindows_ = 0;
    std::uint64_t windowsComputed_ = 0;
    ResampleScratch scratch_;
    FixedScratch fixedScratch_;
};

}  // namespace pintle
