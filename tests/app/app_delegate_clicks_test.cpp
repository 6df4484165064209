#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/shell_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kRight = GlobalMouseDown::Button::right;

struct ClickTest : testing::Test, ShellWorld {};

TEST_F(ClickTest, ALeftClickShowsThePopoverUnderTheItemAndActivates) {
    start();
    leftClick();
    EXPECT_THAT(
        shell.transcript,
        ElementsAre("log: [MENUBAR] STATUS BAR CLICKED!!!", "log: [MENUBAR] Left click - toggling popover",
                    "log: [MENUBAR] Showing popover...", "popover show 842,531 340x520",
                    "log: [MENUBAR] Popover shown, activating app", "application activateIgnoringOtherApps"));
}

TEST_F(ClickTest, ALeftClickOnAnItemWhosePopoverIsShownClosesIt) {
    start().togglePopover();
    forget();
    leftClick();
    EXPECT_THAT(
        shell.transcript,
        ElementsAre("log: [MENUBAR] STATUS BAR CLICKED!!!", "log: [MENUBAR] Left click - toggling popover",
                    "log: [MENUBAR] Popover already shown, closing", "popover close"));
}

TEST_F(ClickTest, AClickWithoutAnEventIsLoggedAndNoMore) {
    start();
    shell.statusBar.click(std::nullopt);
    EXPECT_THAT(shell.transcript,
                ElementsAre("log: [MENUBAR] STATUS BAR CLICKED!!!", "log: [MENUBAR] No current event"));
}

TEST_F(ClickTest, AnEventOfAnyOtherKindToggles) {
    start();
    shell.statusBar.click(StatusItemEvent{});
    EXPECT_TRUE(shell.popovers.shown);
    EXPECT_TRUE(shell.log.has("[MENUBAR] Left click - toggling popover"));
}

TEST_F(ClickTest, ARightClickAttachesTheMenuClicksAndDetachesIt) {
    start();
    rightClick();
    EXPECT_THAT(shell.transcript,
                ElementsAre("log: [MENUBAR] STATUS BAR CLICKED!!!",
                            "log: [MENUBAR] Right click - showing context menu", "statusItem attachMenu",
                            "statusItem performClick", "statusItem detachMenu"));
    ASSERT_EQ(shell.statusBar.opened.size(), 1u);
    EXPECT_EQ(shell.statusBar.opened[0].items.size(), 5u);
}

TEST_F(ClickTest, ALeftClickAfterTheMenuTogglesThePopoverInsteadOfReopeningTheMenu) {
    start();
    rightClick();
    leftClick();
    EXPECT_TRUE(shell.popovers.shown);
    EXPECT_EQ(shell.statusBar.opened.size(), 1u);
}

TEST_F(ClickTest, EachRightClickOpensAMenuOfItsOwn) {
    start();
    rightClick();
    rightClick();
    EXPECT_EQ(shell.statusBar.opened.size(), 2u);
}

TEST_F(ClickTest, AHostThatShowsMenusItselfGetsTheSameMenu) {
    start();
    rightClick();
    const auto menu = shell.statusBar.hostMenu();
    ASSERT_EQ(menu.items.size(), shell.statusBar.opened[0].items.size());
    for (std::size_t i = 0; i < menu.items.size(); ++i)
        EXPECT_EQ(menu.items[i].title, shell.statusBar.opened[0].items[i].title);
    menu.items[0].action();
    EXPECT_EQ(shell.windows.made.at(0)->spec.title, "Settings");
}

TEST_F(ClickTest, TheItemsOfTheMenuRunTheirCommands) {
    start();
    rightClick();
    const auto items = shell.statusBar.opened[0].items;
    items[0].action();
    items[1].action();
    ASSERT_EQ(shell.windows.made.size(), 2u);
    EXPECT_EQ(shell.windows.made[0]->spec.title, "Settings");
    EXPECT_EQ(shell.windows.made[1]->spec.title, "About Pintle");
    const auto requests = world.http.requests.size();
    items[2].action();
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.http.requests.size(), requests + 1);
    items[4].action();
    EXPECT_EQ(shell.application.terminations, 1);
}

TEST_F(ClickTest, AMenuThatOutlivesTheDelegateDoesNothing) {
    start();
    const auto menu = shell.statusBar.hostMenu();
    delegate.reset();
    forget();
    for (const auto& item : menu.items)
        if (item.action) item.action();
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(ClickTest, TheKeyboardTogglesThePopoverWithoutAClick) {
    start();
    shell.statusBar.activate();
    EXPECT_TRUE(shell.popovers.shown);
    EXPECT_FALSE(shell.log.has("[MENUBAR] STATUS BAR CLICKED!!!"));
    shell.statusBar.activate();
    EXPECT_FALSE(shell.popovers.shown);
}

TEST_F(ClickTest, APressInAnotherApplicationClosesAnOpenPopover) {
    start().togglePopover();
    forget();
    shell.eventMonitors.press();
    EXPECT_THAT(shell.transcript, ElementsAre("popover close"));
    delegate->togglePopover();
    forget();
    shell.eventMonitors.press(kRight);
    EXPECT_THAT(shell.transcript, ElementsAre("popover close"));
}

TEST_F(ClickTest, APressInAnotherApplicationDoesNothingWhenThePopoverIsClosed) {
    start();
    shell.eventMonitors.press();
    shell.eventMonitors.press(kRight);
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(ClickTest, TheSecondClickOnTheItemClosesThePopoverAndDoesNotReopenIt) {
    for (const bool hostReportsThePress : {true, false}) {
        start();
        const auto first = shell.eventMonitors.press();
        leftClick(hostReportsThePress ? std::optional(first) : std::nullopt);
        ASSERT_TRUE(shell.popovers.shown);
        const auto second = shell.eventMonitors.press();
        EXPECT_FALSE(shell.popovers.shown);
        forget();
        leftClick(hostReportsThePress ? std::optional(second) : std::nullopt);
        EXPECT_FALSE(shell.popovers.shown);
        EXPECT_THAT(shell.transcript, ElementsAre("log: [MENUBAR] STATUS BAR CLICKED!!!",
                                                  "log: [MENUBAR] Left click - toggling popover"));
        const auto third = shell.eventMonitors.press();
        leftClick(hostReportsThePress ? std::optional(third) : std::nullopt);
        EXPECT_TRUE(shell.popovers.shown) << "the third click opens it again";
        delegate.reset();
    }
}

TEST_F(ClickTest, AClickOnTheItemLongAfterAPressElsewhereClosedThePopoverOpensIt) {
    start().togglePopover();
    shell.eventMonitors.press();
    world.scheduler.advance(std::chrono::seconds(2));
    leftClick();
    EXPECT_TRUE(shell.popovers.shown);
}

TEST_F(ClickTest, AfterEscapeTheNextClickOpensThePopover) {
    start().togglePopover();
    delegate->popover()->close();
    EXPECT_FALSE(shell.popovers.shown);
    leftClick();
    EXPECT_TRUE(shell.popovers.shown);
}

TEST_F(ClickTest, ARightClickOnTheItemClosesThePopoverAndOpensTheMenu) {
    start().togglePopover();
    const auto press = shell.eventMonitors.press(kRight);
    rightClick(press);
    EXPECT_FALSE(shell.popovers.shown);
    EXPECT_EQ(shell.statusBar.opened.size(), 1u);
    leftClick();
    EXPECT_TRUE(shell.popovers.shown);
}

TEST_F(ClickTest, WhereTheHostReportsNoFrameThePopoverHangsFromThePointer) {
    hideFrame();
    shell.windows.mouse = {700, 1060};
    start();
    leftClick();
    EXPECT_EQ(shell.popovers.frame, (Rect{{530, 530}, {340, 520}})) << "at the top of the work area";
}

TEST_F(ClickTest, AnActivationWithoutAClickUsesThePlaceOfTheLastClick) {
    hideFrame();
    start();
    shell.windows.mouse = {700, 1060};
    leftClick();
    delegate->popover()->close();
    shell.windows.mouse = {100, 100};
    shell.statusBar.activate();
    EXPECT_EQ(shell.popovers.frame, (Rect{{530, 530}, {340, 520}}));
}

TEST_F(ClickTest, AChoiceInAHostsOwnMenuPutsTheWindowNearThePointer) {
    hideFrame();
    start();
    shell.windows.mouse = {700, 900};
    shell.statusBar.hostMenu().items[1].action();
    EXPECT_EQ(shell.windows.made.at(0)->frame, (Rect{{550, 415}, {300, 480}}));
}

}  // namespace
}  // namespace pintle
