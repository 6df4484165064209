// What puts the views of the user interface on a desktop. Made once the views are there. Main thread only.
#pragma once

#include <memory>

#include "platform/alerts.h"
#include "platform/event_monitors.h"
#include "platform/popover.h"
#include "platform/status_item.h"
#include "platform/windows.h"

namespace pintle {

/// No pointer is null but `views`.
struct ShellBackend {
    /// What stands between the views and this desktop's own windows; ends last.
    std::shared_ptr<void> views;
    std::unique_ptr<Alerts> alerts;
    std::unique_ptr<StatusBar> statusBar;
    std::unique_ptr<Popovers> popovers;
    std::unique_ptr<Windows> windows;
    std::unique_ptr<EventMonitors> eventMonitors;
};

}  // namespace pintle
