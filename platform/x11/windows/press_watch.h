// Sees the presses of the mouse over any window of the desktop, and numbers them. One listener of the shell's
// connection to the X server. Main thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/signal.h"
#include "platform/event_monitors.h"
#include "platform/x11/x_connection.h"

namespace pintle {

class PressWatch {
  public:
    /// `ownWindows`: the visible windows of this program, whose presses are not reported.
    PressWatch(x11::XConnection& connection, std::function<std::vector<std::uintptr_t>()> ownWindows,
               std::function<std::chrono::nanoseconds()> now);

    /// Whether the server reports presses.
    bool works() const { return inputOpcode_ != 0; }
    Subscription observe(std::function<void(const GlobalMouseDown&)> handler) {
        return pressed_.observe(std::move(handler));
    }
    /// The press that is held down or was released within the last second.
    std::optional<std::uint64_t> current() const;
    void take(const xcb_generic_event_t& event);

  private:
    bool isOnOwnWindow() const;

    x11::XConnection& connection_;
    const std::function<std::vector<std::uintptr_t>()> ownWindows_;
    const std::function<std::chrono::nanoseconds()> now_;
    std::uint8_t inputOpcode_ = 0;
    std::uint64_t presses_ = 0;
    std::optional<std::chrono::nanoseconds> released_;
    Signal<const GlobalMouseDown&> pressed_;
};

}  // namespace pintle
