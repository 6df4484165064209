#include "platform/x11/cursors/cursor_picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pintle::x11 {
namespace {

/// Each row of the image has its number as red.
Bitmap rows(int width, int height) {
    return *Bitmap::create(width, height, [&](auto bytes) {
        for (std::size_t i = 0; i < bytes.size(); i += 4) {
            bytes[i] = static_cast<std::uint8_t>(i / 4 / static_cast<std::size_t>(width));
            bytes[i + 1] = 0x22;
            bytes[i + 2] = 0x33;
            bytes[i + 3] = 0xFF;
        }
    });
}

RegisteredCursor record(int width, int height, std::uint64_t frames) {
    RegisteredCursor cursor;
    cursor.images = {rows(width, height * static_cast<int>(frames))};
    cursor.size = {static_cast<double>(width), static_cast<double>(height)};
    cursor.frameCount = frames;
    return cursor;
}

TEST(CursorPicture, AStripIsCutIntoFramesFromTheTop) {
    auto cursor = record(4, 3, 3);
    cursor.frameDuration = 0.05;
    const auto picture = CursorPicture::of(cursor);
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->frames().size(), 3u);
    EXPECT_TRUE(picture->isAnimated());
    for (int i = 0; i < 3; ++i) {
        const auto& frame = picture->frames()[static_cast<std::size_t>(i)];
        EXPECT_EQ(frame.delay, 50u);
        const auto pixels = frame.argb();
        ASSERT_EQ(pixels.size(), 12u);
        EXPECT_EQ(pixels.front(), 0xFF002233u | static_cast<std::uint32_t>(3 * i) << 16);
        EXPECT_EQ(pixels.back(), 0xFF002233u | static_cast<std::uint32_t>(3 * i + 2) << 16);
    }
}

TEST(CursorPicture, SeveralImagesAreTheFrames) {
    RegisteredCursor cursor = record(4, 4, 1);
    cursor.images.push_back(rows(4, 4));
    cursor.frameCount = 2;
    const auto picture = CursorPicture::of(cursor);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->frames().size(), 2u);
}

TEST(CursorPicture, AHotspotIsRoundedToNearestAndClamped) {
    const auto hotspot = [](double x, double y) {
        auto cursor = record(10, 8, 1);
        cursor.hotspot = {x, y};
        const auto picture = CursorPicture::of(cursor);
        return std::pair(picture->frames()[0].hotspotX, picture->frames()[0].hotspotY);
    };
    EXPECT_EQ(hotspot(2.4, 2.5), std::pair(2, 3));
    EXPECT_EQ(hotspot(-1, -0.4), std::pair(0, 0));
    EXPECT_EQ(hotspot(10, 8), std::pair(9, 7));
    EXPECT_EQ(hotspot(9.6, 1e300), std::pair(9, 7));
    EXPECT_EQ(hotspot(std::nan(""), std::numeric_limits<double>::infinity()), std::pair(0, 7));
}

TEST(CursorPicture, ADelayIsRoundedAndBounded) {
    const auto delay = [](double seconds) {
        auto cursor = record(2, 2, 2);
        cursor.frameDuration = seconds;
        return CursorPicture::of(cursor)->frames()[0].delay;
    };
    EXPECT_EQ(delay(0.02), 20u);
    EXPECT_EQ(delay(0.0333), 33u);
    EXPECT_EQ(delay(0.0336), 34u);
    EXPECT_EQ(delay(0), 10u);
    EXPECT_EQ(delay(-5), 10u);
    EXPECT_EQ(delay(std::nan("")), 10u);
    EXPECT_EQ(delay(1e300), 3600000u);
}

TEST(CursorPicture, ARecordThatDoesNotDescribeFramesIsRefused) {
    EXPECT_TRUE(CursorPicture::of(record(4, 4, 2)));
    auto cursor = record(4, 4, 2);
    cursor.images.clear();
    EXPECT_FALSE(CursorPicture::of(cursor));
    cursor = record(4, 4, 2);
    cursor.frameCount = 0;
    EXPECT_FALSE(CursorPicture::of(cursor));
    cursor.frameCount = 3;
    EXPECT_FALSE(CursorPicture::of(cursor));
    cursor.frameCount = std::numeric_limits<std::uint64_t>::max();
    EXPECT_FALSE(CursorPicture::of(cursor));
    cursor = record(4, 4, 2);
    for (const double side :
         {0.0, -4.0, 5.0, 3000.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        cursor.size = {side, 4};
        EXPECT_FALSE(CursorPicture::of(cursor)) << side;
    }
    for (const double side :
         {0.0, -4.0, 5.0, 3000.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        cursor.size = {4, side};
        EXPECT_FALSE(CursorPicture::of(cursor)) << side;
    }
    EXPECT_FALSE(CursorPicture::of(std::vector<CursorFrame>{}));
}

TEST(CursorPicture, ARecordOfAnotherDensityIsCutAtItsPixels) {
    auto cursor = record(51, 38, 2);
    // 51.25 and 37.5 pixels.
    cursor.size = {41, 30};
    cursor.hotspot = {10, 29};
    cursor.pixelsPerPoint = 1.25;
    const auto picture = CursorPicture::of(cursor);
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->frames().size(), 2u);
    const auto& second = picture->frames()[1];
    EXPECT_EQ(std::pair(second.width, second.height), std::pair(51, 38));
    EXPECT_EQ(second.top, 38);
    EXPECT_EQ(std::pair(second.hotspotX, second.hotspotY), std::pair(13, 36));
    for (const double density : {0.0, -2.0, 2.0, 1e300, std::nan("")}) {
        cursor.pixelsPerPoint = density;
        EXPECT_FALSE(CursorPicture::of(cursor)) << density;
    }
}

TEST(CursorPicture, ACopyKeepsItsPixelsAndIsMeasuredInPoints) {
    auto cursor = record(48, 36, 1);
    cursor.hotspot = {12, 6};
    const auto copy = recordOf("x", *CursorPicture::of(cursor), 1.5);
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->images, cursor.images);
    EXPECT_EQ(copy->size, (Size{32, 24}));
    EXPECT_EQ(copy->hotspot, (Point{8, 4}));
}

TEST(CursorPicture, SidesUpToTheBoundAreAccepted) {
    EXPECT_TRUE(CursorPicture::of(record(2048, 1, 1)));
    EXPECT_FALSE(CursorPicture::of(record(2049, 1, 1)));
    EXPECT_TRUE(CursorPicture::of(record(1, 2048, 1)));
    EXPECT_FALSE(CursorPicture::of(record(1, 2049, 1)));
}

TEST(CursorPicture, AllFramesTogetherAreNoMoreThanTheLargestStillOne) {
    EXPECT_TRUE(CursorPicture::of(record(512, 512, 16)));
    EXPECT_FALSE(CursorPicture::of(record(512, 512, 17)));
    auto separate = record(2048, 1025, 1);
    separate.images.push_back(separate.images.front());
    separate.frameCount = 2;
    EXPECT_FALSE(CursorPicture::of(separate));
}

TEST(CursorPicture, EqualMeansPixelsHotspotsAndDelays) {
    const auto base = CursorPicture::of(record(4, 3, 2));
    EXPECT_TRUE(base->equals(*CursorPicture::of(record(4, 3, 2))));
    auto other = record(4, 3, 2);
    other.hotspot = {1, 0};
    EXPECT_FALSE(base->equals(*CursorPicture::of(other)));
    other = record(4, 3, 2);
    other.frameDuration = 1;
    EXPECT_FALSE(base->equals(*CursorPicture::of(other)));
    EXPECT_FALSE(base->equals(*CursorPicture::of(record(4, 3, 1))));
    EXPECT_FALSE(base->equals(*CursorPicture::of(record(3, 4, 2))));
    EXPECT_TRUE(samePicture(nullptr, nullptr));
    EXPECT_FALSE(samePicture(base, nullptr));
}

TEST(CursorPicture, TheDurationOfAStillCursorMakesNoDifference) {
    auto other = record(4, 3, 1);
    other.frameDuration = 1;
    EXPECT_TRUE(CursorPicture::of(record(4, 3, 1))->equals(*CursorPicture::of(other)));
}

TEST(CursorPicture, AFingerprintDiffersWithSizeHotspotAndPixels) {
    const auto picture = CursorPicture::of(record(2, 2, 2));
    for (const auto& frame : picture->frames())
        EXPECT_TRUE(picture->shows(fingerprintOf(2, 2, 0, 0, frame.argb())));
    auto pixels = picture->frames()[0].argb();
    EXPECT_FALSE(picture->shows(fingerprintOf(4, 1, 0, 0, pixels)));
    EXPECT_FALSE(picture->shows(fingerprintOf(2, 2, 1, 0, pixels)));
    pixels[3] ^= 1;
    EXPECT_FALSE(picture->shows(fingerprintOf(2, 2, 0, 0, pixels)));
}

}  // namespace
}  // namespace pintle::x11
