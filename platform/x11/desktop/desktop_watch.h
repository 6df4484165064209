// Observes on the X server which application is in front, changes of the displays and what disturbs cursors.
// Has a connection of its own, which registers nothing. Main thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/lifetime.h"
#include "platform/x11/cursors/desktop_settings.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "platform/x11/x_connection.h"

namespace pintle {

class DesktopWatch {
  public:
    struct Listener {
        /// Another application than before came to the front.
        std::function<void(const RunningApplication&)> activated;
        /// Once for each batch of changes of screens and monitors.
        std::function<void()> displaysChanged;
        std::function<void(bool asleep)> screensSleep;
        /// The desktop's cursor theme or its window manager is another one.
        std::function<void()> pointerDisturbed;
        /// pixelsPerPoint() is another one.
        std::function<void()> densityChanged;
    };

    DesktopWatch(X11WorkspaceOptions options, Listener listener);
    ~DesktopWatch();

    /// As of the last event. Absent while no window is active.
    const std::optional<RunningApplication>& frontmost() const { return frontmost_; }
    /// As of the last event; 1 without an X server.
    double pixelsPerPoint() const { return themeSettings_.pixelsPerPoint; }

  private:
    struct Atoms {
        xcb_atom_t activeWindow = 0;
        xcb_atom_t windowManagerCheck = 0;
        xcb_atom_t windowManager = 0;
        xcb_atom_t windowProcess = 0;
        xcb_atom_t settingsManager = 0;
        xcb_atom_t settings = 0;
    };
    struct ThemeSettings {
        CursorXSettings published;
        std::optional<std::string> theme;
        std::optional<std::string> size;
        double pixelsPerPoint = 1;
        friend bool operator==(const ThemeSettings&, const ThemeSettings&) = default;
    };
    /// What a batch of events brought.
    struct News {
        bool activeWindow = false;
        bool displays = false;
        bool settingsManager = false;
        bool themeSettings = false;
        bool windowManager = false;
    };

    bool open();
    void selectEvents();
    void followSettingsManager();
    void readable();
    void reopen();
    void take(const xcb_generic_event_t& event, News& news);
    void report(const News& news);
    void readActiveWindow(bool announce);
    std::optional<RunningApplication> applicationOf(xcb_window_t window);
    ThemeSettings readThemeSettings();
    /// Answers whether what the desktop shows as pointers is another thing now.
    bool takeThemeSettings();
    void askForPowerLevel();
    void setScreensAsleep();

    X11WorkspaceOptions options_;
    Listener listener_;
    std::unique_ptr<x11::XConnection> connection_;
    Atoms atoms_;
    std::uint8_t firstRandrEvent_ = 0;
    std::uint8_t firstFixesEvent_ = 0;
    std::uint8_t firstSaverEvent_ = 0;
    xcb_window_t settingsManager_ = 0;
    ThemeSettings themeSettings_;
    std::optional<RunningApplication> frontmost_;
    /// The last application in front, also while no window is active.
    std::optional<RunningApplication> lastInFront_;
    bool saverOn_ = false;
    bool poweredDown_ = false;
    bool screensAsleep_ = false;
    Timer powerTimer_;
    Subscription watch_;
    Lifetime lifetime_;
};

/// The name that users know an application by: the class of its window, else the name of its process. Absent
/// when it has neither. `windowClass` is the raw property WM_CLASS; a `pid` of 0 is no process.
std::optional<std::string> applicationName(std::string_view windowClass, std::int32_t pid);

}  // namespace pintle
