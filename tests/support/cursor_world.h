// The world with everything between a theme on disk and the window server, built as the root builds it.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "apply/application_pipeline.h"
#include "apply/cursor_applier.h"
#include "apply/cursor_snapshots.h"
#include "apply/density_follower.h"
#include "apply/system_cursor_changer.h"
#include "settings/cursor_settings.h"
#include "tests/support/fake_overlay.h"
#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"
#include "themes/download.h"
#include "themes/theme_extractor.h"
#include "themes/theme_list.h"
#include "themes/theme_removal.h"
#include "themes/theme_store.h"
#include "themes/theme_work.h"

namespace pintle {

struct CursorWorld : TestWorld {
    CursorSettings settings{store, notifications};
    CursorSnapshots snapshots{windowServer, images, propertyLists, log, directories};
    SystemCursorChanger changer{windowServer, snapshots, log};
    FakeOverlay overlay;
    CursorApplier applier{hardwareCursor, changer, overlay, log};
    ThemeStore themeStore{directories, log};
    ThemeList themes{themeStore, settings, log};
    ApplicationPipeline pipeline{{settings, store, notifications, themes, themeStore, applier, overlay,
                                  scheduler.mainQueue(), scheduler.backgroundTasks(), hints, log, workspace}};
    DensityFollower densityFollower{workspace, changer, pipeline};
    ThemeWork work;
    ThemeExtractor extractor{{processes, work, scheduler.mainQueue(), scheduler.backgroundTasks()}};
    ThemeDownloads downloads{{settings, store, themes, themeStore, extractor, work, http,
                              scheduler.mainQueue(), scheduler.backgroundTasks(), log},
                             directories.temporary,
                             std::nullopt};
    ThemeRemoval removal{
        {settings, store, themes, themeStore, work, scheduler.mainQueue(), scheduler.backgroundTasks(), log}};

    std::filesystem::path cursorsOf(const std::string& id) const {
        return themesDirectory() / id / "cursors";
    }
    /// A still cursor at 24, 32 and 48 pixels in one opaque colour, 0xRRGGBB.
    void writeCursor(const std::string& id, const std::string& name, std::uint32_t colour) {
        XCursorBuilder file;
        for (const std::uint32_t size : {24u, 32u, 48u})
            file.image({.size = size, .xhot = 2, .yhot = 4, .colour = 0xFF000000u | colour});
        writeFile(cursorsOf(id) / name, file.bytes());
    }
    void writeTheme(const std::string& id, std::uint32_t colour,
                    const std::vector<std::string>& names = {"left_ptr", "xterm", "help"}) {
        for (const auto& name : names) writeCursor(id, name, colour);
    }
    void removeFiles(const std::string& id) {
        for (const auto& entry : std::filesystem::directory_iterator(cursorsOf(id)))
            std::filesystem::remove(entry.path());
    }
    CursorThemeInfo theme(const std::string& id) const { return *themes.find(id); }

    /// 0xRRGGBB of what an identifier shows; absent when it is not registered.
    std::optional<std::uint32_t> colourOf(const std::string& identifier) const {
        const auto found = windowServer.registered.find(identifier);
        if (found == windowServer.registered.end()) return std::nullopt;
        return colour(found->second);
    }
    static std::uint32_t colour(const RegisteredCursor& cursor) {
        const auto pixel = cursor.images.at(0).pixel(0, 0);
        return std::uint32_t{pixel[0]} << 16 | std::uint32_t{pixel[1]} << 8 | std::uint32_t{pixel[2]};
    }
    std::vector<std::string> linesOf(const std::vector<std::string>& tags) const {
        std::vector<std::string> lines;
        for (const auto& line : log.systemLines)
            for (const auto& tag : tags)
                if (line.starts_with(tag)) lines.push_back(line);
        return lines;
    }
};

}  // namespace pintle
