// What the shell's backends need from the desktop and the toolkit does not give. The root fills it from the
// backend of the window system; an empty function means that the desktop has no such thing. Everything on the
// main thread; window numbers are the window system's, lengths its pixels.
#pragma once

#include <QMargins>
#include <QRect>
#include <QRegion>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "base/subscription.h"
#include "platform/event_monitors.h"

namespace pintle {

using NativeWindow = std::uintptr_t;

/// The places for tray icons that are there now.
struct TrayHosts {
    /// One that items register with over the session bus.
    bool notifier = false;
    /// One that takes windows in.
    bool embedding = false;
    bool any() const { return notifier || embedding; }
    friend bool operator==(const TrayHosts&, const TrayHosts&) = default;
};

/// What drawings on a panel stand on.
struct PanelLook {
    bool dark = false;
    /// The colour (0xRRGGBB) that the panel wants drawings to have.
    std::optional<std::uint32_t> foreground;
};

struct ShellDesktop {
    /// Calls back for each press outside of the program's own windows until the handle ends.
    std::function<Subscription(std::function<void(const GlobalMouseDown&)>)> watchPresses;
    /// The number of the press that is held down or was released a moment ago.
    std::function<std::optional<std::uint64_t>()> currentPress;

    std::function<TrayHosts()> trayHosts;
    std::function<Subscription(std::function<void()>)> observeTrayHosts;
    /// Of the panel that holds `icon`, or of the desktop's panel when it is 0. Absent when it is unknown.
    std::function<std::optional<PanelLook>(NativeWindow icon)> panelLook;

    /// Gives a visible window the keyboard, whatever the user did last.
    std::function<void(NativeWindow)> activate;
    /// Keeps a window out of task bars; before it is shown.
    std::function<void(NativeWindow)> leaveTaskbar;
    /// Only this part of the window takes the pointer.
    std::function<void(NativeWindow, const QRect&)> setInputArea;
    /// Cuts the window to this region, in its pixels; an empty one is the whole window.
    std::function<void(NativeWindow, const QRegion&)> setShape;
    /// Asks the compositor to blur what lies behind this region of the window, in its pixels; an empty one
    /// asks for nothing.
    std::function<void(NativeWindow, const QRegion&)> setBlurBehind;
    /// What the window manager will draw around a window that is not shown yet. May wait for its answer for a
    /// moment.
    std::function<QMargins(NativeWindow)> frameExtents;
    /// What panels take from each edge of the screen with this name.
    std::function<std::optional<QMargins>(const QString& screen)> panelInsets;
};

}  // namespace pintle
