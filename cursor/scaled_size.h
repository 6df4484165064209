// A length times a scale, as the image scaler and the set builder compute it. Any thread.
#pragma once

#include <cstdint>

namespace pintle {

/// length × scale in double precision, truncated toward zero. Ends the program when the product does not fit
/// 64 bits or is not a number.
std::int64_t truncatedProduct(std::int64_t length, double scale);

/// The nominal size that is looked for at `scale`; ends the program as truncatedProduct() does.
inline std::int64_t nominalSizeAt(double scale) { return truncatedProduct(32, scale); }

/// Between any two nominal sizes.
constexpr std::uint64_t distanceOf(std::int64_t a, std::int64_t b) {
    return a > b ? static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b)
                 : static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
}

}  // namespace pintle
