#include "apply/overlay_decision.h"

#include <algorithm>

namespace pintle {

const Screen* screenAt(std::span<const Screen> screens, Point point) {
    const auto found = std::find_if(screens.begin(), screens.end(),
                                    [&](const Screen& screen) { return mouseInRect(point, screen.frame); });
    return found == screens.end() ? nullptr : &*found;
}

DisplayId displayID(const Screen& screen, DisplayId mainDisplay) { return screen.id.value_or(mainDisplay); }

OverlayDecision decideOverlayTick(const OverlayTickFacts& facts) {
    constexpr OverlayDecision stepAside{OverlayOutcome::stepAside, 0};
    if (facts.paused || facts.screens.empty()) return {};
    if (facts.isCurrentAppExcluded) return stepAside;
    const Screen* screen = screenAt(facts.screens, facts.mouse);
    if (!screen) return stepAside;
    const DisplayId display = displayID(*screen, facts.mainDisplay);
    if (!facts.alwaysUseThemedCursor && facts.isFullscreen(display)) return stepAside;
    if (facts.mouseIsInProtectedArea()) return stepAside;
    if (facts.isScreenWatched() && facts.pauseWhenScreenShared) return stepAside;
    return {OverlayOutcome::draw, display};
}

}  // namespace pintle
