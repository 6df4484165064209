#include "app/popover_dismissal.h"

namespace pintle {

void PopoverDismissal::pressed(const GlobalMouseDown& press, bool closedPopover,
                               std::chrono::nanoseconds now) {
    closing_.reset();
    // A press of the right button leads to the menu, never to an activation.
    if (closedPopover && press.button == GlobalMouseDown::Button::left) closing_ = Closing{press.press, now};
}

bool PopoverDismissal::drops(const StatusItemEvent& event, std::chrono::nanoseconds now) {
    if (!closing_ || event.type != StatusItemEventType::leftMouseUp) return false;
    // A late one, of a press before: the closing press still waits for its own.
    if (event.press && *event.press < closing_->press) return false;
    const bool belongs = event.press ? *event.press == closing_->press : now - closing_->at <= kLongestClick;
    closing_.reset();
    return belongs;
}

}  // namespace pintle
