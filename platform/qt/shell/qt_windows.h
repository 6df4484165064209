// The program's windows with the desktop's own title bar around the user interface's views, and the screens.
// Made by the root. Main thread only.
#pragma once

#include <memory>

#include "platform/qt/shell/shell_desktop.h"
#include "platform/qt/shell/shell_views.h"
#include "platform/windows.h"

namespace pintle {

/// Both must outlive the windows.
std::unique_ptr<Windows> makeQtWindows(ShellViews& views, const ShellDesktop& desktop);

}  // namespace pintle
