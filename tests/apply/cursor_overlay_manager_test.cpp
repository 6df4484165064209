#include "apply/cursor_overlay_manager.h"

#include <gtest/gtest.h>

#include "tests/apply/overlay_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;

PreloadedCursor sized(const std::string& name, std::uint8_t value = 1, Point hotspot = {0, 0}) {
    return {name, plainBitmap(32, 32, value), hotspot, {}, 0};
}

TEST(Overlay, StartMakesAWindowOnEveryDisplayAndHidesTheHardwarePointer) {
    OverlayWorld world;
    world.displays.attached = {{{{0, 0}, {1280, 800}}, 1}, {{{1280, 0}, {800, 600}}, 2}};
    world.workspace.frontmost = RunningApplication{"Editor", 5};
    world.run({sized("left_ptr")});
    EXPECT_TRUE(world.surfaces.openOn(1));
    EXPECT_TRUE(world.surfaces.openOn(2));
    EXPECT_TRUE(world.pointerIsHidden());
    EXPECT_EQ(world.pointer.backgroundRequests, 1);
}

TEST(Overlay, StartingTwiceStartsOnce) {
    OverlayWorld world;
    world.run({sized("left_ptr")}).start();
    EXPECT_EQ(world.surfaces.made.size(), 1u);
    EXPECT_EQ(world.scheduler.pendingTimers(), 1u);
}

TEST(Overlay, WithoutTheBackgroundFunctionTheOverlayStillRuns) {
    OverlayWorld world;
    world.pointer.backgroundMissing = true;
    world.run({sized("left_ptr")});
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(Overlay, WithTwoDisplaysOnlyTheWindowUnderTheMouseIsVisible) {
    OverlayWorld world;
    world.displays.attached = {{{{0, 0}, {1280, 800}}, 1}, {{{1280, 0}, {800, 600}}, 2}};
    world.run({sized("left_ptr")});
    world.tick();
    EXPECT_EQ(world.surfaces.openOn(1)->alpha, 1);
    EXPECT_EQ(world.surfaces.openOn(2)->alpha, 0);
    world.displays.mouse = {1300, 20};
    world.tick();
    EXPECT_EQ(world.surfaces.openOn(1)->alpha, 0);
    EXPECT_EQ(world.surfaces.openOn(2)->alpha, 1);
}

TEST(Overlay, WhileItsWindowIsOffTheScreenThePointerShowsAndWithItTheThemeComesBack) {
    OverlayWorld world;
    world.workspace.frontmost = RunningApplication{"Editor", 5};
    world.run({sized("left_ptr")});
    world.tick();
    ASSERT_TRUE(world.pointerIsHidden());
    world.surfaces.openOn(1)->takenAway = true;
    world.tick();
    EXPECT_FALSE(world.pointerIsHidden());
    EXPECT_EQ(world.surfaces.openOn(1)->alpha, 0);
    // Another program comes to the front meanwhile.
    world.workspace.activate("Browser");
    world.tick();
    EXPECT_FALSE(world.pointerIsHidden());
    world.surfaces.openOn(1)->takenAway = false;
    world.tick();
    EXPECT_TRUE(world.pointerIsHidden());
    EXPECT_EQ(world.surfaces.openOn(1)->alpha, 1);
}

TEST(Overlay, AHotspotOfZeroPutsTheLowerLeftCorner32PointsBelowTheMouse) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.displays.mouse = {400, 300};
    world.tick();
    EXPECT_EQ(world.surfaces.openOn(1)->origin, (Point{400, 268}));
}

TEST(Overlay, TheHotspotIsSubtractedFromTheTopLeftCorner) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1, {4.5, 7.5})});
    world.displays.mouse = {400, 300};
    world.tick();
    EXPECT_EQ(world.surfaces.openOn(1)->origin, (Point{395.5, 275.5}));
}

TEST(Overlay, AHotspotOutsideItsImageIsMovedOntoTheEdge) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1, {99, -3})});
    world.displays.mouse = {400, 300};
    world.tick();
    EXPECT_EQ(world.surfaces.openOn(1)->origin, (Point{400 - 31, 268}));
}

TEST(Overlay, AlphaIsWrittenOnlyWhenItChanges) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.tick(120);
    EXPECT_EQ(world.surfaces.openOn(1)->alphaWrites, 2);
}

/// The number of the tick after the first question at which the second one comes.
template <typename Questions>
int ticksToTheNextQuestion(OverlayWorld& world, const Questions& questions) {
    while (questions() == 0) world.tick();
    const int before = questions();
    int ticks = 0;
    while (questions() == before && ticks < 1000) {
        world.tick();
        ++ticks;
    }
    return ticks;
}

TEST(Overlay, TheWindowListIsAskedAgainWhenItIsOlderThanHalfASecond) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    // 60 ticks are half a second, which is not older than that.
    EXPECT_EQ(ticksToTheNextQuestion(world, [&] { return world.windowList.questions; }), 61);
}

TEST(Overlay, TheScreenWatcherIsAskedAgainWhenTheAnswerIsOlderThanASecond) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    EXPECT_EQ(ticksToTheNextQuestion(world, [&] { return world.pointer.watcherQuestions; }), 121);
}

TEST(Overlay, NoHideComesWithoutTheShowBeforeItOnTheSameDisplay) {
    OverlayWorld world;
    world.displays.attached = {{{{0, 0}, {1280, 800}}, 1}, {{{1280, 0}, {800, 600}}, 2}};
    world.workspace.frontmost = RunningApplication{"Editor", 5};
    world.run({sized("left_ptr")});
    world.tick(60);
    const auto& calls = world.pointer.calls;
    ASSERT_FALSE(calls.empty());
    int hides = 0;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (calls[i].show) continue;
        ++hides;
        ASSERT_GT(i, 0u);
        EXPECT_EQ(calls[i - 1], (FakePointer::Call{true, calls[i].display}));
    }
    EXPECT_GT(hides, 100);
}

TEST(Overlay, ActivatingADesktopProcessShowsTheHardwarePointerUntilAnotherApplicationIsInFront) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.tick();
    for (const char* name : {"Dock", "TeamViewer", "my anydesk session"}) {
        world.workspace.activate(name);
        EXPECT_FALSE(world.pointerIsHidden()) << name;
        world.tick(3);
        EXPECT_EQ(world.surfaces.visible(), 0) << name;
        world.workspace.activate("Editor");
        EXPECT_TRUE(world.pointerIsHidden()) << name;
        world.tick();
        EXPECT_EQ(world.surfaces.visible(), 1) << name;
    }
}

TEST(Overlay, AnApplicationOfTheUsersListIsExcludedByItsWholeNameOnly) {
    OverlayWorld world;
    world.settings.addExcludedApp("Blender");
    world.run({sized("left_ptr")});
    world.workspace.activate("Blender 4");
    EXPECT_TRUE(world.pointerIsHidden());
    world.workspace.activate("Blender");
    EXPECT_FALSE(world.pointerIsHidden());
}

TEST(Overlay, WithoutAFrontmostApplicationTheLastAnswerStays) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.workspace.activate("Dock");
    world.workspace.frontmost.reset();
    world.workspace.activateUnknown();
    EXPECT_FALSE(world.pointerIsHidden());
}

TEST(Overlay, AFullScreenWindowShowsTheHardwarePointerUnlessTheSettingKeepsTheTheme) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.windowList.windows = {{"Player", 0, {{0, 0}, {1280, 800}}}};
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 0);
    EXPECT_FALSE(world.pointerIsHidden());
    world.settings.setAlwaysUseThemedCursor(true);
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
    EXPECT_TRUE(world.pointerIsHidden());
}

TEST(Overlay, AProtectedWindowShowsTheHardwarePointerInItsCornerOnly) {
    OverlayWorld world;
    world.windowList.windows = {{"SecurityAgent", 5, {{0, 0}, {200, 100}}}};
    world.run({sized("left_ptr")});
    world.displays.mouse = {10, 10};
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 0);
    world.displays.mouse = {10, 790};
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(Overlay, AWatchedScreenShowsTheHardwarePointerWhileTheSettingIsOn) {
    OverlayWorld world;
    world.pointer.watched = true;
    world.run({sized("left_ptr")});
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 0);
    world.settings.setPauseWhenScreenShared(false);
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(Overlay, AMissingWatcherFunctionCountsAsNobodyWatching) {
    OverlayWorld world;
    world.pointer.watched.reset();
    world.run({sized("left_ptr")});
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(Overlay, TheGuaranteedShowClearsTheActiveMarkAndShowsTenTimesOnEveryScreen) {
    OverlayWorld world;
    world.displays.attached = {{{{0, 0}, {1280, 800}}, 1}, {{{1280, 0}, {800, 600}}, 2}};
    CursorOverlayManager& manager = world.run({sized("left_ptr")});
    world.pointer.calls.clear();
    manager.showSystemCursorGuaranteed();
    EXPECT_FALSE(manager.isActive());
    std::vector<FakePointer::Call> expected(10, {true, 1});
    expected.insert(expected.end(), 10, {true, 2});
    EXPECT_EQ(world.pointer.calls, expected);
    EXPECT_EQ(world.inProcess()->standard, StandardCursor::arrow);
}

TEST(Overlay, WithoutScreensTheGuaranteedShowGoesToTheMainDisplay) {
    OverlayWorld world;
    world.displays.attached.clear();
    world.displays.mainDisplay = 9;
    world.make().showSystemCursorGuaranteed();
    EXPECT_EQ(world.pointer.calls, std::vector<FakePointer::Call>(10, {true, 9}));
}

TEST(Overlay, AfterDestroyingNoWindowIsLeft) {
    OverlayWorld world;
    world.run({sized("left_ptr")}).destroyWindows();
    EXPECT_FALSE(world.surfaces.openOn(1));
}

TEST(Overlay, AScreenChangeRebuildsTheWindows) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.displays.attached.push_back({{{1280, 0}, {800, 600}}, 2});
    world.workspace.send(WorkspaceEvent::screenParametersDidChange);
    EXPECT_TRUE(world.surfaces.openOn(2));
}

TEST(Overlay, WhereNoWindowCanBeMadeTheHardwarePointerStays) {
    OverlayWorld world;
    world.surfaces.creationFails = true;
    world.run({sized("left_ptr")});
    world.tick(3);
    EXPECT_FALSE(world.pointerIsHidden());
    world.surfaces.creationFails = false;
    world.workspace.send(WorkspaceEvent::screenParametersDidChange);
    world.tick();
    EXPECT_TRUE(world.pointerIsHidden());
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(Overlay, WithoutAnyImageTheHardwarePointerStays) {
    OverlayWorld world;
    world.run({});
    world.tick(3);
    EXPECT_FALSE(world.pointerIsHidden());
    world.manager->loadCursorsFromPreloaded({sized("left_ptr")}, 1.0);
    world.manager->updateOverlayWindows();
    world.tick();
    EXPECT_TRUE(world.pointerIsHidden());
}

TEST(Overlay, AScreenThatIsAddedWhileTheMouseIsAskedLeavesTheTickItsOwnScreens) {
    OverlayWorld world;
    world.run({sized("left_ptr")});
    world.tick();
    world.displays.whileMouseIsAsked = [&] {
        // As a backend does that is notified of it while it waits for the answer.
        world.displays.attached = std::vector<Screen>(64, Screen{{{5000, 5000}, {10, 10}}, 7});
    };
    world.tick();
    EXPECT_TRUE(world.pointerIsHidden());
}

TEST(OverlayIdentification, ThePlatformsNameAnswersFirstWhenAThemeCanHaveIt) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1), sized("xterm", 2)});
    world.desktopShows("text");
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "text");
    EXPECT_EQ(*world.surfaces.openOn(1)->image, plainBitmap(32, 32, 2));
    EXPECT_EQ(world.log.count("[Pintle] Cursor identified: text (systemFallback: false)"), 1u);
}

TEST(OverlayIdentification, AnUnknownNameLeavesTheOrderOfTheRulesUntouched) {
    OverlayWorld world;
    world.pointer.standard = {{"xterm", plainBitmap(24, 24, 50)}};
    world.run({sized("left_ptr", 1), sized("xterm", 2)});
    world.desktopShows("private cursor 17", 50);
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "xterm");
}

TEST(OverlayIdentification, WithoutANameTheRulesAnswerInTheirOrder) {
    OverlayWorld world;
    world.pointer.standard = {{"pointer", plainBitmap(24, 24, 60)}};
    world.run({sized("left_ptr", 1), sized("pointer", 2)});
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 60), {2, 2}, std::nullopt};
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "pointer");
}

TEST(OverlayIdentification, OverATextFieldAnUnknownShapeIsTextAndThePointIsCountedFromTheTop) {
    OverlayWorld world;
    world.accessibility.trusted = true;
    world.accessibility.role = "AXTextArea";
    world.run({sized("left_ptr", 1), sized("xterm", 2)});
    world.displays.mouse = {30, 700};
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 60), {2, 2}, std::nullopt};
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "xterm");
    ASSERT_FALSE(world.accessibility.asked.empty());
    EXPECT_EQ(world.accessibility.asked.back(), (TopLeftPoint{30, 100}));
}

TEST(OverlayIdentification, WithoutTrustAccessibilityIsNotAsked) {
    OverlayWorld world;
    world.accessibility.role = "AXTextArea";
    world.run({sized("left_ptr")});
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 60), {2, 2}, std::nullopt};
    world.tick();
    EXPECT_TRUE(world.accessibility.asked.empty());
    EXPECT_EQ(world.manager->currentCursorName(), "left_ptr");
}

TEST(OverlayIdentification, WithoutACurrentCursorTheNameIsKept) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1), sized("xterm", 2)});
    world.desktopShows("xterm");
    world.tick();
    world.pointer.current.reset();
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "xterm");
}

TEST(OverlayIdentification, TheOverlaysOwnTransparentCursorKeepsTheName) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1), sized("xterm", 2)});
    world.desktopShows("xterm");
    world.tick();
    const Bitmap transparent = *world.inProcess()->image;
    world.pointer.current = SystemCursor{transparent, {0, 0}, "left_ptr"};
    world.pointer.seed = 99;
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "xterm");
}

TEST(OverlayIdentification, AMissingSeedMeansTheImageIsComparedAfreshOnEveryTick) {
    OverlayWorld world;
    world.pointer.seed.reset();
    world.pointer.standard = {{"pointer", plainBitmap(24, 24, 60)}, {"xterm", plainBitmap(24, 24, 90)}};
    world.run({sized("left_ptr"), sized("pointer"), sized("xterm")});
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 60), {2, 2}, std::nullopt};
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "pointer");
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 90), {2, 2}, std::nullopt};
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "xterm");
}

TEST(OverlayIdentification, ACursorThatChangesWhileItIsReadIsIdentifiedAtTheNextTick) {
    OverlayWorld world;
    world.pointer.standard = {{"pointer", plainBitmap(24, 24, 60)}, {"xterm", plainBitmap(24, 24, 90)}};
    world.run({sized("left_ptr"), sized("pointer"), sized("xterm")});
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 60), {2, 2}, std::nullopt};
    world.pointer.whileCursorIsRead = [&] {
        world.pointer.current = SystemCursor{plainBitmap(24, 24, 90), {2, 2}, std::nullopt};
        world.pointer.seed = 2;
    };
    world.tick(2);
    EXPECT_EQ(world.manager->currentCursorName(), "xterm");
}

TEST(OverlayIdentification, AnEqualSeedSavesTheEncoding) {
    OverlayWorld world;
    world.pointer.standard = {{"pointer", plainBitmap(24, 24, 60)}, {"xterm", plainBitmap(24, 24, 90)}};
    world.run({sized("left_ptr"), sized("pointer"), sized("xterm")});
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 60), {2, 2}, std::nullopt};
    world.tick();
    world.pointer.current = SystemCursor{plainBitmap(24, 24, 90), {2, 2}, std::nullopt};
    world.tick();
    EXPECT_EQ(world.manager->currentCursorName(), "pointer");
}

TEST(OverlayIdentification, OverTextTheDesktopsOwnIBeamShowsWhenTheThemeHasNone) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1)});
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
    world.desktopShows("xterm");
    world.tick();
    EXPECT_TRUE(world.manager->overlayUsesSystemFallback());
    EXPECT_EQ(world.surfaces.visible(), 0);
    EXPECT_FALSE(world.pointerIsHidden());
    EXPECT_TRUE(world.log.has("[Pintle] Cursor identified: xterm (systemFallback: true)"));
    world.desktopShows("left_ptr");
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
    EXPECT_TRUE(world.pointerIsHidden());
}

TEST(OverlayIdentification, WithTheSettingOffTheArrowStandsInForWhatTheThemeLacks) {
    OverlayWorld world;
    world.settings.setUseSystemCursorForMissing(false);
    world.run({sized("hand9", 3), sized("left_ptr", 1)});
    world.desktopShows("xterm");
    world.tick();
    EXPECT_FALSE(world.manager->overlayUsesSystemFallback());
    EXPECT_EQ(*world.surfaces.openOn(1)->image, plainBitmap(32, 32, 1));
}

TEST(OverlayIdentification, WithTheSettingOffAndNoArrowTheFirstImageStandsIn) {
    OverlayWorld world;
    world.settings.setUseSystemCursorForMissing(false);
    world.run({sized("xterm", 3), sized("crosshair", 4)});
    world.tick();
    EXPECT_EQ(*world.surfaces.openOn(1)->image, plainBitmap(32, 32, 4));
}

TEST(OverlayIdentification, ChangingTheSettingTakesEffectAtTheNextTick) {
    OverlayWorld world;
    world.run({sized("left_ptr", 1)});
    world.desktopShows("xterm");
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 0);
    world.settings.setUseSystemCursorForMissing(false);
    world.tick();
    EXPECT_EQ(world.surfaces.visible(), 1);
}

TEST(OverlayIdentification, ANewThemeIsShownForTheCursorAlreadyIdentified) {
    OverlayWorld world;
    CursorOverlayManager& manager = world.run({sized("left_ptr", 1), sized("xterm", 2)});
    world.desktopShows("xterm");
    world.tick();
    manager.loadCursorsFromPreloaded({sized("text", 7)}, 1.5);
    manager.updateOverlayWindows();
    EXPECT_EQ(*world.surfaces.openOn(1)->image, plainBitmap(32, 32, 7));
}

TEST(OverlayIdentification, AnAnimatedCursorShowsItsFirstFrame) {
    OverlayWorld world;
    world.run({animatedCursor("left_ptr", 3, 0.1, 32)});
    world.tick(30);
    EXPECT_EQ(*world.surfaces.openOn(1)->image, plainBitmap(32, 32, 1));
}

}  // namespace
}  // namespace pintle
