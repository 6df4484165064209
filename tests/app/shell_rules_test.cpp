// The pure pieces of the shell: the menu, the places of windows, and which activation belongs to which press.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/context_menu.h"
#include "app/popover_dismissal.h"
#include "app/window_placement.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;

TEST(ContextMenuTest, HoldsItsItemsInTheirOrderWithTheirKeysAndCommands) {
    std::string ran;
    const auto menu = makeContextMenu({[&] { ran += "settings "; }, [&] { ran += "about "; },
                                       [&] { ran += "updates "; }, [&] { ran += "quit"; }});
    struct Row {
        const char* title;
        const char* key;
        bool separator;
    };
    const Row expected[] = {{"Settings...", ",", false},
                            {"About Pintle", "", false},
                            {"Check for Updates...", "", false},
                            {"", "", true},
                            {"Quit Pintle", "q", false}};
    ASSERT_EQ(menu.items.size(), std::size(expected));
    for (std::size_t i = 0; i < menu.items.size(); ++i) {
        EXPECT_EQ(menu.items[i].title, expected[i].title);
        EXPECT_EQ(menu.items[i].keyEquivalent, expected[i].key);
        EXPECT_EQ(menu.items[i].isSeparator, expected[i].separator);
        if (menu.items[i].action) menu.items[i].action();
    }
    EXPECT_EQ(ran, "settings about updates quit");
}

constexpr Size kSettings{480, 760};
constexpr Size kAbout{300, 480};
const ScreenArea kMain{{{0, 0}, {1920, 1080}}, {{0, 30}, {1920, 1020}}};
const ScreenArea kRight{{{1920, 200}, {1280, 800}}, {{1920, 200}, {1280, 776}}};

Placement at(const Rect& button, PlacementPolicy policy) {
    return {policy, true, true, button, std::nullopt, {kMain, kRight}};
}

TEST(WindowPlacementTest, HangsFivePointsBelowAnItemInTheUpperHalfCentredOnIt) {
    struct Row {
        Size size;
        Rect button;
        Point origin;
    };
    const Row rows[] = {
        {kAbout, {{1000, 1056}, {24, 24}}, {862, 571}},
        {kSettings, {{1000, 1056}, {24, 24}}, {772, 291}},
        {kSettings, {{1001, 1056}, {25, 24}}, {773.5, 291}},
        {kSettings, {{1890, 1056}, {24, 24}}, {1662, 291}},
        {{300, 1200}, {{1000, 1056}, {24, 24}}, {862, -149}},
        {kAbout, {{3150, 976}, {24, 24}}, {3012, 491}},
        {kAbout, {{1000, 540}, {0, 0}}, {850, 55}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(placeUnderStatusItem(row.size, at(row.button, PlacementPolicy::asComputed)),
                  (Rect{row.origin, row.size}))
            << row.button.origin.x << "," << row.button.origin.y;
}

TEST(WindowPlacementTest, StandsFivePointsAboveAnItemInTheLowerHalf) {
    const Rect button{{1000, 3}, {24, 24}};
    EXPECT_EQ(placeUnderStatusItem(kAbout, at(button, PlacementPolicy::asComputed)),
              (Rect{{862, 32}, kAbout}));
    EXPECT_EQ(placeUnderStatusItem(kAbout, at(button, PlacementPolicy::insideWorkArea)),
              (Rect{{862, 32}, kAbout}));
    const Rect onTheLowScreen{{2000, 210}, {24, 24}};
    EXPECT_EQ(placeUnderStatusItem(kAbout, at(onTheLowScreen, PlacementPolicy::asComputed)),
              (Rect{{1862, 239}, kAbout}))
        << "the half is that of the item's own screen";
}

TEST(WindowPlacementTest, EndsInsideTheWorkAreaOfTheItemsScreenWhereTheDesktopAsksForIt) {
    struct Row {
        Size size;
        Rect button;
        Rect frame;
    };
    const Row rows[] = {
        {kAbout, {{1000, 1056}, {24, 24}}, {{862, 570}, kAbout}},
        {kAbout, {{1890, 1056}, {24, 24}}, {{1612, 570}, kAbout}},
        {kAbout, {{5, 1056}, {24, 24}}, {{8, 570}, kAbout}},
        {{480, 1200}, {{1000, 1056}, {24, 24}}, {{772, 30}, {480, 1020}}},
        {{2000, 400}, {{1000, 1056}, {24, 24}}, {{0, 650}, {1920, 400}}},
        {kAbout, {{3170, 978}, {20, 20}}, {{2892, 493}, kAbout}},
        {kAbout, {{1925, 978}, {20, 20}}, {{1928, 493}, kAbout}},
        {{480, 900}, {{2500, 210}, {20, 20}}, {{2270, 200}, {480, 776}}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(placeUnderStatusItem(row.size, at(row.button, PlacementPolicy::insideWorkArea)), row.frame)
            << row.button.origin.x << "," << row.button.origin.y;
}

TEST(WindowPlacementTest, AnItemOutsideOfEveryScreenBelongsToTheNearestOne) {
    const Rect button{{5000, 900}, {24, 24}};
    EXPECT_EQ(placeUnderStatusItem(kAbout, at(button, PlacementPolicy::insideWorkArea)),
              (Rect{{2892, 415}, kAbout}));
}

TEST(WindowPlacementTest, WithoutAButtonItStandsInTheMiddle) {
    Placement placement;
    placement.screens = {kMain, kRight};
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{810, 300}, kAbout}));
    placement.policy = PlacementPolicy::insideWorkArea;
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{810, 300}, kAbout}));
    EXPECT_EQ(placeUnderStatusItem({300, 2000}, placement), (Rect{{810, 30}, {300, 1020}}));
    placement.screens.clear();
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{0, 0}, kAbout}));
}

TEST(WindowPlacementTest, AButtonInNoWindowIsAZeroRectangleWhereTheItemStandsInAWindow) {
    Placement placement{PlacementPolicy::asComputed, true, true, std::nullopt, Point{900, 900}, {kMain}};
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{-150, -485}, kAbout}));
}

TEST(WindowPlacementTest, WhereTheHostReportsNoFrameThePlaceOfTheClickStandsForTheItem) {
    Placement placement{PlacementPolicy::insideWorkArea, true, true, std::nullopt, Point{900, 1070}, {kMain}};
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{750, 570}, kAbout}));
    placement.lastClick = Point{900, 10};
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{750, 30}, kAbout}));
    placement.screens = {kMain, kRight};
    placement.lastClick = Point{3190, 990};
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{2892, 496}, kAbout}))
        << "on the pointer's screen";
}

TEST(WindowPlacementTest, WithoutAFrameAndWithoutAClickOrATrayItStandsInTheMiddleOfTheMainWorkArea) {
    Placement placement{PlacementPolicy::insideWorkArea, true, true, std::nullopt, std::nullopt, {kMain}};
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{810, 300}, kAbout}));
    placement.lastClick = Point{900, 1070};
    placement.hasBar = false;
    EXPECT_EQ(placeUnderStatusItem(kAbout, placement), (Rect{{810, 300}, kAbout}));
}

struct DismissalTest : testing::Test {
    PopoverDismissal dismissal;
    static constexpr auto kLeft = GlobalMouseDown::Button::left;

    static StatusItemEvent left(std::optional<std::uint64_t> press = std::nullopt) {
        return {StatusItemEventType::leftMouseUp, press};
    }
};

TEST_F(DismissalTest, WithoutAClosingPressNothingIsDropped) {
    EXPECT_FALSE(dismissal.drops(left(), 0s));
    EXPECT_FALSE(dismissal.drops(left(1), 0s));
    dismissal.pressed({kLeft, 1}, false, 0s);
    EXPECT_FALSE(dismissal.drops(left(1), 0s));
    EXPECT_FALSE(dismissal.drops(left(), 0s));
}

TEST_F(DismissalTest, TheActivationWithTheNumberOfTheClosingPressIsDroppedHoweverLateItComes) {
    dismissal.pressed({kLeft, 7}, true, 0s);
    EXPECT_TRUE(dismissal.drops(left(7), 60s));
}

TEST_F(DismissalTest, AnActivationWithAnotherNumberIsNotDropped) {
    dismissal.pressed({kLeft, 7}, true, 0s);
    EXPECT_FALSE(dismissal.drops(left(8), 0s));
    EXPECT_FALSE(dismissal.drops(left(7), 0s)) << "one newer than the closing press ends its time";
}

TEST_F(DismissalTest, ALateActivationOfAnEarlierPressTakesNothingFromTheClosingOne) {
    dismissal.pressed({kLeft, 7}, true, 0s);
    EXPECT_FALSE(dismissal.drops(left(6), 0s));
    EXPECT_TRUE(dismissal.drops(left(7), 0s));
}

TEST_F(DismissalTest, OnlyOneActivationIsDropped) {
    dismissal.pressed({kLeft, 7}, true, 0s);
    EXPECT_TRUE(dismissal.drops(left(7), 0s));
    EXPECT_FALSE(dismissal.drops(left(7), 0s));
    dismissal.pressed({kLeft, 8}, true, 0s);
    EXPECT_TRUE(dismissal.drops(left(), 0s));
    EXPECT_FALSE(dismissal.drops(left(), 0s));
}

TEST_F(DismissalTest, AnActivationWithoutANumberBelongsToTheClosingPressForOneSecond) {
    dismissal.pressed({kLeft, 7}, true, 10s);
    EXPECT_TRUE(dismissal.drops(left(), 11s));
    dismissal.pressed({kLeft, 8}, true, 10s);
    EXPECT_FALSE(dismissal.drops(left(), 11s + 1ns));
}

TEST_F(DismissalTest, ANewerPressEndsTheTimeOfTheClosingOne) {
    for (const auto button : {GlobalMouseDown::Button::left, GlobalMouseDown::Button::right}) {
        dismissal.pressed({kLeft, 7}, true, 0s);
        dismissal.pressed({button, 8}, false, 0s);
        EXPECT_FALSE(dismissal.drops(left(), 0s));
        EXPECT_FALSE(dismissal.drops(left(7), 0s));
    }
}

TEST_F(DismissalTest, APressOfTheRightButtonDropsNothing) {
    dismissal.pressed({GlobalMouseDown::Button::right, 7}, true, 0s);
    EXPECT_FALSE(dismissal.drops(left(), 0s));
    EXPECT_FALSE(dismissal.drops(left(7), 0s));
}

TEST_F(DismissalTest, OnlyLeftClicksAreDropped) {
    dismissal.pressed({kLeft, 7}, true, 0s);
    EXPECT_FALSE(dismissal.drops({StatusItemEventType::rightMouseUp, 7}, 0s));
    EXPECT_FALSE(dismissal.drops({StatusItemEventType::other, 7}, 0s));
    EXPECT_TRUE(dismissal.drops(left(7), 0s)) << "which still waits for its own";
}

}  // namespace
}  // namespace pintle
