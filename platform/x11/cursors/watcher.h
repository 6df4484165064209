// The connection that looks: it observes cursor changes and the desktop's settings, and reads what is
// shown where. Registers nothing, so it ends with the process. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/x11/cursors/desktop_settings.h"
#include "platform/x11/cursors/keeper_rules.h"
#include "platform/x11/cursors/shown_pointer.h"
#include "platform/x11/x_connection.h"

namespace pintle::x11 {

class Watcher {
  public:
    /// What arrived since the last question.
    struct News {
        /// The last cursor that came to be shown, with the name as far as the event carries it.
        std::optional<ShownCursor> cursor;
        bool settingsChanged = false;
    };

    /// Absent (null) when there is no server or it lacks what is needed.
    static std::unique_ptr<Watcher> open(const std::string& display);

    XConnection& connection() { return *connection_; }

    /// Whether cursor changes are news.
    void listenToCursors(bool listen);
    News takeNews();
    /// The cursor shown now; absent when the connection is gone. `lastKnown` gives serial and name where the
    /// server does not let the cursor be read.
    std::optional<ShownCursor> shownCursor(const std::optional<ShownCursor>& lastKnown) {
        return x11::shownCursor(*connection_, lastKnown);
    }
    std::optional<PointerState> pointer() { return pointerState(*connection_); }
    /// The cursor that the root window, and windows without one of their own, would show. Puts a window
    /// without a cursor under the pointer for a moment if the pointer is not over the bare root.
    std::optional<ShownCursor> cursorOfRoot();
    CursorThemeChoice cursorTheme(const Environment& environment);

  private:
    explicit Watcher(std::unique_ptr<XConnection> connection);
    void followSettingsManager();
    std::string atomName(xcb_atom_t atom);

    std::unique_ptr<XConnection> connection_;
    xcb_atom_t managerSelection_;
    xcb_atom_t managerProperty_;
    xcb_window_t manager_ = 0;
};

}  // namespace pintle::x11
