#include "themes/theme_removal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "tests/themes/library_world.h"
#include "themes/animation_detection.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

struct ThemeRemovalTest : testing::Test {
    LibraryWorld world;
    std::vector<std::string> deleted;
    Subscription observer =
        world.removal.deleted.observe([this](const std::string& id) { deleted.push_back(id); });

    ThemeRemovalTest() {
        for (const char* id : {"banana", "fuchsia"})
            writeFile(world.themeFolder(id) / "cursors/left_ptr", LibraryWorld::cursorFile());
        world.themes.loadThemes();
        world.log.systemLines.clear();
    }
    void remove(const std::string& id) {
        world.removal.deleteTheme(world.row(id));
        world.scheduler.runUntilIdle();
    }
};

TEST_F(ThemeRemovalTest, TheFolderTheErrorAndTheMarksGo) {
    world.settings.setThemeError("banana", "old");
    world.store.set(animatedThemesKey, PropertyDictionary{{"banana", true}, {"fuchsia", true}});
    auto row = world.row("banana");
    ASSERT_TRUE(row.previewImage);
    row.downloadError = "Delete failed: earlier";
    row.isAnimated = true;
    world.themes.replace(row);
    remove("banana");
    EXPECT_THAT(world.log.systemLines, ElementsAre("[DELETE] [banana] Deleted successfully"));
    EXPECT_THAT(world.onDisk(), ElementsAre("fuchsia"));
    EXPECT_FALSE(world.row("banana").isDownloaded);
    EXPECT_FALSE(world.row("banana").previewImage);
    EXPECT_FALSE(world.row("banana").isAnimated);
    EXPECT_EQ(world.row("banana").downloadError, std::nullopt);
    EXPECT_EQ(world.settings.themeError("banana"), std::nullopt);
    EXPECT_EQ(animationAnswers(world.store), (AnimationAnswers{{"fuchsia", true}}));
    EXPECT_TRUE(world.row("fuchsia").isDownloaded);
    EXPECT_THAT(deleted, ElementsAre("banana"));
}

TEST_F(ThemeRemovalTest, ReturnsBeforeAnythingIsRemoved) {
    world.removal.deleteTheme(world.row("banana"));
    EXPECT_TRUE(fs::exists(world.themeFolder("banana")));
    EXPECT_TRUE(world.row("banana").isDownloaded);
}

TEST_F(ThemeRemovalTest, WaitsUntilNobodyElseWorksOnTheTheme) {
    ThemeWork::Turn held;
    world.work.begin("banana", [&](ThemeWork::Turn turn) { held = std::move(turn); });
    remove("banana");
    EXPECT_TRUE(fs::exists(world.themeFolder("banana")));
    held = nullptr;
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(fs::exists(world.themeFolder("banana")));
}

TEST_F(ThemeRemovalTest, AThemeRemovedByHandFailsWithTheNotFoundText) {
    fs::remove_all(world.themeFolder("banana"));
    remove("banana");
    EXPECT_THAT(world.log.systemLines, ElementsAre("[DELETE] [banana] Error: No such file or directory"));
    EXPECT_EQ(world.row("banana").downloadError, "Delete failed: No such file or directory");
    EXPECT_TRUE(world.row("banana").isDownloaded) << "as it was";
    EXPECT_TRUE(world.row("banana").previewImage);
    EXPECT_EQ(world.settings.themeError("banana"), std::nullopt) << "not stored";
    EXPECT_THAT(deleted, IsEmpty());
}

TEST_F(ThemeRemovalTest, AnIdThatLeadsOutOfTheThemesFolderRemovesNothing) {
    auto theme = world.row("banana");
    theme.id = "../..";
    world.removal.deleteTheme(theme);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(fs::exists(world.themeFolder("banana")));
    EXPECT_TRUE(fs::exists(world.directories.applicationSupport));
}

TEST_F(ThemeRemovalTest, ADeletionThatAResetOvertakesChangesNoSetting) {
    world.settings.setThemeError("banana", "kept");
    world.removal.deleteTheme(world.row("banana"));
    world.work.endAll();
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_EQ(world.settings.themeError("banana"), "kept");
    EXPECT_TRUE(fs::exists(world.themeFolder("banana")));
}

TEST(ThemeRemovalEnd, WhoeverIsGoneInTheMiddleRemovesTheWholeThemeOrNothing) {
    bool underWay = true;
    for (int steps = 0; underWay; ++steps) {
        LibraryWorld world;
        writeFile(world.themeFolder("banana") / "cursors/left_ptr", LibraryWorld::cursorFile());
        world.themes.loadThemes();
        auto removal = std::make_optional<ThemeRemoval>(ThemeRemoval::Dependencies{
            world.settings, world.store, world.themes, world.themeStore, world.work,
            world.scheduler.mainQueue(), world.scheduler.backgroundTasks(), world.log});
        removal->deleteTheme(world.row("banana"));
        for (int step = 0; step < steps && underWay; ++step) underWay = world.scheduler.step();
        removal.reset();
        world.scheduler.runUntilIdle();
        const auto left = world.onDisk();
        if (!left.empty()) {
            EXPECT_THAT(left, ElementsAre("banana")) << steps;
            EXPECT_TRUE(fs::exists(world.themeFolder("banana") / "cursors/left_ptr")) << steps;
        }
    }
}

}  // namespace
}  // namespace pintle
