#include "app/cursor_view_model.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "settings/cursor_settings.h"
#include "settings/typed_defaults.h"
#include "themes/animation_detection.h"

namespace pintle {
namespace {

CursorViewModel* installed = nullptr;

bool passes(CursorHandedness filter, CursorHandedness theme) {
    if (filter == CursorHandedness::all || filter == theme) return true;
    return filter != CursorHandedness::universal && theme == CursorHandedness::universal;
}

}  // namespace

CursorViewModel::CursorViewModel(const Dependencies& dependencies) : deps_(dependencies) {
    deps_.log.system("[VIEWMODEL] INIT START");
    deps_.log.system(fmt::format("[VIEWMODEL] Catalog count: {}", CursorThemeInfo::catalog().size()));
    themesChanged_ = deps_.themes.changed.observe([this] { changed.emit(); });
    downloaded_ = deps_.downloads.downloaded.observe([this] { detectAnimatedThemes(); });
    deleted_ = deps_.removal.deleted.observe([this](const std::string& id) {
        if (currentTheme() && currentTheme()->id == id) resetToDefault();
    });
    currentThemeChanged_ = deps_.pipeline.currentThemeChanged.observe([this] { changed.emit(); });
    arrowSizeChanged_ = deps_.pipeline.arrowSizeChanged.observe([this] { changed.emit(); });

    deps_.store.createDirectoriesIfNeeded();
    deps_.themes.loadThemes();
    deps_.log.system(fmt::format("[VIEWMODEL] Themes loaded: {}", themes().size()));
    deps_.log.system(fmt::format("[VIEWMODEL] Downloaded themes: {}",
                                 std::count_if(themes().begin(), themes().end(),
                                               [](const auto& theme) { return theme.isDownloaded; })));
    restoreCurrentTheme();
    detectAnimatedThemes();
    deps_.pipeline.observeScale();
}

CursorViewModel::~CursorViewModel() {
    if (installed == this) installed = nullptr;
}

CursorViewModel& CursorViewModel::shared() {
    if (!installed) std::abort();
    return *installed;
}

void CursorViewModel::install(CursorViewModel& instance) { installed = &instance; }

std::vector<const CursorThemeInfo*> CursorViewModel::filteredThemes() const {
    std::vector<const CursorThemeInfo*> filtered;
    for (const auto& theme : themes())
        if (passes(selectedFilter_, theme.handedness)) filtered.push_back(&theme);
    deps_.log.system(fmt::format("[VIEWMODEL] filteredThemes called: filter={}, total={}, filtered={}",
                                 cursor_handedness::rawValue(selectedFilter_), themes().size(),
                                 filtered.size()));
    return filtered;
}

void CursorViewModel::setSelectedFilter(CursorHandedness filter) {
    selectedFilter_ = filter;
    changed.emit();
}

void CursorViewModel::readStrip(const std::string& themeId, const Lifetime& lifetime,
                                std::function<void(std::vector<StripCursor>)> done) const {
    runInBackground(
        deps_.background, deps_.mainQueue, lifetime, Priority::userInitiated,
        [folder = deps_.store.themeDirectory(themeId)] {
            const auto cursors = folder ? ThemeStore::findCursorsDirectoryNonisolated(*folder) : std::nullopt;
            return cursors ? readThemeStrip(*cursors) : std::vector<StripCursor>();
        },
        std::move(done));
}

void CursorViewModel::resetAllData() {
    detection_ = std::make_unique<Lifetime>();
    deps_.fullReset.run();
}

void CursorViewModel::restoreCurrentTheme() {
    const auto id = stringValue(deps_.preferences, CursorSettings::themeIdKey);
    const auto* row = id ? deps_.themes.find(*id) : nullptr;
    if (row && row->isDownloaded) deps_.pipeline.setCurrentTheme(*row);
}

void CursorViewModel::detectAnimatedThemes() {
    struct Examined {
        AnimationAnswers answers;
        Subscription activity;
    };
    runInBackground(
        deps_.background, deps_.mainQueue, *detection_, Priority::utility,
        [&hints = deps_.hints, themes = themesToExamine(deps_.preferences, deps_.themes, deps_.store)] {
            auto activity = hints.beginActivity("Detecting animated themes");
            return Examined{examineThemes(themes), std::move(activity)};
        },
        [this](const Examined& examined) {
            recordAnimationAnswers(examined.answers, deps_.preferences, deps_.themes);
        });
}

}  // namespace pintle
