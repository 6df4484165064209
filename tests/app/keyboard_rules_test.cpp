#include <gtest/gtest.h>

#include "app/alert_focus.h"
#include "app/list_keys.h"

namespace pintle {
namespace {

using Act = ListAnswer::Act;

TEST(ListKeys, WithoutAMarkNoKeyActsOnARow) {
    for (const auto key : {ListKey::tap, ListKey::remove})
        EXPECT_EQ(answerKey(key, {.marked = {}, .entry = 3, .count = 10}), (ListAnswer{}));
}

TEST(ListKeys, TheFirstArrowMarksTheEntryAndSkipsNoRow) {
    for (const auto key : {ListKey::down, ListKey::up, ListKey::pageDown, ListKey::pageUp})
        EXPECT_EQ(answerKey(key, {.marked = {}, .entry = 3, .count = 10, .page = 5}).marked, 3);
    EXPECT_EQ(answerKey(ListKey::down, {.count = 10}).marked, 0);
}

TEST(ListKeys, ArrowsAndPagesMoveTheMarkWithinTheList) {
    const ListMark list{.marked = 3, .entry = 0, .count = 10, .page = 5};
    EXPECT_EQ(answerKey(ListKey::down, list).marked, 4);
    EXPECT_EQ(answerKey(ListKey::up, list).marked, 2);
    EXPECT_EQ(answerKey(ListKey::pageDown, list).marked, 8);
    EXPECT_EQ(answerKey(ListKey::pageUp, list).marked, 0);
    EXPECT_EQ(answerKey(ListKey::home, list).marked, 0);
    EXPECT_EQ(answerKey(ListKey::end, list).marked, 9);
    EXPECT_EQ(answerKey(ListKey::down, {.marked = 9, .count = 10}).marked, 9);
}

TEST(ListKeys, AKeyActsOnTheMarkedRow) {
    EXPECT_EQ(answerKey(ListKey::tap, {.marked = 2, .count = 10}), (ListAnswer{2, Act::tap}));
    EXPECT_EQ(answerKey(ListKey::remove, {.marked = 2, .count = 10}), (ListAnswer{2, Act::remove}));
}

TEST(ListKeys, AMarkOutOfSightIsBroughtBackBeforeAnythingIsDone) {
    EXPECT_EQ(answerKey(ListKey::remove, {.marked = 2, .count = 10, .inSight = false}),
              (ListAnswer{2, Act::none}));
}

TEST(ListKeys, AnEmptyListAnswersNoKey) {
    EXPECT_EQ(answerKey(ListKey::down, {}), (ListAnswer{}));
    EXPECT_EQ(answerKey(ListKey::tap, {.marked = 4, .count = 2}), (ListAnswer{}));
}

TEST(AlertFocus, AnAlertThatDestroysStartsOnTheButtonThatLeavesEverythingAsItIs) {
    EXPECT_EQ(buttonWithKeyboard({AlertStyle::warning, "", "", {"Reset & Quit", "Cancel"}}), 1);
    EXPECT_EQ(buttonWithKeyboard({AlertStyle::informational, "", "", {"Download", "Later"}}), 0);
    EXPECT_EQ(buttonWithKeyboard({AlertStyle::warning, "", "", {"OK"}}), 0);
    EXPECT_EQ(buttonWithKeyboard({AlertStyle::informational, "", "", {}}), 0);
}

}  // namespace
}  // namespace pintle
