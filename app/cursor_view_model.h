// The one view model that the user interface observes: the theme list with its live state, the current theme,
// the filter, and the requests to apply and reset. A facade over the modules below, made by the root.
// Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/full_reset.h"
#include "app/theme_strip.h"
#include "apply/application_pipeline.h"
#include "base/geometry.h"
#include "base/lifetime.h"
#include "base/signal.h"
#include "base/subscription.h"
#include "cursor/preloaded_cursor.h"
#include "platform/background_tasks.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/process_hints.h"
#include "themes/cursor_handedness.h"
#include "themes/cursor_theme_info.h"
#include "themes/download.h"
#include "themes/theme_list.h"
#include "themes/theme_removal.h"
#include "themes/theme_store.h"

namespace pintle {

class CursorViewModel {
  public:
    struct Dependencies {
        ThemeList& themes;
        ThemeStore& store;
        ApplicationPipeline& pipeline;
        ThemeDownloads& downloads;
        ThemeRemoval& removal;
        FullReset& fullReset;
        KeyValueStore& preferences;
        MainQueue& mainQueue;
        BackgroundTasks& background;
        ProcessHints& hints;
        Log& log;
    };

    /// Loads the catalog and the themes on disk, restores the current theme, starts the detection of animated
    /// themes and listens for changes of the scale.
    explicit CursorViewModel(const Dependencies& dependencies);
    CursorViewModel(const CursorViewModel&) = delete;
    CursorViewModel& operator=(const CursorViewModel&) = delete;
    ~CursorViewModel();

    /// The instance that the root installed. Ends the program when there is none. Not for the core.
    static CursorViewModel& shared();
    /// Makes `instance` the answer of shared() until it ends.
    static void install(CursorViewModel& instance);

    /// The rows in catalog order.
    const std::vector<CursorThemeInfo>& themes() const { return deps_.themes.themes(); }
    /// The theme last applied; absent when the desktop's cursors are in use.
    const std::optional<CursorThemeInfo>& currentTheme() const { return deps_.pipeline.currentTheme(); }
    /// Sides in pixels of the arrow as it was last applied; absent while no theme is.
    std::optional<Size> arrowSize() const { return deps_.pipeline.arrowSize(); }
    CursorHandedness selectedFilter() const { return selectedFilter_; }
    /// The rows that the filter lets through, in catalog order; every call is logged. Universal themes show
    /// under both hand filters, and no handed theme shows under "Universal". Valid until the rows change.
    std::vector<const CursorThemeInfo*> filteredThemes() const;
    void setSelectedFilter(CursorHandedness filter);
    /// Any of the four above has changed.
    Signal<> changed;

    void applyTheme(const CursorThemeInfo& theme) { deps_.pipeline.applyTheme(theme); }
    void applyThemeWithScale(const CursorThemeInfo& theme, double scale) {
        deps_.pipeline.applyThemeWithScale(theme, scale);
    }
    void resetToDefault() { deps_.pipeline.resetToDefault(); }
    /// These two return at once; the row shows progress and outcome.
    void downloadTheme(const CursorThemeInfo& theme) { deps_.downloads.downloadTheme(theme); }
    /// See ThemeDownloads.
    Signal<const std::string&>& wantedNetwork() const { return deps_.downloads.wantedNetwork; }
    void deleteTheme(const CursorThemeInfo& theme) { deps_.removal.deleteTheme(theme); }
    /// Deletes all themes and preferences and brings the desktop's cursors back. The caller quits afterwards.
    void resetAllData();
    void applyLastUsedTheme() { deps_.pipeline.applyLastUsedTheme(); }

    static std::optional<PreloadedCursor> makePreloaded(const std::string& name,
                                                        const std::vector<XCursorImage>& images,
                                                        double scale) {
        return pintle::makePreloaded(name, images, scale);
    }

    /// Reads the theme's strip in the background, past everything that is kept and without log lines. `done`
    /// is called on the main queue if the owner of `lifetime` still lives.
    void readStrip(const std::string& themeId, const Lifetime& lifetime,
                   std::function<void(std::vector<StripCursor>)> done) const;

    /// Examines the downloaded themes that have not been examined before, in the background, and marks every
    /// row by what is known.
    void detectAnimatedThemes();

  private:
    void restoreCurrentTheme();

    const Dependencies deps_;
    CursorHandedness selectedFilter_ = CursorHandedness::all;
    Subscription themesChanged_;
    Subscription currentThemeChanged_;
    Subscription arrowSizeChanged_;
    Subscription downloaded_;
    Subscription deleted_;
    /// Of the examinations under way; replaced to drop their answers.
    std::unique_ptr<Lifetime> detection_ = std::make_unique<Lifetime>();
};

}  // namespace pintle
