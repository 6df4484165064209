// The settings window driven by mouse and keyboard, and what it gives to assistive programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

#include "settings/typed_defaults.h"
#include "tests/quick/window_world.h"

namespace pintle {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

ViewLook::Look plainLook() { return {.blendsWindows = true, .reducedMotion = true, .fontFamily = "Inter"}; }

struct SettingsWindowTest : testing::Test {
    explicit SettingsWindowTest(const ViewLook::Look& look = plainLook()) : world(look) {}

    WindowWorld world;
    QQuickView* view = nullptr;
    std::vector<double> announced;
    Subscription announcements = world.world.notifications.observe(
        "cursorScaleChanged",
        [this](const std::any& scale) { announced.push_back(std::any_cast<double>(scale)); });

    void show(QSize size = {}) {
        view = world.show(WindowContent::settings, size);
        ASSERT_NE(view, nullptr);
    }
    AccessibleItem accessible(const std::string& name, QAccessible::Role role = QAccessible::NoRole) const {
        return accessibleNamed(*view, name, role);
    }
    void press(const std::string& name, QPoint from = {}) const {
        const auto place = accessible(name).place;
        ASSERT_TRUE(place.isValid()) << name;
        QTest::mouseClick(view, Qt::LeftButton, {}, from.isNull() ? place.center() : place.topLeft() + from);
    }
    void type(const char* text) const {
        for (const char* character = text; *character; ++character) QTest::keyClick(view, *character);
    }
    void key(Qt::Key key) const { QTest::keyClick(view, key); }
    /// The name of what has the keyboard.
    std::string focused() const {
        for (const auto& each : accessibleItemsOf(*view))
            if (each.state.focused) return each.name;
        return "";
    }
    void tabTo(const std::string& name) const {
        for (int i = 0; i < 40 && focused() != name; ++i) key(Qt::Key_Tab);
        ASSERT_EQ(focused(), name);
    }
    bool stored(const char* toggle) const { return accessible(toggle).state.checked; }
    const std::vector<std::string>& excluded() const { return world.world.settings.excludedApps(); }
};

TEST_F(SettingsWindowTest, TheSectionsStandInTheirOrder) {
    show();
    std::vector<std::string> headings;
    for (const auto& each : accessibleItemsOf(*view))
        if (each.role == QAccessible::Heading) headings.push_back(each.name);
    EXPECT_THAT(headings,
                ElementsAre("Startup", "Behavior", "Interface Style", "Cursor Size", "Exclusions", "Reset"));
}

TEST_F(SettingsWindowTest, EachToggleReportsItsTitleItsExplanationAndItsState) {
    show();
    std::vector<std::string> seen;
    for (const auto& each : accessibleItemsOf(*view))
        if (each.role == QAccessible::CheckBox)
            seen.push_back(each.name + " | " + each.description + (each.state.checked ? " | on" : " | off"));
    EXPECT_THAT(
        seen,
        ElementsAre(
            "Launch at Login | Start Pintle when you log in | off",
            "Apply Last Cursor on Launch | Restore your cursor theme at startup | on",
            "Restore System Cursor on Quit | Reset to default when closing app | off",
            "Use Themed Cursor in Fullscreen | Keep custom cursor in fullscreen apps | off",
            "Use System Cursor for Missing Types | Show system cursor (e.g., iBeam for text) when theme "
            "doesn't have it | on",
            "System Cursor During Screen Sharing | Remote viewers see the real cursor (recommended) | on",
            "Total Glass Mode | Ultra-modern blurred transparency (macOS 2026) | on"));
}

TEST_F(SettingsWindowTest, APressAnywhereOnARowFlipsItsSettingAndNoOther) {
    show();
    press("Restore System Cursor on Quit", {3, 3});
    EXPECT_TRUE(stored("Restore System Cursor on Quit"));
    EXPECT_TRUE(boolValue(world.world.store, CursorSettings::restoreOnQuitKey));
    EXPECT_TRUE(stored("Apply Last Cursor on Launch"));
    press("Restore System Cursor on Quit", {420, 50});
    EXPECT_FALSE(stored("Restore System Cursor on Quit"));
}

TEST_F(SettingsWindowTest, SpaceAndReturnFlipTheToggleThatHasTheKeyboard) {
    show();
    tabTo("Use Themed Cursor in Fullscreen");
    key(Qt::Key_Space);
    EXPECT_TRUE(world.world.settings.alwaysUseThemedCursor());
    key(Qt::Key_Return);
    EXPECT_FALSE(world.world.settings.alwaysUseThemedCursor());
}

TEST_F(SettingsWindowTest, AnAssistiveProgramCanFlipAToggle) {
    show();
    auto* const actions = accessible("Total Glass Mode").interface->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(world.world.settings.glassMode());
}

TEST_F(SettingsWindowTest, ASettingThatIsChangedElsewhereIsShown) {
    show();
    world.world.settings.setPauseWhenScreenShared(false);
    EXPECT_FALSE(stored("System Cursor During Screen Sharing"));
    world.world.store.set(CursorSettings::launchAtLoginKey, true);
    EXPECT_TRUE(stored("Launch at Login"));
}

TEST_F(SettingsWindowTest, EachAppearanceAsksTheSystemWhetherItStartsTheProgram) {
    show();
    const auto asked = world.service.calls.size();
    EXPECT_GT(asked, 0U);
    view->hide();
    world.service.current = LoginItemStatus::enabled;
    WindowWorld::reveal(*view);
    EXPECT_GT(world.service.calls.size(), asked);
    EXPECT_TRUE(stored("Launch at Login"));
}

TEST_F(SettingsWindowTest, ASizeIsStoredAndAnnouncedTwiceAndTheChosenOneNotAtAll) {
    show();
    press("125%");
    EXPECT_EQ(world.world.settings.cursorScale(), 1.25);
    EXPECT_THAT(announced, ElementsAre(1.25, 1.25));
    EXPECT_TRUE(accessible("125%", QAccessible::RadioButton).state.checked);
    EXPECT_FALSE(accessible("100%", QAccessible::RadioButton).state.checked);
    press("125%");
    EXPECT_THAT(announced, ElementsAre(1.25, 1.25));
}

TEST_F(SettingsWindowTest, ArrowsChooseASizeAndStopAtTheEnds) {
    show();
    tabTo("100%");
    key(Qt::Key_Right);
    EXPECT_EQ(focused(), "125%");
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(world.world.settings.cursorScale(), 1.5);
    key(Qt::Key_Home);
    EXPECT_EQ(world.world.settings.cursorScale(), 0.75);
    key(Qt::Key_Left);
    EXPECT_EQ(world.world.settings.cursorScale(), 0.75);
    // One stop for Tab.
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Add app to exclusion list");
}

TEST_F(SettingsWindowTest, ASizeOutsideOfTheFourSelectsNone) {
    show();
    world.world.store.set(CursorSettings::scaleKey, 1.15);
    for (const char* size : {"75%", "100%", "125%", "150%"})
        EXPECT_FALSE(accessible(size, QAccessible::RadioButton).state.checked) << size;
    tabTo("75%");
}

TEST_F(SettingsWindowTest, TheSliderMovesInItsStepsAndFollowsTheSetting) {
    world.world.settings.setGlassOpacity(0.85);
    show();
    auto slider = accessible("Glass Opacity", QAccessible::Slider);
    ASSERT_NE(slider.interface, nullptr);
    EXPECT_NEAR(slider.interface->valueInterface()->currentValue().toDouble(), 0.85, 1e-9);
    tabTo("Glass Opacity");
    key(Qt::Key_Right);
    EXPECT_EQ(world.world.settings.glassOpacity(), 0.9);
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    EXPECT_EQ(world.world.settings.glassOpacity(), 0.8);
    world.world.settings.setGlassOpacity(0.95);
    EXPECT_NEAR(slider.interface->valueInterface()->currentValue().toDouble(), 0.95, 1e-9);
}

TEST_F(SettingsWindowTest, WithoutTheGlassLookTheSliderRests) {
    world.world.settings.setGlassMode(false);
    show();
    const auto enabled = [this] {
        return accessible("Glass Opacity", QAccessible::Slider)
            .interface->object()
            ->property("enabled")
            .toBool();
    };
    EXPECT_FALSE(enabled());
    press("Total Glass Mode");
    EXPECT_TRUE(enabled());
}

TEST_F(SettingsWindowTest, ANameIsTypedAndAddedWithoutItsBlanks) {
    show({480, 1200});
    EXPECT_NE(accessible("No exclusions added").interface, nullptr);
    press("Add app to exclusion list");
    EXPECT_EQ(focused(), "App name (e.g., Safari)");
    type("  Safari ");
    key(Qt::Key_Return);
    EXPECT_THAT(excluded(), ElementsAre("Safari"));
    EXPECT_FALSE(world.settings.showAddAppField());
    EXPECT_EQ(accessible("No exclusions added").interface, nullptr);
    EXPECT_NE(accessible("Safari", QAccessible::ListItem).interface, nullptr);
    EXPECT_EQ(focused(), "Add app to exclusion list");
}

TEST_F(SettingsWindowTest, ANameOfBlanksAddsNothingAndLeavesTheFieldOpen) {
    show({480, 1200});
    press("Add app to exclusion list");
    type("   ");
    key(Qt::Key_Return);
    EXPECT_THAT(excluded(), IsEmpty());
    EXPECT_EQ(focused(), "App name (e.g., Safari)");
}

TEST_F(SettingsWindowTest, CancelAndEscapeCloseTheFieldAndForgetItsText) {
    show({480, 1200});
    for (const bool byKey : {false, true}) {
        press("Add app to exclusion list");
        type("Saf");
        EXPECT_EQ(world.settings.newAppName(), "Saf");
        if (byKey)
            key(Qt::Key_Escape);
        else
            press("Cancel");
        EXPECT_FALSE(world.settings.showAddAppField());
        EXPECT_EQ(world.settings.newAppName(), "");
        EXPECT_EQ(accessible("Cancel").interface, nullptr);
    }
    EXPECT_TRUE(view->isVisible());
}

TEST_F(SettingsWindowTest, ReturnPressesWhatHasTheKeyboard) {
    show({480, 1200});
    tabTo("Add app to exclusion list");
    key(Qt::Key_Return);
    EXPECT_TRUE(world.settings.showAddAppField());
    tabTo("Cancel");
    key(Qt::Key_Return);
    EXPECT_FALSE(world.settings.showAddAppField());
    world.world.settings.addExcludedApp("Safari");
    tabTo("Remove Safari");
    key(Qt::Key_Return);
    EXPECT_THAT(excluded(), IsEmpty());
    tabTo("Reset Application");
    key(Qt::Key_Return);
    ASSERT_EQ(world.alerts.shown.size(), 1u);
}

TEST_F(SettingsWindowTest, TabKeepsTheTitleOfTheSectionInSight) {
    show();
    tabTo("Reset Application");
    // Backwards, where each control comes into sight from above.
    for (const auto& [control, title] :
         {std::pair("100%", "Cursor Size"), std::pair("Launch at Login", "Startup")}) {
        for (int i = 0; i < 20 && focused() != control; ++i)
            QTest::keyClick(view, Qt::Key_Tab, Qt::ShiftModifier);
        ASSERT_EQ(focused(), control);
        const auto place = accessible(title, QAccessible::Heading).place;
        EXPECT_TRUE(QRect(QPoint(), view->size()).contains(place)) << title;
    }
}

TEST_F(SettingsWindowTest, WithoutACompositorTheGlassLookSaysWhatItNeeds) {
    world.world.settings.setGlassMode(true);
    auto look = plainLook();
    look.blendsWindows = false;
    sharedLook().setLook(look);
    show({480, 1200});
    const char* const note = "The glass look needs a compositor, and none is running";
    EXPECT_NE(accessible(note).interface, nullptr);
    const auto canBeMoved = [&] {
        return accessible("Glass Opacity", QAccessible::Slider)
            .interface->object()
            ->property("enabled")
            .toBool();
    };
    EXPECT_FALSE(canBeMoved());
    look.blendsWindows = true;
    sharedLook().setLook(look);
    EXPECT_EQ(accessible(note).interface, nullptr);
    EXPECT_TRUE(canBeMoved());
}

TEST_F(SettingsWindowTest, AnOpenFieldStaysOpenWhileTheWindowIsHidden) {
    show({480, 1200});
    press("Add app to exclusion list");
    type("Saf");
    view->hide();
    WindowWorld::reveal(*view);
    EXPECT_NE(accessible("Cancel").interface, nullptr);
    EXPECT_EQ(world.settings.newAppName(), "Saf");
}

TEST_F(SettingsWindowTest, ANameIsRemovedByItsButtonAndTheKeyboardGoesToTheNext) {
    for (const char* name : {"Safari", "Blender", "GIMP"}) world.world.settings.addExcludedApp(name);
    show({480, 1200});
    press("Remove Blender");
    EXPECT_THAT(excluded(), ElementsAre("Safari", "GIMP"));
    tabTo("Remove Safari");
    key(Qt::Key_Space);
    EXPECT_EQ(focused(), "Remove GIMP");
    key(Qt::Key_Space);
    EXPECT_THAT(excluded(), IsEmpty());
    EXPECT_EQ(focused(), "Add app to exclusion list");
}

TEST_F(SettingsWindowTest, AnotherChangeLeavesTheKeyboardWhereItIs) {
    for (const char* name : {"Safari", "Blender"}) world.world.settings.addExcludedApp(name);
    show({480, 1200});
    tabTo("Remove Blender");
    world.world.settings.removeExcludedApp("Safari");
    world.world.settings.addExcludedApp("GIMP");
    world.world.settings.setGlassMode(false);
    EXPECT_EQ(focused(), "Remove Blender");
}

TEST_F(SettingsWindowTest, ResetAsksBeforeItDoesAnything) {
    show({480, 1200});
    press("Reset Application");
    ASSERT_EQ(world.alerts.shown.size(), 1U);
    EXPECT_EQ(world.alerts.shown[0].message, "Reset Application?");
    world.alerts.answer(0, 1);
    EXPECT_TRUE(world.world.settings.glassMode());
    EXPECT_EQ(world.alerts.shown.size(), 1U);
}

TEST_F(SettingsWindowTest, TabReachesEveryControlAndBringsItIntoSight) {
    world.world.settings.addExcludedApp("Safari");
    show({480, 300});
    std::vector<std::string> way;
    for (int i = 0; i < 13; ++i) {
        key(Qt::Key_Tab);
        const auto name = focused();
        way.push_back(name);
        const auto place = accessible(name).place;
        EXPECT_GE(place.top(), 0) << name;
        EXPECT_LE(place.bottom(), 300) << name;
    }
    EXPECT_THAT(way, ElementsAre("Launch at Login", "Apply Last Cursor on Launch",
                                 "Restore System Cursor on Quit", "Use Themed Cursor in Fullscreen",
                                 "Use System Cursor for Missing Types", "System Cursor During Screen Sharing",
                                 "Total Glass Mode", "Glass Opacity", "100%", "Add app to exclusion list",
                                 "Remove Safari", "Reset Application", "Launch at Login"));
}

TEST_F(SettingsWindowTest, TheWheelScrollsWhatDoesNotFit) {
    show({480, 300});
    const auto before = accessible("Reset Application").place.top();
    ASSERT_GT(before, 300);
    for (int i = 0; i < 30; ++i) {
        QWheelEvent wheel({240, 150}, view->mapToGlobal(QPointF(240, 150)), {}, {0, -120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        wheel.setTimestamp(static_cast<quint64>(1000 + 50 * i));
        QCoreApplication::sendEvent(view, &wheel);
        WindowWorld::until([] { return false; }, 20);
    }
    EXPECT_TRUE(WindowWorld::until([&] { return accessible("Reset Application").place.bottom() < 300; }));
}

struct LargeText : SettingsWindowTest {
    LargeText() : SettingsWindowTest({.reducedMotion = true, .textScale = 2, .fontFamily = "Inter"}) {}
};

/// Every text is shown whole and inside of the window.
void expectTextsInside(const QQuickItem& item, qreal width) {
    if (!item.isVisible()) return;
    if (item.inherits("QQuickText") && !item.property("text").toString().isEmpty()) {
        const auto left = item.mapToScene({0, 0}).x();
        EXPECT_GE(left, 0) << item.property("text").toString().toStdString();
        EXPECT_LE(left + item.width(), width) << item.property("text").toString().toStdString();
        EXPECT_LE(item.property("contentWidth").toReal(), item.width() + 1)
            << item.property("text").toString().toStdString();
    }
    for (const auto* child : item.childItems()) expectTextsInside(*child, width);
}

TEST_F(LargeText, AtTwiceTheSizeEveryTextStaysInside) {
    world.world.settings.addExcludedApp("Safari");
    world.settings.toggleAddAppField();
    show();
    expectTextsInside(*view->rootObject(), 480);
    press("Launch at Login");
    EXPECT_TRUE(stored("Launch at Login"));
}

struct RightToLeft : SettingsWindowTest {
    RightToLeft() { QGuiApplication::setLayoutDirection(Qt::RightToLeft); }
    ~RightToLeft() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
};

TEST_F(RightToLeft, EverythingIsMirroredAndArrowsGoWithTheEye) {
    show();
    expectTextsInside(*view->rootObject(), 480);
    EXPECT_GT(accessible("75%", QAccessible::RadioButton).place.left(),
              accessible("150%", QAccessible::RadioButton).place.left());
    tabTo("100%");
    key(Qt::Key_Left);
    EXPECT_EQ(world.world.settings.cursorScale(), 1.25);
}

}  // namespace
}  // namespace pintle
