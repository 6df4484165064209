// The connection that registers cursors, and nothing else: its cursors, the window that marks it, the root
// window's cursors. The server keeps what it made after this process has ended, because a shown cursor whose
// maker is gone can be read by nobody. Main thread.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/cursors/core_glyphs.h"
#include "platform/x11/cursors/cursor_maker.h"
#include "platform/x11/cursors/wanted_cursors.h"
#include "platform/x11/x_connection.h"

namespace pintle::x11 {

/// How a program sets the cursor of a window: for all pointers by the core protocol, or for each by XInput 2.
enum class CursorChannel { core, device };

class Registration {
  public:
    /// Absent (null) when there is no server or it lacks what is needed; `reachedServer` says which.
    static std::unique_ptr<Registration> open(const std::string& display, bool& reachedServer);

    XConnection& connection() { return *connection_; }

    /// Makes the cursors of a picture that a later send() puts in force. Names that show or wait for an equal
    /// picture are left alone. Returns 0 or an X error code, and then nothing has changed.
    int prepare(const PicturePtr& picture, std::span<const std::string_view> names);
    /// Puts changes in force. Returns those that were sent; a change whose cursor the server refused is not
    /// among them. The first call makes the registration permanent and ends that of an earlier process.
    std::vector<WantedCursors::Change> send(const std::vector<WantedCursors::Change>& changes);
    /// Frees what was prepared and is not needed.
    void dropPrepared();

    /// Replaces again, by name, every cursor of the server that has this name.
    void replaceByName(std::string_view name);
    /// Sets the picture in force for `name` on somebody's window.
    void define(xcb_window_t window, std::string_view name, CursorChannel channel);
    void undefine(xcb_window_t window, CursorChannel channel);
    /// Sets a glyph of the core font on somebody's window.
    void defineGlyph(xcb_window_t window, const CoreGlyph& glyph);

    bool hasSent() const { return permanent_; }
    /// Whether another process registered after `lost`, whose connection is gone, and is there.
    bool hasSuccessor(const Registration& lost);

  private:
    struct Made {
        xcb_cursor_t cursor = 0;
        PicturePtr picture;
    };

    explicit Registration(std::unique_ptr<XConnection> connection);
    void makePermanent();
    void endPredecessor();
    /// Whether only a registration can have made this window.
    bool isRegistration(xcb_window_t window);
    /// A cursor of the picture in force for `name`, with its name; 0 when there is none. Every use takes a
    /// new one: a change by name, whoever makes it, turns existing ids of that name into the new cursor, and
    /// a window whose cursor is the same object as its parent's loses it.
    xcb_cursor_t freshCursor(std::string_view name);
    void nameIt(xcb_cursor_t cursor, std::string_view name);
    void change(std::string_view name, xcb_cursor_t cursor);
    void set(xcb_window_t window, xcb_cursor_t cursor, CursorChannel channel);
    void free(xcb_cursor_t cursor) { xcb_free_cursor(connection_->get(), cursor); }

    std::unique_ptr<XConnection> connection_;
    CursorMaker maker_;
    /// Nameless until they are sent, so that nobody's change by name reaches them.
    std::map<std::string_view, Made> prepared_;
    std::map<std::string_view, PicturePtr> inForce_;
    const xcb_atom_t mark_;
    /// The first id of this connection.
    const xcb_window_t window_;
    xcb_window_t predecessor_ = 0;
    bool permanent_ = false;
    bool announced_ = false;
};

}  // namespace pintle::x11
