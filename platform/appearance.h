// How the desktop wants programs to look. The user interface follows it; nothing waits for it. Main thread
// only.
#pragma once

#include <functional>

#include "base/subscription.h"

namespace pintle {

/// These defaults hold until the desktop reports something else.
struct DesktopLook {
    bool dark = false;
    /// Movement is left out; what changes does so at once.
    bool reducedMotion = false;
    /// Outlines and texts get all the contrast there is.
    bool highContrast = false;
    /// The user's size of text over the one that the scale of the screen gives; 1 where none was chosen.
    /// Between 0.5 and 4.
    double textScale = 1;
    /// Whether something puts translucent windows over what lies behind them. Without it, a translucent
    /// window shows black or garbage.
    bool blendsWindows = false;
    friend bool operator==(const DesktopLook&, const DesktopLook&) = default;
};

class Appearance {
  public:
    virtual ~Appearance() = default;
    /// The last look that was reported. Cheap.
    virtual const DesktopLook& look() const = 0;
    /// Calls `changed`, from the main queue, each time `look` became another one, until the handle ends.
    virtual Subscription observe(std::function<void()> changed) = 0;
};

}  // namespace pintle
