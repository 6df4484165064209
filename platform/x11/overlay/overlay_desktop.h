// Everything of the X server that the overlay needs, on one connection. Made by the root; main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/subscription.h"
#include "platform/accessibility.h"
#include "platform/displays.h"
#include "platform/main_queue.h"
#include "platform/overlay_surfaces.h"
#include "platform/pointer.h"
#include "platform/window_list.h"
#include "platform/workspace.h"

namespace pintle {

struct OverlayDesktopOptions {
    /// Absent: the display of the environment.
    std::optional<std::string> display;
    /// All outlive the desktop.
    MainQueue& queue;
    Workspace& workspace;
    /// Calls `readable` on the main thread whenever the descriptor has something to read. Required.
    std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
    /// Whether somebody watches the screen; empty: nobody ever does.
    std::function<bool()> screenWatched;
};

class OverlayDesktop {
  public:
    virtual ~OverlayDesktop() = default;
    virtual Displays& displays() = 0;
    virtual OverlaySurfaces& surfaces() = 0;
    virtual Pointer& pointer() = 0;
    virtual WindowList& windowList() = 0;
    virtual Accessibility& accessibility() = 0;
};

/// Null where no overlay can be drawn: without an X server or the extensions it takes, and in Wayland
/// sessions, whose windows nobody else's window can lie above. What hides and moves is sent at the end of
/// each turn.
std::unique_ptr<OverlayDesktop> makeOverlayDesktop(const OverlayDesktopOptions& options);

}  // namespace pintle
