#include "base/resample_fixed.h"

#include <algorithm>
#include <array>
#include <utility>

// Four pixels are sixteen values; wider vectors would need more of a cursor than there is.
#define HWY_DISABLED_TARGETS \
    (HWY_AVX3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "base/resample_fixed.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pintle {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Products keep the upper 16 bits of twice their value, rounded: with weights in 2^-14 each pass takes one
// bit. So values have seven bits behind the point in the source, six between the passes and five at the end.
// The kernel's overshoot in both directions takes at most 1.78 times 255, which is below 2^15 in all of them.
constexpr int kSourceBits = 7;
constexpr int kTargetBits = 5;
constexpr std::size_t kFour = 4;
/// Values of four pixels.
constexpr std::size_t kGroup = 16;

constexpr std::size_t inFours(std::size_t count) { return (count + kFour - 1) / kFour; }

#if HWY_TARGET == HWY_SCALAR

int product(std::int16_t value, std::int16_t weight) { return (2 * value * weight + 0x8000) >> 16; }

void drawFixedBlock(const ResampleBlock& block, FixedScratch& scratch) {
    const auto& across = *block.across;
    const auto& down = *block.down;
    const auto rows = static_cast<std::size_t>(down.sourceEnd - down.sourceBegin);
    const std::size_t pixels = across.first.size();
    scratch.middle.resize(rows * pixels * 4);
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t x = 0; x < pixels; ++x)
            for (std::size_t channel = 0; channel < 4; ++channel) {
                const auto* from =
                    block.source +
                    (static_cast<std::size_t>(down.sourceBegin) + row) * block.sourceBytesPerRow +
                    (static_cast<std::size_t>(across.sourceBegin) + across.first[x]) * 4 + channel;
                int sum = 0;
                for (std::size_t tap = 0; tap < across.fixedTaps; ++tap)
                    if (const auto weight = across.fixed[x * across.fixedTaps + tap]; weight != 0)
                        sum += product(static_cast<std::int16_t>(from[tap * 4] << kSourceBits), weight);
                scratch.middle[(row * pixels + x) * 4 + channel] = static_cast<std::int16_t>(sum);
            }
    for (std::size_t y = 0; y < down.first.size(); ++y)
        for (std::size_t x = 0; x < pixels; ++x) {
            auto* out = block.target + (static_cast<std::size_t>(down.begin) + y) * block.targetBytesPerRow +
                        (static_cast<std::size_t>(across.begin) + x) * 4;
            int most = 255;
            for (std::size_t channel = 4; channel-- > 0;) {
                int sum = 0;
                for (std::size_t tap = 0; tap < down.fixedTaps; ++tap)
                    if (const auto weight = down.fixed[y * down.fixedTaps + tap]; weight != 0)
                        sum += product(scratch.middle[((down.first[y] + tap) * pixels + x) * 4 + channel],
                                       weight);
                const int value = std::clamp((sum + (1 << (kTargetBits - 1))) >> kTargetBits, 0, most);
                if (channel == 3) most = value;
                out[channel] = static_cast<std::uint8_t>(value);
            }
        }
}

#else

using Values = hn::CappedTag<std::int16_t, kGroup>;
using Vector = hn::Vec<Values>;

/// Of four runs of pixels the first of each, then the second of each and so on.
HWY_INLINE void storeInTurn(Vector a, Vector b, Vector c, Vector d, std::int16_t* out) {
    const hn::Repartition<std::uint64_t, Values> pixels;
    hn::StoreInterleaved4(hn::BitCast(pixels, a), hn::BitCast(pixels, b), hn::BitCast(pixels, c),
                          hn::BitCast(pixels, d), pixels, reinterpret_cast<std::uint64_t*>(out));
}

HWY_INLINE Vector widen(const std::uint8_t* from) {
    const Values values;
    const hn::Rebind<std::uint8_t, Values> bytes;
    return hn::ShiftLeft<kSourceBits>(hn::PromoteTo(values, hn::LoadU(bytes, from)));
}

/// Four pixels of four rows each.
HWY_INLINE void widenFour(const std::array<const std::uint8_t*, kFour>& rows, std::size_t offset,
                          std::int16_t* HWY_RESTRICT out) {
    for (std::size_t i = 0; i < kGroup; i += hn::Lanes(Values())) {
        storeInTurn(widen(rows[0] + offset + i), widen(rows[1] + offset + i), widen(rows[2] + offset + i),
                    widen(rows[3] + offset + i), out + i * kFour);
    }
}

HWY_INLINE void widenRows(const std::array<const std::uint8_t*, kFour>& rows, std::size_t pixels,
                          std::int16_t* HWY_RESTRICT out) {
    std::size_t x = 0;
    for (; x + kFour <= pixels; x += kFour) widenFour(rows, x * 4, out + x * kGroup);
    if (x == pixels) return;
    std::uint8_t rest[kFour][kGroup] = {};
    for (std::size_t row = 0; row < kFour; ++row) std::copy_n(rows[row] + x * 4, (pixels - x) * 4, rest[row]);
    widenFour({rest[0], rest[1], rest[2], rest[3]}, 0, out + x * kGroup);
}

template <std::size_t... kTap>
HWY_INLINE std::array<Vector, sizeof...(kTap)> weightsAt(const std::int16_t* weights,
                                                         std::index_sequence<kTap...>) {
    return {hn::Set(Values(), weights[kTap])...};
}

template <std::size_t... kTap>
HWY_INLINE Vector blend(const std::int16_t* HWY_RESTRICT from,
                        const std::array<Vector, sizeof...(kTap)>& weights, std::index_sequence<kTap...>) {
    const Values values;
    auto sum = hn::Zero(values);
    ((sum = hn::Add(sum, hn::MulFixedPoint15(hn::LoadU(values, from + kTap * kGroup), weights[kTap]))), ...);
    return sum;
}

/// Pass one, four target columns at a time, over all rows.
template <std::size_t kTaps>
HWY_INLINE void blendAcross(const ResampleAxis& across, std::size_t groups, std::size_t sourceStride,
                            FixedScratch& scratch) {
    const Values values;
    const std::make_index_sequence<kTaps> taps;
    const std::size_t lanes = hn::Lanes(values);
    const std::size_t pixels = across.first.size();
    const std::size_t length = groups * kGroup;
    scratch.columns.resize(kFour * length);
    std::int16_t* const columns = scratch.columns.data();
    std::int16_t* out = scratch.middle.data();
    for (std::size_t x = 0; x < pixels; x += kFour) {
        for (std::size_t i = 0; i < kFour; ++i) {
            const std::size_t target = std::min(x + i, pixels - 1);
            const auto weights = weightsAt(across.fixed.data() + target * kTaps, taps);
            const std::int16_t* from = scratch.source.data() + across.first[target] * kGroup;
            std::int16_t* column = columns + i * length;
            for (std::size_t group = 0; group < groups; ++group, from += sourceStride, column += kGroup)
                for (std::size_t k = 0; k < kGroup; k += lanes)
                    hn::StoreU(blend(from + k, weights, taps), values, column + k);
        }
        for (std::size_t k = 0; k < length; k += lanes, out += lanes * kFour)
            storeInTurn(hn::LoadU(values, columns + k), hn::LoadU(values, columns + length + k),
                        hn::LoadU(values, columns + 2 * length + k),
                        hn::LoadU(values, columns + 3 * length + k), out);
    }
}

/// Rounds, keeps values in a byte and colours at or below their alpha.
HWY_INLINE void finish(Vector sum, std::uint8_t* HWY_RESTRICT out) {
    const Values values;
    const hn::Rebind<std::uint8_t, Values> bytes;
    HWY_ALIGN static constexpr std::uint8_t kAlphaOfPixel[kGroup] = {3,  3,  3,  3,  7,  7,  7,  7,
                                                                     11, 11, 11, 11, 15, 15, 15, 15};
    const auto rounded = hn::ShiftRight<kTargetBits>(hn::Add(sum, hn::Set(values, 1 << (kTargetBits - 1))));
    const auto narrow = hn::DemoteTo(bytes, rounded);
    hn::StoreU(hn::Min(narrow, hn::TableLookupBytes(narrow, hn::LoadU(bytes, kAlphaOfPixel))), bytes, out);
}

template <std::size_t kTaps>
HWY_INLINE void blendDown(const ResampleBlock& block, std::size_t middleStride, const FixedScratch& scratch) {
    const std::make_index_sequence<kTaps> taps;
    const std::size_t lanes = hn::Lanes(Values());
    const auto& down = *block.down;
    const std::size_t pixels = block.across->first.size();
    std::uint8_t* row = block.target + static_cast<std::size_t>(down.begin) * block.targetBytesPerRow +
                        static_cast<std::size_t>(block.across->begin) * 4;
    for (std::size_t y = 0; y < down.first.size(); ++y, row += block.targetBytesPerRow) {
        const auto weights = weightsAt(down.fixed.data() + y * kTaps, taps);
        const std::int16_t* from = scratch.middle.data() + down.first[y] * kGroup;
        std::size_t x = 0;
        for (; x + kFour <= pixels; x += kFour, from += middleStride)
            for (std::size_t k = 0; k < kGroup; k += lanes)
                finish(blend(from + k, weights, taps), row + x * 4 + k);
        if (x == pixels) continue;
        std::uint8_t rest[kGroup];
        for (std::size_t k = 0; k < kGroup; k += lanes) finish(blend(from + k, weights, taps), rest + k);
        std::copy_n(rest, (pixels - x) * 4, row + x * 4);
    }
}

void drawFixedBlock(const ResampleBlock& block, FixedScratch& scratch) {
    const auto& across = *block.across;
    const auto& down = *block.down;
    const auto sourcePixels = static_cast<std::size_t>(across.sourceEnd - across.sourceBegin);
    const auto sourceRows = static_cast<std::size_t>(down.sourceEnd - down.sourceBegin);
    const std::size_t groups = inFours(sourceRows);
    const std::size_t sourceStride = inFours(sourcePixels) * kFour * kGroup;
    const std::size_t middleStride = groups * kFour * kGroup;
    const std::size_t strips = inFours(across.first.size());
    // Taps of weight zero may read behind the last value.
    constexpr std::size_t kBehind = kMostFixedTaps * kGroup;
    scratch.source.resize(groups * sourceStride + kBehind);
    scratch.middle.resize(strips * middleStride + kBehind);

    const auto* source = block.source + static_cast<std::size_t>(down.sourceBegin) * block.sourceBytesPerRow +
                         static_cast<std::size_t>(across.sourceBegin) * 4;
    for (std::size_t group = 0; group < groups; ++group) {
        std::array<const std::uint8_t*, kFour> rows;
        for (std::size_t i = 0; i < kFour; ++i)
            rows[i] = source + std::min(group * kFour + i, sourceRows - 1) * block.sourceBytesPerRow;
        widenRows(rows, sourcePixels, scratch.source.data() + group * sourceStride);
    }
    switch (across.fixedTaps) {
        case 6:
            blendAcross<6>(across, groups, sourceStride, scratch);
            break;
        case 8:
            blendAcross<8>(across, groups, sourceStride, scratch);
            break;
        case 12:
            blendAcross<12>(across, groups, sourceStride, scratch);
            break;
        default:
            blendAcross<kMostFixedTaps>(across, groups, sourceStride, scratch);
    }
    switch (down.fixedTaps) {
        case 6:
            return blendDown<6>(block, middleStride, scratch);
        case 8:
            return blendDown<8>(block, middleStride, scratch);
        case 12:
            return blendDown<12>(block, middleStride, scratch);
        default:
            return blendDown<kMostFixedTaps>(block, middleStride, scratch);
    }
}

#endif  // HWY_TARGET == HWY_SCALAR

}  // namespace HWY_NAMESPACE
}  // namespace pintle
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pintle {

namespace {
HWY_EXPORT(drawFixedBlock);
}

void resampleBlockFixed(const ResampleBlock& block, FixedScratch& scratch) {
    HWY_DYNAMIC_DISPATCH(drawFixedBlock)(block, scratch);
}

}  // namespace pintle
#endif
