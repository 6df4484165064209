#include "base/rgba.h"

#include <bit>
#include <cstddef>

#define HWY_DISABLED_TARGETS \
    (HWY_AVX3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "base/rgba.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pintle {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

void turnPixels(const std::uint32_t* HWY_RESTRICT from, std::size_t count, std::uint8_t* HWY_RESTRICT to) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::CappedTag<std::uint8_t, 32> bytes;
    const std::size_t pixels = hn::Lanes(bytes) / 4;
    HWY_ALIGN static constexpr std::uint8_t kLittle[16] = {2,  1, 0, 3,  6,  5,  4,  7,
                                                           10, 9, 8, 11, 14, 13, 12, 15};
    HWY_ALIGN static constexpr std::uint8_t kBig[16] = {1, 2, 3, 0, 5, 6, 7, 4, 9, 10, 11, 8, 13, 14, 15, 12};
    const auto order = hn::LoadDup128(bytes, std::endian::native == std::endian::little ? kLittle : kBig);
    const auto* source = reinterpret_cast<const std::uint8_t*>(from);
    for (; done + pixels <= count; done += pixels)
        hn::StoreU(hn::TableLookupBytes(hn::LoadU(bytes, source + done * 4), order), bytes, to + done * 4);
#endif
    for (; done < count; ++done) {
        const std::uint32_t pixel = from[done];
        to[done * 4] = static_cast<std::uint8_t>(pixel >> 16);
        to[done * 4 + 1] = static_cast<std::uint8_t>(pixel >> 8);
        to[done * 4 + 2] = static_cast<std::uint8_t>(pixel);
        to[done * 4 + 3] = static_cast<std::uint8_t>(pixel >> 24);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace pintle
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pintle {

HWY_EXPORT(turnPixels);

void writeRgba(std::span<const std::uint32_t> from, std::uint8_t* to) {
    HWY_DYNAMIC_DISPATCH(turnPixels)(from.data(), from.size(), to);
}

}  // namespace pintle
#endif
