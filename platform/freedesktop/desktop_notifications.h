// Notifications of the desktop, over the session bus. Main thread.
#pragma once

#include <memory>
#include <string>

namespace pintle {

class DesktopNotifications {
  public:
    /// Connects with the first message, because most runs show none.
    DesktopNotifications();
    ~DesktopNotifications();
    DesktopNotifications(const DesktopNotifications&) = delete;
    DesktopNotifications& operator=(const DesktopNotifications&) = delete;

    /// Returns at once. Without a bus the last message waits for the next one; it is lost where no service
    /// shows notifications.
    void show(const std::string& title, const std::string& text);

  private:
    class Sender;
    const std::unique_ptr<Sender> sender_;
};

}  // namespace pintle
