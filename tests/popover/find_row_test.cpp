#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

struct FindRowTest : PopoverWorld {
    std::string chip() const {
        const auto* const shown = item("findChip");
        if (!shown->isVisible()) return {};
        return QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(shown))
            ->text(QAccessible::Name)
            .toStdString();
    }
    std::size_t taps() const { return world.linesOf({"[UI] BUTTON ACTION FIRED"}).size(); }
};

TEST_F(FindRowTest, TypingGoesToTheFirstRowWhoseNameContainsTheText) {
    show();
    type("zebra");
    EXPECT_EQ(chip(), "zebra");
    EXPECT_EQ(focused(), "Bibata Zebra Modern");
    EXPECT_TRUE(isInSight(view->activeFocusItem()));
}

TEST_F(FindRowTest, ABlankBelongsToTheSearchWhileItStandsAndTapsTheRowOtherwise) {
    show();
    type("dot b");
    EXPECT_EQ(focused(), "Google Dot Black");
    EXPECT_EQ(taps(), 0u);
    press(Qt::Key_Escape);
    EXPECT_EQ(chip(), "");
    type(" ");
    EXPECT_EQ(taps(), 1u);
}

TEST_F(FindRowTest, BackspaceShortensAndEscapeClearsFirstAndClosesSecond) {
    show();
    type("lil");
    press(Qt::Key_Backspace);
    EXPECT_EQ(chip(), "li");
    EXPECT_EQ(focused(), "XCursor Pro Light");
    press(Qt::Key_Escape);
    EXPECT_EQ(chip(), "");
    EXPECT_TRUE(view->isVisible());
    press(Qt::Key_Escape);
    EXPECT_FALSE(view->isVisible());
}

TEST_F(FindRowTest, ATextThatNoNameContainsLeavesTheRowWhereItIs) {
    show();
    type("amb");
    const auto before = focused();
    type("q");
    EXPECT_EQ(chip(), "ambq");
    EXPECT_EQ(focused(), before);
}

TEST_F(FindRowTest, ArrowsTapsAndTheNextStopEndTheSearch) {
    show();
    type("banana");
    press(Qt::Key_Down);
    EXPECT_EQ(chip(), "");
    EXPECT_EQ(focused(), "Banana Blue");
    type("red");
    press(Qt::Key_Tab);
    EXPECT_EQ(chip(), "");
}

TEST_F(FindRowTest, TheDeleteButtonOfTheFoundRowEndsTheSearch) {
    // Without waiting for the button to fade in.
    appearance.become({.reducedMotion = true});
    install(ModelWorld::ice);
    show();
    type("modern ice");
    EXPECT_EQ(focused(), "Bibata Modern Ice");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Delete downloaded theme");
    EXPECT_EQ(chip(), "");
}

TEST_F(FindRowTest, KeysThatWriteNothingAndCommandsAreNotTyped) {
    show();
    type("b");
    press(Qt::Key_Shift);
    EXPECT_EQ(chip(), "b");
    press(Qt::Key_C, "c", Qt::ControlModifier);
    EXPECT_EQ(chip(), "b");
}

TEST_F(FindRowTest, AnotherFilterEndsTheSearch) {
    show();
    type("b");
    model->select(CursorHandedness::leftHanded);
    settle();
    EXPECT_EQ(chip(), "");
}

TEST_F(FindRowTest, PagesAndEndsKeepTheCurrentRowInSight) {
    show();
    press(Qt::Key_Home);
    const auto first = focused();
    press(Qt::Key_PageDown);
    EXPECT_NE(focused(), first);
    EXPECT_TRUE(isInSight(view->activeFocusItem()));
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "Lilith");
    EXPECT_TRUE(isInSight(view->activeFocusItem()));
    press(Qt::Key_PageUp);
    EXPECT_TRUE(isInSight(view->activeFocusItem()));
    press(Qt::Key_Home);
    EXPECT_EQ(focused(), first);
}

TEST_F(FindRowTest, TheRowInUseIsInSightAtOpening) {
    install(ModelWorld::banana);
    world.start();
    world.applyNow(ModelWorld::banana);
    show();
    const auto* const row = [&]() -> QQuickItem* {
        for (auto* each : item("themeList")->property("contentItem").value<QQuickItem*>()->childItems())
            if (each->property("name").toString() == "Banana") return each;
        return nullptr;
    }();
    ASSERT_NE(row, nullptr);
    EXPECT_TRUE(isInSight(row));
}

}  // namespace
}  // namespace pintle
