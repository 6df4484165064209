// The drawn pointer: one count of hidings for all displays, and what the server shows at this moment. Main
// thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/pointer.h"
#include "platform/x11/cursors/desktop_theme.h"
#include "platform/x11/cursors/watcher.h"
#include "platform/x11/overlay/overlay_connection.h"

namespace pintle::overlay {

class X11Pointer : public Pointer {
  public:
    /// `screenWatched` answers whether somebody watches the screen; X11 itself has no such question.
    /// `flushWanted` runs at the first change after a flush that the server has to learn of.
    X11Pointer(OverlayConnection& connection, const std::string& display, x11::Environment environment,
               std::function<bool()> screenWatched, std::function<void()> flushWanted = {});

    void show(DisplayId display) override;
    void hide(DisplayId display) override;
    /// The server shows the cursor of the window under the pointer whatever is in front, so there is nothing
    /// to set; hiding needs no permission.
    bool setsCursorInBackground() override { return true; }
    std::optional<std::int64_t> currentCursorSeed() override;
    std::optional<SystemCursor> currentSystemCursor() override;
    std::vector<std::pair<std::string, Bitmap>> standardCursors() override;
    std::optional<bool> isScreenWatcherPresent() override { return screenWatched_(); }

    /// Sends a request when the count has become zero or has left it, and flushes what is queued.
    void flush();

  private:
    void askForFlush();
    std::optional<std::string> nameFor(std::string_view shownName, x11::Fingerprint fingerprint);

    OverlayConnection& connection_;
    std::unique_ptr<x11::Watcher> settings_;
    x11::Environment environment_;
    x11::DesktopTheme theme_;
    std::function<bool()> screenWatched_;
    int hidings_ = 0;
    bool hiddenAtServer_ = false;
    std::function<void()> flushWanted_;
    bool askedForFlush_ = false;
    std::optional<std::uint32_t> readSerial_;
    std::optional<SystemCursor> read_;
    Subscription reopened_;
};

}  // namespace pintle::overlay
