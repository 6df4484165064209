// The windows on screen. Main thread only; costs several round trips, so callers keep the answer for a while.
#pragma once

#include <string>
#include <vector>

#include "base/geometry.h"

namespace pintle {

struct WindowInfo {
    /// The application's name, the same one that Workspace gives.
    std::string ownerName;
    /// 0 for ordinary windows, higher for menus, panels and lockers.
    int layer = 0;
    /// Global points, y up.
    Rect bounds;
    friend bool operator==(const WindowInfo&, const WindowInfo&) = default;
};

class WindowList {
  public:
    virtual ~WindowList() = default;
    /// Front to back, without the desktop's own background.
    virtual std::vector<WindowInfo> onScreenWindows() = 0;
};

}  // namespace pintle
