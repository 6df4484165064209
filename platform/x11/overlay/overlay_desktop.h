// Everything of the X server that the overlay needs, on one connection. Made by the root; main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/subscription.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/overlay_desktop.h"
#include "platform/workspace.h"

namespace pintle {

struct OverlayDesktopOptions {
    /// Absent: the display of the environment.
    std::optional<std::string> display;
    /// All outlive the desktop.
    MainQueue& queue;
    Log& log;
    Workspace& workspace;
    /// Calls `readable` on the main thread whenever the descriptor has something to read. Required.
    std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
    /// Whether somebody watches the screen; empty: nobody ever does.
    std::function<bool()> screenWatched;
};

/// Null where no overlay can be drawn: without an X server or the extensions it takes. What hides and moves
/// is sent at the end of each turn.
std::unique_ptr<OverlayDesktop> makeOverlayDesktop(const OverlayDesktopOptions& options);

}  // namespace pintle
