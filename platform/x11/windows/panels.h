// What panels say about themselves: the colour on which icons stand, and what they take from a screen. Asked
// of the X server at each call. Main thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/x11/x_connection.h"

namespace pintle::panels {

struct Colours {
    bool dark = false;
    /// 0xRRGGBB, where the panel names one.
    std::optional<std::uint32_t> foreground;
};

/// What the icon in window `icon` stands on; of the largest panel when it is 0. `trayOwner`: the window that
/// manages the icons in the panel, 0 for none. Absent when the panel is translucent or cannot be read.
std::optional<Colours> coloursOf(x11::XConnection& connection, xcb_window_t icon, xcb_window_t trayOwner);

/// In pixels, from the edges of a monitor.
struct Insets {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// What windows have reserved on the monitor with this name. Absent when there is no such monitor.
std::optional<Insets> insetsOf(x11::XConnection& connection, const std::string& monitor);

}  // namespace pintle::panels
