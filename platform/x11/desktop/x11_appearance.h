// The look that an X11 desktop with freedesktop services asks for: the desktop portal before the settings
// manager of the X screen. The root makes one. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/subscription.h"
#include "platform/appearance.h"
#include "platform/main_queue.h"

namespace pintle {

struct X11AppearanceOptions {
    /// Absent: the display of the environment.
    std::optional<std::string> display;
    /// Outlives the appearance.
    MainQueue& queue;
    /// Calls `readable` on the main thread whenever the descriptor has something to read, until the handle
    /// ends. Required.
    std::function<Subscription(int descriptor, std::function<void()> readable)> watchReadable;
    /// Whether the toolkit already makes everything larger by the desktop's dots per inch.
    bool toolkitScalesByDpi = true;
};

/// Never null. Starts to ask with the first turn of the queue; until the answers arrive, and for whatever the
/// desktop does not report, the look is the default one. The toolkit's application object must exist.
std::unique_ptr<Appearance> makeX11Appearance(X11AppearanceOptions options);

}  // namespace pintle
