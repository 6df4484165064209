#include "apply/density_follower.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/cursor_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kArrow = "com.apple.coregraphics.Arrow";
constexpr auto kWait = "com.apple.coregraphics.Wait";
constexpr auto kTheme = "banana";

struct DensityTest : testing::Test {
    CursorWorld world;

    DensityTest() {
        writeTheme();
        world.themes.loadThemes();
        world.pipeline.observeScale();
    }
    void writeTheme() {
        XCursorBuilder still;
        XCursorBuilder moving;
        for (const std::uint32_t size : {32u, 48u, 64u, 96u}) {
            still.image({.size = size, .xhot = 3, .yhot = 5, .colour = 0xFF000000u | size});
            for (int frame = 0; frame < 3; ++frame)
                moving.image({.size = size, .delay = 40, .colour = 0xFF000000u | size});
        }
        writeFile(world.cursorsOf(kTheme) / "left_ptr", still.bytes());
        writeFile(world.cursorsOf(kTheme) / "watch", moving.bytes());
    }
    void apply() {
        world.pipeline.applyTheme(world.theme(kTheme));
        world.scheduler.runUntilIdle();
    }
    void changeDensity(double density) {
        world.workspace.changeDensity(density);
        world.scheduler.runUntilIdle();
    }
    void changeScale(double scale) {
        world.settings.setCursorScale(scale);
        world.scheduler.runUntilIdle();
    }
    const RegisteredCursor& arrow() { return world.windowServer.registered.at(kArrow); }
    std::vector<std::string> applied() { return world.linesOf({"[CursorViewModel] Applying"}); }
};

TEST_F(DensityTest, ThePicturesHaveThePixelsOfTheScreenAndTheirSizesStayPoints) {
    world.workspace.density = 2;
    apply();
    EXPECT_EQ(arrow().size, (Size{32, 32}));
    EXPECT_EQ(arrow().hotspot, (Point{3, 5}));
    EXPECT_EQ(arrow().pixelsPerPoint, 2);
    EXPECT_EQ(arrow().images.at(0).width(), 64);
    EXPECT_EQ(arrow().images.at(0).height(), 64);
    EXPECT_EQ(CursorWorld::colour(arrow()), 64u);
}

TEST_F(DensityTest, TheFramesOfAStripHaveWholePixels) {
    world.workspace.density = 1.25;
    world.settings.setCursorScale(1.05);
    apply();
    const auto& strip = world.windowServer.registered.at(kWait);
    // 33 points, 41.25 pixels.
    EXPECT_EQ(strip.size, (Size{33, 33}));
    EXPECT_EQ(strip.frameCount, 3u);
    EXPECT_EQ(strip.images.at(0).width(), 41);
    EXPECT_EQ(strip.images.at(0).height(), 3 * 41);
}

TEST_F(DensityTest, AChangeOfDensityBuildsTheThemeAnewAtTheScaleInForce) {
    apply();
    changeScale(1.5);
    world.log.systemLines.clear();
    changeDensity(2);
    EXPECT_THAT(applied(), ElementsAre("[CursorViewModel] Applying scale: 1.5 for theme: Banana"));
    EXPECT_EQ(arrow().size, (Size{72, 72}));
    EXPECT_EQ(arrow().images.at(0).width(), 144);
    EXPECT_EQ(CursorWorld::colour(arrow()), 96u);
    changeDensity(1);
    EXPECT_EQ(arrow().images.at(0).width(), 72);
    EXPECT_EQ(arrow().pixelsPerPoint, 1);
}

TEST_F(DensityTest, AThemeThatWasJustAskedForIsNotLostToAChangeOfDensity) {
    world.writeTheme("fuchsia", 0xA020A0);
    world.themes.loadThemes();
    apply();
    world.pipeline.applyTheme(world.theme("fuchsia"));
    changeDensity(2);
    EXPECT_EQ(CursorWorld::colour(arrow()), 0xA020A0u);
    EXPECT_EQ(arrow().pixelsPerPoint, 2);
}

TEST_F(DensityTest, ALoadThatAChangeOfDensityOvertakesReachesNoScreen) {
    apply();
    world.scheduler.holdBackground(true);
    world.pipeline.applyTheme(world.theme(kTheme));
    world.scheduler.runUntilIdle();
    world.windowServer.registrations.clear();
    world.workspace.changeDensity(2);
    world.scheduler.holdBackground(false);
    world.scheduler.runUntilIdle();
    for (const auto& registration : world.windowServer.registrations)
        EXPECT_EQ(registration.pixelsPerPoint, 2);
    EXPECT_EQ(arrow().images.at(0).width(), 64);
}

TEST_F(DensityTest, AChangeOfScaleReadsNoFileAndIsAsSharp) {
    world.workspace.density = 2;
    apply();
    world.removeFiles(kTheme);
    changeScale(1.5);
    EXPECT_EQ(arrow().images.at(0).width(), 144);
    EXPECT_EQ(CursorWorld::colour(arrow()), 96u);
}

TEST_F(DensityTest, WithoutAThemeAChangeOfDensityTouchesNothing) {
    changeDensity(2);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    apply();
    world.pipeline.resetToDefault();
    world.windowServer.calls.clear();
    changeDensity(1);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(DensityTest, WhileAnExcludedApplicationIsInFrontTheRebuildWaitsForTheResume) {
    apply();
    world.changer.setSuspendedForExcludedApp(true);
    world.changer.restoreSystemState();
    changeDensity(2);
    EXPECT_FALSE(world.windowServer.registered.contains(kArrow));
    world.changer.setSuspendedForExcludedApp(false);
    world.changer.applyRegistered(world.changer.lastApplied());
    EXPECT_EQ(arrow().images.at(0).width(), 32);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(arrow().images.at(0).width(), 64);
}

TEST_F(DensityTest, AResumeWithoutAChangeOfDensityBuildsNothing) {
    apply();
    world.changer.setSuspendedForExcludedApp(true);
    world.changer.setSuspendedForExcludedApp(false);
    world.log.systemLines.clear();
    world.scheduler.runUntilIdle();
    EXPECT_THAT(applied(), IsEmpty());
}

TEST_F(DensityTest, AResetWhileARebuildWaitsLeavesTheDesktopsPointers) {
    apply();
    world.changer.setSuspendedForExcludedApp(true);
    changeDensity(2);
    world.pipeline.resetToDefault();
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.windowServer.registered.contains(kArrow));
}

TEST_F(DensityTest, ADesktopArrowOfAsManyPointsIsTakenForALeftoverTheme) {
    RegisteredCursor desktop{kArrow, {*Bitmap::create(64, 64, [](auto) {})}, {32, 32}, {1, 1}};
    world.windowServer.desktopCursors[kArrow] = desktop;
    world.workspace.density = 2;
    apply();
    EXPECT_THAT(world.linesOf({"[SystemCursorChanger] Snapshot looks"}), testing::SizeIs(1));
}

}  // namespace
}  // namespace pintle
