#include "apply/registration_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "apply/cursor_identifiers.h"
#include "apply/cursor_strip.h"
#include "tests/support/cursor_sets.h"

namespace pintle {
namespace {

using testing::ElementsAre;

std::vector<int> firstBytes(const Bitmap& strip, int frames) {
    std::vector<int> values;
    for (int i = 0; i < frames; ++i) values.push_back(strip.pixel(0, strip.height() / frames * i)[0]);
    return values;
}

std::vector<std::string> identifiersOf(const RegistrationPlan& plan) {
    std::vector<std::string> names;
    for (const auto& image : plan.images) names.push_back(image.identifier);
    return names;
}

const RegisteredImage* find(const RegistrationPlan& plan, const std::string& identifier) {
    for (const auto& image : plan.images)
        if (image.identifier == identifier) return &image;
    return nullptr;
}

TEST(CursorIdentifiers, AreFortySixDistinctRows) {
    std::set<std::string_view> distinct;
    for (const auto& row : cursorIdentifiers()) {
        distinct.insert(row.identifier);
        EXPECT_FALSE(row.candidates().empty()) << row.identifier;
    }
    EXPECT_EQ(cursorIdentifiers().size(), 46u);
    EXPECT_EQ(distinct.size(), 46u);
}

TEST(CursorIdentifiers, StandInTheirOrderWithTwentyAndThirtyNineBeforeSeventeen) {
    std::vector<std::string> expected = {"Arrow", "ArrowS", "IBeam", "IBeamS",   "IBeamXOR",
                                         "Alias", "Copy",   "Move",  "ArrowCtx", "Wait"};
    for (auto& name : expected) name = "com.apple.coregraphics." + name;
    for (const int number : {2,  3,  4,  5,  7,  8,  11, 12, 13, 20, 39, 17, 18, 19, 21, 22, 23, 24,
                             25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 40, 41, 42, 43})
        expected.push_back("com.apple.cursor." + std::to_string(number));
    std::vector<std::string> rows;
    for (const auto& row : cursorIdentifiers()) rows.emplace_back(row.identifier);
    EXPECT_EQ(rows, expected);
}

TEST(CursorIdentifiers, BackUpTheFirstTenOnly) {
    ASSERT_EQ(backedUpIdentifiers().size(), 10u);
    EXPECT_EQ(backedUpIdentifiers().front().identifier, "com.apple.coregraphics.Arrow");
    EXPECT_EQ(backedUpIdentifiers().back().identifier, "com.apple.coregraphics.Wait");
    for (const auto& row : backedUpIdentifiers())
        EXPECT_TRUE(row.identifier.starts_with("com.apple.coregraphics."));
}

TEST(CursorIdentifiers, RowsSevenAndFourteenHoldTheSameNamesInOppositeOrder) {
    EXPECT_THAT(cursorIdentifiers()[6].candidates(), ElementsAre("copy", "dnd-copy"));
    EXPECT_THAT(cursorIdentifiers()[13].candidates(), ElementsAre("dnd-copy", "copy"));
    EXPECT_THAT(cursorIdentifiers()[29].candidates(), ElementsAre("vertical-text"));
    EXPECT_THAT(cursorIdentifiers()[45].candidates(), ElementsAre("zoom-out", "zoom_out", "zoomout"));
}

TEST(RegistrationPlan, WithoutAnArrowNameIsRefused) {
    EXPECT_FALSE(planRegistration({}));
    EXPECT_FALSE(planRegistration({stillCursor("xterm"), stillCursor("top_left_arrow")}));
}

TEST(RegistrationPlan, WithOnlyDefaultFeedsTheFirstTwoRows) {
    const auto plan = planRegistration({stillCursor("default", 20)});
    ASSERT_TRUE(plan);
    EXPECT_THAT(identifiersOf(*plan),
                ElementsAre("com.apple.coregraphics.Arrow", "com.apple.coregraphics.ArrowS"));
    EXPECT_EQ(plan->arrowSize, (Size{20, 20}));
}

TEST(RegistrationPlan, TakesTheArrowSizeFromLeftPtrBeforeDefaultBeforeArrow) {
    EXPECT_EQ(planRegistration({stillCursor("arrow", 10), stillCursor("default", 20)})->arrowSize.width, 20);
    EXPECT_EQ(
        planRegistration({stillCursor("arrow", 10), stillCursor("default", 20), stillCursor("left_ptr", 30)})
            ->arrowSize.width,
        30);
}

TEST(RegistrationPlan, TakesTheFirstCandidateOfEachRowThatTheThemeHas) {
    const auto plan = planRegistration({stillCursor("left_ptr"), stillCursor("dnd-copy", 8, 5),
                                        stillCursor("copy", 8, 9), stillCursor("hand1", 8, 3)});
    ASSERT_TRUE(plan);
    EXPECT_EQ(find(*plan, "com.apple.coregraphics.Copy")->image.pixel(0, 0)[0], 9);
    EXPECT_EQ(find(*plan, "com.apple.cursor.5")->image.pixel(0, 0)[0], 5);
    EXPECT_EQ(find(*plan, "com.apple.cursor.12")->image.pixel(0, 0)[0], 3);
    EXPECT_EQ(find(*plan, "com.apple.cursor.13")->image.pixel(0, 0)[0], 3);
}

TEST(RegistrationPlan, TakesTheLastOfTwoCursorsWithOneName) {
    const auto plan = planRegistration({stillCursor("left_ptr", 8, 1), stillCursor("left_ptr", 9, 2)});
    EXPECT_EQ(plan->images.front().image, plainBitmap(9, 9, 2));
    EXPECT_EQ(plan->arrowSize, (Size{9, 9}));
}

TEST(RegistrationPlan, RegistersAStillCursorWithDurationZeroAndItsUnroundedHotspot) {
    auto cursor = stillCursor("left_ptr", 24);
    cursor.frameDuration = 0.3;
    const auto plan = planRegistration({cursor});
    const auto& arrow = plan->images.front();
    EXPECT_EQ(arrow.frameCount, 1u);
    EXPECT_EQ(arrow.duration, 0);
    EXPECT_EQ(arrow.hotspot, (Point{1.5, 2.5}));
    EXPECT_EQ(arrow.size, (Size{24, 24}));
    EXPECT_EQ(arrow.toRegisteredCursor().images.size(), 1u);
}

TEST(RegistrationPlan, TreatsOneFrameAsAStillCursor) {
    const auto plan = planRegistration({animatedCursor("left_ptr", 1, 0.5)});
    EXPECT_EQ(plan->images.front().frameCount, 1u);
    EXPECT_EQ(plan->images.front().duration, 0);
}

TEST(RegistrationPlan, RegistersAFrameDurationOfAHundredthAsTwoHundredths) {
    const auto duration = [](double seconds) {
        return planRegistration({animatedCursor("left_ptr", 2, seconds)})->images.front().duration;
    };
    EXPECT_EQ(duration(0.01), 0.02);
    EXPECT_EQ(duration(0), 0.02);
    EXPECT_EQ(duration(0.02), 0.02);
    EXPECT_EQ(duration(0.05), 0.05);
}

TEST(RegistrationPlan, SendsTwentyFourFramesWhole) {
    const auto plan = planRegistration({animatedCursor("left_ptr", 24, 0.1)});
    EXPECT_EQ(plan->images.front().frameCount, 24u);
    EXPECT_EQ(plan->images.front().image.height(), 24 * 4);
    EXPECT_EQ(plan->images.front().size, (Size{4, 4}));
    EXPECT_EQ(firstBytes(plan->images.front().image, 24).back(), 24);
}

TEST(RegistrationPlan, ReducesTwentyFiveFramesToTheFirstTwentyFour) {
    const auto plan = planRegistration({animatedCursor("left_ptr", 25, 0.1)});
    std::vector<int> expected;
    for (int i = 1; i <= 24; ++i) expected.push_back(i);
    EXPECT_EQ(firstBytes(plan->images.front().image, 24), expected);
    EXPECT_EQ(plan->images.front().duration, 0.1);
}

TEST(RegistrationPlan, ReducesFortyEightFramesToEverySecond) {
    const auto plan = planRegistration({animatedCursor("left_ptr", 48, 0.1)});
    std::vector<int> expected;
    for (int i = 0; i < 24; ++i) expected.push_back(2 * i + 1);
    EXPECT_EQ(firstBytes(plan->images.front().image, 24), expected);
    EXPECT_EQ(plan->images.front().frameCount, 24u);
}

TEST(RegistrationPlan, SpreadsThirtyFramesByTruncation) {
    const auto plan = planRegistration({animatedCursor("left_ptr", 30, 0.1)});
    std::vector<int> expected;
    for (int i = 0; i < 24; ++i) expected.push_back(i * 30 / 24 + 1);
    EXPECT_EQ(firstBytes(plan->images.front().image, 24), expected);
}

TEST(RegistrationPlan, SharesOneStripBetweenTheRowsOfOneCursor) {
    const auto plan = planRegistration({animatedCursor("left_ptr", 3, 0.1)});
    EXPECT_EQ(plan->images[0].image.bytes().data(), plan->images[1].image.bytes().data());
}

TEST(CursorStrip, OfNoFramesIsNothingAndOfOneIsThatFrame) {
    EXPECT_FALSE(composeStrip({}));
    const std::vector<Bitmap> one = {plainBitmap(3, 2, 7)};
    EXPECT_EQ(composeStrip(one)->bytes().data(), one[0].bytes().data());
}

TEST(CursorStrip, HasFrameZeroOnTopAndTheLastAtTheBottom) {
    const std::vector<Bitmap> frames = {plainBitmap(3, 2, 1), plainBitmap(3, 2, 2), plainBitmap(3, 2, 3)};
    const auto strip = composeStrip(frames);
    ASSERT_TRUE(strip);
    EXPECT_EQ(strip->width(), 3);
    EXPECT_EQ(strip->height(), 6);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 3; ++x) EXPECT_EQ(strip->pixel(x, y)[0], y / 2 + 1);
}

TEST(CursorStrip, DrawsEveryFrameAtTheFirstFramesSize) {
    const std::vector<Bitmap> frames = {plainBitmap(4, 6, 1), plainBitmap(2, 9, 2), plainBitmap(9, 2, 3)};
    const auto strip = composeStrip(frames);
    ASSERT_TRUE(strip);
    EXPECT_EQ(strip->width(), 4);
    EXPECT_EQ(strip->height(), 18);
    for (int y = 0; y < 18; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(strip->pixel(x, y)[3], y / 6 + 1);
}

TEST(CursorStrip, ThatCannotBeHadIsNothing) {
    const std::vector<Bitmap> frames(24, plainBitmap(5000, 5000, 1));
    EXPECT_FALSE(composeStrip(frames));
}

}  // namespace
}  // namespace pintle
