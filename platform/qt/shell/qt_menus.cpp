#include "platform/qt/shell/qt_menus.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <algorithm>

namespace pintle::shell {
namespace {

QString titleOf(const MenuItem& item) {
    // A single ampersand would mark the letter after it.
    return QCoreApplication::translate("Pintle", item.title.c_str())
        .replace(QLatin1Char('&'), QLatin1String("&&"));
}

bool hasTheEntries(const QMenu& shown, const Menu& menu) {
    const auto actions = shown.actions();
    return std::equal(actions.begin(), actions.end(), menu.items.begin(), menu.items.end(),
                      [](const QAction* action, const MenuItem& item) {
                          return action->isSeparator() == item.isSeparator &&
                                 (item.isSeparator || action->text() == titleOf(item));
                      });
}

}  // namespace

void fill(QMenu& shown, const Menu& menu) {
    if (!hasTheEntries(shown, menu)) {
        shown.clear();
        for (const MenuItem& item : menu.items) {
            if (item.isSeparator) {
                shown.addSeparator();
                continue;
            }
            auto* const action = shown.addAction(titleOf(item));
            if (!item.keyEquivalent.empty()) {
                action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") +
                                                 QString::fromStdString(item.keyEquivalent).toUpper()));
                action->setShortcutVisibleInContextMenu(true);
            }
        }
    }
    const auto actions = shown.actions();
    for (std::size_t i = 0; i < menu.items.size(); ++i) {
        auto* const action = actions[static_cast<qsizetype>(i)];
        QObject::disconnect(action, &QAction::triggered, nullptr, nullptr);
        if (const auto& run = menu.items[i].action)
            QObject::connect(action, &QAction::triggered, action, [run] { run(); });
    }
}

MenuKeys::MenuKeys(QMenu& menu) : menu_(menu) { menu.installEventFilter(this); }

bool MenuKeys::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
    for (auto* const action : menu_.actions()) {
        if (action->shortcut().isEmpty() || action->shortcut() != pressed) continue;
        menu_.close();
        action->trigger();
        return true;
    }
    return false;
}

}  // namespace pintle::shell
