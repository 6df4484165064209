#include "platform/mac/mac_event_monitors.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/mac/native_events.h"
#include "platform/mac/ns_text.h"

namespace pintle {
namespace {

static_assert(kLeftMouseDownMask == NSEventMaskLeftMouseDown);
static_assert(kRightMouseDownMask == NSEventMaskRightMouseDown);
static_assert(kKeyDownMask == NSEventMaskKeyDown);

static_assert(kNativeRightMouseDown == NSEventTypeRightMouseDown);

GlobalMouseDown pressOf(NSEvent* event, std::uint64_t press) { return {pressedButton(event.type), press}; }

LocalKeyDown keyOf(NSEvent* event) {
    return {(event.modifierFlags & NSEventModifierFlagCommand) != 0,
            fromNsString(event.charactersIgnoringModifiers)};
}

Subscription removingAtEnd(id monitor) {
    if (!monitor) return {};
    return Subscription([monitor] { [NSEvent removeMonitor:monitor]; });
}

class MacEventMonitors : public EventMonitors {
  public:
    Subscription addGlobalMonitor(EventMask mask,
                                  std::function<void(const GlobalMouseDown&)> handler) override {
        const auto presses = presses_;
        return removingAtEnd([NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                                    handler:^(NSEvent* event) {
                                                                      handler(pressOf(event, ++*presses));
                                                                    }]);
    }
    Subscription addLocalMonitor(EventMask mask, std::function<bool(const LocalKeyDown&)> handler) override {
        return removingAtEnd([NSEvent addLocalMonitorForEventsMatchingMask:mask
                                                                   handler:^NSEvent*(NSEvent* event) {
                                                                     return handler(keyOf(event)) ? nil
                                                                                                  : event;
                                                                   }]);
    }

  private:
    const std::shared_ptr<std::uint64_t> presses_ = std::make_shared<std::uint64_t>(0);
};

}  // namespace

std::unique_ptr<EventMonitors> makeMacEventMonitors() { return std::make_unique<MacEventMonitors>(); }

}  // namespace pintle
