// Alerts, one after the other, in the user interface's views. Made by the root. Main thread only.
#pragma once

#include <memory>

#include "platform/alerts.h"
#include "platform/main_queue.h"
#include "platform/qt/shell/shell_desktop.h"
#include "platform/qt/shell/shell_views.h"

namespace pintle {

/// All must outlive the alerts.
std::unique_ptr<Alerts> makeQtAlerts(ShellViews& views, MainQueue& queue, const ShellDesktop& desktop);

}  // namespace pintle
