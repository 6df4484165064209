#include "base/resample_block.h"

#include <algorithm>
#include <cmath>

// Vectors wider than eight floats gain nothing on a row of a cursor, and the folding below wants to know the
// width while compiling.
#define HWY_DISABLED_TARGETS \
    (HWY_AVX3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "base/resample_block.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pintle {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::CappedTag<float, 8>;

HWY_INLINE void widen(const std::uint8_t* HWY_RESTRICT from, float* HWY_RESTRICT to, std::size_t count) {
    const Floats floats;
    const hn::Rebind<std::int32_t, Floats> integers;
    const hn::Rebind<std::uint8_t, Floats> bytes;
    const std::size_t lanes = hn::Lanes(floats);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        hn::StoreU(hn::ConvertTo(floats, hn::PromoteTo(integers, hn::LoadU(bytes, from + i))), floats,
                   to + i);
    for (; i < count; ++i) to[i] = static_cast<float>(from[i]);
}

/// `count` is a multiple of eight.
HWY_INLINE void blendRows(const float* const* HWY_RESTRICT rows, const float* HWY_RESTRICT weights,
                          std::size_t taps, float* HWY_RESTRICT out, std::size_t count) {
    const Floats floats;
    const std::size_t lanes = hn::Lanes(floats);
    for (std::size_t i = 0; i < count; i += lanes) {
        auto sum = hn::Mul(hn::LoadU(floats, rows[0] + i), hn::Set(floats, weights[0]));
        for (std::size_t tap = 1; tap < taps; ++tap)
            sum = hn::MulAdd(hn::LoadU(floats, rows[tap] + i), hn::Set(floats, weights[tap]), sum);
        hn::StoreU(sum, floats, out + i);
    }
}

#if HWY_TARGET == HWY_SCALAR

HWY_INLINE void blendColumns(const float* row, const ResampleAxis& across, float* out, std::size_t pixels) {
    for (std::size_t x = 0; x < pixels; ++x)
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const float* from = row + static_cast<std::size_t>(across.first[x]) * 4 + channel;
            float sum = 0;
            for (std::size_t tap = 0; tap < across.taps; ++tap)
                sum += from[tap * 4] * across.weights[x * across.taps + tap];
            out[x * 4 + channel] = sum;
        }
}

HWY_INLINE void finish(const float* row, std::uint8_t* out, std::size_t pixels) {
    for (std::size_t x = 0; x < pixels; ++x, row += 4, out += 4) {
        const float alpha = std::clamp(std::nearbyint(row[3]), 0.0F, 255.0F);
        for (std::size_t channel = 0; channel < 4; ++channel)
            out[channel] = static_cast<std::uint8_t>(std::clamp(std::nearbyint(row[channel]), 0.0F, alpha));
    }
}

#else

using OnePixel = hn::FixedTag<float, 4>;

template <class D>
HWY_INLINE hn::Vec<OnePixel> foldToOnePixel(D, hn::Vec<D> sum) {
    if constexpr (hn::MaxLanes(D()) == 8)
        return hn::Add(hn::LowerHalf(OnePixel(), sum), hn::UpperHalf(OnePixel(), sum));
    else
        return sum;
}

/// Two taps of four channels each are eight neighbouring floats.
HWY_INLINE void blendColumns(const float* HWY_RESTRICT row, const ResampleAxis& across,
                             float* HWY_RESTRICT out, std::size_t pixels) {
    const Floats floats;
    const std::size_t lanes = hn::Lanes(floats);
    const std::size_t values = across.taps * 4;
    const float* weights = across.weightsByChannel.data();
    for (std::size_t x = 0; x < pixels; ++x) {
        const float* from = row + static_cast<std::size_t>(across.first[x]) * 4;
        auto sum = hn::Mul(hn::LoadU(floats, from), hn::LoadU(floats, weights));
        for (std::size_t i = lanes; i < values; i += lanes)
            sum = hn::MulAdd(hn::LoadU(floats, from + i), hn::LoadU(floats, weights + i), sum);
        hn::StoreU(foldToOnePixel(floats, sum), OnePixel(), out + x * 4);
        weights += values;
    }
}

/// Rounds, keeps values in a byte and colours at or below their alpha. `row` may be read up to a multiple of
/// eight values.
HWY_INLINE void finish(const float* HWY_RESTRICT row, std::uint8_t* HWY_RESTRICT out, std::size_t pixels) {
    const Floats floats;
    const hn::Rebind<std::uint8_t, Floats> bytes;
    const std::size_t lanes = hn::Lanes(floats);
    HWY_ALIGN static constexpr std::uint8_t kAlphaOfPixel[8] = {3, 3, 3, 3, 7, 7, 7, 7};
    const auto alphaOfPixel = hn::LoadU(bytes, kAlphaOfPixel);
    const std::size_t count = pixels * 4;
    const auto rounded = [&](std::size_t i) {
        const auto values = hn::DemoteTo(bytes, hn::NearestInt(hn::LoadU(floats, row + i)));
        return hn::Min(values, hn::TableLookupBytes(values, alphaOfPixel));
    };
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) hn::StoreU(rounded(i), bytes, out + i);
    if (i < count) {
        HWY_ALIGN std::uint8_t rest[8];
        hn::StoreU(rounded(i), bytes, rest);
        std::copy_n(rest, count - i, out + i);
    }
}

#endif  // HWY_TARGET == HWY_SCALAR

void drawBlock(const ResampleBlock& block, ResampleScratch& scratch) {
    const auto& across = *block.across;
    const auto& down = *block.down;
    const auto sourcePixels = static_cast<std::size_t>(across.sourceEnd - across.sourceBegin);
    const auto targetPixels = static_cast<std::size_t>(across.end - across.begin);
    // Padding for the taps of weight zero, which must read numbers, and for whole vectors.
    const std::size_t rowValues = ((sourcePixels + across.taps) * 4 + 7) / 8 * 8;
    const std::size_t rowsKept = down.taps;
    scratch.rows.assign(rowValues * rowsKept, 0.0F);
    scratch.blended.resize(rowValues);
    scratch.finished.assign((targetPixels + 4) * 4, 0.0F);
    scratch.order.resize(rowsKept);

    const auto* source = block.source + static_cast<std::size_t>(down.sourceBegin) * block.sourceBytesPerRow +
                         static_cast<std::size_t>(across.sourceBegin) * 4;
    const auto sourceRows = static_cast<std::size_t>(down.sourceEnd - down.sourceBegin);
    std::size_t widened = 0;
    for (std::size_t y = 0; y < down.first.size(); ++y) {
        const std::size_t first = down.first[y];
        // Windows move forward only, so a row is overwritten when no later window needs it.
        const std::size_t taps = std::min(down.taps, sourceRows - first);
        for (widened = std::max(widened, first); widened < first + taps; ++widened)
            widen(source + widened * block.sourceBytesPerRow,
                  scratch.rows.data() + widened % rowsKept * rowValues, sourcePixels * 4);
        for (std::size_t tap = 0; tap < taps; ++tap)
            scratch.order[tap] = scratch.rows.data() + (first + tap) % rowsKept * rowValues;
        blendRows(scratch.order.data(), down.weights.data() + y * down.taps, taps, scratch.blended.data(),
                  rowValues);
        blendColumns(scratch.blended.data(), across, scratch.finished.data(), targetPixels);
        finish(scratch.finished.data(),
               block.target + (static_cast<std::size_t>(down.begin) + y) * block.targetBytesPerRow +
                   static_cast<std::size_t>(across.begin) * 4,
               targetPixels);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace pintle
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pintle {

HWY_EXPORT(drawBlock);

void resampleBlock(const ResampleBlock& block, ResampleScratch& scratch) {
    HWY_DYNAMIC_DISPATCH(drawBlock)(block, scratch);
}

}  // namespace pintle
#endif
