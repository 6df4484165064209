#include "cursor/preloaded_cursor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "cursor/xcursor_parser.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

std::vector<XCursorImage> imagesOf(const XCursorBuilder& builder) {
    return XCursorParser::parse(builder.bytes(), std::nullopt).value();
}
XCursorImages sharedImagesOf(const XCursorBuilder& builder) {
    return std::make_shared<const CursorFileImages>(CursorFileImages{imagesOf(builder)});
}

TEST(MakePreloaded, ChoosesTheThirtyTwoImageAtScaleOneAndReturnsItUnscaled) {
    const auto images = imagesOf(XCursorBuilder()
                                     .image({.size = 24, .colour = 0xFF000001})
                                     .image({.size = 32, .colour = 0xFF000002})
                                     .image({.size = 48, .colour = 0xFF000003}));
    const auto cursor = makePreloaded("left_ptr", images, 1.0);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->name, "left_ptr");
    EXPECT_EQ(cursor->image, images[1].nsImage());
    EXPECT_THAT(cursor->frames, IsEmpty());
    EXPECT_EQ(cursor->frameDuration, 0);
}

TEST(MakePreloaded, DrawsTheFortyEightImageAtSixtyPixelsForScaleOneAndAQuarter) {
    const auto images = imagesOf(XCursorBuilder().image({.size = 24}).image({.size = 48}));
    const auto cursor = makePreloaded("left_ptr", images, 1.25);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->image.width(), 60);
    EXPECT_EQ(cursor->image, images[1].scaledNSImage(1.25));
}

TEST(MakePreloaded, DoesNotDivideTheScaleByTheChosenSize) {
    const auto cursor =
        makePreloaded("left_ptr", imagesOf(XCursorBuilder().image({.size = 32}).image({.size = 48})), 1.5);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->image.width(), 72);
}

TEST(MakePreloaded, TruncatesTheTargetSize) {
    // 32 × 1.09 = 34.88: the target is 34, and 32 is nearer than 37.
    const auto images =
        imagesOf(XCursorBuilder().image({.size = 32, .width = 10}).image({.size = 37, .width = 20}));
    EXPECT_EQ(makePreloaded("x", images, 1.09)->image.width(), 10);
}

TEST(MakePreloaded, TakesTheEarlierOfTwoEquallyCloseSizes) {
    const auto smallFirst = imagesOf(XCursorBuilder().image({.size = 24}).image({.size = 40}));
    EXPECT_EQ(makePreloaded("x", smallFirst, 1.0)->image.width(), 24);
    const auto largeFirst = imagesOf(XCursorBuilder().image({.size = 40}).image({.size = 24}));
    EXPECT_EQ(makePreloaded("x", largeFirst, 1.0)->image.width(), 40);
}

TEST(MakePreloaded, ChoosesByNominalSizeNotByPixels) {
    const auto images =
        imagesOf(XCursorBuilder().image({.size = 31, .width = 90}).image({.size = 40, .width = 32}));
    EXPECT_EQ(makePreloaded("x", images, 1.0)->image.width(), 90);
}

TEST(MakePreloaded, CollectsTheFramesOfTheChosenSizeInFileOrder) {
    const auto images = imagesOf(XCursorBuilder()
                                     .image({.size = 32, .delay = 50, .colour = 0xFF000001})
                                     .image({.size = 24, .delay = 10, .colour = 0xFF000002})
                                     .image({.size = 32, .delay = 50, .colour = 0xFF000003})
                                     .image({.size = 32, .delay = 0, .colour = 0xFF000004}));
    const auto cursor = makePreloaded("watch", images, 1.0);
    ASSERT_TRUE(cursor);
    ASSERT_THAT(cursor->frames, SizeIs(3));
    EXPECT_EQ(cursor->frames[0], images[0].nsImage());
    EXPECT_EQ(cursor->frames[1], images[2].nsImage());
    EXPECT_EQ(cursor->frames[2], images[3].nsImage());
    EXPECT_EQ(cursor->image, cursor->frames[0]);
    EXPECT_EQ(cursor->frameDuration, 0.05);
}

TEST(MakePreloaded, AveragesOnlyPositiveDelaysOfTheChosenSize) {
    const auto images = imagesOf(XCursorBuilder()
                                     .image({.size = 32, .delay = 100})
                                     .image({.size = 24, .delay = 9000})
                                     .image({.size = 32, .delay = 0})
                                     .image({.size = 32, .delay = 25}));
    EXPECT_EQ(makePreloaded("watch", images, 1.0)->frameDuration, 0.0625);
}

TEST(MakePreloaded, AveragesDelaysWhoseSumPassesThirtyTwoBits) {
    const auto images = imagesOf(
        XCursorBuilder().image({.size = 32, .delay = 0xFFFFFFFF}).image({.size = 32, .delay = 0xFFFFFFFF}));
    EXPECT_EQ(makePreloaded("watch", images, 1.0)->frameDuration, 4294967.295);
}

TEST(MakePreloaded, KeepsAllFramesAndADurationOfZeroWhenNoDelayIsPositive) {
    const auto cursor =
        makePreloaded("watch", imagesOf(XCursorBuilder().image({.size = 32}).image({.size = 32})), 1.0);
    ASSERT_TRUE(cursor);
    EXPECT_THAT(cursor->frames, SizeIs(2));
    EXPECT_EQ(cursor->frameDuration, 0);
}

TEST(MakePreloaded, HasNoFramesAndNoDurationWithOneImagePerSize) {
    const auto cursor = makePreloaded(
        "x", imagesOf(XCursorBuilder().image({.size = 24, .delay = 50}).image({.size = 32, .delay = 50})),
        1.0);
    ASSERT_TRUE(cursor);
    EXPECT_THAT(cursor->frames, IsEmpty());
    EXPECT_EQ(cursor->frameDuration, 0);
}

TEST(MakePreloaded, ScalesEveryFrameAsTheImage) {
    const auto images = imagesOf(XCursorBuilder()
                                     .image({.size = 48, .delay = 5, .colour = 0xFF010203})
                                     .image({.size = 48, .width = 20, .delay = 5}));
    const auto cursor = makePreloaded("watch", images, 1.5);
    ASSERT_TRUE(cursor);
    ASSERT_THAT(cursor->frames, SizeIs(2));
    EXPECT_EQ(cursor->frames[0], images[0].scaledNSImage(1.5));
    EXPECT_EQ(cursor->frames[1], images[1].scaledNSImage(1.5));
    EXPECT_EQ(cursor->frames[1].width(), 30);
}

TEST(MakePreloaded, LeavesOutFramesThatCannotBeMadeAndKeepsTheOthers) {
    const auto images = imagesOf(XCursorBuilder()
                                     .image({.size = 32, .delay = 10})
                                     .image({.size = 32, .width = 32, .height = 1, .delay = 20})
                                     .image({.size = 32, .delay = 30}));
    // At half size the frame that is one pixel high has no height left.
    const auto cursor = makePreloaded("watch", images, 0.5);
    ASSERT_TRUE(cursor);
    EXPECT_THAT(cursor->frames, SizeIs(2));
    EXPECT_EQ(cursor->frameDuration, 0.02);
}

TEST(MakePreloaded, BecomesStillButKeepsTheDurationWhenFewerThanTwoFramesCanBeMade) {
    const auto images = imagesOf(XCursorBuilder()
                                     .image({.size = 32, .delay = 10})
                                     .image({.size = 32, .width = 32, .height = 1, .delay = 30}));
    const auto cursor = makePreloaded("watch", images, 0.5);
    ASSERT_TRUE(cursor);
    EXPECT_THAT(cursor->frames, IsEmpty());
    EXPECT_EQ(cursor->frameDuration, 0.02);
}

TEST(MakePreloaded, ScalesTheHotspotWithoutRounding) {
    const auto cursor =
        makePreloaded("x", imagesOf(XCursorBuilder().image({.size = 32, .xhot = 3, .yhot = 5})), 1.5);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->hotspot, (Point{4.5, 7.5}));
}

TEST(MakePreloaded, TakesTheHotspotOfTheChosenImageEvenOutsideIt) {
    const auto images =
        imagesOf(XCursorBuilder().image({.size = 24, .xhot = 1}).image({.size = 32, .xhot = 900, .yhot = 2}));
    EXPECT_EQ(makePreloaded("x", images, 1.0)->hotspot, (Point{900, 2}));
}

TEST(MakePreloaded, GivesNothingForNoImages) { EXPECT_FALSE(makePreloaded("x", {}, 1.0)); }

TEST(MakePreloaded, GivesNothingWhenTheChosenImageHasNoWidth) {
    XCursorImage empty;
    empty.size = 32;
    auto images = imagesOf(XCursorBuilder().image({.size = 24}));
    images.push_back(empty);
    EXPECT_FALSE(makePreloaded("x", images, 1.0));
}

TEST(MakePreloaded, GivesNothingWhenTheScaledImageHasNoPixels) {
    EXPECT_FALSE(makePreloaded("x", imagesOf(XCursorBuilder().image({.size = 32})), 0.01));
}

TEST(MakePreloadedDeathTest, EndsTheProgramWhenTheTargetSizeLeavesSixtyFourBits) {
    EXPECT_DEATH(makePreloaded("x", {}, 1e18), "does not fit a 64-bit integer");
}

TEST(MakePreloadedSet, GivesWhatEachCursorGivesByItself) {
    std::vector<std::pair<std::string, XCursorImages>> cursors;
    cursors.emplace_back("left_ptr",
                         sharedImagesOf(XCursorBuilder().image({.size = 32, .colour = 0xFF112233})));
    cursors.emplace_back("watch", sharedImagesOf(XCursorBuilder()
                                                     .image({.size = 40, .delay = 3, .colour = 0x44112233})
                                                     .image({.size = 40, .delay = 5})));
    for (const double scale : {0.75, 1.0, 1.25, 1.5, 2.0}) {
        const auto set = makePreloadedSet(cursors, scale);
        ASSERT_THAT(set, SizeIs(2));
        EXPECT_EQ(set[0], makePreloaded("left_ptr", cursors[0].second->images, scale));
        EXPECT_EQ(set[1], makePreloaded("watch", cursors[1].second->images, scale));
    }
}

TEST(MakePreloadedSet, SharesThePixelsOfNamesThatStandForOneFile) {
    const auto file = sharedImagesOf(XCursorBuilder().image({.size = 32}).image({.size = 32}));
    const auto set = makePreloadedSet({{"default", file}, {"left_ptr", file}}, 1.5);
    ASSERT_THAT(set, SizeIs(2));
    EXPECT_EQ(set[0].name, "default");
    EXPECT_EQ(set[1].name, "left_ptr");
    EXPECT_EQ(set[0].image.bytes().data(), set[1].image.bytes().data());
    EXPECT_EQ(set[0].frames[1].bytes().data(), set[1].frames[1].bytes().data());
}

TEST(MakePreloadedSet, LeavesOutNamesThatGiveNoCursor) {
    const auto set = makePreloadedSet({{"none", nullptr},
                                       {"empty", std::make_shared<const CursorFileImages>()},
                                       {"left_ptr", sharedImagesOf(XCursorBuilder().image({.size = 32}))}},
                                      1.0);
    ASSERT_THAT(set, SizeIs(1));
    EXPECT_EQ(set[0].name, "left_ptr");
}

TEST(MakePreloadedSet, SharesTheBitmapOfFramesThatReferToTheSameChunk) {
    XCursorBuilder builder;
    builder.image({.size = 32});
    const std::uint32_t position = 16 + 12 * 50;
    for (int i = 1; i < 50; ++i) builder.image({.size = 32, .position = position, .written = false});
    const auto set = makePreloadedSet({{"watch", sharedImagesOf(builder)}}, 1.5);
    ASSERT_THAT(set, SizeIs(1));
    ASSERT_THAT(set[0].frames, SizeIs(50));
    for (const auto& frame : set[0].frames) EXPECT_EQ(frame.bytes().data(), set[0].image.bytes().data());
}

}  // namespace
}  // namespace pintle
