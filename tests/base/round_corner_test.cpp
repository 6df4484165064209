#include "base/round_corner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pintle {
namespace {

TEST(RoundCorner, EachRowIsCutWhereTheCircleRuns) {
    EXPECT_THAT(cornerInsets(4), testing::ElementsAre(2, 1, 0, 0));
    EXPECT_THAT(cornerInsets(0), testing::IsEmpty());
}

TEST(RoundCorner, TheCutIsTheSameAcrossAsDown) {
    for (int radius = 1; radius < 40; ++radius) {
        const auto insets = cornerInsets(radius);
        const auto isCut = [&](int across, int down) {
            return across < insets[static_cast<std::size_t>(down)];
        };
        for (int across = 0; across < radius; ++across)
            for (int down = 0; down < radius; ++down) EXPECT_EQ(isCut(across, down), isCut(down, across));
    }
}

}  // namespace
}  // namespace pintle
