// Monitors of presses elsewhere and of keys in the program's own windows. Main thread only.
#pragma once

#include <memory>

#include "platform/event_monitors.h"
#include "platform/qt/shell/shell_desktop.h"

namespace pintle {

/// `desktop` must outlive the monitors.
std::unique_ptr<EventMonitors> makeQtEventMonitors(const ShellDesktop& desktop);

}  // namespace pintle
