#include "themes/theme_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Optional;

/// One still image of this nominal size.
std::vector<std::uint8_t> cursorFile(std::uint32_t size = 32) {
    return XCursorBuilder().image({.size = size}).bytes();
}

struct ThemeStoreTest : testing::Test {
    TestWorld world;
    ThemeStore store{world.directories, world.log};
    fs::path theme = world.themesDirectory() / "banana";
    const std::string themePath = theme.string();

    const std::vector<std::string>& lines() const { return world.log.systemLines; }
    /// The side of the preview, which is square in these tests.
    std::optional<int> previewSide() const {
        const auto preview = store.loadPreviewImage("banana");
        return preview ? std::optional(preview->width()) : std::nullopt;
    }
    /// What the search logs when the cursors folder lies where it should.
    std::vector<std::string> directSearch() const {
        return {"[FIND_CURSORS] ━━━ findCursorsDirectory START for: " + themePath,
                "[FIND_CURSORS] themeDir: " + themePath,
                "[FIND_CURSORS] themeDir exists: 1",
                "[FIND_CURSORS] Checking directPath: " + themePath + "/cursors",
                "[FIND_CURSORS] directPath exists: 1",
                "[FIND_CURSORS] ✅ FOUND cursors at directPath!"};
    }
    /// What it logs before it looks into `items` entries of the theme's folder.
    std::vector<std::string> deeperSearch(int items) const {
        return {"[FIND_CURSORS] ━━━ findCursorsDirectory START for: " + themePath,
                "[FIND_CURSORS] themeDir: " + themePath,
                "[FIND_CURSORS] themeDir exists: 1",
                "[FIND_CURSORS] Checking directPath: " + themePath + "/cursors",
                "[FIND_CURSORS] directPath exists: 0",
                "[FIND_CURSORS] Direct path not found, searching one level deep...",
                "[FIND_CURSORS] Found " + std::to_string(items) + " items in themeDir"};
    }
    static std::vector<std::string> joined(std::vector<std::string> first,
                                           const std::vector<std::string>& second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }
};

TEST_F(ThemeStoreTest, ThemesLieInTheApplicationSupportFolder) {
    EXPECT_EQ(store.themesDirectory(), world.directories.applicationSupport / "Pintle/Themes");
    EXPECT_EQ(store.themeDirectory("banana"), world.directories.applicationSupport / "Pintle/Themes/banana");
}

TEST_F(ThemeStoreTest, NoIdLeadsOutOfTheThemesFolder) {
    for (const auto& id : {std::string(), std::string("."), std::string(".."), std::string("a/b"),
                           std::string("/etc"), std::string("../x"), std::string("a\0b", 3)})
        EXPECT_EQ(store.themeDirectory(id), std::nullopt) << id;
}

TEST_F(ThemeStoreTest, AnUnsafeIdIsNotDownloadedAndNothingIsRemoved) {
    writeFile(world.directories.applicationSupport / "Pintle/other/keep", "x");
    writeFile(world.themesDirectory() / "keep", "x");
    for (const auto* id : {"", ".", "..", "../other"}) EXPECT_FALSE(store.isThemeDownloaded(id)) << id;
    EXPECT_TRUE(fs::exists(world.directories.applicationSupport / "Pintle/other/keep"));
    EXPECT_TRUE(fs::exists(world.themesDirectory() / "keep"));
    EXPECT_EQ(store.loadPreviewImage("../other"), std::nullopt);
}

TEST_F(ThemeStoreTest, WithoutAnApplicationSupportFolderThereIsNoStore) {
    world.directories.applicationSupport.clear();
    EXPECT_DEATH(ThemeStore(world.directories, world.log), "");
}

TEST_F(ThemeStoreTest, MakesTheThemesFolderWithItsParents) {
    store.createDirectoriesIfNeeded();
    EXPECT_TRUE(fs::is_directory(world.themesDirectory()));
    EXPECT_THAT(lines(), ElementsAre("[VIEWMODEL] createDirectoriesIfNeeded() - themesDirectory: " +
                                         world.themesDirectory().string(),
                                     "[VIEWMODEL] ✅ Directory created successfully"));
}

TEST_F(ThemeStoreTest, MakingAThemesFolderThatIsThereSucceeds) {
    writeFile(theme / "cursors/left_ptr", "x");
    store.createDirectoriesIfNeeded();
    EXPECT_EQ(lines().back(), "[VIEWMODEL] ✅ Directory created successfully");
    EXPECT_TRUE(fs::exists(theme / "cursors/left_ptr"));
}

TEST_F(ThemeStoreTest, AThemesFolderThatCannotBeMadeIsLoggedAndSwallowed) {
    writeFile(world.directories.applicationSupport / "Pintle", "a file in the way");
    store.createDirectoriesIfNeeded();
    EXPECT_THAT(lines(), ElementsAre("[VIEWMODEL] createDirectoriesIfNeeded() - themesDirectory: " +
                                         world.themesDirectory().string(),
                                     "[VIEWMODEL] ❌ ERROR creating directory: Not a directory"));
}

TEST_F(ThemeStoreTest, FindsTheCursorsFolderAtTheTop) {
    writeFile(theme / "cursors/left_ptr", "x");
    writeFile(theme / "nested/cursors/left_ptr", "x");
    EXPECT_EQ(store.findCursorsDirectory(theme), theme / "cursors");
    EXPECT_EQ(lines(), directSearch());
}

TEST_F(ThemeStoreTest, FindsTheCursorsFolderOneLevelDeep) {
    writeFile(theme / "nested/cursors/left_ptr", "x");
    EXPECT_EQ(store.findCursorsDirectory(theme), theme / "nested/cursors");
    EXPECT_EQ(lines(),
              joined(deeperSearch(1),
                     {"[FIND_CURSORS] Checking nested: " + themePath + "/nested/cursors",
                      "[FIND_CURSORS] ✅ FOUND cursors nested at: " + themePath + "/nested/cursors"}));
}

TEST_F(ThemeStoreTest, LooksIntoHiddenFoldersAndPassesOverFiles) {
    writeFile(theme / "index.theme", "x");
    writeFile(theme / ".hidden/cursors/left_ptr", "x");
    EXPECT_EQ(store.findCursorsDirectory(theme), theme / ".hidden/cursors");
    EXPECT_EQ(lines(),
              joined(deeperSearch(2),
                     {"[FIND_CURSORS] Checking nested: " + themePath + "/.hidden/cursors",
                      "[FIND_CURSORS] ✅ FOUND cursors nested at: " + themePath + "/.hidden/cursors"}));
}

TEST_F(ThemeStoreTest, OfSeveralNestedFoldersTheFirstOfTheFileSystemsOrderWins) {
    for (const auto* name : {"zebra", "alpha", "middle", "empty"}) fs::create_directories(theme / name);
    for (const auto* name : {"zebra", "alpha", "middle"}) writeFile(theme / name / "cursors/left_ptr", "x");
    std::vector<std::string> search;
    std::optional<fs::path> first;
    for (const auto& entry : fs::directory_iterator(theme)) {
        search.push_back("[FIND_CURSORS] Checking nested: " + entry.path().string() + "/cursors");
        if (entry.path().filename() == "empty") continue;
        first = entry.path() / "cursors";
        search.push_back("[FIND_CURSORS] ✅ FOUND cursors nested at: " + first->string());
        break;
    }
    EXPECT_EQ(store.findCursorsDirectory(theme), first);
    EXPECT_EQ(lines(), joined(deeperSearch(4), search));
}

TEST_F(ThemeStoreTest, NeverLooksTwoLevelsDeep) {
    writeFile(theme / "outer/inner/cursors/left_ptr", "x");
    EXPECT_EQ(store.findCursorsDirectory(theme), std::nullopt);
    EXPECT_EQ(lines(),
              joined(deeperSearch(1), {"[FIND_CURSORS] Checking nested: " + themePath + "/outer/cursors",
                                       "[FIND_CURSORS] ❌ NO cursors directory found for: " + themePath}));
}

TEST_F(ThemeStoreTest, AThemeFolderThatCannotBeListedIsLogged) {
    EXPECT_EQ(store.findCursorsDirectory(theme), std::nullopt);
    EXPECT_THAT(lines(),
                ElementsAre("[FIND_CURSORS] ━━━ findCursorsDirectory START for: " + themePath,
                            "[FIND_CURSORS] themeDir: " + themePath, "[FIND_CURSORS] themeDir exists: 0",
                            "[FIND_CURSORS] Checking directPath: " + themePath + "/cursors",
                            "[FIND_CURSORS] directPath exists: 0",
                            "[FIND_CURSORS] Direct path not found, searching one level deep...",
                            "[FIND_CURSORS] ❌ ERROR reading directory: No such file or directory"));
}

TEST_F(ThemeStoreTest, TheSearchWithoutLogLinesGivesTheSameAnswers) {
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), std::nullopt);
    writeFile(theme / "outer/inner/cursors/left_ptr", "x");
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), std::nullopt);
    writeFile(theme / "outer/cursors/left_ptr", "x");
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), theme / "outer/cursors");
    writeFile(theme / "cursors", "a file");
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), theme / "cursors");
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ThemeStoreTest, AThemeWithoutAFolderIsNotDownloaded) {
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_THAT(lines(), ElementsAre("[IS_DOWNLOADED] ━━━ Checking if theme downloaded: banana",
                                     "[IS_DOWNLOADED] ❌ themePath does NOT exist"));
}

TEST_F(ThemeStoreTest, AThemeWithCursorFilesIsDownloaded) {
    writeFile(theme / "cursors/left_ptr", "any content");
    writeFile(theme / "cursors/.hidden", "");
    fs::create_directories(theme / "cursors/folder");
    EXPECT_TRUE(store.isThemeDownloaded("banana"));
    auto expected = joined({"[IS_DOWNLOADED] ━━━ Checking if theme downloaded: banana"}, directSearch());
    expected.emplace_back("[IS_DOWNLOADED] ✅ VALID for banana (3 cursor files)");
    EXPECT_EQ(lines(), expected);
}

TEST_F(ThemeStoreTest, AThemeWithANestedCursorsFolderIsDownloaded) {
    writeFile(theme / "nested/cursors/left_ptr", "x");
    EXPECT_TRUE(store.isThemeDownloaded("banana"));
    EXPECT_EQ(lines().back(), "[IS_DOWNLOADED] ✅ VALID for banana (1 cursor files)");
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), theme / "nested/cursors");
}

TEST_F(ThemeStoreTest, AThemeWithAnEmptyCursorsFolderIsRemovedWhole) {
    writeFile(theme / "index.theme", "x");
    fs::create_directories(theme / "cursors");
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::exists(theme));
    EXPECT_TRUE(fs::exists(world.themesDirectory()));
    auto expected = joined({"[IS_DOWNLOADED] ━━━ Checking if theme downloaded: banana"}, directSearch());
    expected.emplace_back("[IS_DOWNLOADED] ❌ cursorsDir is EMPTY - cleaning up broken theme");
    EXPECT_EQ(lines(), expected);
}

TEST_F(ThemeStoreTest, AnEmptyNestedCursorsFolderTakesTheWholeThemeWithIt) {
    writeFile(theme / "index.theme", "x");
    fs::create_directories(theme / "nested/cursors");
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::exists(theme));
}

TEST_F(ThemeStoreTest, AThemeWhoseCursorsLieTwoLevelsDeepIsRemoved) {
    writeFile(theme / "outer/inner/cursors/left_ptr", "x");
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::exists(theme));
    auto expected = joined({"[IS_DOWNLOADED] ━━━ Checking if theme downloaded: banana"}, deeperSearch(1));
    expected.push_back("[FIND_CURSORS] Checking nested: " + themePath + "/outer/cursors");
    expected.push_back("[FIND_CURSORS] ❌ NO cursors directory found for: " + themePath);
    expected.emplace_back("[IS_DOWNLOADED] ❌ cursorsDir NOT found - cleaning up leftover directory");
    EXPECT_EQ(lines(), expected);
}

TEST_F(ThemeStoreTest, AFileNamedCursorsIsAcceptedThenListedInVainAndTheThemeRemoved) {
    writeFile(theme / "cursors", "a file");
    writeFile(theme / "nested/cursors/left_ptr", "x");
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), theme / "cursors");
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::exists(theme));
    auto expected = joined({"[IS_DOWNLOADED] ━━━ Checking if theme downloaded: banana"}, directSearch());
    expected.emplace_back("[IS_DOWNLOADED] ❌ cursorsDir is EMPTY - cleaning up broken theme");
    EXPECT_EQ(lines(), expected);
}

TEST_F(ThemeStoreTest, AFileInThePlaceOfTheThemeIsRemoved) {
    writeFile(theme, "a file");
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::exists(theme));
    EXPECT_TRUE(world.log.has("[FIND_CURSORS] ❌ ERROR reading directory: Not a directory"));
    EXPECT_EQ(lines().back(), "[IS_DOWNLOADED] ❌ cursorsDir NOT found - cleaning up leftover directory");
}

TEST_F(ThemeStoreTest, CleaningUpALinkedThemeRemovesTheLinkAndNotWhatItLeadsTo) {
    const auto elsewhere = world.folder.path() / "elsewhere";
    writeFile(elsewhere / "document", "x");
    fs::create_directories(world.themesDirectory());
    fs::create_directory_symlink(elsewhere, theme);
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::is_symlink(theme));
    EXPECT_TRUE(fs::exists(elsewhere / "document"));
}

TEST_F(ThemeStoreTest, CleaningUpNeverFollowsLinksInsideATheme) {
    const auto elsewhere = world.folder.path() / "elsewhere";
    writeFile(elsewhere / "document", "x");
    fs::create_directories(elsewhere / "none");
    fs::create_directories(theme);
    fs::create_directory_symlink(elsewhere / "none", theme / "cursors");
    fs::create_directory_symlink(elsewhere, theme / "more");
    EXPECT_FALSE(store.isThemeDownloaded("banana"));
    EXPECT_FALSE(fs::exists(theme));
    EXPECT_TRUE(fs::exists(elsewhere / "document"));
    EXPECT_TRUE(fs::exists(elsewhere / "none"));
}

TEST_F(ThemeStoreTest, ALinkThatLeadsNowhereIsNotThere) {
    fs::create_directories(theme);
    fs::create_symlink("nowhere", theme / "cursors");
    EXPECT_EQ(ThemeStore::findCursorsDirectoryNonisolated(theme), std::nullopt);
    fs::create_symlink("nowhere", world.themesDirectory() / "fuchsia");
    EXPECT_FALSE(store.isThemeDownloaded("fuchsia"));
    EXPECT_EQ(lines().back(), "[IS_DOWNLOADED] ❌ themePath does NOT exist");
}

TEST_F(ThemeStoreTest, LinkedFoldersCountAsFolders) {
    writeFile(world.folder.path() / "elsewhere/cursors/left_ptr", "x");
    fs::create_directories(theme);
    fs::create_directory_symlink(world.folder.path() / "elsewhere", theme / "linked");
    EXPECT_TRUE(store.isThemeDownloaded("banana"));
}

TEST_F(ThemeStoreTest, AThemeOfASharedArchiveSaysNothingAboutTheOthers) {
    writeFile(world.themesDirectory() / "phinger-cursors-light/cursors/left_ptr", "x");
    EXPECT_TRUE(store.isThemeDownloaded("phinger-cursors-light"));
    for (const auto* id : {"phinger-cursors-dark", "phinger-cursors-light-left", "phinger-cursors-dark-left"})
        EXPECT_FALSE(store.isThemeDownloaded(id)) << id;
}

TEST_F(ThemeStoreTest, ThePreviewIsTakenFromTheFirstNameThatGivesAnImage) {
    const std::pair<const char*, std::uint32_t> files[] = {
        {"pointer", 20}, {"arrow", 22}, {"left_ptr", 24}, {"default", 26}};
    for (const auto& [name, size] : files) {
        writeFile(theme / "cursors" / name, cursorFile(size));
        EXPECT_EQ(previewSide(), static_cast<int>(size)) << name;
    }
}

TEST_F(ThemeStoreTest, OtherNamesGiveNoPreview) {
    for (const auto* name : {"xterm", "Default", "left_ptr_watch"})
        writeFile(theme / "cursors" / name, cursorFile());
    EXPECT_EQ(previewSide(), std::nullopt);
}

TEST_F(ThemeStoreTest, AnUnreadableDefaultLeavesThePreviewToLeftPtr) {
    fs::create_directories(theme / "cursors/default");
    writeFile(theme / "cursors/left_ptr", cursorFile(24));
    EXPECT_EQ(previewSide(), 24);
}

TEST_F(ThemeStoreTest, EmptyBrokenAndDanglingFilesLeaveThePreviewToTheNextName) {
    writeFile(theme / "cursors/default", "");
    writeFile(theme / "cursors/left_ptr", "not a cursor file at all");
    fs::create_symlink("nowhere", theme / "cursors/arrow");
    writeFile(theme / "cursors/pointer", cursorFile(24));
    EXPECT_EQ(previewSide(), 24);
}

TEST_F(ThemeStoreTest, ANamedPipeDoesNotHoldThePreviewUp) {
    fs::create_directories(theme / "cursors");
    ASSERT_EQ(mkfifo((theme / "cursors/default").c_str(), 0600), 0);
    writeFile(theme / "cursors/left_ptr", cursorFile(24));
    EXPECT_EQ(previewSide(), 24);
}

TEST_F(ThemeStoreTest, NoReadableFileGivesNoPreview) {
    fs::create_directories(theme / "cursors/default");
    writeFile(theme / "cursors/left_ptr", "");
    EXPECT_EQ(previewSide(), std::nullopt);
}

TEST_F(ThemeStoreTest, AThemeWithoutACursorsFolderHasNoPreview) { EXPECT_EQ(previewSide(), std::nullopt); }

TEST_F(ThemeStoreTest, ThePreviewIsTheImageNearestToThirtyTwo) {
    writeFile(theme / "cursors/default",
              XCursorBuilder().image({.size = 24}).image({.size = 48}).image({.size = 32}).bytes());
    EXPECT_EQ(previewSide(), 32);
}

TEST_F(ThemeStoreTest, OfImagesEquallyNearTheFirstInTheFileIsThePreview) {
    writeFile(theme / "cursors/default", XCursorBuilder().image({.size = 24}).image({.size = 40}).bytes());
    EXPECT_EQ(previewSide(), 24);
    writeFile(theme / "cursors/default", XCursorBuilder().image({.size = 40}).image({.size = 24}).bytes());
    EXPECT_EQ(previewSide(), 40);
}

TEST_F(ThemeStoreTest, OfTheFramesOfAnAnimationTheFirstIsThePreview) {
    writeFile(theme / "cursors/default", XCursorBuilder()
                                             .image({.delay = 50, .colour = 0xFF112233})
                                             .image({.delay = 50, .colour = 0xFF445566})
                                             .bytes());
    const auto preview = store.loadPreviewImage("banana");
    ASSERT_TRUE(preview);
    EXPECT_THAT(preview->pixel(0, 0), ElementsAre(0x11, 0x22, 0x33, 0xFF));
}

TEST_F(ThemeStoreTest, ImagesAboveFortyEightAreNoPreviewBesideASmallerOne) {
    // 50 is nearer to 32 than 8 is.
    writeFile(theme / "cursors/default", XCursorBuilder().image({.size = 8}).image({.size = 50}).bytes());
    EXPECT_EQ(previewSide(), 8);
    writeFile(theme / "cursors/default", XCursorBuilder().image({.size = 8}).image({.size = 48}).bytes());
    EXPECT_EQ(previewSide(), 48);
    writeFile(theme / "cursors/default", XCursorBuilder().image({.size = 8}).image({.size = 49}).bytes());
    EXPECT_EQ(previewSide(), 8);
}

TEST_F(ThemeStoreTest, ThePreviewOfLargeImagesAloneIsTheSmallest) {
    writeFile(theme / "cursors/default", XCursorBuilder().image({.size = 96}).image({.size = 64}).bytes());
    EXPECT_EQ(previewSide(), 64);
}

TEST_F(ThemeStoreTest, ThePreviewLooksForTheCursorsFolderWithItsLogLines) {
    writeFile(theme / "cursors/default", cursorFile());
    EXPECT_TRUE(store.loadPreviewImage("banana"));
    EXPECT_EQ(lines(), directSearch());
}

TEST_F(ThemeStoreTest, ThePreviewIsReadFromANestedCursorsFolder) {
    writeFile(theme / "nested/cursors/default", cursorFile(24));
    EXPECT_EQ(previewSide(), 24);
}

TEST_F(ThemeStoreTest, ThePreviewLoadsInTheBackgroundWithoutLogLines) {
    writeFile(theme / "nested/cursors/default", cursorFile(24));
    const Lifetime lifetime;
    std::vector<std::optional<int>> sides;
    for (const auto* id : {"banana", "fuchsia", "../banana"})
        store.loadPreviewImageAsync(
            id, world.scheduler.backgroundTasks(), world.scheduler.mainQueue(), lifetime,
            [&](std::optional<Bitmap> preview) {
                EXPECT_TRUE(world.scheduler.mainQueue().isMain());
                sides.push_back(preview ? std::optional(preview->width()) : std::nullopt);
            });
    EXPECT_THAT(sides, IsEmpty());
    world.scheduler.runUntilIdle();
    EXPECT_THAT(sides, ElementsAre(Optional(24), std::nullopt, std::nullopt));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ThemeStoreTest, APreviewWhoseOwnerIsGoneIsDropped) {
    writeFile(theme / "cursors/default", cursorFile());
    auto lifetime = std::make_unique<Lifetime>();
    bool called = false;
    store.loadPreviewImageAsync("banana", world.scheduler.backgroundTasks(), world.scheduler.mainQueue(),
                                *lifetime, [&](const auto&) { called = true; });
    lifetime.reset();
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(called);
}

}  // namespace
}  // namespace pintle
