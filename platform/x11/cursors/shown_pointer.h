// What the server shows under the pointer, asked over any connection, and a way to ask and answer without
// anybody in between. Used by the watcher and the keeper. Main thread.
#pragma once

#include <optional>

#include "platform/x11/cursors/keeper_rules.h"
#include "platform/x11/x_connection.h"

namespace pintle::x11 {

struct PointerState {
    int x = 0;
    int y = 0;
    bool buttonPressed = false;
    /// The innermost window under the pointer; the root window when there is none.
    xcb_window_t deepest = 0;
};

/// The cursor shown now; absent when the connection is gone. `lastKnown` gives serial and name where the
/// server does not let the cursor be read.
std::optional<ShownCursor> shownCursor(XConnection& connection, const std::optional<ShownCursor>& lastKnown);
/// Absent when the connection is gone.
std::optional<PointerState> pointerState(XConnection& connection);

/// While it lives, the server serves this connection alone: what is read stays true until it is acted on. No
/// other connection may be asked meanwhile, it would wait for ever. Ends with the connection at the latest.
class ServerGrab {
  public:
    explicit ServerGrab(XConnection& connection);
    ~ServerGrab();
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

  private:
    XConnection& connection_;
};

}  // namespace pintle::x11
