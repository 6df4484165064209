// What the applier and the reset need of the overlay: the way to show a theme where registration is refused.
// Main thread only.
#pragma once

#include <vector>

#include "cursor/preloaded_cursor.h"

namespace pintle {

class CursorOverlay {
  public:
    virtual ~CursorOverlay() = default;

    virtual bool isActive() const = 0;
    virtual void start() = 0;
    /// Fills the overlay's store with each cursor's image and hotspot.
    virtual void loadCursorsFromPreloaded(const std::vector<PreloadedCursor>& cursors, double scale) = 0;
    /// Carries the current image and size to every window.
    virtual void updateOverlayWindows() = 0;
    /// Marks it inactive, ends and drops its position timer.
    virtual void deactivate() = 0;
    /// Makes the hardware cursor visible whatever hid it, and clears the active mark.
    virtual void showSystemCursorGuaranteed() = 0;
    virtual void destroyWindows() = 0;
};

}  // namespace pintle
