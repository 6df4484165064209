// Makes X cursor objects from pictures. Main thread.
#pragma once

#include <xcb/render.h>

#include <span>
#include <string_view>
#include <vector>

#include "platform/x11/cursors/cursor_picture.h"
#include "platform/x11/x_connection.h"

namespace pintle::x11 {

class CursorMaker {
  public:
    explicit CursorMaker(XConnection& connection);

    /// Whether the server knows pictures of premultiplied 32-bit pixels.
    bool isUsable() const { return format_ != 0; }
    /// One cursor for each name, in order, owned by the caller. The frames of an animation have the name, as
    /// the server reports the frame; the cursors have none yet. Waits for the server's answer: returns 0, or
    /// the code of the first error, and then nothing is left behind.
    int make(const CursorPicture& picture, std::span<const std::string_view> names,
             std::vector<xcb_cursor_t>& made);

  private:
    class Drawing;

    XConnection& connection_;
    xcb_render_pictformat_t format_ = 0;
};

}  // namespace pintle::x11
