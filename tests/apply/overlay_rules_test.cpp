#include <gtest/gtest.h>

#include "apply/cursor_alternatives.h"
#include "apply/cursor_identifiers.h"
#include "apply/overlay_areas.h"
#include "apply/overlay_decision.h"

namespace pintle {
namespace {

// The first monitor does not lie at 0,0 and the second lies above it: a flipped axis shows.
const std::vector<Screen> kScreens = {{{{100, 50}, {1280, 800}}, 7},
                                      {{{100, 850}, {1024, 768}}, std::nullopt}};
constexpr DisplayId kMain = 42;

struct Tick {
    OverlayTickFacts facts;
    bool fullscreen = false;
    bool isProtected = false;
    bool watched = false;
    int fullscreenAsked = 0;
    int protectedAsked = 0;
    int watchedAsked = 0;

    Tick() {
        facts.screens.assign(std::begin(kScreens), std::end(kScreens));
        facts.mainDisplay = kMain;
        facts.mouse = {200, 100};
        facts.pauseWhenScreenShared = true;
        facts.isFullscreen = [this](DisplayId) { return ++fullscreenAsked, fullscreen; };
        facts.mouseIsInProtectedArea = [this] { return ++protectedAsked, isProtected; };
        facts.isScreenWatched = [this] { return ++watchedAsked, watched; };
    }
    Tick(const Tick&) = delete;
    OverlayOutcome outcome() { return decideOverlayTick(facts).outcome; }
};

TEST(OverlayDecision, NormallyTheThemedImageIsDrawnOnTheDisplayUnderTheMouse) {
    Tick tick;
    EXPECT_EQ(decideOverlayTick(tick.facts), (OverlayDecision{OverlayOutcome::draw, 7}));
}

TEST(OverlayDecision, AScreenWithoutANumberIsTheMainDisplay) {
    Tick tick;
    tick.facts.mouse = {200, 900};
    EXPECT_EQ(decideOverlayTick(tick.facts), (OverlayDecision{OverlayOutcome::draw, kMain}));
}

TEST(OverlayDecision, APausedTickChangesNothingAndAsksNothing) {
    Tick tick;
    tick.facts.paused = true;
    tick.facts.isCurrentAppExcluded = true;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::nothing);
    EXPECT_EQ(tick.fullscreenAsked + tick.protectedAsked + tick.watchedAsked, 0);
}

TEST(OverlayDecision, WithoutScreensATickChangesNothing) {
    Tick tick;
    tick.facts.screens = {};
    EXPECT_EQ(tick.outcome(), OverlayOutcome::nothing);
}

TEST(OverlayDecision, AnExcludedApplicationShowsTheHardwarePointerBeforeAnythingElseIsAsked) {
    Tick tick;
    tick.facts.isCurrentAppExcluded = true;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
    EXPECT_EQ(tick.fullscreenAsked, 0);
}

TEST(OverlayDecision, AMouseOutsideEveryScreenShowsTheHardwarePointer) {
    Tick tick;
    tick.facts.mouse = {99, 100};
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
    tick.facts.mouse = {1380, 100};
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
}

TEST(OverlayDecision, TheUppermostRowBelongsToItsScreenAndTheRowBelowTheLowestDoesNot) {
    Tick tick;
    tick.facts.screens.resize(1);
    tick.facts.mouse = {100, 850};
    EXPECT_EQ(tick.outcome(), OverlayOutcome::draw);
    tick.facts.mouse = {100, 50};
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
}

TEST(OverlayDecision, AFullScreenApplicationShowsTheHardwarePointer) {
    Tick tick;
    tick.fullscreen = true;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
}

TEST(OverlayDecision, AlwaysUseThemedCursorSkipsTheFullScreenQuestion) {
    Tick tick;
    tick.fullscreen = true;
    tick.facts.alwaysUseThemedCursor = true;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::draw);
    EXPECT_EQ(tick.fullscreenAsked, 0);
}

TEST(OverlayDecision, AProtectedAreaShowsTheHardwarePointerAlsoWithAlwaysUseThemedCursor) {
    Tick tick;
    tick.isProtected = true;
    tick.facts.alwaysUseThemedCursor = true;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
    EXPECT_EQ(tick.watchedAsked, 0);
}

TEST(OverlayDecision, AWatchedScreenShowsTheHardwarePointerOnlyWhenTheSettingIsOn) {
    Tick tick;
    tick.watched = true;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::stepAside);
    tick.facts.pauseWhenScreenShared = false;
    EXPECT_EQ(tick.outcome(), OverlayOutcome::draw);
    EXPECT_EQ(tick.watchedAsked, 2);
}

TEST(OverlayAreas, AWindowWithinTenPointsOfItsDisplayCoversIt) {
    const std::vector<std::string> ignored = {"Dock"};
    const auto covered = [&](Rect bounds, int layer = 0, std::string owner = "Player") {
        const std::vector<WindowInfo> windows = {{std::move(owner), layer, bounds}};
        return fullscreenDisplayIDs(windows, kScreens, kMain, ignored);
    };
    EXPECT_EQ(covered({{100, 50}, {1280, 800}}), std::set<DisplayId>{7});
    EXPECT_EQ(covered({{100, 850}, {1024, 768}}), std::set<DisplayId>{kMain});
    EXPECT_EQ(covered({{90, 40}, {1300, 820}}), std::set<DisplayId>{7});
    EXPECT_EQ(covered({{103, 53}, {1275, 795}}), std::set<DisplayId>{7});
    EXPECT_TRUE(covered({{89, 50}, {1280, 800}}).empty());
    EXPECT_TRUE(covered({{100, 50}, {1280, 789}}).empty());
    EXPECT_TRUE(covered({{103, 53}, {1274, 794}}).empty());
    EXPECT_TRUE(covered({{100, 50}, {1280, 800}}, -1).empty());
    EXPECT_TRUE(covered({{100, 50}, {1280, 800}}, 0, "Dock").empty());
}

TEST(OverlayAreas, AProtectedWindowInTheLowerLeftCornerProtectsThatCornerOnly) {
    const std::vector<std::string> owners = {"loginwindow", "SecurityAgent"};
    const std::vector<WindowInfo> windows = {{"SecurityAgent", 10, {{100, 50}, {200, 100}}}};
    EXPECT_TRUE(checkProtectionArea(windows, {100, 51}, owners));
    EXPECT_TRUE(checkProtectionArea(windows, {299, 150}, owners));
    EXPECT_FALSE(checkProtectionArea(windows, {299, 151}, owners));
    EXPECT_FALSE(checkProtectionArea(windows, {100, 50}, owners));
    EXPECT_FALSE(checkProtectionArea(windows, {100, 849}, owners));
    EXPECT_FALSE(checkProtectionArea({{{"securityagent", 10, {{100, 50}, {200, 100}}}}}, {100, 51}, owners));
}

TEST(CursorAlternatives, TheNameItselfIsTriedFirst) {
    EXPECT_EQ(cursorAlternatives("hand2")[0], "hand2");
    EXPECT_EQ(cursorAlternatives("hand2")[1], "pointer");
    EXPECT_EQ(cursorAlternatives("xterm").size(), 3u);
}

TEST(CursorAlternatives, ANameThatNoThemeHasHasNone) {
    EXPECT_TRUE(cursorAlternatives("").empty());
    EXPECT_FALSE(isThemeCursorName("glyph 68"));
    EXPECT_TRUE(isThemeCursorName("sb_v_double_arrow"));
}

TEST(CursorAlternatives, NoShapeStandsInForAnArrowOrAnIBeam) {
    for (const auto name : cursorAlternatives("xterm"))
        EXPECT_TRUE(name == "xterm" || name == "text" || name == "ibeam") << name;
    for (const auto name : cursorAlternatives("left_ptr"))
        EXPECT_TRUE(name == "left_ptr" || name == "default" || name == "arrow" || name == "top_left_arrow" ||
                    name == "left-arrow")
            << name;
}

TEST(CursorAlternatives, TheFilesOfARegistrationAreTriedInTheSameOrder) {
    for (const CursorIdentifierRow& row : cursorIdentifiers()) {
        const auto names = cursorAlternatives(row.candidates()[0]);
        auto at = names.begin();
        for (const std::string_view file : row.candidates()) {
            at = std::find(at, names.end(), file);
            ASSERT_NE(at, names.end()) << row.identifier << " " << file;
        }
    }
}

TEST(CursorAlternatives, AHandThatGrabsIsNotOneThatPoints) {
    EXPECT_EQ(cursorAlternatives("hand1")[1], "grab");
    for (const auto name : cursorAlternatives("hand1")) EXPECT_NE(name, "pointer");
}

TEST(CursorAlternatives, NamesThatToolkitsAddBelongToTheirShape) {
    EXPECT_EQ(cursorAlternatives("dnd-move")[1], "move");
    EXPECT_EQ(cursorAlternatives("circle")[1], "not-allowed");
    EXPECT_EQ(cursorAlternatives("size-hor")[1], "size_hor");
}

}  // namespace
}  // namespace pintle
