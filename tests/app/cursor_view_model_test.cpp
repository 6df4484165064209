#include "app/cursor_view_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cursor/xcursor_parser.h"
#include "tests/support/cursor_world.h"

namespace pintle {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr auto kIce = "bibata-modern-ice";
constexpr auto kBanana = "banana";
constexpr auto kAnimatedKey = "animatedThemeCheckV2";

struct ViewModelTest : testing::Test {
    CursorWorld world;
    FullReset fullReset{{world.settings, world.store, world.themeStore, world.work, world.pipeline,
                         world.applier, world.changer, world.log}};

    CursorViewModel::Dependencies dependencies() {
        return {world.themes,
                world.themeStore,
                world.pipeline,
                world.downloads,
                world.removal,
                fullReset,
                world.store,
                world.scheduler.mainQueue(),
                world.scheduler.backgroundTasks(),
                world.hints,
                world.log};
    }
    void animate(const char* id, const char* name) {
        writeFile(world.cursorsOf(id) / name,
                  XCursorBuilder().image({.size = 32, .delay = 50}).image({.size = 32}).bytes());
    }
    std::optional<bool> answer(const char* id) {
        const auto stored = world.store.object(kAnimatedKey);
        if (!stored) return std::nullopt;
        const auto& answers = *stored->as<PropertyDictionary>();
        const auto found = answers.find(id);
        if (found == answers.end()) return std::nullopt;
        return *found->second.as<bool>();
    }
};

TEST_F(ViewModelTest, StartsInItsOrderWithItsLogLines) {
    world.writeTheme(kIce, 1);
    world.writeTheme(kBanana, 1);
    CursorViewModel model(dependencies());
    const auto path = world.themesDirectory().string();
    EXPECT_THAT(
        world.linesOf({"[VIEWMODEL]", "[LOAD_THEMES] ━━━"}),
        ElementsAre("[VIEWMODEL] INIT START", "[VIEWMODEL] Catalog count: 77",
                    "[VIEWMODEL] createDirectoriesIfNeeded() - themesDirectory: " + path,
                    "[VIEWMODEL] ✅ Directory created successfully", "[LOAD_THEMES] ━━━ loadThemes START",
                    "[LOAD_THEMES] ━━━ loadThemes DONE: 77 themes, 2 downloaded, 2 with preview, 0 "
                    "with errors",
                    "[VIEWMODEL] Themes loaded: 77", "[VIEWMODEL] Downloaded themes: 2"));
}

TEST_F(ViewModelTest, StartsWithoutAFilterAndWithoutACurrentTheme) {
    CursorViewModel model(dependencies());
    EXPECT_EQ(model.selectedFilter(), CursorHandedness::all);
    EXPECT_FALSE(model.currentTheme());
    EXPECT_EQ(model.themes().size(), 77u);
    EXPECT_TRUE(std::filesystem::is_directory(world.themesDirectory()));
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(ViewModelTest, RestoresTheCurrentThemeWhenItIsDownloaded) {
    world.writeTheme(kIce, 1);
    world.store.set("currentThemeId", kIce);
    CursorViewModel model(dependencies());
    ASSERT_TRUE(model.currentTheme());
    EXPECT_EQ(model.currentTheme()->id, kIce);
    EXPECT_TRUE(model.currentTheme()->isDownloaded);
}

TEST_F(ViewModelTest, RestoresNoCurrentThemeForAnIdThatMatchesNoDownloadedRow) {
    for (const char* id : {"fuchsia", "of-no-row", ""}) {
        world.store.set("currentThemeId", id);
        CursorViewModel model(dependencies());
        EXPECT_FALSE(model.currentTheme()) << id;
    }
}

TEST_F(ViewModelTest, AppliesARestoredThemeAgainWhenTheScaleChanges) {
    world.writeTheme(kIce, 0x010203);
    world.store.set("currentThemeId", kIce);
    CursorViewModel model(dependencies());
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.windowServer.registered.at("com.apple.coregraphics.Arrow").size, (Size{72, 72}));
}

TEST_F(ViewModelTest, ExaminesAndRecordsOnlyDownloadedThemes) {
    world.writeTheme(kIce, 1);
    world.writeTheme(kBanana, 1);
    animate(kIce, "left_ptr");
    CursorViewModel model(dependencies());
    EXPECT_FALSE(world.store.object(kAnimatedKey));
    world.scheduler.runUntilIdle();
    EXPECT_EQ(*world.store.object(kAnimatedKey),
              PropertyValue(PropertyDictionary{{kBanana, false}, {kIce, true}}));
    EXPECT_TRUE(world.theme(kIce).isAnimated);
    EXPECT_FALSE(world.theme(kBanana).isAnimated);
    EXPECT_THAT(world.hints.begun, ElementsAre("Detecting animated themes"));
    EXPECT_THAT(*world.hints.active, IsEmpty());
}

TEST_F(ViewModelTest, DoesNotExamineAThemeWithAnAnswerOnRecord) {
    world.writeTheme(kIce, 1);
    animate(kIce, "left_ptr");
    world.store.set(kAnimatedKey, PropertyDictionary{{kIce, false}});
    CursorViewModel model(dependencies());
    world.scheduler.runUntilIdle();
    EXPECT_EQ(answer(kIce), false);
    EXPECT_FALSE(world.theme(kIce).isAnimated);
}

TEST_F(ViewModelTest, AStillLeftPtrBesideAnAnimatedDefaultCountsAsAnimated) {
    world.writeTheme(kIce, 1);
    animate(kIce, "default");
    world.writeTheme(kBanana, 1);
    animate(kBanana, "watch");
    CursorViewModel model(dependencies());
    world.scheduler.runUntilIdle();
    EXPECT_EQ(answer(kIce), true);
    EXPECT_EQ(answer(kBanana), false);
}

TEST_F(ViewModelTest, ForwardsApplyScaleAndReset) {
    world.writeTheme(kIce, 0x010203);
    CursorViewModel model(dependencies());
    model.applyTheme(world.theme(kIce));
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.colourOf("com.apple.coregraphics.Arrow"), 0x010203u);
    model.applyThemeWithScale(world.theme(kIce), 0.75);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.applier.currentScale(), 0.75);
    model.resetToDefault();
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    model.applyLastUsedTheme();
    EXPECT_EQ(world.log.systemLines.back(), "No theme to apply - using system default");
}

TEST_F(ViewModelTest, NotifiesItsObserversOfRowsCurrentThemeAndFilter) {
    world.writeTheme(kIce, 1);
    CursorViewModel model(dependencies());
    world.scheduler.runUntilIdle();
    int changes = 0;
    const auto observer = model.changed.observe([&] { ++changes; });
    model.setSelectedFilter(CursorHandedness::leftHanded);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(model.selectedFilter(), CursorHandedness::leftHanded);
    model.applyTheme(world.theme(kIce));
    EXPECT_EQ(changes, 1);
    world.scheduler.step();
    EXPECT_GT(changes, 1);
    changes = 0;
    model.resetToDefault();
    EXPECT_EQ(changes, 1);
}

TEST_F(ViewModelTest, BuildsPreloadedCursors) {
    const auto images = XCursorParser::parse(XCursorBuilder().image({.size = 32}).bytes(), 48);
    const auto cursor = CursorViewModel::makePreloaded("wait", *images, 1.5);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->name, "wait");
    EXPECT_EQ(cursor->image.width(), 48);
    EXPECT_FALSE(CursorViewModel::makePreloaded("wait", {}, 1.0));
}

TEST_F(ViewModelTest, LeavesNothingBehindThatRunsAfterItsEnd) {
    world.writeTheme(kIce, 1);
    { CursorViewModel model(dependencies()); }
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.store.object(kAnimatedKey));
}

}  // namespace
}  // namespace pintle
