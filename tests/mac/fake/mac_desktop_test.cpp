// Displays, windows, accessibility, applications and the events of the desktop.
#include <unistd.h>

#include "platform/mac/mac_accessibility.h"
#include "platform/mac/mac_application.h"
#include "platform/mac/mac_displays.h"
#include "platform/mac/mac_window_list.h"
#include "platform/mac/mac_workspace.h"
#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_test.h"
#include "tests/mac/fake/fake_values.h"

namespace pintle {
namespace {

using mac_fake::world;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(MacDisplays, ScreensKeepTheirOrderTheirFramesAndTheNumbersTheyHave) {
    world().screens = {{{{0, 0}, {1440, 900}}, {{0, 50}, {1440, 825}}, 69},
                       {{{1440, -180}, {1920, 1080}}, {{1440, -180}, {1920, 1080}}, std::nullopt}};
    const auto displays = makeMacDisplays();
    EXPECT_THAT(displays->screens(), ElementsAre(Screen{{{0, 0}, {1440, 900}}, 69},
                                                 Screen{{{1440, -180}, {1920, 1080}}, std::nullopt}));
    world().screens.clear();
    EXPECT_THAT(displays->screens(), IsEmpty());
}

TEST(MacDisplays, TheMainDisplayAndTheMouseAreThoseOfTheMoment) {
    const auto displays = makeMacDisplays();
    world().mainDisplay = 3;
    world().mouse = {-12.5, 900};
    EXPECT_EQ(displays->mainDisplayID(), 3U);
    EXPECT_EQ(displays->mouseLocation(), (Point{-12.5, 900}));
}

/// A list of windows with the frameworks' own keys. Absent fields are left out; any value may be of any type.
CFArrayRef windowList(const std::vector<PropertyDictionary>& windows) {
    auto* list = new mac_fake::Array;
    for (const auto& window : windows) {
        auto* entry = new mac_fake::Dictionary;
        for (const auto& [name, value] : window) {
            const CFStringRef key = name == "owner"   ? kCGWindowOwnerName
                                    : name == "layer" ? kCGWindowLayer
                                                      : kCGWindowBounds;
            entry->entries.emplace_back(CFRetain(key), mac_fake::newProperty(value));
        }
        list->values.push_back(entry->ref());
    }
    return static_cast<CFArrayRef>(list->ref());
}

PropertyDictionary bounds(double x, double y, double width, double height) {
    return {{"X", x}, {"Y", y}, {"Width", width}, {"Height", height}};
}

TEST(MacWindowList, AsksForTheWindowsOnScreenWithoutTheDesktopsOwn) {
    makeMacWindowList()->onScreenWindows();
    EXPECT_THAT(world().windowQuestions, ElementsAre(Pair(0x11U, 0U)));
}

TEST(MacWindowList, NoListIsNoWindows) {
    EXPECT_THAT(makeMacWindowList()->onScreenWindows(), IsEmpty());
    world().windows = [] { return windowList({}); };
    EXPECT_THAT(makeMacWindowList()->onScreenWindows(), IsEmpty());
}

TEST(MacWindowList, WindowsComeFrontToBackWithYUpward) {
    world().windows = [] {
        return windowList({{{"owner", "Dock"}, {"layer", 20}, {"bounds", bounds(0, 0, 1440, 900)}},
                           {{"owner", "Safari"}, {"layer", 0}, {"bounds", bounds(100, 50, 800, 600)}},
                           // On a screen above the main one.
                           {{"owner", "Notes"}, {"layer", -1}, {"bounds", bounds(-10, -500, 20, 30)}}});
    };
    EXPECT_THAT(makeMacWindowList()->onScreenWindows(),
                ElementsAre(WindowInfo{"Dock", 20, {{0, 0}, {1440, 900}}},
                            WindowInfo{"Safari", 0, {{100, 250}, {800, 600}}},
                            WindowInfo{"Notes", -1, {{-10, 1370}, {20, 30}}}));
}

TEST(MacWindowList, TheHeightIsThatOfTheMainDisplay) {
    world().mainDisplay = 5;
    world().mainBounds = CGRectMake(0, 0, 2560, 1440);
    world().windows = [] { return windowList({{{"owner", "A"}, {"bounds", bounds(0, 40, 10, 100)}}}); };
    EXPECT_EQ(makeMacWindowList()->onScreenWindows().at(0).bounds, (Rect{{0, 1300}, {10, 100}}));
}

TEST(MacWindowList, AWindowWithoutBoundsThatCanBeReadIsLeftOut) {
    world().windows = [] {
        return windowList(
            {{{"owner", "none"}, {"layer", 0}},
             {{"owner", "text"}, {"layer", 0}, {"bounds", "everywhere"}},
             {{"owner", "part"}, {"layer", 0}, {"bounds", PropertyDictionary{{"X", 1.0}}}},
             {{"owner", "words"},
              {"layer", 0},
              {"bounds", PropertyDictionary{{"X", "a"}, {"Y", "b"}, {"Width", "c"}, {"Height", "d"}}}},
             {{"owner", "good"}, {"layer", 0}, {"bounds", bounds(0, 0, 1, 1)}}});
    };
    const auto windows = makeMacWindowList()->onScreenWindows();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows[0].ownerName, "good");
}

TEST(MacWindowList, AnOwnerOrALayerThatIsMissingOrOfAnotherTypeIsEmptyOrZero) {
    world().windows = [] {
        return windowList({{{"bounds", bounds(0, 0, 1, 900)}},
                           {{"owner", 7}, {"layer", "top"}, {"bounds", bounds(0, 0, 1, 900)}},
                           {{"owner", "Z\xC3\xBCrich"}, {"layer", 25.0}, {"bounds", bounds(0, 0, 1, 900)}}});
    };
    EXPECT_THAT(makeMacWindowList()->onScreenWindows(),
                ElementsAre(WindowInfo{"", 0, {{0, 0}, {1, 900}}}, WindowInfo{"", 0, {{0, 0}, {1, 900}}},
                            WindowInfo{"Z\xC3\xBCrich", 25, {{0, 0}, {1, 900}}}));
}

TEST(MacAccessibility, TrustIsThatOfTheMoment) {
    const auto accessibility = makeMacAccessibility();
    EXPECT_TRUE(accessibility->isProcessTrusted());
    world().trusted = false;
    EXPECT_FALSE(accessibility->isProcessTrusted());
}

TEST(MacAccessibility, ARoleIsAskedForAtThePointFromTheTopAndNeverForLong) {
    std::pair<float, float> asked;
    world().roleAt = [&](float x, float y) {
        asked = {x, y};
        return std::optional<std::string>("AXTextField");
    };
    EXPECT_EQ(makeMacAccessibility()->roleAt({12.5, 880}), "AXTextField");
    EXPECT_EQ(asked, (std::pair{12.5F, 880.0F}));
    EXPECT_EQ(world().messagingTimeout, 0.05F);
}

TEST(MacAccessibility, NoElementIsNoRole) { EXPECT_FALSE(makeMacAccessibility()->roleAt({1, 1})); }

TEST(MacAccessibility, ARoleThatIsMissingOrNoTextIsNoRole) {
    world().roleAt = [](float, float) { return std::optional<std::string>(); };
    EXPECT_FALSE(makeMacAccessibility()->roleAt({1, 1}));
    world().roleIsNumber = true;
    EXPECT_FALSE(makeMacAccessibility()->roleAt({1, 1}));
}

TEST(MacAccessibility, EachCallThatFailsIsNoRole) {
    for (const char* function : {"AXUIElementCreateSystemWide", "AXUIElementCopyElementAtPosition",
                                 "AXUIElementCopyAttributeValue"}) {
        world().roleAt = [](float, float) { return std::optional<std::string>("AXLink"); };
        world().failing = {function};
        EXPECT_FALSE(makeMacAccessibility()->roleAt({1, 1})) << function;
    }
}

TEST(MacAccessibility, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        world().roleAt = [](float, float) { return std::optional<std::string>("AXLink"); };
        makeMacAccessibility()->roleAt({1, 1});
    });
}

TEST(MacWorkspace, TheFrontmostApplicationIsThatOfTheMoment) {
    const auto workspace = makeMacWorkspace();
    EXPECT_FALSE(workspace->frontmostApplication());
    world().frontmost = RunningApplication{"Safari", 88};
    EXPECT_EQ(workspace->frontmostApplication(), (RunningApplication{"Safari", 88}));
}

TEST(MacWorkspace, EachEventComesFromItsCentreUnderItsNameUntilItsHandleEnds) {
    const auto workspace = makeMacWorkspace();
    for (const auto event :
         {WorkspaceEvent::willSleep, WorkspaceEvent::didWake, WorkspaceEvent::screensDidSleep,
          WorkspaceEvent::screensDidWake, WorkspaceEvent::sessionDidBecomeActive,
          WorkspaceEvent::didActivateApplication, WorkspaceEvent::screenIsLocked,
          WorkspaceEvent::screenIsUnlocked, WorkspaceEvent::screenParametersDidChange}) {
        const std::string name(notificationName(event));
        const bool distributed =
            event == WorkspaceEvent::screenIsLocked || event == WorkspaceEvent::screenIsUnlocked;
        const bool application = event == WorkspaceEvent::screenParametersDidChange;
        std::vector<std::string> received;
        Subscription handle = workspace->observe(
            event, [&](const WorkspaceNotification& what) { received.push_back(what.name); });
        mac_fake::postFromElsewhere(name);
        EXPECT_EQ(received.size(), distributed ? 1U : 0U) << name;
        mac_fake::postNotification("application", name);
        EXPECT_EQ(received.size(), distributed || application ? 1U : 0U) << name;
        mac_fake::postNotification("workspace", name);
        EXPECT_THAT(received, ElementsAre(name));
        handle.end();
        mac_fake::postFromElsewhere(name);
        mac_fake::postNotification("application", name);
        mac_fake::postNotification("workspace", name);
        EXPECT_EQ(received.size(), 1U) << name;
    }
    EXPECT_EQ(mac_fake::distributedObservers(), 0U);
    EXPECT_EQ(mac_fake::notificationObservers(), 0U);
}

TEST(MacWorkspace, APointerIsChangedByNobodyElseHere) {
    const auto workspace = makeMacWorkspace();
    const Subscription handle =
        workspace->observe(WorkspaceEvent::pointerDidChange, [](const WorkspaceNotification&) {});
    EXPECT_FALSE(handle);
    EXPECT_EQ(mac_fake::distributedObservers() + mac_fake::notificationObservers(), 0U);
}

TEST(MacWorkspace, AnActivationCarriesItsApplication) {
    const auto workspace = makeMacWorkspace();
    std::vector<WorkspaceNotification> received;
    const Subscription handle =
        workspace->observe(WorkspaceEvent::didActivateApplication,
                           [&](const WorkspaceNotification& what) { received.push_back(what); });
    const std::string name = "NSWorkspaceDidActivateApplicationNotification";
    mac_fake::postNotification("workspace", name, RunningApplication{std::nullopt, 12});
    mac_fake::postNotification("workspace", name);
    EXPECT_THAT(received, ElementsAre(WorkspaceNotification{name, RunningApplication{std::nullopt, 12}},
                                      WorkspaceNotification{name, std::nullopt}));
}

TEST(MacWorkspace, AHandlerMayEndItsOwnSubscription) {
    const auto workspace = makeMacWorkspace();
    int calls = 0;
    Subscription handle;
    handle = workspace->observe(WorkspaceEvent::screenIsLocked, [&](const WorkspaceNotification&) {
        ++calls;
        handle.end();
    });
    mac_fake::postFromElsewhere("com.apple.screenIsLocked");
    mac_fake::postFromElsewhere("com.apple.screenIsLocked");
    EXPECT_EQ(calls, 1);
    Subscription display;
    display = workspace->observeDisplayReconfiguration([&](DisplayId, DisplayChangeFlags) {
        ++calls;
        display.end();
    });
    mac_fake::reconfigure(1, 0);
    mac_fake::reconfigure(1, 0);
    EXPECT_EQ(calls, 2);
}

TEST(MacWorkspace, ADisplayThatChangesIsReportedWithItsFlags) {
    const auto workspace = makeMacWorkspace();
    std::vector<std::pair<DisplayId, DisplayChangeFlags>> received;
    const auto note = [&](DisplayId display, DisplayChangeFlags flags) {
        received.emplace_back(display, flags);
    };
    Subscription first = workspace->observeDisplayReconfiguration(note);
    const Subscription second = workspace->observeDisplayReconfiguration(note);
    mac_fake::reconfigure(69, kDisplayBeginConfiguration);
    EXPECT_THAT(received, ElementsAre(Pair(69U, 1U), Pair(69U, 1U)));
    first.end();
    mac_fake::reconfigure(69, 0x10);
    EXPECT_EQ(received.size(), 3U);
    EXPECT_EQ(received.back(), (std::pair<DisplayId, DisplayChangeFlags>{69, 0x10}));
}

TEST(MacWorkspace, ACallbackThatCannotBeRegisteredIsAnEmptyHandle) {
    world().failing = {"CGDisplayRegisterReconfigurationCallback"};
    EXPECT_FALSE(makeMacWorkspace()->observeDisplayReconfiguration([](DisplayId, DisplayChangeFlags) {}));
    EXPECT_THAT(world().displayCallbacks, IsEmpty());
}

class MacApplicationTest : public ::testing::Test {
  protected:
    std::unique_ptr<Application> make() {
        return makeMacApplication([this](std::function<void()> ended) {
            toolkitEnd_ = std::move(ended);
            return Subscription([this] { toolkitEnd_ = nullptr; });
        });
    }
    static void endNatively() {
        mac_fake::postNotification("application", "NSApplicationWillTerminateNotification");
    }
    std::function<void()> toolkitEnd_;
};

TEST_F(MacApplicationTest, EachRequestGoesToTheDesktop) {
    const auto application = make();
    application->setActivationPolicy(ActivationPolicy::accessory);
    application->activateIgnoringOtherApps();
    application->openUrl("https://example.org/?a=b");
    application->notify("Title", "Text");
    application->terminate();
    EXPECT_THAT(world().applicationCalls, ElementsAre("policy 1", "activate", "open https://example.org/?a=b",
                                                      "notify Title: Text", "terminate"));
}

TEST_F(MacApplicationTest, TheEndIsReportedOnceWhicheverSideComesFirst) {
    for (const bool nativeFirst : {true, false}) {
        int ends = 0;
        const auto application = make();
        application->setWillTerminate([&] { ++ends; });
        if (nativeFirst) endNatively();
        toolkitEnd_();
        EXPECT_EQ(ends, 1);
        endNatively();
        EXPECT_EQ(ends, 1);
    }
}

TEST_F(MacApplicationTest, AnEndWithoutAHandlerAndAHandlerAfterTheObjectAreNothing) {
    auto application = make();
    endNatively();
    application.reset();
    EXPECT_FALSE(toolkitEnd_);
    endNatively();
}

}  // namespace
}  // namespace pintle
