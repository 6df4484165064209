#include <gtest/gtest.h>

#include "tests/apply/overlay_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;

constexpr const char* kResumed = "[CursorOverlay] Overlay resumed";
constexpr const char* kSkipped = "[CursorOverlay] Resume skipped - overlay was not active before pause";

OverlayWorld& running(OverlayWorld& world) {
    world.run({{"left_ptr", plainBitmap(32, 32, 1), {0, 0}, {}, 0}});
    world.tick();
    world.log.systemLines.clear();
    return world;
}

TEST(OverlayPause, EachEventWritesItsLineFirst) {
    const std::pair<WorkspaceEvent, const char*> rows[] = {
        {WorkspaceEvent::willSleep, "[CursorOverlay] System will sleep - pausing overlay"},
        {WorkspaceEvent::didWake, "[CursorOverlay] System did wake - resuming overlay"},
        {WorkspaceEvent::screensDidSleep, "[CursorOverlay] Screens did sleep - pausing overlay"},
        {WorkspaceEvent::screensDidWake, "[CursorOverlay] Screens did wake - resuming overlay"},
        {WorkspaceEvent::screenIsLocked, "[CursorOverlay] Screen locked - pausing overlay"},
        {WorkspaceEvent::screenIsUnlocked, "[CursorOverlay] Screen unlocked - resuming overlay"},
    };
    for (const auto& [event, line] : rows) {
        OverlayWorld world;
        world.make();
        world.workspace.send(event);
        ASSERT_FALSE(world.log.systemLines.empty()) << line;
        EXPECT_EQ(world.log.systemLines.front(), line);
    }
}

TEST(OverlayPause, PausingHidesTheWindowsAndShowsTheHardwarePointerOncePerScreen) {
    OverlayWorld world;
    running(world);
    world.pointer.calls.clear();
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    EXPECT_EQ(world.surfaces.visible(), 0);
    EXPECT_EQ(world.pointer.calls, (std::vector<FakePointer::Call>{{true, 1}}));
    EXPECT_EQ(world.inProcess()->standard, StandardCursor::arrow);
    EXPECT_TRUE(world.log.has("[CursorOverlay] Overlay paused (wasActive: 1)"));
    EXPECT_TRUE(world.manager->isActive());
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u);
}

TEST(OverlayPause, WithoutScreensThePauseShowsThePointerOfTheMainDisplay) {
    OverlayWorld world;
    world.displays.attached.clear();
    world.displays.mainDisplay = 4;
    world.make().pauseOverlay();
    EXPECT_EQ(world.pointer.calls, (std::vector<FakePointer::Call>{{true, 4}}));
}

TEST(OverlayPause, AfterUnlockingTheOverlayResumesHalfASecondLater) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(499ms);
    EXPECT_FALSE(world.log.has(kResumed));
    world.scheduler.advance(1ms);
    EXPECT_EQ(world.log.count(kResumed), 1u);
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(OverlayPause, ResumingMakesTheWindowsAnew) {
    OverlayWorld world;
    running(world);
    const auto before = world.surfaces.made.size();
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    // The desktop may have taken them away meanwhile, or have other screens.
    world.displays.attached.push_back({{{1280, 0}, {800, 600}}, 2});
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(500ms);
    EXPECT_EQ(world.surfaces.made.size(), before + 2);
    for (std::size_t i = 0; i < before; ++i) EXPECT_FALSE(world.surfaces.made[i]->open);
    EXPECT_TRUE(world.surfaces.openOn(1));
    EXPECT_TRUE(world.surfaces.openOn(2));
}

TEST(OverlayPause, AfterSystemWakeTheOverlayResumesOneSecondLater) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::willSleep);
    world.workspace.send(WorkspaceEvent::didWake);
    world.scheduler.advance(999ms);
    EXPECT_FALSE(world.log.has(kResumed));
    world.scheduler.advance(1ms);
    EXPECT_TRUE(world.log.has(kResumed));
}

TEST(OverlayPause, LockThenUnlockTwiceResumesOnceHalfASecondAfterTheLastUnlock) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    world.scheduler.advance(100ms);
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(300ms);
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(499ms);
    EXPECT_FALSE(world.log.has(kResumed));
    world.scheduler.advance(2s);
    EXPECT_EQ(world.log.count(kResumed), 1u);
}

TEST(OverlayPause, ScreensWakeReplacesTheSlowerSystemWake) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::willSleep);
    world.workspace.send(WorkspaceEvent::didWake);
    world.workspace.send(WorkspaceEvent::screensDidWake);
    world.scheduler.advance(500ms);
    EXPECT_EQ(world.log.count(kResumed), 1u);
    world.scheduler.advance(2s);
    EXPECT_EQ(world.log.count(kResumed), 1u);
}

TEST(OverlayPause, ScreensSleepThenSystemSleepIsOnePause) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::screensDidSleep);
    world.workspace.send(WorkspaceEvent::willSleep);
    EXPECT_EQ(world.log.count("[CursorOverlay] Overlay paused (wasActive: 1)"), 1u);
    world.workspace.send(WorkspaceEvent::didWake);
    world.scheduler.advance(1s);
    EXPECT_TRUE(world.log.has(kResumed));
}

TEST(OverlayPause, APauseDoesNotCancelAPendingResume) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.workspace.send(WorkspaceEvent::screensDidSleep);
    world.scheduler.advance(500ms);
    EXPECT_TRUE(world.log.has(kResumed));
}

TEST(OverlayPause, ResumingAnOverlayThatDidNotRunIsSkippedAndMakesNoTimer) {
    OverlayWorld world;
    world.make();
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    EXPECT_TRUE(world.log.has("[CursorOverlay] Overlay paused (wasActive: 0)"));
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(1s);
    EXPECT_TRUE(world.log.has(kSkipped));
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u);
}

TEST(OverlayPause, AResumeWithoutAPauseSaysNothing) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::didWake);
    world.scheduler.advance(2s);
    EXPECT_FALSE(world.log.has(kResumed));
    EXPECT_FALSE(world.log.has(kSkipped));
}

TEST(OverlayPause, WhilePausedAnApplicationChangeIsRecordedButHidesNothing) {
    OverlayWorld world;
    running(world);
    world.workspace.activate("Dock");
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    world.workspace.activate("Editor");
    EXPECT_FALSE(world.pointerIsHidden());
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(500ms);
    world.tick();
    EXPECT_TRUE(world.pointerIsHidden());
}

TEST(OverlayPause, WhilePausedAScreenChangeRebuildsNoWindow) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    const auto before = world.surfaces.made.size();
    world.workspace.send(WorkspaceEvent::screenParametersDidChange);
    EXPECT_EQ(world.surfaces.made.size(), before);
}

TEST(OverlayPause, StoppingTheOverlayWhilePausedMakesTheResumeSkip) {
    OverlayWorld world;
    running(world);
    world.workspace.send(WorkspaceEvent::screenIsLocked);
    world.manager->deactivate();
    world.manager->showSystemCursorGuaranteed();
    world.manager->destroyWindows();
    world.workspace.send(WorkspaceEvent::screenIsUnlocked);
    world.scheduler.advance(1s);
    EXPECT_TRUE(world.log.has(kSkipped));
    EXPECT_EQ(world.surfaces.visible(), 0);
    EXPECT_FALSE(world.pointerIsHidden());
}

}  // namespace
}  // namespace pintle
