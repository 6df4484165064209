// Overlay mode: the hardware cursor is hidden and the themed image drawn in a window that follows the mouse,
// 120 times a second. Started by the applier where registration is refused. A thin object around the rules of
// overlay_decision, overlay_areas, cursor_identification and cursor_alternatives. Main thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apply/alpha_signature.h"
#include "apply/cursor_identification.h"
#include "apply/cursor_overlay.h"
#include "base/lifetime.h"
#include "platform/accessibility.h"
#include "platform/desktop_names.h"
#include "platform/displays.h"
#include "platform/hardware_cursor.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/overlay_surfaces.h"
#include "platform/pointer.h"
#include "platform/window_list.h"
#include "platform/workspace.h"
#include "settings/cursor_settings.h"

namespace pintle {

class CursorOverlayManager : public CursorOverlay {
  public:
    /// What the overlay reaches the desktop through. Everything outlives the manager.
    struct Desktop {
        MainQueue& queue;
        Log& log;
        Displays& displays;
        OverlaySurfaces& surfaces;
        WindowList& windowList;
        Workspace& workspace;
        Pointer& pointer;
        HardwareCursor& cursors;
        Accessibility& accessibility;
        const CursorSettings& settings;
        const DesktopNames& names;
    };

    explicit CursorOverlayManager(Desktop desktop);
    ~CursorOverlayManager() override;

    /// The instance that the root installed; null before and after its life.
    static CursorOverlayManager* shared();

    bool isActive() const override { return isActive_; }
    bool isPaused() const { return isPaused_; }
    void start() override;
    void loadCursorsFromPreloaded(const std::vector<PreloadedCursor>& cursors, double scale) override;
    void updateOverlayWindows() override;
    void deactivate() override;
    void showSystemCursorGuaranteed() override;
    void destroyWindows() override;

    void recreateWindows();
    void hideOverlayWindows();
    void updateAppState();
    void keepHardwareCursorsHidden();
    void showHardwareCursors();
    void pauseOverlay();
    void resumeOverlay();

    const std::string& currentCursorName() const { return currentCursorName_; }
    bool overlayUsesSystemFallback() const { return overlayUsesSystemFallback_; }
    std::int32_t frontmostAppPID() const { return frontmostAppPID_; }

  private:
    struct Themed {
        Bitmap image;
        Point hotspot;
        /// In points.
        Size size;
    };
    struct Window {
        std::unique_ptr<OverlaySurface> surface;
        double alpha = 0;
    };

    void buildTiffIndex();
    void installObservers();
    void startTimer();
    void onTimerTick();
    /// Whether there is an image, and a window for it that is on the screen; else hiding the pointer would
    /// leave none.
    bool canDrawOn(DisplayId display) const;
    void draw(DisplayId display, Point mouse);
    void stepAside();
    static void setAlpha(Window& window, double alpha);

    const std::vector<WindowInfo>& windowsOnScreen();
    bool isFullscreen(DisplayId display);
    bool isScreenWatched();
    void resumeAfter(std::chrono::milliseconds delay);
    void showOnEveryScreen(int times);

    void checkCursorTypeChange();
    std::string identify(const SystemCursor& cursor);
    std::optional<std::string> cursorNameFromAXElementUnderMouse();
    /// The theme's cursor for the name or one of its alternatives; null when it has none of them.
    const Themed* themedFor(const std::string& name) const;
    void chooseImage();

    Desktop desktop_;
    AlphaSignatureMaker signatures_;
    DesktopCursor transparentCursor_;
    std::vector<std::uint8_t> transparentCursorTiff_;
    std::vector<KnownCursor> knownCursors_;

    std::map<DisplayId, Window> windows_;
    bool isActive_ = false;
    std::optional<Bitmap> currentCursorImage_;
    Point currentHotspot_;
    Size currentSize_;
    std::map<std::string, Themed> cursorImages_;
    std::string currentCursorName_ = "left_ptr";
    bool overlayUsesSystemFallback_ = false;
    std::vector<std::uint8_t> cachedCurrentTiff_;
    std::optional<std::int64_t> cachedCurrentCursorSeed_;
    bool screenWatcherActive_ = false;
    std::optional<std::chrono::nanoseconds> lastWatcherCheck_;
    bool cursorHiddenMode_ = false;
    bool isCurrentAppExcluded_ = false;
    std::int32_t frontmostAppPID_ = 0;
    bool isPaused_ = false;
    bool wasActiveBeforePause_ = false;
    std::optional<std::vector<WindowInfo>> cachedWindowList_;
    std::chrono::nanoseconds windowListCacheTime_{0};
    std::optional<std::set<DisplayId>> cachedFullscreenDisplays_;

    Timer positionTimer_;
    Timer resumeWorkItem_;
    std::vector<Subscription> observers_;
    Lifetime lifetime_;
};

}  // namespace pintle
