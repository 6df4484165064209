// The windows by the actions, values and texts that assistive programs have, without a key or a pointer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/typed_defaults.h"
#include "tests/quick/window_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;

struct AssistiveWindowsTest : testing::Test {
    WindowWorld world{{.blendsWindows = true, .reducedMotion = true, .fontFamily = "Inter"}};
    QQuickView* view = nullptr;

    void show() {
        view = world.show(WindowContent::settings);
        ASSERT_NE(view, nullptr);
    }
    QAccessibleInterface* find(const char* name, QAccessible::Role role) const {
        return accessibleNamed(*view, name, role).interface;
    }
    static void act(QAccessibleInterface* on,
                    const QString& action = QAccessibleActionInterface::pressAction()) {
        ASSERT_NE(on, nullptr);
        ASSERT_TRUE(on->actionInterface()->actionNames().contains(action)) << action.toStdString();
        on->actionInterface()->doAction(action);
        QCoreApplication::processEvents();
    }
    CursorSettings& settings() { return world.world.settings; }
};

TEST_F(AssistiveWindowsTest, APressAndAToggleFlipASetting) {
    show();
    auto* const row = find("Restore System Cursor on Quit", QAccessible::CheckBox);
    act(row);
    EXPECT_TRUE(boolValue(world.world.store, CursorSettings::restoreOnQuitKey));
    EXPECT_TRUE(row->state().checked);
    act(row, QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(boolValue(world.world.store, CursorSettings::restoreOnQuitKey));
    EXPECT_FALSE(row->state().checked);
}

TEST_F(AssistiveWindowsTest, APressAndAToggleChooseASize) {
    show();
    act(find("125%", QAccessible::RadioButton));
    EXPECT_DOUBLE_EQ(settings().cursorScale(), 1.25);
    EXPECT_TRUE(find("125%", QAccessible::RadioButton)->state().checked);
    act(find("100%", QAccessible::RadioButton), QAccessibleActionInterface::toggleAction());
    EXPECT_DOUBLE_EQ(settings().cursorScale(), 1.0);
    EXPECT_FALSE(find("125%", QAccessible::RadioButton)->state().checked);
}

TEST_F(AssistiveWindowsTest, TheOpacityTakesAValue) {
    show();
    settings().setGlassMode(true);
    auto* const slider = find("Glass Opacity", QAccessible::Slider);
    ASSERT_NE(slider, nullptr);
    slider->valueInterface()->setCurrentValue(0.85);
    EXPECT_DOUBLE_EQ(settings().glassOpacity(), 0.85);
}

TEST_F(AssistiveWindowsTest, AnApplicationIsExcludedByATextAndAPressAndRemovedByAPress) {
    show();
    act(find("Add app to exclusion list", QAccessible::Button));
    auto* const field = find("App name (e.g., Safari)", QAccessible::EditableText);
    ASSERT_NE(field, nullptr);
    field->setText(QAccessible::Value, " Solitaire ");
    act(field);
    EXPECT_THAT(settings().excludedApps(), ElementsAre("Solitaire"));
    act(find("Remove Solitaire", QAccessible::Button));
    EXPECT_TRUE(settings().excludedApps().empty());
}

TEST_F(AssistiveWindowsTest, AFieldThatOpensBeyondTheEdgeComesIntoSight) {
    view = world.show(WindowContent::settings, {480, 400});
    ASSERT_NE(view, nullptr);
    act(find("Add app to exclusion list", QAccessible::Button));
    EXPECT_TRUE(WindowWorld::until([this] {
        const auto place = accessibleNamed(*view, "App name (e.g., Safari)", QAccessible::EditableText).place;
        return place.height() >= 32 && place.bottom() <= view->height();
    }));
}

TEST_F(AssistiveWindowsTest, AnAlertIsAnsweredByAPress) {
    view = world.show(
        Alert{.message = "Reset?", .informativeText = "All of it.", .buttons = {"Reset", "Cancel"}});
    ASSERT_NE(view, nullptr);
    act(find("Cancel", QAccessible::Button));
    EXPECT_THAT(world.chosen, ElementsAre(1));
}

}  // namespace
}  // namespace pintle
