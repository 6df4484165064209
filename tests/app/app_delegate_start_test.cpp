#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/shell_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct StartTest : testing::Test, ShellWorld {
    /// Without the rows of the catalog and without the folder of this run.
    ShellTranscript shortened() const {
        ShellTranscript lines;
        for (const auto& line : shell.transcript)
            if (!line.starts_with("log: [LOAD_THEMES]") && !line.starts_with("log: [IS_DOWNLOADED]") &&
                !line.starts_with("log: [VIEWMODEL] createDirectoriesIfNeeded()"))
                lines.push_back(line);
        return lines;
    }
};

TEST_F(StartTest, DoesEverythingInItsOrderWithItsLogLines) {
    world.store.set("launchAtLogin", true);
    make().applicationDidFinishLaunching();
    EXPECT_THAT(
        shortened(),
        ElementsAre(
            "bus anotherCopyRuns", "bus observe com.pintle.app.showPopover",
            "log: [LaunchAtLogin] Login item re-pointed to /opt/Pintle", "installSignalRecovery",
            "makeDesktop", "log: [PINTLEAPP] Calling showSystemCursorGuaranteed()",
            "overlay showSystemCursorGuaranteed", "log: [PINTLEAPP] showSystemCursorGuaranteed() DONE",
            "application setActivationPolicy accessory", "log: [PINTLEAPP] setupMenuBar()",
            "log: [MENUBAR] setupMenuBar() START", "statusBar makeStatusItem -2",
            "log: [MENUBAR] Status item created: <StatusItem: fake>", "log: [MENUBAR] Setting up button...",
            "statusItem setImage cursorarrow.motionlines \"Pintle\" template=true", "statusItem setAction",
            "statusItem setActivation", "statusItem setHostMenu",
            "log: [MENUBAR] Button configured with action: statusBarClicked",
            "log: [MENUBAR] Creating popover...", "log: [VIEWMODEL] INIT START",
            "log: [VIEWMODEL] Catalog count: 77", "log: [VIEWMODEL] ✅ Directory created successfully",
            "log: [VIEWMODEL] Themes loaded: 77", "log: [VIEWMODEL] Downloaded themes: 0",
            "popovers makePopover 340x520 transient=true animates=true",
            "log: [MENUBAR] Popover created with PopoverView", "log: [MENUBAR] setupMenuBar() DONE",
            "log: [PINTLEAPP] setupEventMonitor()", "eventMonitors addGlobalMonitor 10",
            "eventMonitors addLocalMonitor 1024", "log: [PINTLEAPP] setupNotificationObservers()",
            "log: [PINTLEAPP] Calling applyLastCursor() SYNCHRONOUSLY",
            "log: [PINTLEAPP] applyLastCursor() START", "log: [PINTLEAPP] CursorViewModel created",
            "overlay showSystemCursorGuaranteed",
            "log: [SystemCursorChanger] Restored 0 original coregraphics cursors",
            "log: [SystemCursorChanger] Unregistered all custom cursors (err=0)", "overlay deactivate",
            "overlay showSystemCursorGuaranteed", "overlay destroyWindows",
            "overlay showSystemCursorGuaranteed", "log: No theme to apply - using system default",
            "log: [PINTLEAPP] applyLastCursor() DONE", "log: [PINTLEAPP] applyLastCursor() DONE"));
}

TEST_F(StartTest, TheUpdateCheckIsStartedWithStartUpAndRunsAfterIt) {
    make().applicationDidFinishLaunching();
    EXPECT_THAT(world.http.requests, IsEmpty());
    world.scheduler.runUntilIdle();
    ASSERT_EQ(world.http.requests.size(), 1u);
    EXPECT_EQ(world.http.requests.front().url, builtInUpdateEndpoint().versionURL);
}

TEST_F(StartTest, AppliesTheLastThemeBeforeItReturnsAsFarAsItCan) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    make().applicationDidFinishLaunching();
    EXPECT_EQ(delegate->cursorViewModel(), &CursorViewModel::shared());
    EXPECT_EQ(delegate->cursorViewModel()->currentTheme()->id, kIce);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(isThemed());
}

TEST_F(StartTest, BeforeStartUpEveryFieldIsEmpty) {
    make();
    EXPECT_EQ(delegate->statusItem(), nullptr);
    EXPECT_EQ(delegate->popover(), nullptr);
    EXPECT_EQ(delegate->cursorViewModel(), nullptr);
    EXPECT_EQ(delegate->settingsWindow(), nullptr);
    EXPECT_EQ(delegate->aboutWindow(), nullptr);
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(StartTest, TheWindowsAreNotMadeByStartUp) {
    start();
    EXPECT_THAT(shell.windows.made, IsEmpty());
    EXPECT_NE(delegate->statusItem(), nullptr);
    EXPECT_NE(delegate->popover(), nullptr);
}

using StartDeathTest = StartTest;

TEST_F(StartDeathTest, AMissingBundleIdentifierEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    bundle.identifier.clear();
    make();
    EXPECT_EXIT(delegate->applicationDidFinishLaunching(), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(StartTest, ASecondCopyNotifiesTheFirstAndEndsWithoutMakingAnything) {
    bus.another = true;
    make().applicationDidFinishLaunching();
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(delegate->isRedundant());
    EXPECT_THAT(shell.transcript, ElementsAre("bus anotherCopyRuns", "bus post com.pintle.app.showPopover",
                                              "application terminate"));
    EXPECT_EQ(shell.statusBar.items, 0);
    EXPECT_THAT(world.http.requests, IsEmpty());
    EXPECT_THAT(loginItems.calls, IsEmpty());
}

TEST_F(StartTest, TheEndOfASecondCopyLeavesTheFirstOnesThemeAlone) {
    bus.another = true;
    world.store.set("restoreOnQuit", true);
    make().applicationDidFinishLaunching();
    forget();
    shell.application.end();
    delegate.reset();
    composition.reset();
    EXPECT_THAT(shell.transcript, IsEmpty());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(StartTest, AFirstCopyIsNotRedundant) {
    EXPECT_FALSE(start().isRedundant());
    EXPECT_EQ(shell.application.terminations, 0);
    EXPECT_THAT(bus.posted, IsEmpty());
}

TEST_F(StartTest, AMessageOfASecondCopyShowsThePopover) {
    start();
    bus.receive("com.pintle.app.showPopover");
    EXPECT_TRUE(shell.popovers.shown);
    EXPECT_THAT(
        shell.transcript,
        ElementsAre("log: [MENUBAR] Showing popover...", "popover show 842,531 340x520",
                    "log: [MENUBAR] Popover shown, activating app", "application activateIgnoringOtherApps"));
}

TEST_F(StartTest, AMessageOfASecondCopyLeavesAnOpenPopoverOpen) {
    start().togglePopover();
    forget();
    bus.receive("com.pintle.app.showPopover");
    EXPECT_TRUE(shell.popovers.shown);
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(StartTest, OtherMessagesOfOtherCopiesAreIgnored) {
    start();
    bus.receive("com.pintle.app.somethingElse");
    EXPECT_FALSE(shell.popovers.shown);
}

TEST_F(StartTest, AfterTheEndOfTheDelegateMessagesAndClicksFindNobody) {
    start();
    delegate.reset();
    forget();
    bus.receive("com.pintle.app.showPopover");
    shell.eventMonitors.press();
    EXPECT_FALSE(shell.eventMonitors.key("w", true));
    shell.application.end();
    composition->notifications().post(notification::openSettingsRequest);
    leftClick();
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(StartTest, AnItemWithoutAButtonIsLoggedAndTheProgramRunsOn) {
    shell.statusBar.button = false;
    make().applicationDidFinishLaunching();
    EXPECT_TRUE(shell.log.has("[MENUBAR] ERROR: No button in status item!"));
    EXPECT_FALSE(shell.log.has("[MENUBAR] Setting up button..."));
    EXPECT_THAT(startingWith("statusItem"), IsEmpty());
    EXPECT_TRUE(shell.log.has("[MENUBAR] setupMenuBar() DONE"));
    EXPECT_EQ(shell.log.count("[PINTLEAPP] applyLastCursor() DONE"), 2u);
    forget();
    delegate->togglePopover();
    EXPECT_THAT(shell.transcript, ElementsAre("log: [MENUBAR] togglePopover: no button"));
    delegate->showAbout();
    EXPECT_TRUE(shell.windows.made.at(0)->visible) << "the windows open all the same";
}

TEST_F(StartTest, WithATrayNothingIsSaidAboutIt) {
    start();
    world.scheduler.advance(std::chrono::minutes(1));
    EXPECT_THAT(shell.application.notes, IsEmpty());
}

TEST_F(StartTest, WithoutATrayTheUserIsNotifiedOnce) {
    shell.statusBar.available = false;
    start();
    world.scheduler.advance(std::chrono::seconds(9));
    EXPECT_THAT(shell.application.notes, IsEmpty()) << "a panel may be starting at the same time";
    world.scheduler.advance(std::chrono::seconds(1));
    EXPECT_THAT(shell.application.notes,
                ElementsAre(testing::Pair("Pintle found no tray",
                                          "It goes on running without an icon. Start "
                                          "Pintle again to open it.")));
    bus.receive("com.pintle.app.showPopover");
    delegate->popover()->close();
    bus.receive("com.pintle.app.showPopover");
    world.scheduler.advance(std::chrono::minutes(5));
    EXPECT_EQ(shell.application.notes.size(), 1u);
}

TEST_F(StartTest, WithoutATrayASecondStartShowsThePopoverAndNotifiesAtOnce) {
    hideFrame();
    shell.statusBar.available = false;
    start();
    bus.receive("com.pintle.app.showPopover");
    EXPECT_TRUE(shell.popovers.shown);
    EXPECT_EQ(shell.popovers.frame, (Rect{{790, 265}, {340, 520}})) << "in the middle of the work area";
    EXPECT_EQ(shell.application.notes.size(), 1u);
    world.scheduler.advance(std::chrono::minutes(1));
    EXPECT_EQ(shell.application.notes.size(), 1u);
}

TEST_F(StartTest, OfATrayThatComesLateNothingIsSaid) {
    shell.statusBar.available = false;
    start();
    world.scheduler.advance(std::chrono::seconds(5));
    shell.statusBar.available = true;
    world.scheduler.advance(std::chrono::minutes(1));
    leftClick();
    EXPECT_THAT(shell.application.notes, IsEmpty());
}

}  // namespace
}  // namespace pintle
