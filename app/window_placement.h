// Where the popover and the windows stand: under the status item, or where it would be. Pure; used by the
// delegate. Points, y up.
#pragma once

#include <optional>
#include <vector>

#include "base/geometry.h"
#include "platform/windows.h"

namespace pintle {

/// What the desktop asks of placed windows; given by the root.
enum class PlacementPolicy {
    /// The place is taken as computed, even where it leaves the screen, and an item that stands in no window
    /// counts as a rectangle of zero size at the origin.
    asComputed,
    /// Every window ends inside its screen's work area, and is made smaller where that has no space. An item
    /// whose host does not report its frame counts as being where it was last clicked.
    insideWorkArea,
};

/// What is known about the place of the status item.
struct Placement {
    PlacementPolicy policy = PlacementPolicy::asComputed;
    /// The item can be seen and clicked, or will be once there is a bar.
    bool hasButton = false;
    /// A bar is there now.
    bool hasBar = true;
    /// The item's frame; absent where the host does not report it.
    std::optional<Rect> button;
    /// Where the pointer was when the item was last clicked.
    std::optional<Point> lastClick;
    /// The first one is the main screen.
    std::vector<ScreenArea> screens;
};

/// The gap between the item and what hangs from it.
inline constexpr double kStatusItemGap = 5;
/// What windows that end inside a work area keep free of the screen's own edges, where there is room; beside
/// a panel they may touch it.
inline constexpr double kScreenEdgeGap = 8;

/// The frame for a window that would like to be of `size`.
Rect placeUnderStatusItem(Size size, const Placement& placement);

}  // namespace pintle
