#include "apply/application_pipeline.h"

#include <fmt/format.h>

#include <any>
#include <chrono>
#include <utility>

#include "base/text.h"
#include "settings/notification_names.h"
#include "settings/typed_defaults.h"

namespace pintle {
namespace {

constexpr std::chrono::seconds kCacheLife{60};

}  // namespace

struct ApplicationPipeline::FullSet {
    NamedImages images;
    /// Absent when a newer request made building it pointless.
    std::optional<std::vector<PreloadedCursor>> cursors;
    Subscription activity;
};

ApplicationPipeline::ApplicationPipeline(const Dependencies& dependencies) : deps_(dependencies) {}

void ApplicationPipeline::setCurrentTheme(std::optional<CursorThemeInfo> theme) {
    currentTheme_ = std::move(theme);
    currentThemeChanged.emit();
}

void ApplicationPipeline::observeScale() {
    scaleObserver_ = deps_.notifications.observe(std::string(notification::cursorScaleChanged),
                                                 [this](const std::any& object) {
                                                     if (const auto* scale = std::any_cast<double>(&object))
                                                         scaleChanged(*scale);
                                                 });
}

void ApplicationPipeline::scaleChanged(double scale) {
    auto wanted = std::make_shared<bool>(true);
    // Whatever is requested between now and the task has read the new scale itself and is the newer request.
    const auto latest = generations_->latest();
    scaleTask_ = Subscription([wanted] { *wanted = false; });
    deps_.mainQueue.post(lifetime_.weakly([this, wanted, scale, latest] {
        if (!*wanted || !generations_->isLatest(latest)) return;
        if (const auto theme = currentTheme_) applyThemeWithScale(*theme, scale);
    }));
}

void ApplicationPipeline::rebuildForDensity() {
    // A theme that was asked for just now is not the current one yet; as a newer request would, it reads the
    // density when its turn comes.
    deps_.mainQueue.post(lifetime_.weakly([this, latest = generations_->latest()] {
        if (!generations_->isLatest(latest)) return;
        if (const auto theme = currentTheme_) applyThemeWithScale(*theme, deps_.settings.cursorScale());
    }));
}

void ApplicationPipeline::applyTheme(const CursorThemeInfo& theme) {
    if (!theme.isDownloaded) return;
    deps_.mainQueue.post(
        lifetime_.weakly([this, theme, resetsBefore = resets_] { record(theme, resetsBefore); }));

    const double scale = deps_.settings.cursorScale();
    deps_.log.system(
        fmt::format("[APPLY] Applying theme: {} at scale: {}", theme.name, shortestDouble(scale)));
    const auto folder = deps_.store.themesDirectory() / theme.id;
    const auto generation = generations_->take();
    ++applying_[theme.id];
    deps_.mainQueue.post(lifetime_.weakly([this, folder, scale, generation, id = theme.id] {
        applyCursorFromThemeAsync(folder, scale, CacheUse::yes, generation, [this, id](bool applied) {
            applyEnded(id);
            deps_.log.system(fmt::format("[APPLY] Theme applied: {}", applied ? "SUCCESS" : "FAILED"));
        });
    }));
}

void ApplicationPipeline::record(const CursorThemeInfo& theme, int resetsBefore) {
    // A reset that came after the request has already forgotten the theme.
    if (resetsBefore != resets_) return;
    deps_.settings.setCurrentThemeId(theme.id);
    setCurrentTheme(theme);
    deps_.themes.setApplying(theme.id, true);
}

void ApplicationPipeline::applyEnded(const std::string& id) {
    if (--applying_[id] > 0) return;
    applying_.erase(id);
    deps_.themes.setApplying(id, false);
}

void ApplicationPipeline::applyThemeWithScale(const CursorThemeInfo& theme, double scale) {
    deps_.log.system(
        fmt::format("[CursorViewModel] Applying scale: {} for theme: {}", shortestDouble(scale), theme.name));
    const auto generation = generations_->take();
    const auto folder = deps_.store.themesDirectory() / theme.id;
    deps_.mainQueue.post(lifetime_.weakly([this, folder, scale, generation] {
        applyCursorFromThemeAsync(folder, scale, CacheUse::yes, generation, [this, scale](bool applied) {
            deps_.log.system(fmt::format("[CursorViewModel] Scale applied: {} at {}", applied ? "OK" : "FAIL",
                                         shortestDouble(scale)));
        });
    }));
}

void ApplicationPipeline::cancelRequests() {
    generations_->take();
    ++resets_;
}

void ApplicationPipeline::resetToDefault() {
    cancelRequests();
    deps_.overlay.showSystemCursorGuaranteed();
    setCurrentTheme(std::nullopt);
    // Written to the store and not through the settings: their own copy of the id stays as it is.
    deps_.preferences.remove(CursorSettings::themeIdKey);
    deps_.applier.customCursors().clear();
    deps_.applier.resetToSystemDefaults();
    earlierRunMayShow_ = false;
}

void ApplicationPipeline::putBackWhatAnEarlierRunReplaced() {
    if (std::exchange(earlierRunMayShow_, false)) deps_.applier.restoreUnlessRegistered();
}

void ApplicationPipeline::applyLastUsedTheme() {
    if (!deps_.settings.applyOnLaunch()) {
        resetToDefault();
        return;
    }
    if (const auto id = stringValue(deps_.preferences, CursorSettings::themeIdKey)) {
        const auto* row = deps_.themes.find(*id);
        if (row && row->isDownloaded) {
            const auto theme = *row;
            earlierRunMayShow_ = true;
            applyTheme(theme);
            deps_.log.system(fmt::format("Auto-applied last theme: {}", theme.name));
            return;
        }
    }
    resetToDefault();
    deps_.log.system("No theme to apply - using system default");
}

void ApplicationPipeline::applyCursorFromThemeAsync(const std::filesystem::path& themeFolder, double scale,
                                                    CacheUse useCache, std::int64_t generation, Done done) {
    if (!generations_->isLatest(generation)) return done(false);
    const auto cursorsFolder = deps_.store.findCursorsDirectory(themeFolder);
    if (!cursorsFolder) {
        putBackWhatAnEarlierRunReplaced();
        return done(false);
    }

    auto themeId = themeFolder.filename().string();
    const double density = deps_.workspace.pixelsPerPoint();
    if (useCache == CacheUse::yes && cachedThemeId_ == themeId && cachedDensity_ == density &&
        !cachedCursorData_.empty())
        return applyCached(scale, generation, std::move(done));

    runInBackground(
        deps_.background, deps_.mainQueue, lifetime_, Priority::userInitiated,
        [folder = *cursorsFolder, scale, density] { return loadEssentialSet(folder, scale, density); },
        [this, themeId = std::move(themeId), scale, density, generation,
         done = std::move(done)](EssentialSet loaded) {
            if (!generations_->isLatest(generation)) return done(false);
            if (!loaded.listed) {
                putBackWhatAnEarlierRunReplaced();
                return done(false);
            }
            const bool applied = apply(loaded.cursors, scale);
            putBackWhatAnEarlierRunReplaced();
            done(applied);
            loadFullSet(std::make_shared<const EssentialSet>(std::move(loaded)), themeId, scale, density,
                        generation);
        });
}

void ApplicationPipeline::applyCached(double scale, std::int64_t generation, Done done) {
    runInBackground(
        deps_.background, deps_.mainQueue, lifetime_, Priority::userInitiated,
        [images = cachedCursorData_, scale, density = cachedDensity_] {
            return makePreloadedSet(images, scale, density);
        },
        [this, scale, generation, done = std::move(done)](const std::vector<PreloadedCursor>& cursors) {
            scheduleCacheDrop();
            done(applyIfLatest(cursors, scale, generation));
        });
}

void ApplicationPipeline::loadFullSet(std::shared_ptr<const EssentialSet> essential, std::string themeId,
                                      double scale, double density, std::int64_t generation) {
    runInBackground(
        deps_.background, deps_.mainQueue, lifetime_, Priority::utility,
        [&hints = deps_.hints, generations = generations_, essential = std::move(essential), scale, density,
         generation] {
            FullSet set;
            set.activity = hints.beginActivity("Loading full cursor set");
            set.images = loadRemainingImages(*essential);
            if (generations->isLatest(generation))
                set.cursors = completeSet(*essential, set.images, scale, density);
            return set;
        },
        [this, themeId = std::move(themeId), scale, density, generation](FullSet set) {
            if (set.cursors) applyIfLatest(*set.cursors, scale, generation);
            set.cursors.reset();
            fillCache(std::move(set), themeId, density, generation);
        });
}

void ApplicationPipeline::fillCache(FullSet shown, std::string themeId, double density,
                                    std::int64_t generation) {
    runInBackground(
        deps_.background, deps_.mainQueue, lifetime_, Priority::utility,
        [shown = std::move(shown)]() mutable {
            shown.images = loadAllImages(shown.images);
            return std::move(shown);
        },
        [this, themeId = std::move(themeId), density, generation](FullSet all) {
            keepInCache(themeId, std::move(all.images), density, generation);
        });
}

bool ApplicationPipeline::applyIfLatest(const std::vector<PreloadedCursor>& cursors, double scale,
                                        std::int64_t generation) {
    return generations_->isLatest(generation) && apply(cursors, scale);
}

bool ApplicationPipeline::apply(const std::vector<PreloadedCursor>& cursors, double scale) {
    const auto before = arrowSize();
    const bool applied = deps_.applier.applyCursorsFromPreloaded(cursors, scale);
    if (arrowSize() != before) arrowSizeChanged.emit();
    return applied;
}

void ApplicationPipeline::keepInCache(std::string themeId, NamedImages images, double density,
                                      std::int64_t generation) {
    if (generation < cachedGeneration_) return;
    cachedGeneration_ = generation;
    cachedDensity_ = density;
    cachedCursorData_ = std::move(images);
    cachedThemeId_ = std::move(themeId);
    scheduleCacheDrop();
}

void ApplicationPipeline::scheduleCacheDrop() {
    cacheDropWork_ = deps_.mainQueue.after(kCacheLife, lifetime_.weakly([this] {
        cachedCursorData_ = {};
        cachedThemeId_.reset();
        deps_.hints.releaseFreeMemory();
        deps_.log.system("[VIEWMODEL] Theme pixel cache released (idle)");
    }));
}

}  // namespace pintle
