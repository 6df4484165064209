#include "themes/theme_store.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <system_error>
#include <utility>
#include <vector>

#include "cursor/xcursor_parser.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

constexpr auto kCursors = "cursors";
constexpr std::array kPreviewNames = {"default", "left_ptr", "arrow", "pointer"};
constexpr std::int64_t kPreviewLimit = 48;
constexpr std::int64_t kPreviewSize = 32;

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

struct Listing {
    std::vector<fs::path> entries;
    std::error_code error;
};

/// The entries in the file system's order, hidden ones included.
Listing list(const fs::path& directory) {
    Listing listing;
    fs::directory_iterator entry(directory, listing.error);
    while (!listing.error && entry != fs::directory_iterator{}) {
        listing.entries.push_back(entry->path());
        entry.increment(listing.error);
    }
    return listing;
}

/// Removes links as links: what they lead to stays.
void removeIgnoringErrors(const fs::path& path) {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

/// The search for the cursors folder. Without a log it goes unrecorded.
std::optional<fs::path> findCursors(const fs::path& themeDir, Log* log) {
    const auto line = [log](const std::string& text) {
        if (log) log->system(text);
    };
    line(fmt::format("[FIND_CURSORS] ━━━ findCursorsDirectory START for: {}", themeDir.string()));
    line(fmt::format("[FIND_CURSORS] themeDir: {}", themeDir.string()));
    line(fmt::format("[FIND_CURSORS] themeDir exists: {:d}", isThere(themeDir)));

    const auto directPath = themeDir / kCursors;
    line(fmt::format("[FIND_CURSORS] Checking directPath: {}", directPath.string()));
    const bool direct = isThere(directPath);
    line(fmt::format("[FIND_CURSORS] directPath exists: {:d}", direct));
    if (direct) {
        line("[FIND_CURSORS] ✅ FOUND cursors at directPath!");
        return directPath;
    }

    line("[FIND_CURSORS] Direct path not found, searching one level deep...");
    const auto listing = list(themeDir);
    if (listing.error) {
        line(fmt::format("[FIND_CURSORS] ❌ ERROR reading directory: {}", listing.error.message()));
        return std::nullopt;
    }
    line(fmt::format("[FIND_CURSORS] Found {} items in themeDir", listing.entries.size()));
    for (const auto& entry : listing.entries) {
        if (!isFolder(entry)) continue;
        auto candidate = entry / kCursors;
        line(fmt::format("[FIND_CURSORS] Checking nested: {}", candidate.string()));
        if (isThere(candidate)) {
            line(fmt::format("[FIND_CURSORS] ✅ FOUND cursors nested at: {}", candidate.string()));
            return candidate;
        }
    }
    line(fmt::format("[FIND_CURSORS] ❌ NO cursors directory found for: {}", themeDir.string()));
    return std::nullopt;
}

std::optional<Bitmap> previewIn(const fs::path& cursorsDir) {
    for (const auto* name : kPreviewNames) {
        const auto nearest = XCursorParser::parseNearest(cursorsDir / name, kPreviewSize, kPreviewLimit);
        if (!nearest) continue;
        if (auto preview = nearest->nsImage()) return preview;
    }
    return std::nullopt;
}

}  // namespace

ThemeStore::ThemeStore(const UserDirectories& directories, Log& log)
    : themesDirectory_(directories.applicationSupport / "Pintle" / "Themes"), log_(log) {
    if (directories.applicationSupport.empty()) std::abort();
}

std::optional<fs::path> ThemeStore::themeDirectory(const std::string& themeId) const {
    const bool plain = !themeId.empty() && themeId != "." && themeId != ".." &&
                       themeId.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
    if (!plain) return std::nullopt;
    return themesDirectory_ / themeId;
}

void ThemeStore::createDirectoriesIfNeeded() {
    log_.system(fmt::format("[VIEWMODEL] createDirectoriesIfNeeded() - themesDirectory: {}",
                            themesDirectory_.string()));
    std::error_code error;
    fs::create_directories(themesDirectory_, error);
    if (error)
        log_.system(fmt::format("[VIEWMODEL] ❌ ERROR creating directory: {}", error.message()));
    else
        log_.system("[VIEWMODEL] ✅ Directory created successfully");
}

bool ThemeStore::isThemeDownloaded(const std::string& themeId) {
    log_.system(fmt::format("[IS_DOWNLOADED] ━━━ Checking if theme downloaded: {}", themeId));
    const auto themePath = themeDirectory(themeId);
    if (!themePath || !isThere(*themePath)) {
        log_.system("[IS_DOWNLOADED] ❌ themePath does NOT exist");
        return false;
    }
    const auto cursorsDir = findCursorsDirectory(*themePath);
    if (!cursorsDir) {
        log_.system("[IS_DOWNLOADED] ❌ cursorsDir NOT found - cleaning up leftover directory");
        removeIgnoringErrors(*themePath);
        return false;
    }
    const auto listing = list(*cursorsDir);
    if (listing.error || listing.entries.empty()) {
        log_.system("[IS_DOWNLOADED] ❌ cursorsDir is EMPTY - cleaning up broken theme");
        removeIgnoringErrors(*themePath);
        return false;
    }
    log_.system(
        fmt::format("[IS_DOWNLOADED] ✅ VALID for {} ({} cursor files)", themeId, listing.entries.size()));
    return true;
}

std::optional<fs::path> ThemeStore::findCursorsDirectory(const fs::path& themeDir) const {
    return findCursors(themeDir, &log_);
}

std::optional<fs::path> ThemeStore::findCursorsDirectoryNonisolated(const fs::path& themeDir) {
    return findCursors(themeDir, nullptr);
}

std::optional<Bitmap> ThemeStore::loadPreviewImage(const std::string& themeId) const {
    const auto themeDir = themeDirectory(themeId);
    const auto cursorsDir = themeDir ? findCursorsDirectory(*themeDir) : std::nullopt;
    return cursorsDir ? previewIn(*cursorsDir) : std::nullopt;
}

void ThemeStore::loadPreviewImageAsync(const std::string& themeId, BackgroundTasks& tasks, MainQueue& queue,
                                       const Lifetime& lifetime,
                                       std::function<void(std::optional<Bitmap>)> done) const {
    runInBackground(
        tasks, queue, lifetime, Priority::userInitiated,
        [themeDir = themeDirectory(themeId)]() -> std::optional<Bitmap> {
            const auto cursorsDir = themeDir ? findCursorsDirectoryNonisolated(*themeDir) : std::nullopt;
            return cursorsDir ? previewIn(*cursorsDir) : std::nullopt;
        },
        std::move(done));
}

}  // namespace pintle
