// Small transparent windows above everything that neither take clicks nor focus. Main thread only.
#pragma once

#include <memory>
#include <optional>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "platform/displays.h"

namespace pintle {

/// One overlay window. Ending it closes the window.
class OverlaySurface {
  public:
    virtual ~OverlaySurface() = default;
    /// Whether the desktop keeps it on the screen, whatever its alpha and its image; asked after orderFront()
    /// only. False when something other than this program has taken it away, where a desktop can do that.
    virtual bool isVisible() const = 0;
    virtual void setSize(Size size) = 0;
    /// Drawn over the whole surface; absent draws nothing.
    virtual void setImage(const std::optional<Bitmap>& image) = 0;
    /// The lower-left corner, in global points.
    virtual void setOrigin(Point origin) = 0;
    /// 0 is invisible, 1 opaque.
    virtual void setAlpha(double alpha) = 0;
    virtual void orderFront() = 0;
};

class OverlaySurfaces {
  public:
    virtual ~OverlaySurfaces() = default;
    /// A surface on that display, invisible at first. Null where none can be made.
    virtual std::unique_ptr<OverlaySurface> create(DisplayId display, Size size) = 0;
};

}  // namespace pintle
