// The arithmetic of the resampler in 16-bit integers, for windows of few taps; compiled once per instruction
// set and chosen at run time, with the same result to the byte. Called by Resampler only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/resample_block.h"

namespace pintle {

/// Sums of more products than this, or of larger ones, are too inexact or too large for 16 bits.
inline constexpr std::size_t kMostFixedTaps = 16;
inline constexpr double kMostFixedGain = 1.6;
/// Weights are multiples of 2^-14: near an edge a single one may exceed 1.
inline constexpr int kFixedOne = 1 << 14;

struct FixedScratch {
    /// The source block: per four rows and column the four pixels.
    std::vector<std::int16_t> source;
    /// Four target columns, and all of them: per four columns and row the four pixels.
    std::vector<std::int16_t> columns;
    std::vector<std::int16_t> middle;
};

/// Both axes have fixed weights.
void resampleBlockFixed(const ResampleBlock& block, FixedScratch& scratch);

}  // namespace pintle
