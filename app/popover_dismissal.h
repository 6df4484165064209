// Distinguishes the second click on the status item from a first one. The press of that click has already
// closed the popover, as every press outside of it does; the activation that the desktop makes of the same
// click must not open it again. Used by the delegate; main thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/event_monitors.h"
#include "platform/status_item.h"

namespace pintle {

class PopoverDismissal {
  public:
    /// How long after the press an activation without a press number still counts as its own. Hosts that
    /// report no number pass the click on when the button goes up, which takes people a few hundred
    /// milliseconds, over the session bus, which takes a few. A newer press ends this time early.
    static constexpr std::chrono::nanoseconds kLongestClick = std::chrono::seconds(1);

    /// A press was seen; with `closedPopover` it was the reason for closing the popover. `now` is
    /// MainQueue::now().
    void pressed(const GlobalMouseDown& press, bool closedPopover, std::chrono::nanoseconds now);
    /// Whether this activation belongs to the press that closed the popover. True once for each such press.
    bool drops(const StatusItemEvent& event, std::chrono::nanoseconds now);

  private:
    struct Closing {
        std::uint64_t press;
        std::chrono::nanoseconds at;
    };
    std::optional<Closing> closing_;
};

}  // namespace pintle
