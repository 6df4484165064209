// Notifications of the desktop, over the session bus. Main thread.
#pragma once

#include <string>

namespace pintle {

/// Returns at once; the message is lost where no service shows notifications.
void showDesktopNotification(const std::string& title, const std::string& text);

}  // namespace pintle
