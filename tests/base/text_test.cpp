#include "base/text.h"

#include <gtest/gtest.h>

namespace pintle {
namespace {

TEST(ShortestDouble, WholeNumbersKeepOneDecimal) {
    EXPECT_EQ(shortestDouble(1), "1.0");
    EXPECT_EQ(shortestDouble(0), "0.0");
    EXPECT_EQ(shortestDouble(10), "10.0");
}

TEST(ShortestDouble, FractionsPrintNoMoreDigitsThanReadBackTheSame) {
    EXPECT_EQ(shortestDouble(1.5), "1.5");
    EXPECT_EQ(shortestDouble(1.15), "1.15");
    EXPECT_EQ(shortestDouble(0.1 + 0.2), "0.30000000000000004");
}

}  // namespace
}  // namespace pintle
