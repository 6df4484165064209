#include "platform/qt/shell/window_host.h"

#include <QCloseEvent>
#include <utility>

namespace pintle::shell {

WindowHost::WindowHost(QWindow& view, const ShellDesktop& desktop, std::function<void()> closed)
    : view_(&view), desktop_(desktop), closed_(std::move(closed)) {
    view.installEventFilter(this);
}

WindowHost::~WindowHost() { hide(); }

void WindowHost::showInFront() {
    if (!view_) return;
    view_->create();
    if (desktop_.leaveTaskbar) desktop_.leaveTaskbar(view_->winId());
    view_->show();
    view_->raise();
    view_->requestActivate();
    if (desktop_.activate) desktop_.activate(view_->winId());
}

void WindowHost::hide() {
    if (view_) view_->hide();
}

bool WindowHost::eventFilter(QObject* receiver, QEvent* event) {
    if (receiver != view_) return false;
    if (event->type() == QEvent::Expose && view_->isExposed() && appeared_) appeared_();
    if (event->type() != QEvent::Close) return false;
    // Accepted, because at the end of the program a window that refuses to close would keep it alive.
    event->accept();
    if (!isVisible()) return true;
    hide();
    if (closed_) closed_();
    return true;
}

}  // namespace pintle::shell
