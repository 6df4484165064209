// The popover's view on real models over fakes, under keys and the pointer, drawn without a display.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickView>
#include <memory>
#include <string>

#include "app/quick/shell_views_quick.h"
#include "platform/fake/fake_appearance.h"
#include "tests/app/model_world.h"

namespace pintle {

struct PopoverWorld : testing::Test {
    ModelWorld world;
    FakeAppearance appearance;
    std::unique_ptr<PopoverModel> model;
    std::unique_ptr<ShellViewsQuick> views;
    QQuickView* view = nullptr;

    void show(PopoverModel::Session session = PopoverModel::Session::pointerCanChange) {
        if (!world.viewModel) world.start();
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log},
            session);
        views = std::make_unique<ShellViewsQuick>(ShellViewsQuick::Dependencies{
            [this]() -> PopoverModel& { return *model; }, appearance, world.settings, {}, {}});
        views->setComposited(false);
        view = qobject_cast<QQuickView*>(views->popover());
        ASSERT_NE(view, nullptr);
        view->resize(340, 520);
        views->popoverWillShow(false);
        view->show();
        view->requestActivate();
        settle();
    }
    static void settle() {
        for (int turn = 0; turn < 20; ++turn) QCoreApplication::processEvents();
    }
    void press(Qt::Key key, const QString& text = {},
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(view, &down);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
        QCoreApplication::sendEvent(view, &up);
        settle();
    }
    void type(const QString& text) const {
        for (const auto letter : text)
            press(letter == ' ' ? Qt::Key_Space : static_cast<Qt::Key>(letter.toUpper().unicode()), letter);
    }
    std::string focused() const {
        auto* item = view->activeFocusItem();
        auto* spoken = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return spoken ? spoken->text(QAccessible::Name).toStdString() : std::string();
    }
    QQuickItem* item(const char* name) const { return view->rootObject()->findChild<QQuickItem*>(name); }
    /// Whether the item lies inside the list as it is shown.
    bool isInSight(const QQuickItem* row) const {
        const auto* const list = item("themeList");
        const auto shown = row->mapRectToItem(list, QRectF(0, 0, row->width(), row->height()));
        return QRectF(0, 0, list->width(), list->height()).contains(shown);
    }
    void install(const char* id) {
        writeFile(world.themesDirectory() / id / "cursors" / "left_ptr",
                  XCursorBuilder().image({.size = 32}).bytes());
    }
};

}  // namespace pintle
