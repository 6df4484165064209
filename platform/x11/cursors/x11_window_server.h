// The window server's cursor registry on X11. The root makes one; registering replaces, by name, the cursors
// of all running programs, and a keeper follows those that names do not reach. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/subscription.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/window_server.h"

namespace pintle {

struct X11WindowServerOptions {
    /// Absent: the one of the environment.
    std::optional<std::string> display;
    /// Both outlive the window server.
    MainQueue& queue;
    Log& log;
    /// Calls `readable` on the main thread whenever the descriptor has something to read, until the handle
    /// ends. Required.
    std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
    /// Called once, on the main thread and never inside another call, when the X server is gone for good.
    /// Empty: nobody wants to know.
    std::function<void()> serverDied;
    /// The environment; empty: that of the process.
    std::function<std::optional<std::string>(const std::string& name)> environment;
    /// Called with each X11 name whose picture is sent. Empty: nobody wants to know.
    std::function<void(std::string_view name)> nameSent;
    /// The desktop's own theme and its size in pixels. Empty: what the X server's settings say.
    std::function<std::pair<std::string, int>()> desktopTheme = {};
    /// In which density copies of the desktop's own cursors are measured; empty: 1.
    std::function<double()> pixelsPerPoint = {};
};

/// Never null. Without a usable X server every function is missing.
std::unique_ptr<WindowServer> makeX11WindowServer(X11WindowServerOptions options);

}  // namespace pintle
