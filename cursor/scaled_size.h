// A length times a scale, as the image scaler and the set builder compute it. Any thread.
#pragma once

#include <cstdint>

namespace pintle {

/// length × scale in double precision, truncated toward zero. Ends the program when the product does not fit
/// 64 bits or is not a number.
std::int64_t truncatedProduct(std::int64_t length, double scale);

}  // namespace pintle
