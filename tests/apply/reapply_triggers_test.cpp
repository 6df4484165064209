#include "apply/reapply_triggers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/fake_workspace.h"
#include "tests/support/cursor_sets.h"
#include "tests/support/test_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;
using Function = WindowServerFunction;

constexpr const char* kResumed = "[SystemCursorChanger] Resumed after excluded app";

struct ReapplyTriggersTest : testing::Test {
    TestWorld world;
    FakeWorkspace workspace;
    std::vector<std::string> excludedApps;
    CursorSnapshots snapshots{world.windowServer, world.images, world.propertyLists, world.log,
                              world.directories};
    SystemCursorChanger changer{world.windowServer, snapshots, world.log};
    std::unique_ptr<ReapplyTriggers> triggers = makeTriggers();

    std::unique_ptr<ReapplyTriggers> makeTriggers() {
        return std::make_unique<ReapplyTriggers>(changer, workspace, world.scheduler.mainQueue(), world.log,
                                                 DesktopNames{}, [this] { return excludedApps; });
    }
    /// Registers a theme of one arrow and forgets the transcript.
    void applyTheme(std::uint8_t value = 1) {
        ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr", 24, value)}));
        forgetTranscript();
    }
    void forgetTranscript() {
        world.windowServer.calls.clear();
        world.windowServer.registrations.clear();
        world.log.systemLines.clear();
    }
    void advance(std::chrono::nanoseconds duration) { world.scheduler.advance(duration); }
    std::size_t reapplies() const { return world.windowServer.count(Function::coreCursorUnregisterAll); }
};

TEST_F(ReapplyTriggersTest, AWakeRepeatsTheRegistrationOneSecondLater) {
    applyTheme();
    workspace.send(WorkspaceEvent::didWake);
    advance(999ms);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    advance(1ms);
    EXPECT_EQ(reapplies(), 1u);
    EXPECT_EQ(world.windowServer.registeredIdentifiers().size(), changer.lastApplied().size());
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Re-applied after NSWorkspaceDidWakeNotification"));
}

TEST_F(ReapplyTriggersTest, EachObservedEventGivesItsOwnNameAsTheReason) {
    applyTheme();
    for (const auto& [event, reason] : std::vector<std::pair<WorkspaceEvent, std::string>>{
             {WorkspaceEvent::didWake, "NSWorkspaceDidWakeNotification"},
             {WorkspaceEvent::screensDidWake, "NSWorkspaceScreensDidWakeNotification"},
             {WorkspaceEvent::sessionDidBecomeActive, "NSWorkspaceSessionDidBecomeActiveNotification"},
             {WorkspaceEvent::pointerDidChange, "pointer change"}}) {
        forgetTranscript();
        workspace.send(event);
        advance(1s);
        EXPECT_THAT(world.log.systemLines, ElementsAre("[SystemCursorChanger] Re-applied after " + reason));
    }
}

TEST_F(ReapplyTriggersTest, SleepLockAndScreenParametersAskForNothing) {
    applyTheme();
    for (const auto event :
         {WorkspaceEvent::willSleep, WorkspaceEvent::screensDidSleep, WorkspaceEvent::screenIsLocked,
          WorkspaceEvent::screenIsUnlocked, WorkspaceEvent::screenParametersDidChange})
        workspace.send(event);
    advance(5s);
    EXPECT_FALSE(triggers->hasReapplyWork());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, TwoReconfigurationsHalfASecondApartGiveOneReapplyOneSecondAfterTheSecond) {
    applyTheme();
    workspace.reconfigureDisplay(1, 0x2);
    advance(500ms);
    workspace.reconfigureDisplay(2, 0x2);
    advance(999ms);
    EXPECT_EQ(reapplies(), 0u);
    advance(1ms);
    EXPECT_EQ(reapplies(), 1u);
    advance(10s);
    EXPECT_THAT(world.log.systemLines, ElementsAre("[SystemCursorChanger] Re-applied after display change"));
}

TEST_F(ReapplyTriggersTest, ACallbackBeforeTheChangeAsksForNothing) {
    applyTheme();
    workspace.reconfigureDisplay(1, kDisplayBeginConfiguration);
    workspace.reconfigureDisplay(1, kDisplayBeginConfiguration | 0x10);
    advance(5s);
    EXPECT_FALSE(triggers->hasReapplyWork());
    EXPECT_EQ(reapplies(), 0u);
}

TEST_F(ReapplyTriggersTest, TheDisplayCallbackOnlyPostsItsRequest) {
    applyTheme();
    workspace.reconfigureDisplay(1, 0);
    EXPECT_FALSE(triggers->hasReapplyWork());
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(triggers->hasReapplyWork());
}

TEST_F(ReapplyTriggersTest, AWakeWhileNoThemeIsRegisteredLogsNothing) {
    workspace.send(WorkspaceEvent::didWake);
    advance(5s);
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(ReapplyTriggersTest, ABurstOfAnyEventsIsOneReapplyWithTheLastReason) {
    applyTheme();
    for (int i = 0; i < 100; ++i) {
        workspace.send(WorkspaceEvent::didWake);
        workspace.reconfigureDisplay(1, 0);
        workspace.send(WorkspaceEvent::pointerDidChange);
        advance(200ms);
        workspace.send(WorkspaceEvent::screensDidWake);
        advance(790ms);
    }
    EXPECT_EQ(reapplies(), 0u);
    advance(210ms);
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Re-applied after NSWorkspaceScreensDidWakeNotification"));
}

TEST_F(ReapplyTriggersTest, TheWorkStaysInItsPlaceAfterItsRun) {
    applyTheme();
    EXPECT_FALSE(triggers->hasReapplyWork());
    triggers->scheduleReapply("test");
    EXPECT_TRUE(triggers->hasReapplyWork());
    advance(5s);
    EXPECT_EQ(reapplies(), 1u);
    EXPECT_TRUE(triggers->hasReapplyWork());
    triggers->scheduleReapply("again");
    advance(1s);
    EXPECT_EQ(reapplies(), 2u);
}

TEST_F(ReapplyTriggersTest, TheReapplyTakesWhatIsAppliedWhenItRuns) {
    applyTheme(1);
    workspace.send(WorkspaceEvent::didWake);
    advance(500ms);
    applyTheme(2);
    advance(500ms);
    ASSERT_FALSE(world.windowServer.registrations.empty());
    EXPECT_EQ(world.windowServer.registrations.front().images.front(), plainBitmap(24, 24, 2));
}

TEST_F(ReapplyTriggersTest, AResetBeforeTheSecondIsOverStopsTheReapply) {
    applyTheme();
    workspace.send(WorkspaceEvent::didWake);
    changer.restoreSystemState();
    changer.forgetApplied();
    forgetTranscript();
    advance(5s);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, ARolledBackThemeIsNotRepeatedThoughItsRecordsAreKept) {
    applyTheme();
    world.windowServer.registerErrors["com.apple.coregraphics.Arrow"] = 1;
    ASSERT_FALSE(changer.applyPreloaded({stillCursor("left_ptr")}));
    ASSERT_FALSE(changer.lastApplied().empty());
    forgetTranscript();
    workspace.send(WorkspaceEvent::didWake);
    advance(5s);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(ReapplyTriggersTest, AnEventAfterTheTriggersAreGoneDoesNothing) {
    applyTheme();
    workspace.send(WorkspaceEvent::didWake);
    workspace.reconfigureDisplay(1, 0);
    triggers.reset();
    workspace.send(WorkspaceEvent::didWake);
    workspace.activate("TeamViewer");
    advance(5s);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_FALSE(changer.suspendedForExcludedApp());
}

TEST_F(ReapplyTriggersTest, AnExcludedApplicationWithdrawsTheRegistration) {
    const char* arrow = "com.apple.coregraphics.Arrow";
    world.windowServer.desktopCursors[arrow] = {arrow, {plainBitmap(32, 32, 200)}, {32, 32}, {}, 1, 0};
    applyTheme();
    workspace.activate("Parallels Desktop");
    EXPECT_TRUE(changer.isActive());
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_FALSE(changer.lastApplied().empty());
    EXPECT_THAT(world.windowServer.purposes, ElementsAre(std::pair<const std::string, RegistrationPurpose>(
                                                 arrow, RegistrationPurpose::original)));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Restored 1 original coregraphics cursors",
                            "[SystemCursorChanger] Unregistered all custom cursors (err=0)",
                            "[SystemCursorChanger] Suspended for excluded app: Parallels Desktop"));
}

TEST_F(ReapplyTriggersTest, ABuiltInNameInLowerCaseSuspendsToo) {
    applyTheme();
    workspace.activate("teamviewer");
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Suspended for excluded app: teamviewer"));
}

TEST_F(ReapplyTriggersTest, AUsersEntryThatIsOnlyTheFirstWordOfTheNameDoesNotSuspend) {
    excludedApps = {"Adobe"};
    applyTheme();
    workspace.activate("Adobe Photoshop");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    workspace.activate("adobe");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    workspace.activate("Adobe");
    EXPECT_TRUE(changer.suspendedForExcludedApp());
}

TEST_F(ReapplyTriggersTest, TheUsersListIsReadAfreshAtEveryActivation) {
    applyTheme();
    workspace.activate("Blender");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    excludedApps = {"Blender"};
    advance(5s);
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    workspace.activate("Blender");
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    excludedApps = {};
    workspace.activate("Blender");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
}

TEST_F(ReapplyTriggersTest, AnApplicationWithoutANameCountsAsTheEmptyName) {
    applyTheme();
    workspace.activate(std::nullopt);
    workspace.activateUnknown();
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    excludedApps = {""};
    workspace.activateUnknown();
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Suspended for excluded app: "));
    excludedApps = {};
    workspace.activate(std::nullopt);
    EXPECT_FALSE(changer.suspendedForExcludedApp());
}

TEST_F(ReapplyTriggersTest, LeavingTheExcludedApplicationBringsTheThemeBackAtOnce) {
    applyTheme();
    const auto applied = changer.lastApplied();
    workspace.activate("AnyDesk");
    forgetTranscript();
    workspace.activate("XTerm");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    EXPECT_TRUE(changer.isActive());
    EXPECT_EQ(changer.lastApplied(), applied);
    EXPECT_EQ(world.windowServer.registered.size(), applied.size());
    EXPECT_THAT(world.log.systemLines, ElementsAre(kResumed));
}

TEST_F(ReapplyTriggersTest, SwitchingBetweenExcludedApplicationsRestoresOnlyOnce) {
    excludedApps = {"Blender"};
    applyTheme();
    workspace.activate("AnyDesk");
    forgetTranscript();
    workspace.activate("Blender");
    workspace.activate("TeamViewer");
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, AnOrdinaryActivationWhileNeverSuspendedDoesNothing) {
    applyTheme();
    workspace.activate("XTerm");
    advance(5s);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, AnExcludedApplicationWhileInactiveDoesNothing) {
    workspace.activate("AnyDesk");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, NothingIsRepeatedWhileSuspended) {
    applyTheme();
    workspace.activate("AnyDesk");
    forgetTranscript();
    workspace.send(WorkspaceEvent::didWake);
    workspace.reconfigureDisplay(1, 0);
    advance(5s);
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, ARequestFromBeforeTheSuspensionDoesNothingWhenItRuns) {
    applyTheme();
    workspace.send(WorkspaceEvent::didWake);
    advance(500ms);
    workspace.activate("AnyDesk");
    forgetTranscript();
    advance(5s);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(ReapplyTriggersTest, ARequestOutlivesASuspensionThatEndsBeforeItsTime) {
    applyTheme();
    workspace.send(WorkspaceEvent::didWake);
    workspace.activate("AnyDesk");
    advance(500ms);
    workspace.activate("XTerm");
    forgetTranscript();
    advance(500ms);
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Re-applied after NSWorkspaceDidWakeNotification"));
}

TEST_F(ReapplyTriggersTest, AThemeAppliedWhileSuspendedRegistersAtOnceAndStaysSuspended) {
    applyTheme(1);
    workspace.activate("AnyDesk");
    applyTheme(2);
    EXPECT_TRUE(changer.isActive());
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_FALSE(world.windowServer.registered.empty());

    workspace.send(WorkspaceEvent::didWake);
    advance(5s);
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    // Another excluded application does not withdraw the new theme either.
    workspace.activate("TeamViewer");
    EXPECT_THAT(world.windowServer.calls, IsEmpty());

    workspace.activate("XTerm");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    EXPECT_EQ(world.windowServer.registrations.front().images.front(), plainBitmap(24, 24, 2));
    EXPECT_THAT(world.log.systemLines, ElementsAre(kResumed));
}

TEST_F(ReapplyTriggersTest, AResetWhileSuspendedEndsTheSuspension) {
    applyTheme();
    workspace.activate("AnyDesk");
    changer.restoreSystemState();
    changer.forgetApplied();
    forgetTranscript();
    workspace.activate("XTerm");
    EXPECT_FALSE(changer.isActive());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(ReapplyTriggersTest, ARollBackWhileSuspendedStillResumesFromTheKeptRecords) {
    applyTheme();
    workspace.activate("AnyDesk");
    world.windowServer.registerErrors["com.apple.coregraphics.Arrow"] = 1;
    ASSERT_FALSE(changer.applyPreloaded({stillCursor("left_ptr")}));
    EXPECT_FALSE(changer.isActive());
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    world.windowServer.registerErrors.clear();
    forgetTranscript();
    workspace.activate("XTerm");
    EXPECT_TRUE(changer.isActive());
    EXPECT_THAT(world.log.systemLines, ElementsAre(kResumed));
}

TEST_F(ReapplyTriggersTest, WithoutTheWindowServersFunctionsTheFlagsChangeAllTheSame) {
    applyTheme();
    world.windowServer.missing = {Function::mainConnectionID, Function::registerCursorWithImages,
                                  Function::coreCursorUnregisterAll};
    workspace.activate("AnyDesk");
    EXPECT_TRUE(changer.suspendedForExcludedApp());
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Suspended for excluded app: AnyDesk"));
    workspace.activate("XTerm");
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    EXPECT_TRUE(world.log.has(kResumed));
    workspace.send(WorkspaceEvent::didWake);
    advance(1s);
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Re-applied after NSWorkspaceDidWakeNotification"));
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

}  // namespace
}  // namespace pintle
