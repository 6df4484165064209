// The overlay's windows: 32-bit, override-redirect, without input, above everything. With a compositor their
// alpha blends; without one the window is cut to the image's shape. Main thread.
#pragma once

#include "platform/overlay_surfaces.h"
#include "platform/x11/overlay/overlay_connection.h"
#include "platform/x11/overlay/x11_displays.h"

namespace pintle::overlay {

/// What windows of the overlay are made with.
struct WindowKind {
    xcb_visualid_t visual = 0;
    std::uint8_t depth = 0;
    xcb_colormap_t colormap = 0;
};

class X11OverlaySurfaces : public OverlaySurfaces {
  public:
    X11OverlaySurfaces(OverlayConnection& connection, X11Displays& displays);
    ~X11OverlaySurfaces() override;

    std::unique_ptr<OverlaySurface> create(DisplayId display, Size size) override;

  private:
    void chooseVisual();

    OverlayConnection& connection_;
    X11Displays& displays_;
    WindowKind kind_;
    /// Before those of the surfaces, which are made later and need the colormap.
    Subscription reopened_;
};

}  // namespace pintle::overlay
