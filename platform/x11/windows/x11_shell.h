// What the shell needs from the X server and the session bus and the toolkit does not give: presses over any
// window, trays that come and go, panels, and the few requests about our own windows. Has a connection of its
// own to the X server; requests about windows of the toolkit go through the toolkit's, in its order. Made by
// the root. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/lifetime.h"
#include "base/signal.h"
#include "base/subscription.h"
#include "platform/freedesktop/notifier_watch.h"
#include "platform/main_queue.h"
#include "platform/x11/windows/panels.h"
#include "platform/x11/windows/press_watch.h"
#include "platform/x11/x_connection.h"

namespace pintle {

struct X11ShellOptions {
    /// Absent: the one of the environment.
    std::optional<std::string> display;
    MainQueue& queue;
    /// Calls back on the main queue when the descriptor can be read.
    std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
    /// The visible windows of this program, without the icon in a panel.
    std::function<std::vector<std::uintptr_t>()> ownWindows;
};

/// Whether a program can open windows here: an X server answers.
bool displayAnswers(const std::optional<std::string>& display);

class X11Shell {
  public:
    explicit X11Shell(X11ShellOptions options);
    ~X11Shell();
    X11Shell(const X11Shell&) = delete;
    X11Shell& operator=(const X11Shell&) = delete;

    /// Null when presses cannot be seen.
    PressWatch* presses() { return presses_ && presses_->works() ? &*presses_ : nullptr; }
    /// The press that is held down or was released within the last second. Reports every press that has
    /// happened first: the toolkit's connection may be ahead of this one, and a click that it reports must
    /// not come before its own press.
    std::optional<std::uint64_t> currentPress();

    /// A panel that listens on the session bus is there.
    bool hasNotifierHost() const { return notifier_.state() == NotifierWatch::State::present; }
    /// A panel that embeds windows is there. False while it may still turn out that it also listens on the
    /// bus: for about a second at the start.
    bool hasEmbeddingTray() const;
    Subscription observeTrays(std::function<void()> changed) { return trays_.observe(std::move(changed)); }

    std::optional<panels::Colours> coloursOf(std::uintptr_t icon);
    std::optional<panels::Insets> insetsOf(const std::string& monitor);

  private:
    void readable();
    void take(const xcb_generic_event_t& event);
    void askForTray();
    void settled();

    X11ShellOptions options_;
    std::unique_ptr<x11::XConnection> connection_;
    std::optional<PressWatch> presses_;
    xcb_atom_t traySelection_ = 0;
    xcb_window_t trayOwner_ = 0;
    std::uint8_t firstFixesEvent_ = 0;
    NotifierWatch notifier_;
    bool settled_ = false;
    Timer settling_;
    Signal<> trays_;
    Subscription watch_;
    Lifetime lifetime_;
};

/// Requests about the toolkit's windows; nothing where the toolkit is on no X server.
namespace toolkit_windows {
/// Gives the window the keyboard, as a pager would: window managers do not refuse that.
void activate(std::uintptr_t window);
/// Out of task bars and pagers. Before the window is shown.
void leaveTaskbar(std::uintptr_t window);
/// Only this part, in pixels of the window, takes the pointer.
void setInputArea(std::uintptr_t window, int x, int y, int width, int height);
/// Cuts the window to these rectangles of its pixels; none are the whole window.
void setShape(std::uintptr_t window, const std::vector<xcb_rectangle_t>& parts);
/// Asks a compositor to blur what lies behind these rectangles of the window's pixels; none: nothing.
void setBlurBehind(std::uintptr_t window, const std::vector<xcb_rectangle_t>& parts);
/// What the window manager will draw around it; waits for the answer up to some hundredths of a second.
panels::Insets frameExtents(std::uintptr_t window);
}  // namespace toolkit_windows

}  // namespace pintle
