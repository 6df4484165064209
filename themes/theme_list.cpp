#include "themes/theme_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace pintle {
namespace {

constexpr auto kNone = "(null)";

const char* marker(bool yes) { return yes ? "YES" : "NO"; }

}  // namespace

ThemeList::ThemeList(ThemeStore& store, CursorSettings& settings, Log& log)
    : store_(store), settings_(settings), log_(log) {}

const CursorThemeInfo* ThemeList::find(const std::string& id) const {
    const auto found =
        std::find_if(themes_.begin(), themes_.end(), [&](const auto& theme) { return theme.id == id; });
    return found == themes_.end() ? nullptr : &*found;
}

CursorThemeInfo* ThemeList::row(const std::string& id) {
    return const_cast<CursorThemeInfo*>(std::as_const(*this).find(id));
}

void ThemeList::loadThemes() {
    log_.system("[LOAD_THEMES] ━━━ loadThemes START");
    std::vector<CursorThemeInfo> loaded;
    for (auto theme : CursorThemeInfo::catalog()) {
        theme.isDownloading = false;
        theme.downloadProgress = 0;
        theme.downloadStatus.clear();
        theme.isDownloaded = store_.isThemeDownloaded(theme.id);
        const auto error = settings_.themeError(theme.id);
        log_.system(fmt::format("[LOAD_THEMES] Theme: {} → isDownloaded: {:d}, error: {}", theme.id,
                                theme.isDownloaded, error.value_or(kNone)));
        if (theme.isDownloaded) {
            if (error) {
                log_.system(fmt::format(
                    "[LOAD_THEMES] Theme {} was marked with error but now valid - clearing error", theme.id));
                settings_.clearThemeError(theme.id);
            }
            theme.previewImage = store_.loadPreviewImage(theme.id);
            log_.system(fmt::format("[LOAD_THEMES] Theme: {} → previewImage: {}", theme.id,
                                    marker(theme.previewImage.has_value())));
        } else {
            theme.downloadError = error;
        }
        loaded.push_back(std::move(theme));
    }
    themes_ = std::move(loaded);
    changed.emit();

    int downloaded = 0;
    int withPreview = 0;
    int withErrors = 0;
    for (const auto& theme : themes_) {
        if (!theme.isDownloaded) continue;
        ++downloaded;
        if (theme.previewImage) ++withPreview;
        log_.system(fmt::format("[LOAD_THEMES] DOWNLOADED: {} (preview: {})", theme.id,
                                marker(theme.previewImage.has_value())));
    }
    for (const auto& theme : themes_) {
        if (!theme.downloadError) continue;
        ++withErrors;
        log_.system(fmt::format("[LOAD_THEMES] ERROR: {} → {}", theme.id, *theme.downloadError));
    }
    log_.system(fmt::format(
        "[LOAD_THEMES] ━━━ loadThemes DONE: {} themes, {} downloaded, {} with preview, {} with errors",
        themes_.size(), downloaded, withPreview, withErrors));
}

void ThemeList::setApplying(const std::string& id, bool applying) {
    auto* theme = row(id);
    if (!theme) return;
    theme->isApplying = applying;
    changed.emit();
}

void ThemeList::replace(CursorThemeInfo theme) {
    auto* old = row(theme.id);
    if (!old) return;
    *old = std::move(theme);
    changed.emit();
}

void ThemeList::setAnimated(const std::map<std::string, bool>& animated) {
    for (auto& theme : themes_) {
        const auto answer = animated.find(theme.id);
        theme.isAnimated = answer != animated.end() && answer->second;
    }
    changed.emit();
}

}  // namespace pintle
