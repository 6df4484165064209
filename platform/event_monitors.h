// Watchers of mouse presses that go to others and of keys that come to this program. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/subscription.h"

namespace pintle {

/// Bits of the platform's event mask.
using EventMask = std::uint64_t;
inline constexpr EventMask kLeftMouseDownMask = 1u << 1;
inline constexpr EventMask kRightMouseDownMask = 1u << 3;
inline constexpr EventMask kLeftMouseUpMask = 1u << 2;
inline constexpr EventMask kRightMouseUpMask = 1u << 4;
inline constexpr EventMask kKeyDownMask = 1u << 10;

struct GlobalMouseDown {
    enum class Button { left, right };
    Button button = Button::left;
    /// Counts the presses seen, from 1.
    std::uint64_t press = 0;
};

struct LocalKeyDown {
    /// The desktop's command modifier is down: Command, or Control where there is no such key.
    bool commandModifier = false;
    std::string charactersIgnoringModifiers;
};

class EventMonitors {
  public:
    virtual ~EventMonitors() = default;
    /// Calls `handler` for the masked presses outside of this program's own popover and windows until the
    /// handle ends. The status item counts as outside where the desktop hands it the press. An empty handle
    /// where presses cannot be watched.
    virtual Subscription addGlobalMonitor(EventMask mask,
                                          std::function<void(const GlobalMouseDown&)> handler) = 0;
    /// Calls `handler` for the masked keys that come to windows of this program; true swallows the key.
    virtual Subscription addLocalMonitor(EventMask mask,
                                         std::function<bool(const LocalKeyDown&)> handler) = 0;
};

}  // namespace pintle
