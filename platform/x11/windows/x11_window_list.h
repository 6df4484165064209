// The windows on an X11 screen: the window manager's clients, and over them the windows that it does not
// manage (menus, lockers, notifications). Main thread.
#pragma once

#include "platform/window_list.h"
#include "platform/x11/overlay/overlay_connection.h"
#include "platform/x11/overlay/x11_displays.h"

namespace pintle::overlay {

class X11WindowList : public WindowList {
  public:
    X11WindowList(OverlayConnection& connection, X11Displays& displays);
    /// Managed windows have layer 0, docks 1, unmanaged windows 2; the desktop's own background is left out.
    /// Two round trips and one more for each nesting, however many windows there are.
    std::vector<WindowInfo> onScreenWindows() override;

  private:
    struct Atoms {
        xcb_atom_t clientsStacking = 0;
        xcb_atom_t windowType = 0;
        xcb_atom_t typeDesktop = 0;
        xcb_atom_t typeDock = 0;
        xcb_atom_t windowProcess = 0;
    };
    std::vector<xcb_window_t> managedWindows();

    OverlayConnection& connection_;
    X11Displays& displays_;
    Atoms atoms_;
};

}  // namespace pintle::overlay
