// The overlay's windows: 32-bit, override-redirect, without input, above everything. With a compositor their
// alpha blends; without one the window is cut to the image's shape. Main thread.
#pragma once

#include "platform/overlay_surfaces.h"
#include "platform/x11/overlay/overlay_connection.h"
#include "platform/x11/overlay/x11_displays.h"

namespace pintle::overlay {

class X11OverlaySurfaces : public OverlaySurfaces {
  public:
    X11OverlaySurfaces(OverlayConnection& connection, X11Displays& displays);
    ~X11OverlaySurfaces() override;

    std::unique_ptr<OverlaySurface> create(DisplayId display, Size size) override;

  private:
    OverlayConnection& connection_;
    X11Displays& displays_;
    xcb_visualid_t visual_ = 0;
    std::uint8_t depth_ = 0;
    xcb_colormap_t colormap_ = 0;
};

}  // namespace pintle::overlay
