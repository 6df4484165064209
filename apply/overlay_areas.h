// Where on screen the overlay has no place: displays that one window covers, and windows of lockers and
// authentication dialogs. Pure.
#pragma once

#include <set>
#include <span>
#include <string>

#include "base/geometry.h"
#include "platform/displays.h"
#include "platform/window_list.h"

namespace pintle {

/// Displays covered by a window: one at layer 0 or above, not of an ignored owner (exact names), whose edges
/// all lie within 10 points of the display's and that is smaller than the display by at most 5 points a side.
std::set<DisplayId> fullscreenDisplayIDs(std::span<const WindowInfo> windows, std::span<const Screen> screens,
                                         DisplayId mainDisplay, std::span<const std::string> ignoredOwners);

/// Whether the point lies in a window of one of the owners (exact names).
bool checkProtectionArea(std::span<const WindowInfo> windows, Point point,
                         std::span<const std::string> protectedOwners);

}  // namespace pintle
