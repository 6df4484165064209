#include "apply/mask_sums.h"

#include <array>
#include <bit>
#include <cstring>
#include <utility>

// Eight floats suit sixteen positions; wider vectors gain nothing.
#define HWY_DISABLED_TARGETS \
    (HWY_AVX3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "apply/mask_sums.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pintle {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::CappedTag<float, kMaskLanes>;

HWY_INLINE std::size_t padded(std::size_t width) {
    return (width + kMaskLanes - 1) / kMaskLanes * kMaskLanes;
}

HWY_INLINE void widenAlpha(const std::uint8_t* HWY_RESTRICT pixels, float* HWY_RESTRICT out) {
    const Floats floats;
    const hn::RebindToSigned<Floats> integers;
    const hn::RebindToUnsigned<Floats> words;
    for (std::size_t i = 0; i < kMaskLanes; i += hn::Lanes(floats)) {
        auto alpha = hn::LoadU(words, reinterpret_cast<const std::uint32_t*>(pixels + i * 4));
        if constexpr (std::endian::native == std::endian::little)
            alpha = hn::ShiftRight<24>(alpha);
        else
            alpha = hn::And(alpha, hn::Set(words, 0xFF));
        hn::StoreU(hn::ConvertTo(floats, hn::BitCast(integers, alpha)), floats, out + i);
    }
}

HWY_INLINE void takeAlpha(const MaskImage& image, std::vector<float>& alpha) {
    const std::size_t stride = padded(image.width);
    alpha.resize(stride * image.height);
    for (std::size_t y = 0; y < image.height; ++y) {
        const std::uint8_t* row = image.bytes.data() + y * image.width * 4;
        std::size_t x = 0;
        for (; x + kMaskLanes <= image.width; x += kMaskLanes)
            widenAlpha(row + x * 4, &alpha[y * stride + x]);
        if (x == image.width) continue;
        std::uint8_t rest[kMaskLanes * 4] = {};
        std::memcpy(rest, row + x * 4, (image.width - x) * 4);
        widenAlpha(rest, &alpha[y * stride + x]);
    }
}

/// Neighbouring columns of one row of the mask's height; each weight is loaded once for all of them.
template <std::size_t... kPart>
HWY_INLINE void squeezeColumns(const float* HWY_RESTRICT from, std::size_t stride,
                               const std::vector<float>& weights, float* HWY_RESTRICT out,
                               std::index_sequence<kPart...>) {
    const Floats floats;
    const std::size_t lanes = hn::Lanes(floats);
    std::array<hn::Vec<Floats>, sizeof...(kPart)> sums;
    ((sums[kPart] = hn::Zero(floats)), ...);
    for (const float each : weights) {
        const auto weight = hn::Set(floats, each);
        ((sums[kPart] = hn::MulAdd(hn::LoadU(floats, from + kPart * lanes), weight, sums[kPart])), ...);
        from += stride;
    }
    (hn::StoreU(sums[kPart], floats, out + kPart * lanes), ...);
}

/// One row of the mask's height, as wide as the image.
HWY_INLINE void squeeze(const float* from, std::size_t stride, const std::vector<float>& weights,
                        float* out) {
    const std::size_t lanes = hn::Lanes(Floats());
    std::size_t x = 0;
    for (; x + 4 * lanes <= stride; x += 4 * lanes)
        squeezeColumns(from + x, stride, weights, out + x, std::make_index_sequence<4>());
    for (; x + 2 * lanes <= stride; x += 2 * lanes)
        squeezeColumns(from + x, stride, weights, out + x, std::make_index_sequence<2>());
    for (; x < stride; x += lanes)
        squeezeColumns(from + x, stride, weights, out + x, std::make_index_sequence<1>());
}

/// As bytes; notes which are doubtful.
template <class V>
HWY_INLINE void round(V sum, float doubt, std::size_t place, std::vector<std::size_t>& doubtful,
                      AlphaSignature& mask) {
    const Floats floats;
    const hn::RebindToSigned<Floats> integers;
    const hn::Rebind<std::uint8_t, Floats> bytes;
    const auto half = hn::Set(floats, 0.5F);
    const auto value = hn::Add(hn::Min(hn::Max(sum, hn::Zero(floats)), hn::Set(floats, 255.0F)), half);
    const auto whole = hn::ConvertTo(integers, value);
    hn::StoreU(hn::DemoteTo(bytes, whole), bytes, mask.data() + place);
    const auto fromMiddle = hn::Abs(hn::Sub(hn::Sub(value, hn::ConvertTo(floats, whole)), half));
    const auto isDoubtful = hn::Gt(fromMiddle, hn::Set(floats, 0.5F - doubt));
    if (hn::AllFalse(floats, isDoubtful)) return;
    float distances[kMaskLanes];
    hn::StoreU(fromMiddle, floats, distances);
    for (std::size_t i = 0; i < hn::Lanes(floats); ++i)
        if (distances[i] > 0.5F - doubt) doubtful.push_back(place + i);
}

/// Four rows of the mask and eight of its columns.
HWY_INLINE void sumFourRows(const float* HWY_RESTRICT rows, std::size_t stride,
                            const MaskWeights::Spread& spread, std::size_t place, float doubt,
                            std::vector<std::size_t>& doubtful, AlphaSignature& mask) {
    const Floats floats;
    const std::size_t samples = spread.weights.size() / kMaskLanes;
    for (std::size_t i = 0; i < kMaskLanes; i += hn::Lanes(floats)) {
        const float* value = rows + spread.first;
        const float* weight = spread.weights.data() + i;
        auto a = hn::Zero(floats);
        auto b = a;
        auto c = a;
        auto d = a;
        for (std::size_t k = 0; k < samples; ++k, ++value, weight += kMaskLanes) {
            const auto weights = hn::LoadU(floats, weight);
            a = hn::MulAdd(hn::Set(floats, value[0]), weights, a);
            b = hn::MulAdd(hn::Set(floats, value[stride]), weights, b);
            c = hn::MulAdd(hn::Set(floats, value[2 * stride]), weights, c);
            d = hn::MulAdd(hn::Set(floats, value[3 * stride]), weights, d);
        }
        round(a, doubt, place + i, doubtful, mask);
        round(b, doubt, place + kMaskSide + i, doubtful, mask);
        round(c, doubt, place + 2 * kMaskSide + i, doubtful, mask);
        round(d, doubt, place + 3 * kMaskSide + i, doubtful, mask);
    }
}

void sumWholeMask(const MaskImage& image, const MaskWeights& across, const MaskWeights& down, float doubt,
                  MaskScratch& scratch, AlphaSignature& mask) {
    const std::size_t stride = padded(image.width);
    takeAlpha(image, scratch.alpha);
    scratch.rows.resize(stride * kMaskSide);
    for (std::size_t y = 0; y < kMaskSide; ++y)
        squeeze(scratch.alpha.data() + down.positions[y].first * stride, stride, down.positions[y].weights,
                scratch.rows.data() + y * stride);
    scratch.doubtful.clear();
    for (std::size_t y = 0; y < kMaskSide; y += 4)
        for (std::size_t part = 0; part < across.spread.size(); ++part)
            sumFourRows(scratch.rows.data() + y * stride, stride, across.spread[part],
                        y * kMaskSide + part * kMaskLanes, doubt, scratch.doubtful, mask);
}

}  // namespace HWY_NAMESPACE
}  // namespace pintle
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pintle {

HWY_EXPORT(sumWholeMask);

void sumMask(const MaskImage& image, const MaskWeights& across, const MaskWeights& down, float doubt,
             MaskScratch& scratch, AlphaSignature& mask) {
    HWY_DYNAMIC_DISPATCH(sumWholeMask)(image, across, down, doubt, scratch, mask);
}

}  // namespace pintle
#endif
