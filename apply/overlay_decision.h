// What one tick of the overlay does before it looks at the cursor itself, from the facts of that tick. Pure;
// a fact that costs something is asked only when its step is reached.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "base/geometry.h"
#include "platform/displays.h"

namespace pintle {

enum class OverlayOutcome {
    /// The tick changes nothing.
    nothing,
    /// The overlay's windows are hidden and the hardware pointer is shown.
    stepAside,
    /// The hardware pointer is hidden and the themed image drawn at the mouse.
    draw,
};

struct OverlayTickFacts {
    bool paused = false;
    /// Copies: asking for the mouse may change what the platform has attached.
    std::vector<Screen> screens;
    DisplayId mainDisplay = 0;
    Point mouse;
    bool isCurrentAppExcluded = false;
    bool alwaysUseThemedCursor = false;
    std::function<bool(DisplayId)> isFullscreen;
    std::function<bool()> mouseIsInProtectedArea;
    std::function<bool()> isScreenWatched;
    bool pauseWhenScreenShared = false;
};

struct OverlayDecision {
    OverlayOutcome outcome = OverlayOutcome::nothing;
    /// The display under the mouse; only with `draw`.
    DisplayId display = 0;
    friend bool operator==(const OverlayDecision&, const OverlayDecision&) = default;
};

/// The first screen whose frame contains the mouse. Null for none.
const Screen* screenAt(std::span<const Screen> screens, Point point);

/// The screen's number, or the main display where the desktop does not report it.
DisplayId displayID(const Screen& screen, DisplayId mainDisplay);

OverlayDecision decideOverlayTick(const OverlayTickFacts& facts);

}  // namespace pintle
