#include "cursor/xcursor_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "cursor/xcursor_parser.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::ElementsAre;

XCursorImage imageOf(XCursorChunk chunk) {
    return XCursorParser::parse(XCursorBuilder().image(std::move(chunk)).bytes(), std::nullopt)
        .value()
        .front();
}

TEST(XCursorImageTest, WritesRedGreenBlueAlphaOfEachPixelAsStored) {
    const auto bitmap =
        imageOf({.size = 2, .width = 2, .height = 1, .pixels = {0x80402010, 0x01FF00FE}}).nsImage();
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->width(), 2);
    EXPECT_EQ(bitmap->height(), 1);
    // The second pixel's colour is above its alpha and stays so.
    EXPECT_THAT(bitmap->bytes(), ElementsAre(0x40, 0x20, 0x10, 0x80, 0xFF, 0x00, 0xFE, 0x01));
}

TEST(XCursorImageTest, WritesEveryPixelOfImagesOfAnyLength) {
    std::mt19937 random(3);
    for (std::uint32_t width = 1; width < 100; ++width) {
        std::vector<std::uint32_t> pixels(width);
        for (auto& pixel : pixels) pixel = static_cast<std::uint32_t>(random());
        const auto bitmap = imageOf({.size = 1, .width = width, .height = 1, .pixels = pixels}).nsImage();
        ASSERT_TRUE(bitmap);
        for (std::uint32_t x = 0; x < width; ++x)
            ASSERT_THAT(bitmap->pixel(static_cast<int>(x), 0),
                        ElementsAre(pixels[x] >> 16 & 0xFF, pixels[x] >> 8 & 0xFF, pixels[x] & 0xFF,
                                    pixels[x] >> 24));
    }
}

TEST(XCursorImageTest, IsAsLargeInPointsAsInPixels) {
    const auto bitmap = imageOf({.size = 8, .width = 3, .height = 5}).nsImage();
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->size(), (Size{3, 5}));
}

TEST(XCursorImageTest, GivesNothingWithoutWidthOrHeight) {
    for (const auto& [width, height] :
         {std::pair{0, 4}, std::pair{4, 0}, std::pair{-1, 4}, std::pair{4, -1}}) {
        XCursorImage image;
        image.width = width;
        image.height = height;
        EXPECT_FALSE(image.nsImage());
        EXPECT_FALSE(image.scaledNSImage(1.0));
        EXPECT_FALSE(image.scaledNSImage(1.5));
    }
}

TEST(XCursorImageTest, ReturnsTheUnscaledImageAtExactlyOne) {
    const auto image =
        imageOf({.size = 4, .pixels = {0x01FF00FE, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}});
    EXPECT_EQ(image.scaledNSImage(1.0), image.nsImage());
}

TEST(XCursorImageTest, TruncatesTheScaledSides) {
    const auto image = imageOf({.size = 32});
    EXPECT_EQ(image.scaledNSImage(1.5)->width(), 48);
    EXPECT_EQ(image.scaledNSImage(1.3)->width(), 41);
    EXPECT_EQ(image.scaledNSImage(1.3)->height(), 41);
    EXPECT_EQ(image.scaledNSImage(0.75)->width(), 24);
    EXPECT_EQ(image.scaledNSImage(1.0 / 32)->width(), 1);
}

TEST(XCursorImageTest, ScalesBothSidesAlike) {
    const auto bitmap = imageOf({.size = 32, .width = 20, .height = 31}).scaledNSImage(1.5);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->width(), 30);
    EXPECT_EQ(bitmap->height(), 46);
}

TEST(XCursorImageTest, GivesNothingWhenASideTruncatesToZero) {
    EXPECT_FALSE(imageOf({.size = 32}).scaledNSImage(0.01));
    EXPECT_FALSE(imageOf({.size = 32, .width = 200, .height = 1}).scaledNSImage(0.5));
    EXPECT_FALSE(imageOf({.size = 32}).scaledNSImage(0));
    EXPECT_FALSE(imageOf({.size = 32}).scaledNSImage(-1));
}

TEST(XCursorImageTest, GivesNothingWhenTheScaledImageCannotBeHeld) {
    EXPECT_FALSE(imageOf({.size = 32}).scaledNSImage(1e9));
    EXPECT_FALSE(imageOf({.size = 32}).scaledNSImage(1e17));
}

TEST(XCursorImageTest, ReplacesTheTargetAndKeepsAPlainColourPlain) {
    for (const std::uint32_t colour : {0xFF102030U, 0x80402010U, 0U, 0xFFFFFFFFU}) {
        const auto bitmap = imageOf({.size = 16, .colour = colour}).scaledNSImage(1.5);
        ASSERT_TRUE(bitmap);
        for (int y = 0; y < 24; ++y)
            for (int x = 0; x < 24; ++x)
                ASSERT_THAT(bitmap->pixel(x, y), ElementsAre(colour >> 16 & 0xFF, colour >> 8 & 0xFF,
                                                             colour & 0xFF, colour >> 24));
    }
}

TEST(XCursorImageDeathTest, EndsTheProgramWhenAScaledSideLeavesSixtyFourBits) {
    const auto image = imageOf({.size = 32});
    EXPECT_DEATH(image.scaledNSImage(1e18), "does not fit a 64-bit integer");
    EXPECT_DEATH(image.scaledNSImage(-1e18), "does not fit a 64-bit integer");
    EXPECT_DEATH(image.scaledNSImage(std::numeric_limits<double>::infinity()),
                 "does not fit a 64-bit integer");
    EXPECT_DEATH(image.scaledNSImage(std::numeric_limits<double>::quiet_NaN()),
                 "does not fit a 64-bit integer");
}

}  // namespace
}  // namespace pintle
