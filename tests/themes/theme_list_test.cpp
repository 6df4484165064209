#include "themes/theme_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

struct ThemeListTest : testing::Test {
    TestWorld world;
    CursorSettings settings{world.store, world.notifications};
    ThemeStore store{world.directories, world.log};
    ThemeList list{store, settings, world.log};

    fs::path folder(const std::string& id) const { return world.themesDirectory() / id; }
    void download(const std::string& id) {
        writeFile(folder(id) / "cursors/left_ptr", XCursorBuilder().image({.size = 24}).bytes());
    }
    std::vector<std::string> linesWith(const std::string& tag) const {
        std::vector<std::string> found;
        for (const auto& line : world.log.systemLines)
            if (line.starts_with(tag)) found.push_back(line);
        return found;
    }
};

TEST_F(ThemeListTest, IsEmptyUntilLoaded) {
    EXPECT_THAT(list.themes(), IsEmpty());
    EXPECT_EQ(list.find("banana"), nullptr);
    list.loadThemes();
    EXPECT_THAT(list.themes(), testing::SizeIs(77));
}

TEST_F(ThemeListTest, WithoutAnythingOnDiskTheRowsAreTheCatalog) {
    list.loadThemes();
    EXPECT_EQ(list.themes(), CursorThemeInfo::catalog());
}

TEST_F(ThemeListTest, RowsOnDiskAreMarkedAndHaveTheirPreview) {
    download("fuchsia");
    writeFile(folder("banana") / "cursors/xterm", "x");
    list.loadThemes();
    ASSERT_TRUE(list.find("fuchsia"));
    EXPECT_TRUE(list.find("fuchsia")->isDownloaded);
    ASSERT_TRUE(list.find("fuchsia")->previewImage);
    EXPECT_EQ(list.find("fuchsia")->previewImage->width(), 24);
    EXPECT_TRUE(list.find("banana")->isDownloaded);
    EXPECT_FALSE(list.find("banana")->previewImage);
    EXPECT_FALSE(list.find("breezex")->isDownloaded);
}

TEST_F(ThemeListTest, AThemeWithAnEmptyCursorsFolderShowsAsNotDownloadedAndIsRemoved) {
    fs::create_directories(folder("banana") / "cursors");
    list.loadThemes();
    EXPECT_FALSE(list.find("banana")->isDownloaded);
    EXPECT_FALSE(fs::exists(folder("banana")));
}

TEST_F(ThemeListTest, OneThemeOfASharedArchiveDoesNotMarkTheOthers) {
    download("phinger-cursors-dark");
    list.loadThemes();
    for (const auto& theme : list.themes()) EXPECT_EQ(theme.isDownloaded, theme.id == "phinger-cursors-dark");
}

TEST_F(ThemeListTest, TheErrorOfAThemeThatIsNowThereIsClearedInTheRowAndInTheSettings) {
    settings.setThemeError("fuchsia", "Timed out");
    download("fuchsia");
    list.loadThemes();
    EXPECT_EQ(list.find("fuchsia")->downloadError, std::nullopt);
    EXPECT_EQ(settings.themeError("fuchsia"), std::nullopt);
    EXPECT_TRUE(
        world.log.has("[LOAD_THEMES] Theme fuchsia was marked with error but now valid - clearing error"));
}

TEST_F(ThemeListTest, TheErrorOfAThemeThatIsNotThereIsShownAndKept) {
    settings.setThemeError("fuchsia", "Timed out");
    list.loadThemes();
    EXPECT_EQ(list.find("fuchsia")->downloadError, "Timed out");
    EXPECT_FALSE(list.find("fuchsia")->previewImage);
    EXPECT_EQ(settings.themeError("fuchsia"), "Timed out");
}

TEST_F(ThemeListTest, AThemeWithoutAnErrorLeavesTheStoredErrorsUnwritten) {
    download("fuchsia");
    list.loadThemes();
    EXPECT_THAT(world.store.writes, IsEmpty());
}

TEST_F(ThemeListTest, LogsEachRowAndTheSums) {
    download("bibata-modern-classic");
    settings.setThemeError("bibata-modern-classic", "Offline");
    settings.setThemeError("bibata-modern-ice", "Timed out");
    writeFile(folder("lilith-cursors") / "cursors/xterm", "x");
    settings.setThemeError("banana", "Not found");
    list.loadThemes();

    std::vector<std::string> expected = {
        "[LOAD_THEMES] ━━━ loadThemes START",
        "[LOAD_THEMES] Theme: bibata-modern-classic → isDownloaded: 1, error: Offline",
        "[LOAD_THEMES] Theme bibata-modern-classic was marked with error but now valid - clearing error",
        "[LOAD_THEMES] Theme: bibata-modern-classic → previewImage: YES",
        "[LOAD_THEMES] Theme: bibata-modern-ice → isDownloaded: 0, error: Timed out"};
    for (std::size_t i = 2; i < 76; ++i) {
        const auto& id = CursorThemeInfo::catalog()[i].id;
        expected.push_back("[LOAD_THEMES] Theme: " + id +
                           " → isDownloaded: 0, error: " + (id == "banana" ? "Not found" : "(null)"));
    }
    for (const auto* line :
         {"[LOAD_THEMES] Theme: lilith-cursors → isDownloaded: 1, error: (null)",
          "[LOAD_THEMES] Theme: lilith-cursors → previewImage: NO",
          "[LOAD_THEMES] DOWNLOADED: bibata-modern-classic (preview: YES)",
          "[LOAD_THEMES] DOWNLOADED: lilith-cursors (preview: NO)",
          "[LOAD_THEMES] ERROR: bibata-modern-ice → Timed out", "[LOAD_THEMES] ERROR: banana → Not found",
          "[LOAD_THEMES] ━━━ loadThemes DONE: 77 themes, 2 downloaded, 1 with preview, "
          "2 with errors"})
        expected.emplace_back(line);
    EXPECT_EQ(linesWith("[LOAD_THEMES]"), expected);
}

TEST_F(ThemeListTest, ChecksAndPreviewsEachRowBetweenItsLines) {
    download("bibata-modern-classic");
    list.loadThemes();
    const auto path = folder("bibata-modern-classic").string();
    const std::vector<std::string> search = {"[FIND_CURSORS] ━━━ findCursorsDirectory START for: " + path,
                                             "[FIND_CURSORS] themeDir: " + path,
                                             "[FIND_CURSORS] themeDir exists: 1",
                                             "[FIND_CURSORS] Checking directPath: " + path + "/cursors",
                                             "[FIND_CURSORS] directPath exists: 1",
                                             "[FIND_CURSORS] ✅ FOUND cursors at directPath!"};
    std::vector<std::string> expected = {
        "[LOAD_THEMES] ━━━ loadThemes START",
        "[IS_DOWNLOADED] ━━━ Checking if theme downloaded: bibata-modern-classic"};
    expected.insert(expected.end(), search.begin(), search.end());
    expected.emplace_back("[IS_DOWNLOADED] ✅ VALID for bibata-modern-classic (1 cursor files)");
    expected.emplace_back("[LOAD_THEMES] Theme: bibata-modern-classic → isDownloaded: 1, error: (null)");
    expected.insert(expected.end(), search.begin(), search.end());
    expected.emplace_back("[LOAD_THEMES] Theme: bibata-modern-classic → previewImage: YES");
    for (std::size_t i = 1; i < 77; ++i) {
        const auto& id = CursorThemeInfo::catalog()[i].id;
        expected.push_back("[IS_DOWNLOADED] ━━━ Checking if theme downloaded: " + id);
        expected.emplace_back("[IS_DOWNLOADED] ❌ themePath does NOT exist");
        expected.push_back("[LOAD_THEMES] Theme: " + id + " → isDownloaded: 0, error: (null)");
    }
    expected.emplace_back("[LOAD_THEMES] DOWNLOADED: bibata-modern-classic (preview: YES)");
    expected.emplace_back(
        "[LOAD_THEMES] ━━━ loadThemes DONE: 77 themes, 1 downloaded, 1 with preview, 0 with errors");
    EXPECT_EQ(world.log.systemLines, expected);
}

TEST_F(ThemeListTest, PublishesTheWholeListAtOnceAndBeforeTheSums) {
    std::vector<std::size_t> sizes;
    bool sumsCameFirst = false;
    const auto observer = list.changed.observe([&] {
        sizes.push_back(list.themes().size());
        sumsCameFirst = !linesWith("[LOAD_THEMES] DOWNLOADED").empty();
    });
    download("fuchsia");
    list.loadThemes();
    EXPECT_THAT(sizes, ElementsAre(77u));
    EXPECT_FALSE(sumsCameFirst);
    EXPECT_FALSE(linesWith("[LOAD_THEMES] DOWNLOADED").empty());
}

TEST_F(ThemeListTest, LoadingAgainStartsFromFreshRows) {
    list.loadThemes();
    auto busy = *list.find("banana");
    busy.isDownloading = true;
    busy.downloadProgress = 0.5;
    busy.downloadStatus = "Extracting...";
    busy.isApplying = true;
    busy.isAnimated = true;
    busy.downloadError = "Offline";
    list.replace(busy);
    ASSERT_EQ(*list.find("banana"), busy);
    list.loadThemes();
    EXPECT_EQ(list.themes(), CursorThemeInfo::catalog());
}

TEST_F(ThemeListTest, ARowIsMarkedAsApplyingByItsId) {
    list.loadThemes();
    int changes = 0;
    const auto observer = list.changed.observe([&] { ++changes; });
    list.setApplying("banana", true);
    for (const auto& theme : list.themes()) EXPECT_EQ(theme.isApplying, theme.id == "banana");
    list.setApplying("banana", false);
    EXPECT_EQ(list.themes(), CursorThemeInfo::catalog());
    EXPECT_EQ(changes, 2);
}

TEST_F(ThemeListTest, AnUnknownIdChangesAndPublishesNothing) {
    list.loadThemes();
    int changes = 0;
    const auto observer = list.changed.observe([&] { ++changes; });
    list.setApplying("unknown", true);
    CursorThemeInfo unknown;
    unknown.id = "unknown";
    list.replace(unknown);
    EXPECT_EQ(list.themes(), CursorThemeInfo::catalog());
    EXPECT_EQ(changes, 0);
}

TEST_F(ThemeListTest, AReplacedRowKeepsItsPlace) {
    list.loadThemes();
    auto row = list.themes()[30];
    row.downloadProgress = 0.25;
    list.replace(row);
    EXPECT_EQ(list.themes()[30], row);
    EXPECT_EQ(list.themes().size(), 77u);
}

TEST_F(ThemeListTest, RowsAreMarkedAsAnimatedByTheAnswersAlone) {
    list.loadThemes();
    int changes = 0;
    const auto observer = list.changed.observe([&] { ++changes; });
    list.setAnimated({{"banana", true}, {"fuchsia", false}, {"unknown", true}});
    for (const auto& theme : list.themes()) EXPECT_EQ(theme.isAnimated, theme.id == "banana");
    list.setAnimated({{"fuchsia", true}});
    for (const auto& theme : list.themes()) EXPECT_EQ(theme.isAnimated, theme.id == "fuchsia");
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace pintle
