// The tray icon: one of the desktop's session bus where a host listens there, else a window inside the
// panel. Made by the root. Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "platform/appearance.h"
#include "platform/qt/shell/shell_desktop.h"
#include "platform/status_item.h"

namespace pintle {

/// Marks the icon's window in a panel: to the rest of the program it is a part of the panel.
inline constexpr const char* kIsTrayIcon = "isTrayIcon";

/// Both must outlive the bar and its items.
std::unique_ptr<StatusBar> makeQtStatusBar(Appearance& appearance, const ShellDesktop& desktop);

/// The visible windows of this program by their numbers, without the icon in a panel.
std::vector<NativeWindow> ownWindows();

}  // namespace pintle
