// The single entry point through which a prepared cursor set becomes visible and through which the desktop's
// own cursors come back. Called by the pipeline, the full reset and the shell's end. Main thread only.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "apply/cursor_overlay.h"
#include "apply/cursor_replacement.h"
#include "apply/system_cursor_changer.h"
#include "cursor/preloaded_cursor.h"
#include "platform/hardware_cursor.h"
#include "platform/log.h"

namespace pintle {

class CursorApplier {
  public:
    /// How a set is shown where the window server refuses it.
    enum class Fallback { overlay, inProcess };

    CursorApplier(HardwareCursor& hardware, SystemCursorChanger& changer, CursorOverlay& overlay, Log& log,
                  Fallback fallback = Fallback::overlay);
    CursorApplier(const CursorApplier&) = delete;
    CursorApplier& operator=(const CursorApplier&) = delete;
    ~CursorApplier();

    /// The instance that the root installed. Ends the program when there is none. Not for the core.
    static CursorApplier& shared();
    /// Makes `instance` the answer of shared() until it ends.
    static void install(CursorApplier& instance);

    /// Shows the set; true when it is showing by registration, overlay or in-process replacement.
    bool applyCursorsFromPreloaded(const std::vector<PreloadedCursor>& cursors, double scale);
    void resetToSystemDefaults();
    /// Brings the desktop's own cursors back when nothing of this run is registered: what shows then is what
    /// an earlier run, which had no orderly end, left behind.
    void restoreUnlessRegistered();

    /// Fills the role map from the applied map; roles without a candidate keep what they have.
    void mapCursorsToSystemTypes();
    /// The applied cursor of one X11 name; absent when the set lacks it.
    std::optional<DesktopCursor> cursor(const std::string& name) const;

    /// X11 name → cursor object of the set last applied; empty after a reset.
    const std::map<std::string, DesktopCursor>& appliedCursors() const { return appliedCursors_; }
    /// Sides in pixels of the arrow of the set last applied; absent when that has none and after a reset.
    std::optional<Size> arrowSize() const { return arrowSize_; }
    /// Scale of the set last applied; 1.0 is the desktop's normal size.
    double currentScale() const { return currentScale_; }
    /// The role map, read by the in-process replacement.
    RoleCursors& customCursors() { return replacement_.customCursors(); }
    bool isSwizzled() const { return replacement_.isSwizzled(); }

  private:
    void stopOverlay();
    bool showInProcess();

    HardwareCursor& hardware_;
    SystemCursorChanger& changer_;
    CursorOverlay& overlay_;
    Log& log_;
    std::map<std::string, DesktopCursor> appliedCursors_;
    std::optional<Size> arrowSize_;
    double currentScale_ = 1.0;
    const bool useOverlayMode_;
    CursorReplacement replacement_;
};

}  // namespace pintle
