// The theme library over the fakes, with an archiver that "unpacks" what the test puts into `unpacked`.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"
#include "themes/download.h"
#include "themes/theme_extractor.h"
#include "themes/theme_list.h"
#include "themes/theme_removal.h"
#include "themes/theme_store.h"
#include "themes/theme_work.h"

namespace pintle {

struct LibraryWorld : TestWorld {
    CursorSettings settings{store, notifications};
    ThemeStore themeStore{directories, log};
    ThemeList themes{themeStore, settings, log};
    ThemeWork work;
    ExtractionLimits limits{100'000, 200, 8, std::chrono::milliseconds(250)};
    ThemeExtractor extractor{{processes, work, scheduler.mainQueue(), scheduler.backgroundTasks()}, limits};
    std::optional<ThemeDownloads> downloads;
    ThemeRemoval removal{
        {settings, store, themes, themeStore, work, scheduler.mainQueue(), scheduler.backgroundTasks(), log}};

    explicit LibraryWorld(std::optional<std::string> mirror = std::nullopt) {
        std::filesystem::create_directories(directories.temporary);
        themeStore.createDirectoriesIfNeeded();
        themes.loadThemes();
        log.systemLines.clear();
        downloads.emplace(
            ThemeDownloads::Dependencies{settings, store, themes, themeStore, extractor, work, http,
                                         scheduler.mainQueue(), scheduler.backgroundTasks(), log},
            directories.temporary, std::move(mirror));
    }

    static std::string cursorFile(std::uint32_t size = 24) {
        const auto bytes = XCursorBuilder().image({.size = size}).bytes();
        return {bytes.begin(), bytes.end()};
    }
    /// From now on every child writes these files into its folder and ends well.
    void unpack(const std::map<std::string, std::string>& files) {
        processes.play = [files](const ProcessRequest& request) {
            for (const auto& [name, text] : files)
                writeFile(std::filesystem::path(request.arguments.at(3)) / name, text);
            return 0;
        };
    }
    const CursorThemeInfo& row(const std::string& id) const { return *themes.find(id); }
    std::filesystem::path themeFolder(const std::string& id) const { return themesDirectory() / id; }
    /// Names in the themes folder and in the temporary folder.
    std::vector<std::string> onDisk() const {
        std::vector<std::string> names;
        for (const auto& place : {themesDirectory(), directories.temporary}) {
            std::error_code error;
            for (const auto& entry : std::filesystem::directory_iterator(place, error))
                names.push_back(entry.path().filename().string());
        }
        return names;
    }
};

}  // namespace pintle
