#include "app/strip_display.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/model_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto kIce = ModelWorld::ice;
constexpr auto kBanana = ModelWorld::banana;

struct StripDisplayTest : testing::Test {
    ModelWorld world;
    std::unique_ptr<PopoverModel> popover;
    std::unique_ptr<StripDisplay> display;

    void make() {
        world.start();
        popover = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log});
        display = std::make_unique<StripDisplay>(*popover, *world.viewModel, world.scheduler.mainQueue());
        world.log.systemLines.clear();
    }
    void pass(std::chrono::milliseconds time) {
        world.scheduler.advance(time);
        world.scheduler.runUntilIdle();
    }
    static void rest(StripDisplayTest& test) { test.pass(StripDisplay::rest); }
};

TEST_F(StripDisplayTest, ShowsTheCursorsOfADownloadedRowAfterARest) {
    world.writeTheme(kIce, 0x102030, {"left_ptr", "xterm", "pointer", "watch", "ew-resize", "not-allowed"});
    make();
    display->attend(kIce);
    pass(299ms);
    EXPECT_EQ(display->id(), "");
    pass(1ms);
    EXPECT_EQ(display->id(), kIce);
    EXPECT_THAT(display->strip(), SizeIs(6));
}

TEST_F(StripDisplayTest, WritesNoLineAndLeavesNothingForThePipeline) {
    world.writeTheme(kIce, 0x102030);
    make();
    display->attend(kIce);
    rest(*this);
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_THAT(display->strip(), SizeIs(2));
}

TEST_F(StripDisplayTest, ARowThatIsNotOnDiskShowsNone) {
    make();
    display->attend(kIce);
    rest(*this);
    EXPECT_EQ(display->id(), "");
}

TEST_F(StripDisplayTest, GoesWhenTheRowIsLeftAndDropsAnAnswerThatComesLate) {
    world.writeTheme(kIce, 0x102030);
    make();
    display->attend(kIce);
    world.scheduler.holdBackground(true);
    pass(StripDisplay::rest);
    display->leave(kIce);
    world.scheduler.holdBackground(false);
    pass(0ms);
    EXPECT_EQ(display->id(), "");
    display->attend(kIce);
    rest(*this);
    EXPECT_EQ(display->id(), kIce);
    display->leave(kIce);
    EXPECT_EQ(display->id(), "");
    EXPECT_THAT(display->strip(), IsEmpty());
}

TEST_F(StripDisplayTest, OfTwoRowsTheLastOneCountsAndTheFirstComesBackAfterIt) {
    world.writeTheme(kIce, 0x102030);
    world.writeTheme(kBanana, 0xC0B000);
    make();
    display->attend(kIce);
    display->attend(kBanana);
    rest(*this);
    EXPECT_EQ(display->id(), kBanana);
    display->leave(kBanana);
    rest(*this);
    EXPECT_EQ(display->id(), kIce);
}

TEST_F(StripDisplayTest, GivesWayToWhatTheRowHasToSay) {
    world.writeTheme(kIce, 0x102030);
    make();
    display->attend(kIce);
    rest(*this);
    world.changeRow(kIce, [](auto& row) { row.isApplying = true; });
    EXPECT_EQ(display->id(), "");
    world.changeRow(kIce, [](auto& row) { row.isApplying = false; });
    rest(*this);
    EXPECT_EQ(display->id(), kIce);
    world.changeRow(kIce, [](auto& row) { row.isDownloaded = false; });
    EXPECT_EQ(display->id(), "");
}

TEST_F(StripDisplayTest, IsClearedWhenThePopoverGoes) {
    world.writeTheme(kIce, 0x102030);
    make();
    display->attend(kIce);
    rest(*this);
    display->clear();
    EXPECT_EQ(display->id(), "");
}

struct ThemeStripTest : testing::Test {
    ModelWorld world;
    std::vector<StripCursor> busy(std::size_t frames, std::uint32_t delay, std::uint32_t size = 32) {
        XCursorBuilder file;
        for (std::size_t i = 0; i < frames; ++i) file.image({.size = size, .delay = delay});
        writeFile(world.cursorsOf(kIce) / "watch", file.bytes());
        return readThemeStrip(world.cursorsOf(kIce));
    }
};

TEST_F(ThemeStripTest, MovesAsItIsSent) {
    const auto long60 = busy(60, 40);
    ASSERT_THAT(long60, SizeIs(1));
    EXPECT_THAT(long60[0].frames, SizeIs(24));
    EXPECT_DOUBLE_EQ(long60[0].frameDuration, 0.04);
    EXPECT_DOUBLE_EQ(busy(3, 5)[0].frameDuration, 0.02);
    const auto still = busy(1, 50);
    EXPECT_THAT(still[0].frames, SizeIs(1));
    EXPECT_EQ(still[0].frameDuration, 0);
}

TEST_F(ThemeStripTest, TakesNoFrameThatIsLargerThanTheStripNeeds) {
    const auto large = busy(2, 50, 300);
    ASSERT_THAT(large, SizeIs(1));
    for (const auto& frame : large[0].frames) EXPECT_LE(frame.width(), kLongestStripSide);
}

TEST_F(ThemeStripTest, IsEmptyWhereNothingCanBeRead) {
    EXPECT_THAT(readThemeStrip(world.cursorsOf(kIce)), IsEmpty());
    writeFile(world.cursorsOf(kIce) / "left_ptr", "no cursor");
    EXPECT_THAT(readThemeStrip(world.cursorsOf(kIce)), IsEmpty());
}

}  // namespace
}  // namespace pintle
