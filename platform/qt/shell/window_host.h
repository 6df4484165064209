// What popover, windows and alerts have in common: a view that is hidden instead of being closed, and that
// gets the keyboard when it is shown. Main thread only.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <functional>
#include <utility>

#include "platform/qt/shell/shell_desktop.h"

namespace pintle::shell {

class WindowHost : public QObject {
  public:
    /// `closed` runs when the view was hidden by its own close() or by the desktop's close button. The view
    /// stays its owner's.
    WindowHost(QWindow& view, const ShellDesktop& desktop, std::function<void()> closed);
    ~WindowHost() override;

    /// Null once the owner has deleted it.
    QWindow* view() const { return view_; }
    bool isVisible() const { return view_ && view_->isVisible(); }
    /// Shows it in front of everything, with the keyboard.
    void showInFront();
    void hide();
    /// `appeared` runs each time the view has come onto the screen: after it was shown, and after another
    /// window manager has taken it over.
    void setAppeared(std::function<void()> appeared) { appeared_ = std::move(appeared); }

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    QPointer<QWindow> view_;
    const ShellDesktop& desktop_;
    const std::function<void()> closed_;
    std::function<void()> appeared_;
};

}  // namespace pintle::shell
