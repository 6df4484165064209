// What an X11 desktop with freedesktop services reports of applications, displays, sleep and sessions. The
// root makes one. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/subscription.h"
#include "platform/main_queue.h"
#include "platform/workspace.h"

namespace pintle {

struct X11WorkspaceOptions {
    /// Absent: the display of the environment.
    std::optional<std::string> display;
    /// Outlives the workspace.
    MainQueue& queue;
    /// Calls `readable` on the main thread whenever the descriptor has something to read, until the handle
    /// ends. Required.
    std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
};

/// Never null. Without an X server there are no applications and no display events; without a bus none of
/// sleep, session and lock. The toolkit's application object must exist.
std::unique_ptr<Workspace> makeX11Workspace(X11WorkspaceOptions options);

}  // namespace pintle
