// The drawn pointer and the cursor objects of this process.
#include "platform/mac/mac_hardware_cursor.h"
#include "platform/mac/mac_pointer.h"
#include "tests/mac/fake/fake_test.h"

namespace pintle {
namespace {

using mac_fake::ProcessCursor;
using mac_fake::world;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(MacPointer, ShowsAndHidesOnTheDisplayThatIsNamed) {
    const auto pointer = makeMacPointer();
    pointer->show(7);
    pointer->hide(7);
    for (int i = 0; i < 10; ++i) pointer->show(1);
    EXPECT_EQ(world().pointerCalls.size(), 12U);
    EXPECT_EQ(world().pointerCalls[0], "show 7");
    EXPECT_EQ(world().pointerCalls[1], "hide 7");
    EXPECT_EQ(world().pointerCalls[11], "show 1");
}

TEST(MacPointer, AnErrorOfTheDisplayIsPassedOver) {
    world().failing = {"CGDisplayShowCursor", "CGDisplayHideCursor"};
    const auto pointer = makeMacPointer();
    pointer->hide(1);
    pointer->show(1);
    EXPECT_THAT(world().pointerCalls, ElementsAre("hide 1", "show 1"));
}

TEST(MacPointer, TheRecoveryShowsThePointerOnTheMainDisplayOnce) {
    world().mainDisplay = 69;
    showPointerOnMainDisplay();
    EXPECT_THAT(world().pointerCalls, ElementsAre("show 69"));
}

TEST(MacPointer, TheConnectionMayChangeTheCursorInTheBackground) {
    EXPECT_TRUE(makeMacPointer()->setsCursorInBackground());
    EXPECT_THAT(world().connectionProperties,
                ElementsAre(std::tuple(4711U, 4711U, std::string("SetsCursorInBackground"), true)));
}

TEST(MacPointer, EachPrivateFunctionMayBeMissingByItself) {
    for (const char* missing : {"CGSSetConnectionProperty", "CGSMainConnectionID", "CGSCurrentCursorSeed",
                                "CGSIsScreenWatcherPresent"})
        IN_A_NEW_PROCESS([&] {
            const std::string name = missing;
            world().missingFunctions = {{"CoreGraphics", name}, {"ApplicationServices", name}};
            world().systemCursor = ProcessCursor{picture(4, 4), {4, 4}, {1, 1}};
            const auto pointer = makeMacPointer();
            const bool property = name == "CGSSetConnectionProperty" || name == "CGSMainConnectionID";
            EXPECT_EQ(pointer->setsCursorInBackground(), !property);
            EXPECT_EQ(world().connectionProperties.size(), property ? 0U : 1U);
            EXPECT_EQ(pointer->currentCursorSeed().has_value(), name != "CGSCurrentCursorSeed");
            EXPECT_EQ(pointer->isScreenWatcherPresent().has_value(), name != "CGSIsScreenWatcherPresent");
            // Without the seed the cursor is read at each question.
            EXPECT_TRUE(pointer->currentSystemCursor());
            EXPECT_TRUE(pointer->currentSystemCursor());
            EXPECT_EQ(world().systemCursorReadings, name == "CGSCurrentCursorSeed" ? 2 : 1);
        });
}

TEST(MacPointer, TheSeedAndTheScreenWatcherAreAskedEachTime) {
    const auto pointer = makeMacPointer();
    EXPECT_EQ(pointer->currentCursorSeed(), 5);
    world().cursorSeed = -6;
    EXPECT_EQ(pointer->currentCursorSeed(), -6);
    EXPECT_EQ(pointer->isScreenWatcherPresent(), false);
    world().screenWatched = true;
    EXPECT_EQ(pointer->isScreenWatcherPresent(), true);
}

TEST(MacPointer, TheSystemCursorIsReadAgainOnlyWhenTheSeedHasChanged) {
    const auto pointer = makeMacPointer();
    world().systemCursor = ProcessCursor{picture(8, 8, 1), {8, 8}, {2.5, 3}};
    const auto first = pointer->currentSystemCursor();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->image, picture(8, 8, 1));
    EXPECT_EQ(first->hotspot, (Point{2.5, 3}));
    EXPECT_FALSE(first->name);
    world().systemCursor = ProcessCursor{picture(8, 8, 2), {8, 8}, {0, 0}};
    EXPECT_EQ(pointer->currentSystemCursor()->image, picture(8, 8, 1));
    ++world().cursorSeed;
    EXPECT_EQ(pointer->currentSystemCursor()->image, picture(8, 8, 2));
    EXPECT_EQ(world().systemCursorReadings, 2);
}

TEST(MacPointer, ACursorThatChangesWhileItIsReadIsReadAgainUnderTheNewSeed) {
    const auto pointer = makeMacPointer();
    world().systemCursor = ProcessCursor{picture(8, 8, 1), {8, 8}, {0, 0}};
    // Changes between the question for the seed and the reading of the picture, which still brings the old
    // one: the other order would keep the old picture under the new seed.
    world().whileSystemCursorIsRead = [] {
        world().systemCursor = ProcessCursor{picture(8, 8, 2), {8, 8}, {0, 0}};
        ++world().cursorSeed;
    };
    EXPECT_EQ(pointer->currentSystemCursor()->image, picture(8, 8, 1));
    world().whileSystemCursorIsRead = nullptr;
    EXPECT_EQ(pointer->currentSystemCursor()->image, picture(8, 8, 2));
}

TEST(MacPointer, ASystemCursorNeverHasANameAndASeedThatIsAskedFirstBelongsToNoNewerPicture) {
    const auto pointer = makeMacPointer();
    world().systemCursor = ProcessCursor{picture(8, 8, 1), {8, 8}, {0, 0}};
    const auto seed = pointer->currentCursorSeed();
    world().whileSystemCursorIsRead = [] {
        world().systemCursor = ProcessCursor{picture(8, 8, 2), {8, 8}, {0, 0}};
        ++world().cursorSeed;
    };
    EXPECT_FALSE(pointer->currentSystemCursor()->name);
    world().whileSystemCursorIsRead = nullptr;
    // Whoever keeps the picture under the seed from before sees that it is out of date.
    EXPECT_NE(pointer->currentCursorSeed(), seed);
}

TEST(MacPointer, NoSystemCursorIsAbsentAndAskedForAgain) {
    const auto pointer = makeMacPointer();
    EXPECT_FALSE(pointer->currentSystemCursor());
    world().systemCursor = ProcessCursor{std::nullopt, {8, 8}, {0, 0}};
    EXPECT_FALSE(pointer->currentSystemCursor());
    world().systemCursor = ProcessCursor{picture(8, 8), {8, 8}, {0, 0}};
    EXPECT_TRUE(pointer->currentSystemCursor());
}

TEST(MacPointer, APictureOfHigherResolutionIsDrawnAtOnePixelAPoint) {
    const auto pointer = makeMacPointer();
    world().systemCursor = ProcessCursor{picture(48, 48), {24, 24}, {4, 4}};
    const auto cursor = pointer->currentSystemCursor();
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->image.width(), 24);
    EXPECT_EQ(cursor->image.height(), 24);
}

TEST(MacPointer, APartOfAPointCountsAsAWholePixelAndAnEmptyCursorIsAbsent) {
    const auto pointer = makeMacPointer();
    world().systemCursor = ProcessCursor{picture(9, 9), {8.25, 9}, {0, 0}};
    EXPECT_EQ(pointer->currentSystemCursor()->image.width(), 9);
    ++world().cursorSeed;
    world().systemCursor = ProcessCursor{picture(9, 9), {0, 9}, {0, 0}};
    EXPECT_FALSE(pointer->currentSystemCursor());
}

TEST(MacPointer, StandardCursorsKeepTheirOrderAndThoseThatCannotBeDrawnAreLeftOut) {
    world().standardCursors = {{"left_ptr", {picture(8, 8, 1), {8, 8}, {}}},
                               {"xterm", {std::nullopt, {8, 8}, {}}},
                               {"crosshair", {picture(8, 8, 3), {8, 8}, {}}}};
    const auto cursors = makeMacPointer()->standardCursors();
    EXPECT_THAT(cursors, ElementsAre(std::pair{std::string("left_ptr"), picture(8, 8, 1)},
                                     std::pair{std::string("crosshair"), picture(8, 8, 3)}));
}

TEST(MacPointer, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        world().systemCursor = ProcessCursor{picture(8, 8), {8, 8}, {0, 0}};
        world().standardCursors = {{"left_ptr", {picture(8, 8, 1), {8, 8}, {}}}};
        const auto pointer = makeMacPointer();
        pointer->hide(1);
        pointer->currentSystemCursor();
        pointer->standardCursors();
        pointer->show(1);
    });
}

TEST(MacHardwareCursor, ACursorIsMadeFromItsImageSizeAndHotspot) {
    const auto cursors = makeMacHardwareCursor();
    const auto cursor = cursors->makeCursor(picture(24, 32), {3.5, 4.25});
    cursors->setOriginal(cursor);
    ASSERT_EQ(world().currentCursors.size(), 1U);
    EXPECT_EQ(mac_fake::processCursor(world().currentCursors[0]),
              (ProcessCursor{picture(24, 32), {24, 32}, {3.5, 4.25}}));
}

TEST(MacHardwareCursor, WithoutAnExchangeBothWaysOfSettingAreTheDesktops) {
    const auto cursors = makeMacHardwareCursor();
    const auto arrow = cursors->standardCursor(StandardCursor::arrow);
    cursors->set(arrow);
    cursors->setOriginal(arrow);
    EXPECT_EQ(world().currentCursors.size(), 2U);
    EXPECT_EQ(world().currentCursors[0], world().currentCursors[1]);
}

TEST(MacHardwareCursor, AnExchangeThatIsRefusedChangesNothing) {
    world().canExchangeSet = false;
    const auto cursors = makeMacHardwareCursor();
    int calls = 0;
    EXPECT_FALSE(cursors->exchangeSet([&](const DesktopCursor&) { ++calls; }));
    cursors->set(cursors->standardCursor(StandardCursor::arrow));
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(world().currentCursors.size(), 1U);
}

TEST(MacHardwareCursor, AForeignSetReachesTheReplacementWithTheCursorThatItWasCalledOn) {
    const auto cursors = makeMacHardwareCursor();
    const auto own = cursors->makeCursor(picture(4, 4), {0, 0});
    cursors->set(own);
    const auto* const native = world().currentCursors.at(0);
    std::vector<DesktopCursor> replaced;
    ASSERT_TRUE(cursors->exchangeSet([&](const DesktopCursor& which) {
        replaced.push_back(which);
        cursors->setOriginal(which);
    }));
    mac_fake::setFromElsewhere(native);
    EXPECT_THAT(replaced, ElementsAre(own));
    EXPECT_THAT(world().currentCursors, ElementsAre(native, native));
}

TEST(MacHardwareCursor, AStandardCursorThatIsSetFromElsewhereIsTheKnownOne) {
    const auto cursors = makeMacHardwareCursor();
    const auto hand = cursors->standardCursor(StandardCursor::pointingHand);
    cursors->setOriginal(hand);
    std::vector<DesktopCursor> replaced;
    ASSERT_TRUE(cursors->exchangeSet([&](const DesktopCursor& which) { replaced.push_back(which); }));
    mac_fake::setFromElsewhere(world().currentCursors.at(0));
    EXPECT_THAT(replaced, ElementsAre(hand));
}

TEST(MacHardwareCursor, TheExchangeOutlivesTheObjectAndLetsEverythingPassThen) {
    auto cursors = makeMacHardwareCursor();
    const auto arrow = cursors->standardCursor(StandardCursor::arrow);
    cursors->setOriginal(arrow);
    int calls = 0;
    ASSERT_TRUE(cursors->exchangeSet([&](const DesktopCursor&) { ++calls; }));
    cursors.reset();
    mac_fake::setFromElsewhere(world().currentCursors.at(0));
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(world().currentCursors.size(), 2U);
}

}  // namespace
}  // namespace pintle
