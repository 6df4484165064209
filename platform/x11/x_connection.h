// One connection to the X server that answers errors instead of ending the program, and small helpers over
// its replies. Main thread.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pintle::x11 {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// An answer of the server; null when it answered an error or the connection is gone.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

class XConnection {
  public:
    /// Absent (null) when no connection can be had.
    static std::unique_ptr<XConnection> open(const std::string& display);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    xcb_connection_t* get() const { return connection_; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    int descriptor() const { return xcb_get_file_descriptor(connection_); }

    /// Whether the server has the extensions this backend needs; asking also announces their versions to the
    /// server, which requires it before their first use.
    bool announceExtensions();
    /// The number of the first event of the extension for cursor changes.
    std::uint8_t firstFixesEvent() const { return firstFixesEvent_; }

    bool isBroken() const { return xcb_connection_has_error(connection_) != 0; }
    /// Waits until the server has done everything sent so far. False when the connection is gone.
    bool synchronize();
    /// The error code of the first request that failed, 0 when none did. Waits for all of them.
    int firstError(const std::vector<xcb_void_cookie_t>& requests);

    xcb_atom_t atom(std::string_view name);
    /// The window that a property of type WINDOW names; 0 when it is missing or of another kind.
    xcb_window_t windowProperty(xcb_window_t window, xcb_atom_t property);
    /// The bytes of a property of any type; empty when it is missing.
    std::vector<std::uint8_t> property(xcb_window_t window, xcb_atom_t property);
    /// The pointers that the user moves, not the devices behind them.
    std::vector<std::uint16_t> masterPointers();

  private:
    XConnection(xcb_connection_t* connection, const xcb_screen_t* screen)
        : connection_(connection), screen_(screen) {}

    xcb_connection_t* connection_;
    const xcb_screen_t* screen_;
    std::uint8_t firstFixesEvent_ = 0;
};

}  // namespace pintle::x11
