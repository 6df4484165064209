// The connection that hides the pointer and owns the overlay's windows. It is never retained: when this
// process ends, however it ends, the server drops the hiding and the pointer is drawn again. Main thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/signal.h"
#include "platform/x11/x_connection.h"

namespace pintle::overlay {

class OverlayConnection {
  public:
    /// Absent (null) when there is no server or it lacks XFixes 5, Shape or XInput 2.
    static std::unique_ptr<OverlayConnection> open(const std::string& display);

    x11::XConnection& x() { return *connection_; }
    xcb_connection_t* get() const { return connection_->get(); }
    bool isBroken() const { return connection_->isBroken(); }
    /// Opens a new connection instead of a broken one; observers of reopened() then create their objects on
    /// the server again. Only once: a connection that is lost twice would be lost again and again. False when
    /// there is none.
    bool reopen();

    /// Handles the events that have arrived; costs no round trip. Called when the descriptor is readable and
    /// before a question about the pointer is answered.
    void drain();
    /// Called by whoever follows the pointer. Motion, restacking and cursor changes are reported from the
    /// first call until no further call has come for two seconds, so that the mouse does not wake a program
    /// at rest.
    void follow();
    /// Whether motion is reported. A caller that follows drains anyway, so a report need not wake it.
    bool isFollowed() const { return following_; }
    /// Sends what was asked so far.
    void flush() { xcb_flush(get()); }

    /// Counts the reports of raw pointer motion and pressed buttons.
    std::uint64_t motions() const { return motions_; }
    /// Counts the changes of what lies above what.
    std::uint64_t restackings() const { return restackings_; }
    /// Counts the changes of monitors and of the root window's size.
    std::uint64_t displayChanges() const { return displayChanges_; }
    /// Serial of the cursor shown last; 0 before the first report since following began.
    std::uint32_t cursorSerial() const { return cursorSerial_; }
    /// Before the first report the serial that was read stands in for it.
    void cursorWasRead(std::uint32_t serial) {
        if (cursorSerial_ == 0) cursorSerial_ = serial;
    }
    xcb_atom_t cursorName() const { return cursorName_; }
    bool hasCompositor() const { return hasCompositor_; }

    /// A window of this connection; its own restacking is not counted.
    void addOwnWindow(xcb_window_t window);
    void removeOwnWindow(xcb_window_t window);
    bool isOwn(xcb_window_t window) const;

    Signal<>& compositorChanged() { return compositorChanged_; }
    /// Everything made on the server is gone, and no pointer is hidden.
    Signal<>& reopened() { return reopened_; }

  private:
    OverlayConnection(std::string display, std::unique_ptr<x11::XConnection> connection);
    static std::unique_ptr<x11::XConnection> connect(const std::string& display);
    void begin();
    void askForCompositor();
    void listen(bool toEverything);
    void handle(const xcb_generic_event_t& event);

    const std::string display_;
    std::unique_ptr<x11::XConnection> connection_;
    bool hasReopened_ = false;
    std::vector<xcb_window_t> ownWindows_;
    xcb_atom_t compositorSelection_ = 0;
    std::uint8_t firstRandrEvent_ = 0;
    std::uint8_t inputOpcode_ = 0;
    std::uint64_t motions_ = 1;
    std::uint64_t restackings_ = 1;
    std::uint64_t displayChanges_ = 1;
    std::uint32_t cursorSerial_ = 0;
    xcb_atom_t cursorName_ = 0;
    bool hasCompositor_ = false;
    bool following_ = false;
    std::chrono::steady_clock::time_point lastFollowed_;
    Signal<> compositorChanged_;
    Signal<> reopened_;
};

}  // namespace pintle::overlay
