// The sums of which an alpha mask is made, in single precision; compiled once per instruction set and chosen
// at run time. Called by AlphaSignatureMaker only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "apply/cursor_identification.h"

namespace pintle {

inline constexpr std::size_t kMaskSide = 16;
/// Outputs, and columns of the image, that are summed at once.
inline constexpr std::size_t kMaskLanes = 8;

/// The weights of one side length, for each of the 16 positions along it.
struct MaskWeights {
    struct Position {
        std::size_t first = 0;
        std::vector<float> weights;
    };
    /// Of eight neighbouring positions: the samples from `first` on that any of them takes, and for each of
    /// these samples its eight weights.
    struct Spread {
        std::size_t first = 0;
        std::vector<float> weights;
    };
    std::array<Position, kMaskSide> positions;
    std::array<Spread, kMaskSide / kMaskLanes> spread;
};

struct MaskImage {
    /// R, G, B, A per pixel, rows without gaps.
    std::span<const std::uint8_t> bytes;
    std::size_t width = 0;
    std::size_t height = 0;
};

struct MaskScratch {
    std::vector<float> alpha;
    /// 16 rows, each as wide as the image.
    std::vector<float> rows;
    /// Places in the mask whose sums lie within the doubt of the middle between two bytes.
    std::vector<std::size_t> doubtful;
};

/// Fills `mask` and names the doubtful places in `scratch`.
void sumMask(const MaskImage& image, const MaskWeights& across, const MaskWeights& down, float doubt,
             MaskScratch& scratch, AlphaSignature& mask);

}  // namespace pintle
