#include "base/bitmap.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pintle {
namespace {

TEST(Bitmap, SidesBelowOneGiveNothing) {
    const auto fill = [](std::span<std::uint8_t>) {};
    EXPECT_FALSE(Bitmap::create(0, 4, fill));
    EXPECT_FALSE(Bitmap::create(4, 0, fill));
    EXPECT_FALSE(Bitmap::create(-1, 4, fill));
}

TEST(Bitmap, SidesWhoseProductOverflowsGiveNothing) {
    EXPECT_FALSE(
        Bitmap::create(std::int64_t{1} << 40, std::int64_t{1} << 40, [](std::span<std::uint8_t>) {}));
}

TEST(Bitmap, EqualityComparesPixelsAndNotTheMemoryTheyLieIn) {
    const auto grey = [](std::span<std::uint8_t> out) { std::fill(out.begin(), out.end(), std::uint8_t{9}); };
    const auto a = Bitmap::create(2, 2, grey);
    const auto b = Bitmap::create(2, 2, grey);
    const auto wide = Bitmap::create(4, 1, grey);
    ASSERT_TRUE(a && b && wide);
    EXPECT_EQ(*a, *b);
    EXPECT_FALSE(*a == *wide);
}

TEST(Bitmap, PixelsAreCountedFromTheTopLeftCorner) {
    const auto image = Bitmap::create(2, 2, [](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size(); ++i) out[i] = static_cast<std::uint8_t>(i);
    });
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixel(1, 0)[0], 4);
    EXPECT_EQ(image->pixel(0, 1)[0], 8);
}

}  // namespace
}  // namespace pintle
