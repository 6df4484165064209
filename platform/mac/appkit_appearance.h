// How AppKit says that programs should look, without Objective-C. Main thread only.
#pragma once

#include <functional>

#include "base/subscription.h"
#include "platform/appearance.h"

namespace pintle {

/// Translucency that the user has switched off counts as none there.
DesktopLook readDesktopLook();
/// Calls `changed` on the main thread when light and dark change places, until the handle ends.
Subscription observeEffectiveAppearance(std::function<void()> changed);

}  // namespace pintle
