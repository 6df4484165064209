// The arithmetic of the resampler for one block of target pixels in floats, compiled once per instruction set
// and chosen at run time: for windows that the one in 16-bit integers does not take. Called by Resampler
// only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pintle {

/// Where each of a run of target positions takes its value from, along one axis.
struct ResampleAxis {
    /// Target positions covered.
    std::int64_t begin = 0;
    std::int64_t end = 0;
    /// Source positions read by any of them.
    std::int64_t sourceBegin = 0;
    std::int64_t sourceEnd = 0;
    /// Taps per target position; even, so that two pixels can be taken at a time.
    std::size_t taps = 0;
    /// First source position of each target position, counted from sourceBegin.
    std::vector<std::uint32_t> first;
    /// `taps` weights per target position, zero where it has fewer; they add up to 1.
    std::vector<float> weights;
    /// Each weight four times, once per channel.
    std::vector<float> weightsByChannel;
    /// The same in 2^-14, `fixedTaps` per target position; empty where 16 bits are not enough.
    std::vector<std::int16_t> fixed;
    std::size_t fixedTaps = 0;
};

struct ResampleScratch {
    /// Source rows as floats, reused in turn, and those of one window in order.
    std::vector<float> rows;
    std::vector<const float*> order;
    /// One row blended from several, and one target row before rounding.
    std::vector<float> blended;
    std::vector<float> finished;
};

struct ResampleBlock {
    const std::uint8_t* source = nullptr;
    std::size_t sourceBytesPerRow = 0;
    std::uint8_t* target = nullptr;
    std::size_t targetBytesPerRow = 0;
    const ResampleAxis* across = nullptr;
    const ResampleAxis* down = nullptr;
};

void resampleBlock(const ResampleBlock& block, ResampleScratch& scratch);

}  // namespace pintle
