#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/shell_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct WindowsTest : testing::Test, ShellWorld {
    FakeWindows::State& window(std::size_t which) { return *shell.windows.made.at(which); }
};

TEST_F(WindowsTest, SettingsIsMadePositionedBroughtToTheFrontAndActivated) {
    start().openSettings();
    EXPECT_THAT(shell.transcript, ElementsAre("popover close", "windows makeWindow \"Settings\"",
                                              "window \"Settings\" setFrame 772,291 480x760",
                                              "window \"Settings\" makeKeyAndOrderFront",
                                              "application activateIgnoringOtherApps"));
}

TEST_F(WindowsTest, AboutIsMadePositionedBroughtToTheFrontAndActivated) {
    start().showAbout();
    EXPECT_THAT(shell.transcript, ElementsAre("popover close", "windows makeWindow \"About Pintle\"",
                                              "window \"About Pintle\" setFrame 862,571 300x480",
                                              "window \"About Pintle\" makeKeyAndOrderFront",
                                              "application activateIgnoringOtherApps"));
}

TEST_F(WindowsTest, BothHaveTheSameFrameAndEachItsContentAndSize) {
    start().openSettings();
    delegate->showAbout();
    for (const std::size_t each : {0u, 1u}) {
        const auto& spec = window(each).spec;
        EXPECT_EQ(spec.styleMask, 32771u);
        EXPECT_TRUE(spec.titleHidden);
        EXPECT_TRUE(spec.titlebarTransparent);
        EXPECT_TRUE(spec.hasShadow);
        EXPECT_EQ(spec.backgroundAlpha, 0.001);
        EXPECT_FALSE(spec.showsMiniaturizeAndZoom);
    }
    EXPECT_EQ(window(0).spec.content, WindowContent::settings);
    EXPECT_EQ(window(0).spec.contentSize, (Size{480, 760}));
    EXPECT_EQ(window(1).spec.content, WindowContent::about);
    EXPECT_EQ(window(1).spec.contentSize, (Size{300, 480}));
}

TEST_F(WindowsTest, OpeningSettingsWhileThePopoverIsShownClosesThePopoverFirst) {
    start().togglePopover();
    forget();
    delegate->openSettings();
    EXPECT_FALSE(shell.popovers.shown);
    EXPECT_EQ(shell.transcript.front(), "popover close");
}

TEST_F(WindowsTest, AClosedWindowIsTheSameOneWhenItIsShownAgain) {
    start().openSettings();
    auto* first = delegate->settingsWindow();
    first->close();
    EXPECT_FALSE(window(0).visible);
    delegate->openSettings();
    EXPECT_EQ(delegate->settingsWindow(), first);
    EXPECT_EQ(shell.windows.made.size(), 1u);
    EXPECT_TRUE(window(0).visible);
}

TEST_F(WindowsTest, ARequestForAnOpenWindowBringsItForwardUnderTheItemAgain) {
    start().openSettings();
    shell.statusBar.frame = Rect{{500, 1056}, {24, 24}};
    forget();
    delegate->openSettings();
    EXPECT_THAT(shell.transcript, ElementsAre("popover close", "window \"Settings\" setFrame 272,291 480x760",
                                              "window \"Settings\" makeKeyAndOrderFront",
                                              "application activateIgnoringOtherApps"));
}

TEST_F(WindowsTest, AWindowThatCannotBeMadeLeavesItsFieldEmptyAndNothingIsSeen) {
    shell.windows.fails = true;
    start().openSettings();
    delegate->showAbout();
    EXPECT_EQ(delegate->settingsWindow(), nullptr);
    EXPECT_EQ(delegate->aboutWindow(), nullptr);
    EXPECT_THAT(shell.transcript, ElementsAre("popover close", "windows makeWindow \"Settings\"",
                                              "popover close", "windows makeWindow \"About Pintle\""));
    shell.windows.fails = false;
    delegate->openSettings();
    EXPECT_NE(delegate->settingsWindow(), nullptr) << "the next request tries again";
}

TEST_F(WindowsTest, TheRequestsOfTheUserInterfaceOpenTheWindowsAndQuit) {
    start();
    composition->notifications().post(notification::openSettingsRequest);
    EXPECT_TRUE(window(0).visible);
    composition->notifications().post(notification::openAboutRequest, std::string("any sender"));
    EXPECT_TRUE(window(1).visible);
    composition->notifications().post(notification::quitAppRequest);
    EXPECT_EQ(shell.application.terminations, 1);
}

TEST_F(WindowsTest, WithoutAButtonAWindowStandsInTheMiddleOfTheScreen) {
    shell.statusBar.button = false;
    start().showAbout();
    EXPECT_EQ(window(0).frame, (Rect{{810, 300}, {300, 480}}));
}

TEST_F(WindowsTest, AButtonInNoWindowCountsAsAZeroRectangle) {
    shell.statusBar.frame.reset();
    start().showAbout();
    EXPECT_EQ(window(0).frame, (Rect{{-150, -485}, {300, 480}}));
}

TEST_F(WindowsTest, AWindowThatHadToShrinkGetsItsSizeBackWhereThereIsRoom) {
    policy = PlacementPolicy::insideWorkArea;
    shell.windows.areas = {{{{0, 0}, {1024, 600}}, {{0, 0}, {1024, 570}}}};
    shell.statusBar.frame = Rect{{900, 572}, {24, 24}};
    start().openSettings();
    EXPECT_EQ(window(0).frame, (Rect{{536, 0}, {480, 570}}));
    shell.windows.areas = {{{{0, 0}, {1920, 1080}}, {{0, 0}, {1920, 1050}}}};
    shell.statusBar.frame = Rect{{1000, 1056}, {24, 24}};
    delegate->openSettings();
    EXPECT_EQ(window(0).frame, (Rect{{772, 290}, {480, 760}}));
}

TEST_F(WindowsTest, ACommandWClosesTheWindowThatHasTheKeyboardAndIsSwallowed) {
    start().openSettings();
    EXPECT_TRUE(shell.eventMonitors.key("w", true));
    EXPECT_FALSE(window(0).visible);
    delegate->showAbout();
    EXPECT_TRUE(shell.eventMonitors.key("w", true));
    EXPECT_FALSE(window(1).visible);
}

TEST_F(WindowsTest, ACommandWClosesOnlyTheWindowThatHasTheKeyboard) {
    start().openSettings();
    delegate->showAbout();
    EXPECT_TRUE(shell.eventMonitors.key("w", true));
    EXPECT_TRUE(window(0).visible);
    EXPECT_FALSE(window(1).visible);
    EXPECT_FALSE(shell.eventMonitors.key("w", true)) << "neither has the keyboard now";
    EXPECT_TRUE(window(0).visible);
}

TEST_F(WindowsTest, ACommandWElsewhereInTheProgramIsPassedOn) {
    start();
    EXPECT_FALSE(shell.eventMonitors.key("w", true));
    delegate->togglePopover();
    EXPECT_FALSE(shell.eventMonitors.key("w", true));
    EXPECT_TRUE(shell.popovers.shown);
}

TEST_F(WindowsTest, OtherKeysArePassedOn) {
    start().openSettings();
    EXPECT_FALSE(shell.eventMonitors.key("w", false));
    EXPECT_FALSE(shell.eventMonitors.key("q", true));
    EXPECT_FALSE(shell.eventMonitors.key("W", true));
    EXPECT_FALSE(shell.eventMonitors.key("", true));
    EXPECT_TRUE(window(0).visible);
}

TEST_F(WindowsTest, AnAnsweredUpdateCheckComesToTheFrontWithItsAlertAndOpensTheDownload) {
    start();
    world.http.fail(0, "offline");
    delegate->checkForUpdates();
    EXPECT_EQ(world.http.requests.size(), 1u) << "not inside the command";
    world.scheduler.runUntilIdle();
    world.http.answer(1, 200, R"({"version": "1.2.0", "build": 12})");
    world.scheduler.runUntilIdle();
    EXPECT_THAT(shell.transcript, ElementsAre("application activateIgnoringOtherApps",
                                              "alerts runModal \"Pintle 1.2.0 is available\""));
    EXPECT_EQ(shell.alerts.shown.at(0),
              (Alert{AlertStyle::informational,
                     "Pintle 1.2.0 is available",
                     "You have version 1.1.0. Download the new version and replace Pintle in Applications.",
                     {"Download", "Later"}}));
    shell.alerts.answer(0, 0);
    EXPECT_EQ(shell.transcript.back(), "application openUrl " + builtInUpdateEndpoint().downloadURL);
}

TEST_F(WindowsTest, LaterLeavesTheBrowserAlone) {
    start();
    delegate->checkForUpdates();
    world.scheduler.runUntilIdle();
    world.http.answer(1, 200, R"({"version": "1.2.0", "build": 12})");
    world.scheduler.runUntilIdle();
    shell.alerts.answer(0, 1);
    EXPECT_THAT(startingWith("application openUrl"), IsEmpty());
}

}  // namespace
}  // namespace pintle
