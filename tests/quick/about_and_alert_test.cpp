// The about window with its entrance, and alerts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QEasingCurve>
#include <QQmlComponent>
#include <QTest>

#include "tests/quick/window_world.h"

namespace pintle {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

ViewLook::Look stillLook() { return {.reducedMotion = true, .fontFamily = "Inter"}; }
ViewLook::Look movingLook() { return {.fontFamily = "Inter"}; }

QQuickItem* find(QQuickItem* root, const char* property, const char* value) {
    if (root->property(property).toString() == QLatin1String(value)) return root;
    for (auto* child : root->childItems())
        if (auto* found = find(child, property, value)) return found;
    return nullptr;
}

QQuickItem* iconOf(const QQuickView& view) {
    return find(view.rootObject(), "source", "qrc:/pintle/icons/app.svg");
}

TEST(AboutWindow, ItsTextsStandInTheirOrder) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->size(), QSize(300, 480));
    std::vector<std::string> names;
    for (const auto& each : accessibleItemsOf(*view))
        if (!each.name.empty() && each.role != QAccessible::Grouping) names.push_back(each.name);
    EXPECT_THAT(names, ElementsAre("Pintle", "Pintle", "Version 0.1.0", "A modern cursor manager for macOS",
                                   "Features", "Custom cursor themes", "Adjustable cursor size",
                                   "Auto-apply on launch", "Menu bar integration", "Contact Support"));
}

TEST(AboutWindow, TheIconGrowsAndTheFeaturesArriveOneAfterAnotherEachTimeItAppears) {
    WindowWorld world(movingLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    auto* const icon = iconOf(*view);
    ASSERT_NE(icon, nullptr);
    const auto opacityOf = [&](const char* text) {
        return find(view->rootObject(), "text", text)->parentItem()->opacity();
    };
    // A machine that stands still for half a second sees no entrance; it is played until it was seen twice.
    int seenInTurn = 0;
    for (int time = 0; time < 10 && seenInTurn < 2; ++time) {
        view->hide();
        view->show();
        EXPECT_LT(icon->scale(), 1);
        EXPECT_EQ(opacityOf("Menu bar integration"), 0);
        bool inTurn = false;
        EXPECT_TRUE(WindowWorld::until([&] {
            inTurn |= opacityOf("Custom cursor themes") > opacityOf("Menu bar integration") + 0.5;
            return opacityOf("Menu bar integration") == 1 && icon->scale() == 1;
        }));
        if (inTurn) ++seenInTurn;
    }
    EXPECT_EQ(seenInTurn, 2);
}

TEST(AboutWindow, WithReducedMotionEverythingIsThereAtOnce) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(iconOf(*view)->scale(), 1);
    EXPECT_EQ(find(view->rootObject(), "text", "Menu bar integration")->parentItem()->opacity(), 1);
}

TEST(AboutWindow, ARowThatHasFadedInIsDrawnLikeOneThatWasThere) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    QQmlComponent tokens(&world.engine);
    tokens.setData("import QtQml\nimport Pintle\nQtObject { property int curve: Theme.fadeCurve }", QUrl());
    const std::unique_ptr<QObject> theme(tokens.create());
    ASSERT_NE(theme, nullptr) << tokens.errorString().toStdString();
    const QEasingCurve curve(static_cast<QEasingCurve::Type>(theme->property("curve").toInt()));
    auto* const row = find(view->rootObject(), "text", "Menu bar integration")->parentItem();
    const auto still = view->grabWindow();
    // The last frame before the end comes any number of milliseconds before it.
    for (int left = 1; left <= 16; ++left) {
        for (const double opacity :
             {0.5, curve.valueForProgress(1 - left / double(AboutWindowModel::rowDuration.count())), 1.0}) {
            row->setOpacity(opacity);
            view->grabWindow();
        }
        EXPECT_EQ(view->grabWindow(), still) << left << " ms before the end";
    }
}

TEST(AboutWindow, TheContactLinkOpensTheMailProgramByMouseAndByKeyboard) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    const auto link = accessibleNamed(*view, "Contact Support", QAccessible::Link);
    ASSERT_NE(link.interface, nullptr);
    const auto opening = "application openUrl mailto:" + AboutWindowModel::contactAddress();
    QTest::mouseClick(view, Qt::LeftButton, {}, link.place.center());
    EXPECT_THAT(world.transcript, ElementsAre(opening));
    QTest::keyClick(view, Qt::Key_Tab);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_THAT(world.transcript, ElementsAre(opening, opening));
}

TEST(AboutWindow, ItCarriesTheProgramsIconInEachSize) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    for (const int size : {16, 48, 256}) EXPECT_EQ(view->icon().pixmap(size).width(), size);
}

TEST(AboutWindow, EscapeDismissesIt) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_EQ(world.dismissed, 1);
}

TEST(AboutWindow, ALowWindowScrollsToTheLink) {
    WindowWorld world(stillLook());
    auto* const view = world.show(WindowContent::about, {300, 240});
    ASSERT_NE(view, nullptr);
    QTest::keyClick(view, Qt::Key_Tab);
    EXPECT_LE(accessibleNamed(*view, "Contact Support").place.bottom(), 240);
}

const Alert kQuestion{
    AlertStyle::warning, "Reset Application?", "It cannot be undone.", {"Reset & Quit", "Cancel"}};

const Alert kOffer{AlertStyle::informational, "New version", "", {"Download", "Later"}};

TEST(AlertWindow, ReturnGivesTheDefaultAnswer) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kOffer);
    ASSERT_NE(view, nullptr);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_THAT(world.chosen, ElementsAre(0));
}

TEST(AlertWindow, ReturnDestroysNothing) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_THAT(world.chosen, ElementsAre(1));
}

TEST(AlertWindow, TheButtonThatReturnWouldPressIsSeen) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    const auto ringed = [&](const char* name) {
        return accessibleNamed(*view, name, QAccessible::Button)
            .interface->object()
            ->property("visualFocus")
            .toBool();
    };
    EXPECT_TRUE(ringed("Cancel"));
    EXPECT_FALSE(ringed("Reset & Quit"));
}

TEST(AlertWindow, EscapeGivesTheLastAnswer) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_THAT(world.chosen, ElementsAre(1));
}

TEST(AlertWindow, AnAnswerIsGivenOnce) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    QTest::keyClick(view, Qt::Key_Escape);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_THAT(world.chosen, ElementsAre(1));
}

TEST(AlertWindow, TheKeyboardGoesToTheOtherButtonWhoseAnswerReturnThenGives) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(accessibleNamed(*view, "Cancel", QAccessible::Button).state.focused);
    QTest::keyClick(view, Qt::Key_Tab);
    EXPECT_TRUE(accessibleNamed(*view, "Reset & Quit", QAccessible::Button).state.focused);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_THAT(world.chosen, ElementsAre(0));
}

TEST(AlertWindow, ItReportsItsTextsAndTheFirstButtonStandsAtTheEndOfTheLine) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    const auto alert = accessibleNamed(*view, "Reset Application?", QAccessible::AlertMessage);
    EXPECT_EQ(alert.description, "It cannot be undone.");
    const auto first = accessibleNamed(*view, "Reset & Quit").place;
    const auto cancel = accessibleNamed(*view, "Cancel").place;
    EXPECT_LT(cancel.right(), first.left());
    EXPECT_TRUE(QRect(QPoint(), view->size()).contains(first));
    EXPECT_TRUE(QRect(QPoint(), view->size()).contains(cancel));
}

TEST(AlertWindow, OnlyAWarningThatLeavesAChoiceLooksDangerous) {
    AlertView alert;
    alert.show(kQuestion, [](int) {});
    EXPECT_TRUE(alert.destructive());
    alert.show({AlertStyle::warning, "No network", "", {"OK"}}, [](int) {});
    EXPECT_TRUE(alert.warning());
    EXPECT_FALSE(alert.destructive());
    alert.show({AlertStyle::informational, "New version", "", {"Download", "Later"}}, [](int) {});
    EXPECT_FALSE(alert.destructive());
}

TEST(AlertWindow, AnAlertWithoutButtonsHasOneToCloseIt) {
    WindowWorld world(stillLook());
    auto* const view = world.show({AlertStyle::informational, "Up to date", "", {}});
    ASSERT_NE(view, nullptr);
    EXPECT_NE(accessibleNamed(*view, "OK", QAccessible::Button).interface, nullptr);
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_THAT(world.chosen, ElementsAre(0));
}

TEST(AlertWindow, TheNextAlertTakesTheSameWindowInItsOwnSize) {
    WindowWorld world(stillLook());
    auto* const view = world.show(kQuestion);
    ASSERT_NE(view, nullptr);
    const auto before = view->size();
    view->setMinimumSize(before);
    view->setMaximumSize(before);
    std::string much;
    for (int i = 0; i < 20; ++i) much += "Much is to be said. ";
    ASSERT_EQ(world.show({AlertStyle::informational, "Done", much, {"Quit"}}), view);
    EXPECT_GT(view->height(), before.height() + 60);
    EXPECT_NE(accessibleNamed(*view, "Quit").interface, nullptr);
    EXPECT_EQ(accessibleNamed(*view, "Cancel").interface, nullptr);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_THAT(world.chosen, ElementsAre(0));
}

}  // namespace
}  // namespace pintle
