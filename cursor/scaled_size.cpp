#include "cursor/scaled_size.h"

#include <cstdio>
#include <cstdlib>

namespace pintle {

std::int64_t truncatedProduct(std::int64_t length, double scale) {
    const double product = static_cast<double>(length) * scale;
    // 2^63 is the first double above the range and -2^63 the last one in it; a NaN fails both comparisons.
    if (!(product >= -9223372036854775808.0 && product < 9223372036854775808.0)) {
        std::fprintf(stderr, "Fatal error: %lld times %g does not fit a 64-bit integer\n",
                     static_cast<long long>(length), scale);
        std::abort();
    }
    return static_cast<std::int64_t>(product);
}

}  // namespace pintle
