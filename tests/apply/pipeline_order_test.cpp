// In which order the pipeline does things, and how urgent each is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "apply/application_pipeline.h"
#include "tests/support/cursor_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kIce = "bibata-modern-ice";

struct PipelineOrderTest : testing::Test {
    CursorWorld world;

    PipelineOrderTest() {
        world.writeTheme(kIce, 0x102030);
        world.themes.loadThemes();
        world.pipeline.observeScale();
    }
    /// Everything that the main thread can do for now.
    void runMain() {
        world.scheduler.holdBackground(true);
        world.scheduler.runUntilIdle();
        world.scheduler.holdBackground(false);
    }
};

TEST_F(PipelineOrderTest, WhatTheUserWaitsForIsUrgentAndTheRestIsNot) {
    world.pipeline.applyTheme(world.theme(kIce));
    runMain();
    EXPECT_THAT(world.scheduler.pendingPriorities(), ElementsAre(Priority::userInitiated)) << "common shapes";
    ASSERT_TRUE(world.scheduler.step());
    runMain();
    EXPECT_THAT(world.scheduler.pendingPriorities(), ElementsAre(Priority::utility)) << "the whole theme";
    world.scheduler.runUntilIdle();
    world.settings.setCursorScale(1.5);
    runMain();
    EXPECT_THAT(world.scheduler.pendingPriorities(), ElementsAre(Priority::userInitiated)) << "the cache";
}

TEST_F(PipelineOrderTest, WhatIsNotShownIsReadOnceTheThemeShowsInsideTheSameActivity) {
    world.pipeline.applyTheme(world.theme(kIce));
    runMain();
    ASSERT_TRUE(world.scheduler.step());
    runMain();
    EXPECT_THAT(*world.hints.active, IsEmpty());
    ASSERT_TRUE(world.scheduler.step());
    runMain();
    const auto shown = world.windowServer.registrations.size();
    EXPECT_EQ(world.linesOf({"[CursorApplier] Applied"}).size(), 2u);
    EXPECT_THAT(world.scheduler.pendingPriorities(), ElementsAre(Priority::utility)) << "for the cache";
    EXPECT_THAT(*world.hints.active, testing::SizeIs(1));
    world.scheduler.runUntilIdle();
    EXPECT_THAT(*world.hints.active, IsEmpty());
    EXPECT_EQ(world.windowServer.registrations.size(), shown);
    world.removeFiles(kIce);
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_GT(world.windowServer.registrations.size(), shown) << "without reading a file";
}

TEST_F(PipelineOrderTest, AResetShowsThePointerThenForgetsTheThemeThenItsKeyAndThenRestores) {
    world.pipeline.applyTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    world.applier.mapCursorsToSystemTypes();
    ASSERT_FALSE(world.applier.customCursors().empty());
    world.overlay.calls.clear();
    world.store.removals.clear();
    int forgotten = 0;
    const auto observer = world.pipeline.currentThemeChanged.observe([&] {
        ++forgotten;
        EXPECT_FALSE(world.pipeline.currentTheme());
        EXPECT_THAT(world.overlay.calls, ElementsAre("showSystemCursorGuaranteed"));
        EXPECT_THAT(world.store.removals, IsEmpty());
        EXPECT_FALSE(world.applier.customCursors().empty());
        EXPECT_TRUE(world.changer.isActive());
    });
    int removed = 0;
    const auto key = world.store.observe("currentThemeId", [&] {
        ++removed;
        EXPECT_EQ(forgotten, 1);
        EXPECT_FALSE(world.applier.customCursors().empty());
        EXPECT_TRUE(world.changer.isActive());
    });
    world.pipeline.resetToDefault();
    EXPECT_EQ(forgotten, 1);
    EXPECT_EQ(removed, 1);
    EXPECT_THAT(world.applier.customCursors(), IsEmpty());
    EXPECT_FALSE(world.changer.isActive());
}

}  // namespace
}  // namespace pintle
