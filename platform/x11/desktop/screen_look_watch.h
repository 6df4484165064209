// Observes on the X server what the settings manager publishes about looks, and whether a compositor runs.
// Has a connection of its own. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/lifetime.h"
#include "platform/freedesktop/look_rules.h"
#include "platform/main_queue.h"
#include "platform/x11/x_connection.h"

namespace pintle {

struct ScreenLook {
    PublishedLook published;
    bool composited = false;
    friend bool operator==(const ScreenLook&, const ScreenLook&) = default;
};

class ScreenLookWatch {
  public:
    struct Options {
        /// Absent: the display of the environment.
        std::optional<std::string> display;
        /// Outlives the watch.
        MainQueue& queue;
        /// Calls `readable` on the main thread whenever the descriptor has something to read, until the
        /// handle ends.
        std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
    };

    /// Asks the server. `changed` runs inside this call unless the look is the default one, and later at each
    /// change.
    ScreenLookWatch(Options options, std::function<void(const ScreenLook&)> changed);
    ~ScreenLookWatch();

  private:
    void selectEvents();
    void readable();
    void read();

    Options options_;
    std::function<void(const ScreenLook&)> changed_;
    std::unique_ptr<x11::XConnection> connection_;
    xcb_atom_t settingsSelection_ = 0;
    xcb_atom_t settingsProperty_ = 0;
    xcb_atom_t compositorSelection_ = 0;
    std::uint8_t firstFixesEvent_ = 0;
    xcb_window_t settingsManager_ = 0;
    ScreenLook look_;
    Subscription watch_;
    Lifetime lifetime_;
};

}  // namespace pintle
