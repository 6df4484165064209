// Keeps the theme on what replacing by name does not reach: cursors that programs make later, cursors set for
// a device, private cursors without names. Looks at each cursor that comes to be shown while a theme is in
// force, and replaces it in the order by name, then on the window under the pointer. Main thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "platform/main_queue.h"
#include "platform/x11/cursors/desktop_theme.h"
#include "platform/x11/cursors/keeper_rules.h"
#include "platform/x11/cursors/registration.h"
#include "platform/x11/cursors/wanted_cursors.h"
#include "platform/x11/cursors/watcher.h"

namespace pintle::x11 {

/// What the parts of the backend share. The connections change when one had to be opened again.
struct BackendParts {
    std::unique_ptr<Registration> registration;
    std::unique_ptr<Watcher> watcher;
    WantedCursors wanted;
    DesktopTheme theme;
};

class Keeper {
  public:
    /// `haveRead` is called after the keeper asked the server something outside of a call from above: events
    /// may then wait inside the library without the connection becoming readable.
    Keeper(MainQueue& queue, BackendParts& parts, std::function<void()> haveRead)
        : queue_(queue), parts_(parts), haveRead_(std::move(haveRead)) {}

    /// New pictures are in force for these names. Works from now on if a theme is among what is wanted, else
    /// gives back the windows it touched and rests.
    void applied(const std::vector<WantedCursors::Change>& changes);
    /// A cursor came to be shown.
    void cursorShown(const ShownCursor& cursor);
    /// The watcher is a new one.
    void watcherReplaced();
    void stop();

  private:
    struct Subject {
        std::uint32_t serial = 0;
        std::string_view name;
        int rounds = 0;
        /// It showed no image yet.
        bool begins = false;
    };
    enum class Outcome {
        shows,
        /// Something stronger than the window's cursor is shown.
        refused,
        /// It is no longer the cursor in question that is shown there.
        overtaken,
    };
    struct Touched {
        std::string_view name;
        CursorChannel channel;
        /// What was there, where it was one of the core font's.
        std::optional<CoreGlyph> glyph;
    };

    std::optional<ShownCursor> read() const { return parts_.watcher->shownCursor(lastKnown_); }
    KeeperFinding judged(const ShownCursor& shown);
    std::optional<CoreGlyph> glyphOf(const ShownCursor& shown);
    void examine();
    /// While something else is waited for.
    void examineBesides();
    void startWith(const ShownCursor& shown, std::string_view name, int rounds);
    void examineAgain();
    /// Whether the theme's picture shows, without a wait, where it can be known that only the window's own
    /// cursor is left to be changed.
    bool setAtOnce(const ShownCursor& shown, xcb_window_t window);
    Outcome setOn(const ShownCursor& shown, std::string_view name, xcb_window_t window);
    void replaceOnWindow(const ShownCursor& shown, std::string_view name, xcb_window_t window);
    Outcome tryOn(xcb_window_t window, std::string_view name, CursorChannel channel);
    void waitFor(std::chrono::milliseconds time);
    void giveBackTouched(const std::vector<WantedCursors::Change>& changes);

    MainQueue& queue_;
    BackendParts& parts_;
    std::function<void()> haveRead_;
    bool on_ = false;
    bool waiting_ = false;
    std::optional<ShownCursor> lastKnown_;
    Subject subject_;
    FixLimit limit_;
    /// Serials that need no further look. Cleared with each change of what is in force.
    std::set<std::uint32_t> settled_;
    std::map<xcb_window_t, Touched> touched_;
    /// Absent until something may be one of them. The server's, and so the same for all connections.
    std::optional<CoreGlyphs> glyphs_;
    Timer timer_;
};

}  // namespace pintle::x11
