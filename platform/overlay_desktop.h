// Everything of a desktop that the overlay needs. Main thread only.
#pragma once

#include "platform/accessibility.h"
#include "platform/displays.h"
#include "platform/overlay_surfaces.h"
#include "platform/pointer.h"
#include "platform/window_list.h"

namespace pintle {

/// The parts live as long as this does.
class OverlayDesktop {
  public:
    virtual ~OverlayDesktop() = default;
    virtual Displays& displays() = 0;
    virtual OverlaySurfaces& surfaces() = 0;
    virtual Pointer& pointer() = 0;
    virtual WindowList& windowList() = 0;
    virtual Accessibility& accessibility() = 0;
};

}  // namespace pintle
