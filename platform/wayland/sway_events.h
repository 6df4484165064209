// What sway reports by itself of what concerns a pointer's theme. Main thread only.
#pragma once

#include <functional>

#include "base/subscription.h"
#include "platform/wayland/settings_provider.h"
#include "platform/wayland/wayland_window_server.h"

namespace pintle::wayland {

/// Calls `readable` on the main thread whenever the descriptor has something to read, until the handle ends.
using WatchReadable = std::function<Subscription(int descriptor, std::function<void()> readable)>;

/// Calls `handler` on the main thread at each report. Empty outside of sway and when it does not take the
/// question; reports end without a word when sway does, or says what is no message. Versions before 1.9 do
/// not report outputs.
Subscription observeSway(const Environment& environment, const WatchReadable& watchReadable,
                         std::function<void(CompositorNews)> handler);

}  // namespace pintle::wayland
