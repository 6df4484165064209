#include "platform/x11/cursors/core_glyphs.h"

#include <gtest/gtest.h>

#include <vector>

namespace pintle::x11 {
namespace {

std::optional<TwoColorShape> shapeOf(const std::vector<std::uint32_t>& pixels, std::uint32_t width = 2) {
    return twoColorShapeOf(width, static_cast<std::uint32_t>(pixels.size()) / width, 0, 0, pixels);
}

TEST(TwoColorShape, IsTheSameForAllColors) {
    const auto black = shapeOf({0, 0xFF000000, 0xFFFFFFFF, 0xFF000000});
    const auto red = shapeOf({0, 0xFFFF0000, 0xFF00FF00, 0xFFFF0000});
    ASSERT_TRUE(black && red);
    EXPECT_EQ(black->fingerprint, red->fingerprint);
    EXPECT_EQ(red->first, 0xFF0000u);
    EXPECT_EQ(red->second, 0x00FF00u);
}

TEST(TwoColorShape, DependsOnPlaceSizeAndHotspot) {
    const auto shape = shapeOf({0, 0xFF000000, 0xFFFFFFFF, 0xFF000000});
    const auto other = shapeOf({0, 0xFF000000, 0xFF000000, 0xFFFFFFFF});
    const auto longer = shapeOf({0, 0xFF000000, 0xFFFFFFFF, 0xFF000000}, 1);
    const std::vector<std::uint32_t> pixels = {0, 0xFF000000, 0xFFFFFFFF, 0xFF000000};
    const auto elsewhere = twoColorShapeOf(2, 2, 1, 0, pixels);
    ASSERT_TRUE(shape && other && longer && elsewhere);
    EXPECT_NE(shape->fingerprint, other->fingerprint);
    EXPECT_NE(shape->fingerprint, longer->fingerprint);
    EXPECT_NE(shape->fingerprint, elsewhere->fingerprint);
}

TEST(TwoColorShape, PicturesOfAnotherKindHaveNone) {
    EXPECT_FALSE(shapeOf({0xFF000000, 0xFFFFFFFF, 0xFF00FF00, 0}));
    EXPECT_FALSE(shapeOf({0xFF000000, 0x80FFFFFF, 0, 0}));
    EXPECT_FALSE(shapeOf({0, 0, 0, 0}));
}

}  // namespace
}  // namespace pintle::x11
