#include "apply/overlay_areas.h"

#include <algorithm>
#include <cmath>

#include "apply/overlay_decision.h"

namespace pintle {
namespace {

constexpr double kEdgeTolerance = 10;
constexpr double kSizeTolerance = 5;

bool near(double a, double b) { return std::abs(a - b) <= kEdgeTolerance; }

bool covers(const Rect& window, const Rect& screen) {
    return near(window.origin.x, screen.origin.x) && near(window.origin.y, screen.origin.y) &&
           near(window.origin.x + window.size.width, screen.origin.x + screen.size.width) &&
           near(window.origin.y + window.size.height, screen.origin.y + screen.size.height) &&
           window.size.width >= screen.size.width - kSizeTolerance &&
           window.size.height >= screen.size.height - kSizeTolerance;
}

bool isOneOf(std::span<const std::string> names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::set<DisplayId> fullscreenDisplayIDs(std::span<const WindowInfo> windows, std::span<const Screen> screens,
                                         DisplayId mainDisplay, std::span<const std::string> ignoredOwners) {
    std::set<DisplayId> covered;
    for (const WindowInfo& window : windows) {
        if (window.layer < 0 || isOneOf(ignoredOwners, window.ownerName)) continue;
        for (const Screen& screen : screens)
            if (covers(window.bounds, screen.frame)) covered.insert(displayID(screen, mainDisplay));
    }
    return covered;
}

bool checkProtectionArea(std::span<const WindowInfo> windows, Point point,
                         std::span<const std::string> protectedOwners) {
    return std::any_of(windows.begin(), windows.end(), [&](const WindowInfo& window) {
        return mouseInRect(point, window.bounds) && isOneOf(protectedOwners, window.ownerName);
    });
}

}  // namespace pintle
