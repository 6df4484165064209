// The popover's footer and the keys that work everywhere in it, as they are seen and spoken.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>
#include <QWheelEvent>

#include "app/quick/announcement.h"
#include "settings/notification_names.h"
#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;

constexpr auto kIce = ModelWorld::ice;

struct PopoverFooterViewTest : PopoverWorld {
    static QQuickItem* named(QQuickItem* at, const QString& name) {
        if (!at->isVisible()) return nullptr;
        auto* const spoken = QAccessible::queryAccessibleInterface(at);
        const bool isControl = spoken && spoken->state().focusable;
        if (isControl && spoken->text(QAccessible::Name) == name) return at;
        for (auto* child : at->childItems())
            if (auto* const found = named(child, name)) return found;
        return nullptr;
    }
    QQuickItem* control(const char* name) const { return named(view->rootObject(), name); }
    static QString spoken(QQuickItem* item, QAccessible::Text kind) {
        auto* const iface = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return iface ? iface->text(kind) : QString();
    }
    void turnWheel(const QQuickItem* over, int notches) const {
        const auto at = over->mapToScene(QPointF(over->width() / 2, over->height() / 2));
        QWheelEvent wheel(at, view->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view, &wheel);
        settle();
    }
    QObject* tip(const char* name) const { return view->rootObject()->findChild<QObject*>(name); }
};

TEST_F(PopoverFooterViewTest, ShortcutsPressTheHeadersButtonsFromAnywhere) {
    std::vector<std::string> posted;
    std::vector<Subscription> observers;
    show();
    for (const auto name :
         {notification::openSettingsRequest, notification::openAboutRequest, notification::quitAppRequest})
        observers.push_back(world.notifications.observe(
            std::string(name), [&posted, name](const std::any&) { posted.emplace_back(name); }));
    press(Qt::Key_Comma, ",", Qt::ControlModifier);
    press(Qt::Key_Down);
    press(Qt::Key_F1);
    press(Qt::Key_Tab);
    press(Qt::Key_Q, "\x11", Qt::ControlModifier);
    EXPECT_THAT(posted, ElementsAre("openSettingsRequest", "openAboutRequest", "quitAppRequest"));
    press(Qt::Key_Comma, ",");
    press(Qt::Key_Q, "Q", Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(posted.size(), 3U);
}

TEST_F(PopoverFooterViewTest, TheWheelAndTheArrowsStepTheSlider) {
    show();
    auto* const slider = control("Cursor Size");
    ASSERT_NE(slider, nullptr);
    turnWheel(slider, 1);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.05);
    turnWheel(slider, -3);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 0.9);
    press(Qt::Key_Tab);
    for (const auto key : {Qt::Key_Right, Qt::Key_Up}) press(key);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.0);
    for (const auto key : {Qt::Key_Left, Qt::Key_Down}) press(key);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 0.9);
}

TEST_F(PopoverFooterViewTest, SystemDefaultShowsAndSaysThatItIsInForce) {
    install(kIce);
    show();
    auto* const button = control("System Default");
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->property("inForce").toBool());
    EXPECT_EQ(button->property("iconName").toString(), "check-disc");
    EXPECT_EQ(spoken(button, QAccessible::Description), "The desktop's own cursors are in use");
    const auto width = button->width();
    world.applyNow(kIce);
    settle();
    EXPECT_FALSE(button->property("inForce").toBool());
    EXPECT_EQ(button->property("iconName").toString(), "");
    EXPECT_EQ(spoken(button, QAccessible::Description), "Use the desktop's own cursors");
    EXPECT_EQ(button->width(), width);
}

TEST_F(PopoverFooterViewTest, ResetHasASymbolAndItsTipLeavesTheSliderFree) {
    world.settings.setCursorScale(1.25);
    for (const double textScale : {1.0, 2.0}) {
        appearance.become({.textScale = textScale});
        show();
        auto* const reset = control("Reset");
        auto* const slider = control("Cursor Size");
        ASSERT_NE(reset, nullptr);
        ASSERT_NE(slider, nullptr);
        EXPECT_EQ(reset->property("iconName").toString(), textScale == 1 ? "reset" : "");
        QTest::mouseMove(view, reset->mapToScene({reset->width() / 2, reset->height() / 2}).toPoint());
        auto* const shown = tip("resetTip");
        ASSERT_NE(shown, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown->property("opened").toBool(); }));
        auto* const content = shown->property("contentItem").value<QQuickItem*>();
        const auto box = content->mapRectToScene(content->boundingRect()).adjusted(-8, -4, 8, 4);
        EXPECT_FALSE(box.intersects(slider->mapRectToScene(slider->boundingRect()).adjusted(0, 6, 0, -6)))
            << textScale;
        EXPECT_FALSE(box.intersects(reset->mapRectToScene(reset->boundingRect()))) << textScale;
        views.reset();
        model.reset();
    }
}

TEST_F(PopoverFooterViewTest, TheArrowsSizeStandsBesideThePercentage) {
    install(kIce);
    show();
    auto* const slider = control("Cursor Size");
    EXPECT_EQ(spoken(slider, QAccessible::Description), "100%");
    world.applyNow(kIce);
    settle();
    EXPECT_EQ(spoken(slider, QAccessible::Description), "100%, Arrow: 32 pixels");
    press(Qt::Key_Tab);
    ASSERT_TRUE(QTest::qWaitFor([&] { return tip("arrowTip")->property("opened").toBool(); }));
    EXPECT_EQ(tip("arrowTip")->property("text").toString(), "Arrow: 32 pixels");
}

TEST_F(PopoverFooterViewTest, WhatHasHappenedIsReadOutUntilThePopoverGoes) {
    show();
    auto* const item = view->rootObject()->findChild<QQuickItem*>("announcement");
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->isVisible());
    world.changeRow(kIce, [](auto& row) { row.downloadError = "HTTP 404"; });
    settle();
    EXPECT_EQ(item->isVisible(), !hasAnnouncements());
    auto* const iface = QAccessible::queryAccessibleInterface(item);
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->role(), QAccessible::Notification);
    EXPECT_EQ(iface->text(QAccessible::Name),
              "Bibata Modern Ice, Error - Tap to retry, The server has no such file");
    views->popoverDidHide();
    EXPECT_FALSE(item->isVisible());
}

}  // namespace
}  // namespace pintle
