// The path from a chosen theme, or a changed scale, to cursors on screen: reads off the main thread, shows
// the common shapes first and the whole theme right after, and drops what a newer request has overtaken.
// Owned by the root, used by the view model. Main thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apply/cursor_applier.h"
#include "apply/cursor_overlay.h"
#include "apply/generation_counter.h"
#include "apply/theme_loading.h"
#include "base/geometry.h"
#include "base/lifetime.h"
#include "base/notification_center.h"
#include "base/signal.h"
#include "platform/background_tasks.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/process_hints.h"
#include "platform/workspace.h"
#include "settings/cursor_settings.h"
#include "themes/cursor_theme_info.h"
#include "themes/theme_list.h"
#include "themes/theme_store.h"

namespace pintle {

class ApplicationPipeline {
  public:
    struct Dependencies {
        CursorSettings& settings;
        KeyValueStore& preferences;
        NotificationCenter& notifications;
        ThemeList& themes;
        ThemeStore& store;
        CursorApplier& applier;
        CursorOverlay& overlay;
        MainQueue& mainQueue;
        BackgroundTasks& background;
        ProcessHints& hints;
        Log& log;
        Workspace& workspace;
    };

    explicit ApplicationPipeline(const Dependencies& dependencies);

    /// The theme last applied; absent when the desktop's cursors are in use.
    const std::optional<CursorThemeInfo>& currentTheme() const { return currentTheme_; }
    void setCurrentTheme(std::optional<CursorThemeInfo> theme);
    Signal<> currentThemeChanged;

    /// Sides in pixels of the arrow as it was last applied; absent while no theme is.
    std::optional<Size> arrowSize() const { return deps_.applier.arrowSize(); }
    Signal<> arrowSizeChanged;

    /// From now on a change of the scale setting applies the current theme again.
    void observeScale();
    /// Builds the current theme anew at the scale in force, for another density of the screen.
    void rebuildForDensity();

    void applyTheme(const CursorThemeInfo& theme);
    void applyThemeWithScale(const CursorThemeInfo& theme, double scale);
    void resetToDefault();
    /// Loads and requests under way change nothing any more, neither on screen nor in the settings.
    void cancelRequests();
    /// At start: the stored theme when it may and can be applied, else the desktop's cursors.
    void applyLastUsedTheme();
    /// Releases the parsed images 60 seconds from now, unless it is called again before.
    void scheduleCacheDrop();

  private:
    enum class CacheUse { yes, no };
    struct FullSet;
    using Done = std::function<void(bool)>;

    void record(const CursorThemeInfo& theme, int resetsBefore);
    void applyEnded(const std::string& id);
    void scaleChanged(double scale);
    void applyCursorFromThemeAsync(const std::filesystem::path& themeFolder, double scale, CacheUse useCache,
                                   std::int64_t generation, Done done);
    void applyCached(double scale, std::int64_t generation, Done done);
    void loadFullSet(std::shared_ptr<const EssentialSet> essential, std::string themeId, double scale,
                     double density, std::int64_t generation);
    /// Reads what was not shown, from the files that are still open.
    void fillCache(FullSet shown, std::string themeId, double density, std::int64_t generation);
    bool apply(const std::vector<PreloadedCursor>& cursors, double scale);
    bool applyIfLatest(const std::vector<PreloadedCursor>& cursors, double scale, std::int64_t generation);
    /// After the first answer to the start's request: a theme that is registered replaces what an earlier run
    /// left; after any other answer the desktop's own cursors come back.
    void putBackWhatAnEarlierRunReplaced();
    void keepInCache(std::string themeId, NamedImages images, double density, std::int64_t generation);

    const Dependencies deps_;
    /// Shared with background work that may outlive the pipeline.
    std::shared_ptr<GenerationCounter> generations_ = std::make_shared<GenerationCounter>();
    /// Counts resets, so that a request that waits to be recorded notices one that came after it.
    int resets_ = 0;
    /// From the start's own request until its answer.
    bool earlierRunMayShow_ = false;
    std::optional<CursorThemeInfo> currentTheme_;
    /// How many apply requests of a theme have not ended; its applying mark ends with the last.
    std::map<std::string, int> applying_;

    /// Parsed images of the cached theme, by X11 name; no name stands twice.
    NamedImages cachedCursorData_;
    std::optional<std::string> cachedThemeId_;
    /// What the cached images have the sources for.
    double cachedDensity_ = 1;
    /// Of the load that filled the cache; an older load that ends later must not replace a newer one's.
    std::int64_t cachedGeneration_ = 0;

    Timer cacheDropWork_;
    Subscription scaleObserver_;
    /// Ending it takes back the task that the last scale change started.
    Subscription scaleTask_;
    Lifetime lifetime_;
};

}  // namespace pintle
