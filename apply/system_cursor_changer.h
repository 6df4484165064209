// Makes a theme's cursors appear in every application by registering them with the window server, and brings
// the desktop's own back. Used by the applier and by the shell at its end. Main thread only.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "apply/cursor_snapshots.h"
#include "apply/cursor_strip.h"
#include "apply/registration_plan.h"
#include "base/signal.h"
#include "cursor/preloaded_cursor.h"
#include "platform/log.h"
#include "platform/window_server.h"

namespace pintle {

class SystemCursorChanger {
  public:
    SystemCursorChanger(WindowServer& windowServer, CursorSnapshots& snapshots, Log& log);
    SystemCursorChanger(const SystemCursorChanger&) = delete;
    SystemCursorChanger& operator=(const SystemCursorChanger&) = delete;
    ~SystemCursorChanger();

    /// The instance that the root installed. Ends the program when there is none. Not for the core.
    static SystemCursorChanger& shared();
    /// Makes `instance` the answer of shared() until it ends.
    static void install(SystemCursorChanger& instance);

    /// A theme is registered system-wide.
    bool isActive() const { return isActive_; }
    /// What the last successful applyPreloaded registered, in that order.
    const std::vector<RegisteredImage>& lastApplied() const { return lastApplied_; }
    /// The registration is withdrawn because an excluded application is in front.
    bool suspendedForExcludedApp() const { return suspendedForExcludedApp_; }
    /// Only marks it; what follows from it is the business of ReapplyTriggers.
    void setSuspendedForExcludedApp(bool suspended);
    /// The mark was taken away.
    Signal<> suspensionEnded;
    /// The backup of the desktop's own cursors.
    const CursorSnapshotMap& snapshots() const { return snapshots_.snapshots(); }

    /// Registers a theme; true when its arrow was registered. A theme without an arrow is refused and nothing
    /// changes.
    bool applyPreloaded(const std::vector<PreloadedCursor>& cursors);
    /// Registers kept records again, whatever the window server answers to each.
    void applyRegistered(const std::vector<RegisteredImage>& images);
    static std::optional<Bitmap> composeStrip(std::span<const Bitmap> frames) {
        return pintle::composeStrip(frames);
    }
    /// Withdraws every registration and puts the desktop's own cursors back. The three fields stay as they
    /// are: a caller that gives the theme up calls forgetApplied() afterwards.
    void restoreSystemState();
    /// Clears lastApplied, suspendedForExcludedApp and isActive.
    void forgetApplied();

  private:
    bool canRegister();
    int unregisterAll(ConnectionId connection);

    WindowServer& windowServer_;
    CursorSnapshots& snapshots_;
    Log& log_;
    bool isActive_ = false;
    std::vector<RegisteredImage> lastApplied_;
    bool suspendedForExcludedApp_ = false;
};

}  // namespace pintle
