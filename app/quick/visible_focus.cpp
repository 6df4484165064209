#include "app/quick/visible_focus.h"

#include <QKeyEvent>
#include <QQuickItem>

namespace pintle {
namespace {

/// A control that would act on keys unseen. Fields show the cursor, and other items draw their own mark.
bool isUnmarked(const QQuickItem* item) {
    const auto shown = item ? item->property("visualFocus") : QVariant();
    return shown.isValid() && !shown.toBool();
}

void mark(QQuickItem& item) { item.setProperty("focusReason", Qt::TabFocusReason); }

bool leadsElsewhere(const QKeyEvent& key) {
    switch (key.key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Escape:
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_Meta:
            return true;
        default:
            return (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    }
}

}  // namespace

VisibleFocus::VisibleFocus(QQuickWindow& window) : QObject(window.contentItem()), window_(window) {
    window.installEventFilter(this);
    QObject::connect(&window, &QQuickWindow::activeFocusItemChanged, this, [this] {
        auto* const item = window_.activeFocusItem();
        if (item && item == ringed_ && isUnmarked(item)) mark(*item);
        if (item && item != window_.contentItem()) ringed_ = nullptr;
    });
}

bool VisibleFocus::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::FocusOut && event->type() != QEvent::KeyPress) return false;
    auto* const item = window_.activeFocusItem();
    if (event->type() == QEvent::FocusOut) {
        if (item && item->property("visualFocus").toBool()) ringed_ = item;
        return false;
    }
    if (!isUnmarked(item) || leadsElsewhere(*static_cast<QKeyEvent*>(event))) return false;
    mark(*item);
    return true;
}

}  // namespace pintle
