#include "platform/wayland/theme_engine.h"

#include <array>
#include <system_error>
#include <utility>

#include "platform/wayland/cursor_file.h"
#include "platform/x11/cursors/cursor_names.h"

namespace pintle::wayland {
namespace {

/// One file for each identifier that has X11 names.
std::vector<ThemeFile> filesOf(const Wishes& wishes, int size, std::span<const int> nominals) {
    std::vector<ThemeFile> files;
    for (const auto& [identifier, cursor] : wishes) {
        const auto names = x11::namesOf(identifier);
        if (names.empty()) continue;
        auto images = imagesOf(cursor, size, nominals);
        // A picture that is too large at another density is still shown at its own.
        if (!images) images = imagesOf(cursor, size, std::array{size});
        if (!images) continue;
        auto bytes = cursorFile(*images);
        if (!bytes) continue;
        files.push_back({{names.begin(), names.end()}, std::move(*bytes)});
    }
    return files;
}

}  // namespace

ThemeEngine::ThemeEngine(IconFolders icons, std::vector<std::unique_ptr<SettingsProvider>> providers,
                         StateFile stateFile, std::function<std::vector<double>()> outputScales, Log& log)
    : icons_(std::move(icons)),
      outputScales_(std::move(outputScales)),
      log_(log),
      channel_(std::move(providers), std::move(stateFile), log) {
    reachesAnybody_ = channel_.reachesAnybody();
    noteUsersOwn();
}

bool ThemeEngine::carryOut(const ThemeRequest& request) {
    const std::lock_guard lock(working_);
    if (request.serial <= lastSerial_) return true;
    lastSerial_ = request.serial;
    if (!std::exchange(leftoversRemoved_, true)) removeThemeLeftovers(icons_);
    return request.wishes.empty() ? restore() : put(request);
}

PointerSetting ThemeEngine::usersOwn() const {
    const std::lock_guard lock(ownMutex_);
    return usersOwn_;
}

void ThemeEngine::noteUsersOwn() {
    auto own = channel_.usersOwn();
    const std::lock_guard lock(ownMutex_);
    usersOwn_ = std::move(own);
}

bool ThemeEngine::put(const ThemeRequest& request) {
    const auto nominals = nominalsFor(request.size, outputScales_());
    if (request.onlyForOtherOutputs && nominals == nominals_) return true;
    nominals_.clear();
    noteUsersOwn();
    const auto name = nextThemeName(channel_.themeInForce().value_or(""));
    // Every desktop has the theme "default".
    const std::array inherits = {usersOwn().theme.value_or("default")};
    const auto written = writeTheme(icons_, name, inherits, filesOf(request.wishes, request.size, nominals));
    if (!written) {
        log_.system("[Wayland] The theme folder cannot be written: " + written.error().description);
        return false;
    }
    if (written.value().linkError)
        log_.system("[Wayland] No link to the theme folder in the home folder: " +
                    written.value().linkError->description);
    if (!channel_.put({std::string(name), request.size})) {
        log_.system("[Wayland] No setting of this desktop took the theme");
        return false;
    }
    nominals_ = nominals;
    return true;
}

bool ThemeEngine::restore() {
    nominals_.clear();
    const bool clean = channel_.restore();
    noteUsersOwn();
    if (!clean) {
        log_.system("[Wayland] Not every setting of this desktop could be put back");
        return false;
    }
    for (const auto name : kThemeNames) removeTheme(icons_, name);
    return true;
}

bool putBackLeftTheme(const IconFolders& icons, const std::filesystem::path& stateFile,
                      const std::function<std::vector<std::unique_ptr<SettingsProvider>>()>& providers,
                      Log& log) {
    std::error_code error;
    if (!std::filesystem::exists(stateFile, error)) return true;
    ThemeEngine engine(
        icons, providers(), StateFile(stateFile), [] { return std::vector<double>(); }, log);
    return engine.carryOut({.serial = 1, .wishes = {}, .size = 0});
}

}  // namespace pintle::wayland
