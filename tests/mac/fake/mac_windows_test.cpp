// The windows, the popover and the overlay's windows.
#include "platform/mac/mac_windows.h"
#include "platform/fake/fake_shell.h"
#include "platform/mac/mac_application.h"
#include "platform/mac/mac_overlay_surfaces.h"
#include "platform/mac/mac_popovers.h"
#include "tests/mac/fake/fake_test.h"
#include "tests/mac/fake/fake_windows.h"

namespace pintle {
namespace {

using mac_fake::FakeWindow;
using mac_fake::theWindow;
using mac_fake::world;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Calls = std::vector<std::string>;

/// Records into the same list as the windows do.
class RecordingNativeViews : public NativeViews {
  public:
    NativeView popover() override {
        ++popoversAskedFor;
        return canMake ? &views[0] : nullptr;
    }
    double popoverMaterial() override { return material; }
    NativeView window(WindowContent content) override {
        return canMake ? &views[content == WindowContent::settings ? 1 : 2] : nullptr;
    }
    void setTitleStrip(NativeView view, double height) override {
        say(view, "title strip " + std::to_string(static_cast<int>(height)));
    }
    void willShow(NativeView view, bool animates) override {
        say(view, animates ? "will show, animated" : "will show");
    }
    void didShow(NativeView view) override { say(view, "did show"); }
    void didHide(NativeView view) override { say(view, "did hide"); }
    void setClose(NativeView view, std::function<void()> how) override { close[view] = std::move(how); }

    bool canMake = true;
    int popoversAskedFor = 0;
    double material = 0;
    /// Popover, settings, about: only their addresses count.
    char views[3] = {};
    std::map<NativeView, std::function<void()>> close;

  private:
    void say(NativeView view, const std::string& what) const {
        world().windowCalls.push_back(std::to_string(static_cast<const char*>(view) - views) + ' ' + what);
    }
};

class MacShellTest : public ::testing::Test {
  protected:
    static Calls taken() { return std::exchange(world().windowCalls, {}); }
    RecordingNativeViews views;
    ShellTranscript transcript;
    FakeStatusBar bar{transcript};
    std::unique_ptr<StatusItem> item = bar.makeStatusItem(-2);
};

class MacPopoverTest : public MacShellTest {
  protected:
    std::unique_ptr<Popover> make() { return makeMacPopovers(views)->makePopover({{340, 520}, true, true}); }
    void show(Popover& popover) const { popover.show(*item, {}); }
};

TEST_F(MacPopoverTest, TheViewIsMadeAtTheFirstShowingAndLiesAlonePastTheMaterialInAContentThatClips) {
    const auto popover = make();
    EXPECT_EQ(views.popoversAskedFor, 0);
    show(*popover);
    popover->close();
    show(*popover);
    EXPECT_EQ(views.popoversAskedFor, 1);
    EXPECT_THAT(theWindow(FakeWindow::Kind::popover).layers, ElementsAre("material 6", "view"));
    EXPECT_TRUE(theWindow(FakeWindow::Kind::popover).clips);
}

TEST_F(MacPopoverTest, TheProgramIsActiveBeforeThePopoverIsThereAndThenItsWindowTakesTheKeys) {
    const auto popover = make();
    show(*popover);
    EXPECT_THAT(taken(),
                ElementsAre("0 will show, animated", "activate", "show popover", "0 did show", "make key"));
    EXPECT_TRUE(theWindow(FakeWindow::Kind::popover).hasKeys);
    EXPECT_EQ(theWindow(FakeWindow::Kind::popover).focused, &views.views[0]);
}

TEST_F(MacPopoverTest, TheActivationThatFollowsTheShowingDoesNotCloseIt) {
    const auto application = makeMacApplication([](const auto&) { return Subscription(); });
    const auto popover = make();
    show(*popover);
    application->activateIgnoringOtherApps();
    EXPECT_TRUE(popover->isShown());
    EXPECT_TRUE(theWindow(FakeWindow::Kind::popover).hasKeys);
}

TEST_F(MacPopoverTest, TheMaterialIsAsOpaqueAsTheViewWantsItAtEachShowing) {
    const auto popover = make();
    show(*popover);
    EXPECT_EQ(theWindow(FakeWindow::Kind::popover).materialOpacity, 0);
    popover->close();
    views.material = 0.85;
    show(*popover);
    EXPECT_EQ(theWindow(FakeWindow::Kind::popover).materialOpacity, 0.85);
}

TEST_F(MacPopoverTest, AViewThatTheDesktopDidNotShowIsNotTakenForShown) {
    const auto popover = make();
    world().popoverRefuses = true;
    show(*popover);
    EXPECT_FALSE(popover->isShown());
    EXPECT_FALSE(theWindow(FakeWindow::Kind::popover).hasKeys);
    world().popoverRefuses = false;
    show(*popover);
    EXPECT_TRUE(theWindow(FakeWindow::Kind::popover).hasKeys);
}

TEST_F(MacPopoverTest, AClosingThatWasPlayedHidesTheViewWhoeverClosedIt) {
    const auto popover = make();
    for (const bool byUser : {false, true}) {
        show(*popover);
        taken();
        if (byUser)
            mac_fake::closeByUser(theWindow(FakeWindow::Kind::popover));
        else
            popover->close();
        EXPECT_FALSE(popover->isShown());
        EXPECT_THAT(taken(), IsEmpty());
        mac_fake::finishClosings();
        EXPECT_THAT(taken(), ElementsAre("0 did hide"));
    }
}

TEST_F(MacPopoverTest, AClosingThatEndsAfterThePopoverWasShownAgainLeavesItsViewAlone) {
    const auto popover = make();
    show(*popover);
    popover->close();
    show(*popover);
    taken();
    mac_fake::finishClosings();
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_TRUE(popover->isShown());
    popover->close();
    mac_fake::finishClosings();
    EXPECT_THAT(taken(), ElementsAre("0 did hide"));
}

TEST_F(MacPopoverTest, AClosingThatEndsAfterThePopoverIsGoneNotifiesNobody) {
    auto popover = make();
    show(*popover);
    popover->close();
    taken();
    popover.reset();
    mac_fake::finishClosings();
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(MacPopoverTest, AnItemWithoutAButtonOrWithOneInNoWindowShowsNothing) {
    const auto popover = make();
    bar.button = false;
    show(*popover);
    bar.button = true;
    world().statusItemStandsInAWindow = false;
    show(*popover);
    EXPECT_FALSE(popover->isShown());
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(views.popoversAskedFor, 0);
}

TEST_F(MacPopoverTest, AViewThatCannotBeMadeShowsNothingAndIsAskedForAgain) {
    views.canMake = false;
    const auto popover = make();
    show(*popover);
    EXPECT_FALSE(popover->isShown());
    views.canMake = true;
    show(*popover);
    EXPECT_TRUE(popover->isShown());
}

TEST_F(MacPopoverTest, AViewThatWantsToGoAwayClosesThePopover) {
    const auto popover = make();
    show(*popover);
    views.close.at (&views.views[0])();
    EXPECT_FALSE(popover->isShown());
}

class MacWindowsTest : public MacShellTest {
  protected:
    std::unique_ptr<ShellWindow> make(WindowContent content = WindowContent::settings) {
        WindowSpec spec;
        spec.content = content;
        spec.contentSize = {480, 760};
        return makeMacWindows(views)->makeWindow(spec);
    }
};

TEST_F(MacWindowsTest, TheViewLiesPastAMaterialInAContentThatClips) {
    const auto window = make();
    const FakeWindow& native = theWindow(FakeWindow::Kind::window);
    EXPECT_THAT(native.layers, ElementsAre("material 21", "view"));
    EXPECT_EQ(native.materialOpacity, 1);
    EXPECT_TRUE(native.clips);
}

TEST_F(MacWindowsTest, TheViewKnowsItsTitleStripBeforeTheWindowComesToTheActiveProgramsFrontAndTakesTheKeys) {
    for (const auto content : {WindowContent::settings, WindowContent::about}) {
        world().programIsActive = false;
        const auto window = make(content);
        const std::string which = content == WindowContent::settings ? "1" : "2";
        window->makeKeyAndOrderFront();
        EXPECT_THAT(taken(),
                    ElementsAre(which + " title strip 28", which + " will show, animated", "activate",
                                "order front", "make key", which + " did show", "focus"));
        EXPECT_TRUE(window->isVisible());
        EXPECT_TRUE(window->isKey());
        EXPECT_NE(theWindow(FakeWindow::Kind::window).focused, nullptr);
    }
}

TEST_F(MacWindowsTest, AWindowThatClosesHidesItsViewWhoeverClosesIt) {
    const auto window = make();
    for (const bool byUser : {false, true}) {
        window->makeKeyAndOrderFront();
        taken();
        if (byUser)
            mac_fake::closeByUser(theWindow(FakeWindow::Kind::window));
        else
            views.close.at (&views.views[1])();
        EXPECT_FALSE(window->isVisible());
        EXPECT_THAT(taken(), ElementsAre("1 did hide"));
    }
}

TEST_F(MacWindowsTest, AViewThatCannotBeMadeIsNoWindow) {
    views.canMake = false;
    EXPECT_EQ(make(), nullptr);
}

TEST_F(MacWindowsTest, AFrameIsSetAndRead) {
    const auto window = make();
    window->setFrame({{10, 20}, {480, 700}});
    EXPECT_EQ(window->frame(), (Rect{{10, 20}, {480, 700}}));
}

TEST_F(MacWindowsTest, ScreensAreThoseOfTheMoment) {
    const auto windows = makeMacWindows(views);
    world().screens = {{{{0, 0}, {1440, 900}}, {{0, 50}, {1440, 825}}, 69}};
    world().mouse = {3, 4};
    EXPECT_THAT(windows->screens(), ElementsAre(ScreenArea{{{0, 0}, {1440, 900}}, {{0, 50}, {1440, 825}}}));
    EXPECT_EQ(windows->mouseLocation(), (Point{3, 4}));
}

TEST(MacOverlaySurfaces, AWindowStandsAboveEverythingOnEverySpaceAndStaysWhenTheProgramIsHidden) {
    const auto surface = makeMacOverlaySurfaces()->create(1, {32, 48});
    const FakeWindow& window = theWindow(FakeWindow::Kind::overlay);
    EXPECT_EQ(window.level, 2147483631);
    EXPECT_EQ(window.collectionBehavior, 0x151U);
    EXPECT_EQ(window.alpha, 0);
    EXPECT_FALSE(surface->isVisible());
    surface->orderFront();
    EXPECT_TRUE(surface->isVisible());
    mac_fake::hideProgram();
    EXPECT_TRUE(surface->isVisible());
}

TEST(MacOverlaySurfaces, AWindowThatTheDesktopTakesAwayIsNotVisible) {
    const auto surface = makeMacOverlaySurfaces()->create(1, {32, 48});
    surface->orderFront();
    theWindow(FakeWindow::Kind::overlay).takenAway = true;
    EXPECT_FALSE(surface->isVisible());
}

TEST(MacOverlaySurfaces, WhatIsSetIsWhatTheWindowShows) {
    const auto surface = makeMacOverlaySurfaces()->create(1, {32, 48});
    FakeWindow& window = theWindow(FakeWindow::Kind::overlay);
    EXPECT_EQ(window.frame.size, (Size{32, 48}));
    surface->setImage(picture(8, 9));
    surface->setSize({8, 9});
    surface->setOrigin({-4, 70});
    surface->setAlpha(1);
    EXPECT_EQ(window.image, picture(8, 9));
    EXPECT_EQ(window.frame, (Rect{{-4, 70}, {8, 9}}));
    EXPECT_EQ(window.alpha, 1);
    surface->setImage(std::nullopt);
    EXPECT_FALSE(window.image);
}

TEST(MacOverlaySurfaces, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        const auto surface = makeMacOverlaySurfaces()->create(1, {8, 8});
        surface->setImage(picture(8, 8));
    });
}

}  // namespace
}  // namespace pintle
