#include "app/full_reset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/cursor_view_model.h"
#include "settings/notification_names.h"
#include "tests/support/as_nobody.h"
#include "tests/support/cursor_world.h"
#include "themes/animation_detection.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kIce = "bibata-modern-ice";

struct ResetWorld : CursorWorld {
    FullReset fullReset{{settings, store, themeStore, work, pipeline, applier, changer, log}};
    std::optional<CursorViewModel> model;

    ResetWorld() {
        fs::create_directories(directories.temporary);
        writeTheme(kIce, 0x010203);
        writeFile(directories.applicationSupport / "Pintle" / "system_cursor_backup.plist", "backup");
        model.emplace(CursorViewModel::Dependencies{themes, themeStore, pipeline, downloads, removal,
                                                    fullReset, store, scheduler.mainQueue(),
                                                    scheduler.backgroundTasks(), hints, log});
        scheduler.runUntilIdle();
        processes.play = [](const ProcessRequest& request) {
            writeFile(fs::path(request.arguments.at(3)) / "cursors/left_ptr",
                      XCursorBuilder().image({.size = 24}).bytes());
            return 0;
        };
    }
    std::vector<std::string> temporaryFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(directories.temporary))
            names.push_back(entry.path().filename().string());
        return names;
    }
};

struct FullResetTest : testing::Test {
    ResetWorld world;
};

TEST_F(FullResetTest, PrintsItsLinesInTheirOrder) {
    const auto path = world.themesDirectory().string();
    world.model->resetAllData();
    EXPECT_THAT(
        world.log.outputLines,
        ElementsAre("[RESET] ━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━", "[RESET] Starting full app reset...",
                    "[RESET] ✅ Deleted all themes from: " + path, "[RESET] ✅ Cleared UserDefaults",
                    "[RESET] ✅ Reset CursorSettings", "[RESET] ✅ Reset cursor to system default",
                    "[RESET] Full reset completed!"));
    const std::string bar = "━";
    std::size_t bars = 0;
    for (auto at = world.log.outputLines[0].find(bar); at != std::string::npos;
         at = world.log.outputLines[0].find(bar, at + 1))
        ++bars;
    EXPECT_EQ(bars, 36u);
}

TEST_F(FullResetTest, TheThemesAndThePreferencesGoAndTheFolderWithTheBackupStays) {
    world.settings.setThemeError("banana", "gone");
    world.settings.setCursorScale(1.5);
    world.settings.addExcludedApp("Editor");
    world.model->applyTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    ASSERT_TRUE(world.changer.isActive());
    world.model->resetAllData();
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(fs::exists(world.themesDirectory()));
    EXPECT_TRUE(fs::exists(world.directories.applicationSupport / "Pintle" / "system_cursor_backup.plist"));
    EXPECT_EQ(*world.store.domain, (PropertyDictionary{{"cursorScale", 1.0}}));
    EXPECT_EQ(world.settings.themeError("banana"), std::nullopt);
    EXPECT_FALSE(world.changer.isActive());
    EXPECT_THAT(world.changer.lastApplied(), IsEmpty());
    EXPECT_THAT(world.applier.customCursors(), IsEmpty());
    EXPECT_EQ(world.model->themes().size(), 77u);
    EXPECT_TRUE(world.theme(kIce).isDownloaded) << "the list is not rebuilt";
}

TEST_F(FullResetTest, AnnouncesTheScaleAndDoesNotApplyTheThemeAgain) {
    world.model->applyTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    int announced = 0;
    const auto observer = world.notifications.observe(std::string(notification::cursorScaleChanged),
                                                      [&](const std::any&) { ++announced; });
    world.model->resetAllData();
    world.scheduler.runUntilIdle();
    EXPECT_EQ(announced, 1);
    EXPECT_FALSE(world.changer.isActive());
    EXPECT_FALSE(world.log.has("[CursorViewModel] Applying scale: 1.0 for theme: Bibata Modern Ice"));
}

TEST_F(FullResetTest, TheCursorsComeBackByTheApplierAndByTheChanger) {
    world.model->applyTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    world.applier.mapCursorsToSystemTypes();
    world.overlay.calls.clear();
    world.log.systemLines.clear();
    const auto custom = world.hardwareCursor.current();
    world.model->resetAllData();
    EXPECT_EQ(world.log.count("[SystemCursorChanger] Unregistered all custom cursors (err=0)"), 2u);
    EXPECT_THAT(world.overlay.calls, ElementsAre("deactivate", "showSystemCursorGuaranteed", "destroyWindows",
                                                 "showSystemCursorGuaranteed"));
    EXPECT_NE(world.hardwareCursor.current(), custom) << "the arrow";
    EXPECT_THAT(world.applier.customCursors(), IsEmpty());
    EXPECT_THAT(world.changer.lastApplied(), IsEmpty());
    EXPECT_FALSE(world.changer.isActive());
    EXPECT_FALSE(world.changer.suspendedForExcludedApp());
}

TEST_F(FullResetTest, WithoutThemesItSaysNothingOfThem) {
    fs::remove_all(world.themesDirectory());
    world.model->resetAllData();
    EXPECT_EQ(world.log.outputLines[2], "[RESET] ✅ Cleared UserDefaults");
}

TEST_F(FullResetTest, AThemesFolderThatCannotBeRemovedIsReportedAndDoesNotStopIt) {
    const AsNobody rights(world.folder.path());
    fs::permissions(world.directories.applicationSupport / "Pintle", fs::perms(0500));
    world.model->resetAllData();
    fs::permissions(world.directories.applicationSupport / "Pintle", fs::perms(0700));
    EXPECT_EQ(world.log.outputLines[2], "[RESET] ❌ Failed to delete themes: Permission denied");
    EXPECT_EQ(world.log.outputLines.back(), "[RESET] Full reset completed!");
}

TEST_F(FullResetTest, DeletingTheAppliedThemeRestoresAndAnotherOneDoesNot) {
    world.writeTheme("fuchsia", 0x040506);
    world.themes.loadThemes();
    world.model->applyTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    world.model->deleteTheme(world.theme("fuchsia"));
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.changer.isActive());
    ASSERT_TRUE(world.model->currentTheme());
    world.model->deleteTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.model->currentTheme());
    EXPECT_EQ(world.store.object("currentThemeId"), std::nullopt);
    EXPECT_FALSE(fs::exists(world.themesDirectory() / kIce));
}

TEST_F(FullResetTest, ADownloadIsFollowedByADetectionAndAMark) {
    world.processes.play = [](const ProcessRequest& request) {
        writeFile(fs::path(request.arguments.at(3)) / "cursors/left_ptr",
                  XCursorBuilder().image({.size = 24, .delay = 50}).image({.size = 24, .delay = 50}).bytes());
        return 0;
    };
    world.model->downloadTheme(world.theme("banana"));
    world.scheduler.runUntilIdle();
    world.http.answer(0, 200, "archive");
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme("banana").isDownloaded);
    EXPECT_TRUE(world.theme("banana").isAnimated);
    EXPECT_TRUE(animationAnswers(world.store).contains("banana"));
}

TEST_F(FullResetTest, OfWorkInFlightNothingReachesDiskSettingsOrScreen) {
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        ResetWorld each;
        each.scheduler.shuffle(seed);
        each.model->downloadTheme(each.theme("banana"));
        each.model->downloadTheme(each.theme("fuchsia"));
        each.model->downloadTheme(each.theme("breezex"));
        for (std::uint64_t i = 0; i < seed % 5; ++i) each.scheduler.step();
        for (std::size_t i = 0; i < each.http.requests.size(); ++i) {
            if (i == 2)
                each.http.fail(i, "gone");
            else
                each.http.answer(i, 200, "archive");
        }
        for (std::uint64_t i = 0; i < seed % 11; ++i) each.scheduler.step();
        each.model->applyTheme(each.theme(kIce));
        each.model->detectAnimatedThemes();
        for (std::uint64_t i = 0; i < seed % 23; ++i) each.scheduler.step();

        each.model->resetAllData();
        const auto calls = each.windowServer.calls.size();
        const auto writes = each.store.writes.size();
        EXPECT_FALSE(fs::exists(each.themesDirectory())) << seed;
        each.scheduler.runUntilIdle();
        each.scheduler.advance(std::chrono::seconds(5));

        EXPECT_FALSE(fs::exists(each.themesDirectory())) << seed;
        EXPECT_THAT(each.temporaryFiles(), IsEmpty()) << seed;
        EXPECT_EQ(*each.store.domain, (PropertyDictionary{{"cursorScale", 1.0}})) << seed;
        EXPECT_EQ(each.store.writes.size(), writes) << seed;
        EXPECT_EQ(each.windowServer.calls.size(), calls) << seed;
        EXPECT_FALSE(each.changer.isActive()) << seed;
    }
}

}  // namespace
}  // namespace pintle
