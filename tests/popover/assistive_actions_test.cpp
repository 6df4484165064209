// What assistive programs can do with the popover: by the actions and values of its tree, without a key or a
// pointer.
#include <gtest/gtest.h>

#include <vector>

#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

struct AssistiveActionsTest : PopoverWorld {
    AssistiveActionsTest() { appearance.become({.reducedMotion = true}); }
    static QAccessibleInterface* below(QAccessibleInterface* at, QAccessible::Role role, const QString& name,
                                       bool shown) {
        if (!at || (shown && at->state().invisible)) return nullptr;
        if (at->role() == role && at->text(QAccessible::Name) == name) return at;
        for (int i = 0; i < at->childCount(); ++i)
            if (auto* const found = below(at->child(i), role, name, shown)) return found;
        return nullptr;
    }
    QAccessibleInterface* find(QAccessible::Role role, const char* name, bool shown = true) const {
        return below(QAccessible::queryAccessibleInterface(view), role, name, shown);
    }
    static void act(QAccessibleInterface* on,
                    const QString& action = QAccessibleActionInterface::pressAction()) {
        ASSERT_NE(on, nullptr);
        ASSERT_TRUE(on->actionInterface()->actionNames().contains(action)) << action.toStdString();
        on->actionInterface()->doAction(action);
        settle();
    }
    std::vector<QAccessibleInterface*> rows() const {
        std::vector<QAccessibleInterface*> found;
        auto* const list = find(QAccessible::List, "Themes");
        for (int i = 0; list && i < list->childCount(); ++i)
            if (list->child(i)->role() == QAccessible::ListItem) found.push_back(list->child(i));
        return found;
    }
    static QQuickItem* itemOf(QAccessibleInterface* at) { return qobject_cast<QQuickItem*>(at->object()); }
};

TEST_F(AssistiveActionsTest, APressOnAButtonDoesWhatItSays) {
    install(ModelWorld::ice);
    world.start();
    world.settings.setCursorScale(1.25);
    world.applyNow(ModelWorld::ice);
    show();
    act(find(QAccessible::Button, "Reset"));
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.0);
    act(find(QAccessible::Button, "System Default"));
    EXPECT_FALSE(world.viewModel->currentTheme().has_value());
}

TEST_F(AssistiveActionsTest, APressChoosesAFilter) {
    for (const auto& action :
         {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()}) {
        if (!view) show();
        act(find(QAccessible::RadioButton, "Left"), action);
        EXPECT_TRUE(find(QAccessible::RadioButton, "Left")->state().checked) << action.toStdString();
        EXPECT_FALSE(find(QAccessible::RadioButton, "All")->state().checked);
        act(find(QAccessible::RadioButton, "All"), action);
        EXPECT_TRUE(find(QAccessible::RadioButton, "All")->state().checked) << action.toStdString();
        EXPECT_FALSE(find(QAccessible::RadioButton, "Left")->state().checked);
    }
}

TEST_F(AssistiveActionsTest, TheSliderTakesAValueAndRoundsItToAStep) {
    show();
    auto* const slider = find(QAccessible::Slider, "Cursor Size")->valueInterface();
    slider->setCurrentValue(1.25);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.25);
    slider->setCurrentValue(1.11);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.1);
    EXPECT_DOUBLE_EQ(slider->currentValue().toDouble(), 1.1);
    slider->setCurrentValue(1.12);
    EXPECT_DOUBLE_EQ(slider->currentValue().toDouble(), 1.1);
    act(find(QAccessible::Slider, "Cursor Size"), QAccessibleActionInterface::increaseAction());
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.15);
}

TEST_F(AssistiveActionsTest, AStoredSizeOutsideOfTheRangeIsNotWrittenBack) {
    world.start();
    world.settings.setCursorScale(2.5);
    show();
    EXPECT_DOUBLE_EQ(find(QAccessible::Slider, "Cursor Size")->valueInterface()->currentValue().toDouble(),
                     1.5);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 2.5);
}

TEST_F(AssistiveActionsTest, ADisabledSliderKeepsItsValue) {
    show(PopoverModel::Session::pointerCannotChange);
    auto* const slider = find(QAccessible::Slider, "Cursor Size")->valueInterface();
    slider->setCurrentValue(1.25);
    EXPECT_DOUBLE_EQ(slider->currentValue().toDouble(), 1.0);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.0);
}

TEST_F(AssistiveActionsTest, ARowBeyondTheEdgeThatIsGivenTheFocusIsMarkedAndBroughtIntoSight) {
    show();
    auto* const last = itemOf(rows().back());
    ASSERT_FALSE(isInSight(last));
    act(rows().back(), QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(last->property("visualFocus").toBool());
    EXPECT_TRUE(isInSight(last));
}

TEST_F(AssistiveActionsTest, ADeleteButtonActsWhereItIsShownAlone) {
    install(ModelWorld::ice);
    world.start();
    show();
    auto* const hidden = find(QAccessible::Button, "Delete downloaded theme", false);
    ASSERT_NE(hidden, nullptr);
    EXPECT_EQ(find(QAccessible::Button, "Delete downloaded theme"), nullptr);
    auto* const row = find(QAccessible::ListItem, "Bibata Modern Ice");
    ASSERT_NE(row, nullptr);
    act(below(row, QAccessible::Button, "Delete downloaded theme", false));
    EXPECT_TRUE(world.theme(ModelWorld::ice).isDownloaded);
    act(row, QAccessibleActionInterface::setFocusAction());
    act(find(QAccessible::Button, "Delete downloaded theme"));
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.theme(ModelWorld::ice).isDownloaded);
}

}  // namespace
}  // namespace pintle
