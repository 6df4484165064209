// The user interface's views as the shell's backends see them: the root hands an implementation to the
// backends, which give each view its place among the windows of the desktop. The user interface draws, the
// backend owns the frame. Main thread only; lengths are device-independent pixels.
//
// Who does what:
//   - A view is made at the first call that asks for it and not before, because the program must be cheap
//     until a window opens. It stays the implementer's, lives as long as the implementer and keeps its state
//     while it is hidden. Views are made neither visible nor native (create(), winId()) by the user
//     interface.
//   - The backend sets each view's flags, title, icon, position, size, mask and visibility, and activates it.
//     The view never moves, resizes or shows itself.
//   - The view is made with a format that has an alpha channel, so that it can follow isComposited without
//     being made again, and fills its window with a transparent colour while a compositor runs.
//   - A view takes any size: its content scrolls where the window is smaller than the content wants to be.
//   - A view that is to go away (Escape, a close button of its own) calls QWindow::close(). The backend hides
//     it instead of closing it, and does the same for the desktop's close button.
#pragma once

#include <QMargins>
#include <QString>
#include <functional>

#include "base/subscription.h"
#include "platform/alerts.h"
#include "platform/windows.h"

QT_BEGIN_NAMESPACE
class QWindow;
QT_END_NAMESPACE

namespace pintle {

/// How the popover's panel lies in its window.
struct PopoverShape {
    /// The margins around the panel while a compositor runs: they hold the shadow, are transparent and take
    /// no pointer events. The backend makes the window larger by them than the frame it was given, as far as
    /// the work area allows, so that the panel itself fills the frame. Without a compositor they are not used
    /// and the panel fills the window.
    QMargins shadow;
    /// Of the panel's corners. Without a compositor the window is cut to a rectangle with such corners, in
    /// the steps of cornerInsets().
    int cornerRadius = 0;
};

class ShellViews {
  public:
    virtual ~ShellViews() = default;

    /// Whether a compositor runs, so that alpha blends. Called before the first view is asked for and at each
    /// change; without one every view is opaque, and the popover leaves its shadow out.
    virtual void setComposited(bool composited) = 0;

    /// From now on the desktop's own windows hold the views, with their edges, corners and shadows, and with
    /// a blurred material behind them: views leave transparent what their look makes translucent. Called, on
    /// such desktops only, before the first view is asked for.
    virtual void setNativelyHosted() {}
    /// The opacity of that material behind the popover; 0 while the popover's view is opaque.
    virtual double popoverMaterial() const { return 0; }
    /// The upper part of a window's view that lies under the window's title bar and is to stay empty.
    virtual void setTitleStrip(WindowContent content, double height) { (void)content, (void)height; }

    /// The popover's content. Null when it cannot be made: then there is no popover.
    virtual QWindow* popover() = 0;
    /// Asked before each showing.
    virtual PopoverShape popoverShape() const = 0;
    /// What of that shadow has room in its window: less than popoverShape() asks for where the panel stands
    /// near the edge of the work area. Before each showing, and while it is shown.
    virtual void setPopoverShadow(const QMargins& shadow) { (void)shadow; }
    /// Whether what lies behind the views is seen through them, and is to be blurred where that can be had.
    virtual bool isGlass() const { return false; }
    /// Calls `changed` whenever isGlass() has changed, until the answer ends.
    virtual Subscription observeGlass(const std::function<void()>& changed) {
        (void)changed;
        return {};
    }
    /// Right before the popover becomes visible and right after it went. The view plays its own entrance when
    /// `animates`; it is gone at once when it is hidden.
    virtual void popoverWillShow(bool animates) { (void)animates; }
    virtual void popoverDidHide() {}

    /// The content of a window. Null when it cannot be made.
    virtual QWindow* window(WindowContent content) = 0;

    /// A view with the alert's texts and buttons, in the size it wants to have; null when it cannot be made.
    /// It calls `chosen` with the number of the button counted from 0 (Return chooses the default one) and
    /// then leaves its hiding to the backend; closing it by close() is the last button. The next call may
    /// come from inside `chosen` and may answer the same window with new content: one alert is up at a time.
    virtual QWindow* alert(const Alert& alert, std::function<void(int button)> chosen) = 0;
};

}  // namespace pintle
