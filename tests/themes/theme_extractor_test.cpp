#include "themes/theme_extractor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>

#include "tests/support/as_nobody.h"
#include "tests/themes/library_world.h"
#include "themes/unpack_error.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

struct ThemeExtractorTest : testing::Test {
    LibraryWorld world;
    fs::path archive = world.folder.path() / "archive";
    std::optional<Status> ended;

    void begin(const std::string& id = "banana") {
        world.extractor.extract(archive, id, world.themeFolder(id),
                                [this](const Status& status) { ended = status; });
        EXPECT_FALSE(ended);
    }
    std::string run(const std::string& id = "banana") {
        begin(id);
        world.scheduler.runUntilIdle();
        if (!ended) return "not ended";
        return *ended ? "" : ended->error().description;
    }
    /// Begins and lets the child end so.
    std::string runChild(int status, const std::string& errorText) {
        begin();
        world.scheduler.runUntilIdle();
        world.processes.end(0, status, errorText);
        world.scheduler.runUntilIdle();
        return ended && !*ended ? ended->error().description : "no error";
    }
};

TEST_F(ThemeExtractorTest, RunsTheArchiverOnTheScratchFolderBesideTheThemes) {
    begin();
    world.scheduler.runUntilIdle();
    ASSERT_EQ(world.processes.requests.size(), 1u);
    const auto& request = world.processes.requests[0];
    EXPECT_EQ(request.executable, "/usr/bin/tar");
    const fs::path root = request.arguments.at(3);
    EXPECT_THAT(request.arguments, ElementsAre("-xf", archive.string(), "-C", root.string()));
    EXPECT_EQ(root.filename(), "x");
    EXPECT_EQ(root.parent_path().parent_path(), world.themesDirectory());
    EXPECT_THAT(root.parent_path().filename().string(), StartsWith(".extract-"));
    EXPECT_TRUE(fs::is_directory(root));
    EXPECT_EQ(request.standardError, root.parent_path() / "stderr.txt");
    EXPECT_EQ(fs::file_size(request.standardError), 0u);
    EXPECT_EQ(request.largestFile, world.limits.bytes);
    EXPECT_EQ(request.processorTime, world.limits.processorTime);
}

TEST_F(ThemeExtractorTest, InstallsTheChosenFolderAloneAsCursors) {
    world.unpack({{"T/x11-cursors/left_ptr", "Xcur"}, {"T/x11-cursors/README", "text"}, {"T/png/a", "p"}});
    EXPECT_EQ(run(), "");
    EXPECT_TRUE(fs::exists(world.themeFolder("banana") / "cursors/left_ptr"));
    EXPECT_TRUE(fs::exists(world.themeFolder("banana") / "cursors/README"));
    EXPECT_THAT(world.onDisk(), ElementsAre("banana"));
    EXPECT_EQ(std::distance(fs::directory_iterator(world.themeFolder("banana")), {}), 1);
}

TEST_F(ThemeExtractorTest, TheArchiveItselfIsNotTouched) {
    writeFile(archive, "bytes");
    world.unpack({{"cursors/left_ptr", "Xcur"}});
    EXPECT_EQ(run(), "");
    EXPECT_TRUE(fs::exists(archive));
}

TEST_F(ThemeExtractorTest, ReplacesWhatWasAtTheDestination) {
    writeFile(world.themeFolder("banana") / "cursors/old", "Xcur");
    world.unpack({{"cursors/new", "Xcur"}});
    EXPECT_EQ(run(), "");
    EXPECT_FALSE(fs::exists(world.themeFolder("banana") / "cursors/old"));
    EXPECT_TRUE(fs::exists(world.themeFolder("banana") / "cursors/new"));
    EXPECT_THAT(world.onDisk(), ElementsAre("banana"));
}

TEST_F(ThemeExtractorTest, OnlyPngSourcesAreNoCursors) {
    world.unpack({{"src/left_ptr.png", "\x89PNG"}});
    EXPECT_EQ(run(), "No XCursor files in archive");
    EXPECT_EQ(ended->error().code, -2);
    EXPECT_EQ(ended->error().domain, "Pintle");
    EXPECT_THAT(world.onDisk(), IsEmpty());
}

TEST_F(ThemeExtractorTest, AFailedArchiverIsAnsweredWithItsOwnWords) {
    EXPECT_EQ(runChild(1, " \n bsdtar: Error opening archive\n\t"),
              "Extraction failed: bsdtar: Error opening archive");
    EXPECT_EQ(ended->error().code, 1);
    EXPECT_THAT(world.onDisk(), IsEmpty());
}

TEST_F(ThemeExtractorTest, OnlyTheLastThreeHundredCharactersAreKept) {
    std::string text;
    for (int i = 0; i < 400; ++i) text += i == 100 ? "ß" : "é";
    std::string last = "ß";
    for (int i = 0; i < 299; ++i) last += "é";
    EXPECT_EQ(runChild(2, "first\n" + text + "\n"), "Extraction failed: " + last);
}

TEST_F(ThemeExtractorTest, AWordlessFailureIsAnsweredWithTheExitCode) {
    EXPECT_EQ(runChild(77, " \n "), "Extraction failed: exit code 77");
}

TEST_F(ThemeExtractorTest, AnArchiverThatCannotBeStartedIsAnsweredWithTheReason) {
    begin();
    world.scheduler.runUntilIdle();
    world.processes.refuse(0, "The archiver is missing");
    world.scheduler.runUntilIdle();
    ASSERT_TRUE(ended && !*ended);
    EXPECT_EQ(ended->error().description, "The archiver is missing");
    EXPECT_THAT(world.onDisk(), IsEmpty());
}

TEST_F(ThemeExtractorTest, AScratchFolderThatCannotBeMadeIsAnsweredWithTheFileSystemsError) {
    fs::remove_all(world.themesDirectory());
    writeFile(world.themesDirectory(), "a file in its place");
    EXPECT_EQ(run(), "Not a directory");
    EXPECT_THAT(world.processes.requests, IsEmpty());
}

TEST_F(ThemeExtractorTest, ADestinationThatCannotBeMadeIsAnsweredWithTheFileSystemsError) {
    world.unpack({{"cursors/left_ptr", "Xcur"}});
    writeFile(world.themesDirectory() / "file", "text");
    // A theme inside a file: the scratch folder cannot be made there either, so it lies deeper.
    world.extractor.extract(archive, "banana", world.themesDirectory() / "dir" / std::string(300, 'n'),
                            [this](const Status& status) { ended = status; });
    world.scheduler.runUntilIdle();
    ASSERT_TRUE(ended && !*ended);
    EXPECT_EQ(ended->error().description, "File name too long");
    EXPECT_THAT(fs::directory_iterator(world.themesDirectory() / "dir"), fs::directory_iterator());
}

TEST_F(ThemeExtractorTest, TheArchiverIsKilledWhenItHasWrittenTooManyBytes) {
    begin();
    world.scheduler.runUntilIdle();
    writeFile(fs::path(world.processes.requests[0].arguments[3]) / "bomb", std::string(50'000, 'x'));
    world.scheduler.advance(std::chrono::milliseconds(300));
    EXPECT_TRUE(world.processes.running(0));
    writeFile(fs::path(world.processes.requests[0].arguments[3]) / "bomb", std::string(200'000, 'x'));
    world.scheduler.advance(std::chrono::milliseconds(300));
    EXPECT_TRUE(world.processes.killed(0));
    ASSERT_TRUE(ended && !*ended);
    EXPECT_EQ(ended->error().description, "Extraction failed: the archive unpacks to more than 100000 bytes");
    EXPECT_THAT(world.onDisk(), IsEmpty());
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u);
}

TEST_F(ThemeExtractorTest, TheArchiverIsKilledWhenItComesToNoEnd) {
    begin();
    world.scheduler.advance(world.limits.deadline - std::chrono::seconds(1));
    EXPECT_TRUE(world.processes.running(0));
    world.scheduler.advance(std::chrono::seconds(1));
    EXPECT_TRUE(world.processes.killed(0));
    ASSERT_TRUE(ended && !*ended);
    EXPECT_EQ(ended->error().description, "Extraction failed: the archive takes longer than 120 seconds");
    EXPECT_THAT(world.onDisk(), IsEmpty());
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u);
}

TEST_F(ThemeExtractorTest, AnArchiverThatComputesTooLongIsAnsweredInWords) {
    EXPECT_EQ(runChild(SIGXCPU, ""),
              "Extraction failed: the archive takes more than 30 seconds of processor time");
    EXPECT_THAT(world.onDisk(), IsEmpty());
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u);
}

TEST_F(ThemeExtractorTest, TooManyEntriesAreSeenAlsoWhenTheArchiverWasQuicker) {
    std::map<std::string, std::string> files;
    for (int i = 0; i < 300; ++i) files["cursors/" + std::to_string(i)] = "";
    world.unpack(files);
    EXPECT_EQ(run(), "Extraction failed: the archive holds more than 200 entries");
    EXPECT_THAT(world.onDisk(), IsEmpty());
}

TEST_F(ThemeExtractorTest, FoldersNestedTooDeeplyAreAFailure) {
    world.unpack({{"1/2/3/4/5/6/7/8/9/cursors/left_ptr", "Xcur"}});
    EXPECT_EQ(run(), "Extraction failed: the archive nests folders deeper than 8");
    EXPECT_THAT(world.onDisk(), IsEmpty());
}

TEST_F(ThemeExtractorTest, ExtractionsOfDifferentThemesRunAtTheSameTime) {
    int done = 0;
    for (const char* id : {"banana", "fuchsia"})
        world.extractor.extract(archive, id, world.themeFolder(id), [&](const Status& status) {
            EXPECT_TRUE(status);
            ++done;
        });
    world.scheduler.runUntilIdle();
    ASSERT_EQ(world.processes.requests.size(), 2u);
    EXPECT_NE(world.processes.requests[0].arguments[3], world.processes.requests[1].arguments[3]);
    for (std::size_t i : {1u, 0u}) {
        writeFile(fs::path(world.processes.requests[i].arguments[3]) / "cursors/a", "Xcur");
        world.processes.end(i, 0);
    }
    world.scheduler.runUntilIdle();
    EXPECT_EQ(done, 2);
}

TEST_F(ThemeExtractorTest, InstallsOneThemeAtATimeInItsPlace) {
    world.unpack({{"cursors/left_ptr", "Xcur"}});
    ThemeWork::Turn held;
    world.work.begin("banana", [&](ThemeWork::Turn turn) { held = std::move(turn); });
    begin();
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(ended) << "somebody else works on the theme";
    EXPECT_FALSE(fs::exists(world.themeFolder("banana")));
    held = nullptr;
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(ended && *ended);
}

TEST_F(ThemeExtractorTest, WhenAllWorkEndsTheChildIsKilledAndNothingIsAnswered) {
    begin();
    world.scheduler.runUntilIdle();
    world.work.endAll();
    EXPECT_TRUE(world.processes.killed(0));
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(ended);
    EXPECT_THAT(world.onDisk(), IsEmpty());
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u);
}

/// Where the old theme is to go stands something else.
int unpackWithNoPlaceForTheOldTheme(const ProcessRequest& request) {
    const fs::path root = request.arguments.at(3);
    writeFile(root / "cursors/left_ptr", XCursorBuilder().image({.size = 24}).bytes());
    writeFile(root.parent_path() / "replaced" / "something", "in the way");
    return 0;
}

TEST_F(ThemeExtractorTest, AThemeThatCannotBeMovedIntoPlaceIsNotSaidToBeInstalled) {
    writeFile(world.themeFolder("banana") / "cursors/left_ptr", "old");
    world.processes.play = unpackWithNoPlaceForTheOldTheme;
    EXPECT_EQ(run(), "Directory not empty");
    EXPECT_EQ(fs::file_size(world.themeFolder("banana") / "cursors/left_ptr"), 3u) << "the old one stays";
}

TEST_F(ThemeExtractorTest, WhatCannotBeMovedAwayIsNotMixedWithTheNewTheme) {
    writeFile(world.themeFolder("banana") / "readme", "old");
    world.processes.play = unpackWithNoPlaceForTheOldTheme;
    EXPECT_EQ(run(), "Directory not empty");
    EXPECT_FALSE(fs::exists(world.themeFolder("banana") / "cursors"));
}

TEST_F(ThemeExtractorTest, AFolderThatCannotBeMadeInTheEndIsAnsweredWithTheReason) {
    world.unpack({{"cursors/left_ptr", "Xcur"}});
    ThemeWork::Turn held;
    world.work.begin("banana", [&](ThemeWork::Turn turn) { held = std::move(turn); });
    EXPECT_EQ(run(), "not ended");
    const AsNobody nobody(world.folder.path());
    fs::permissions(world.themesDirectory(), fs::perms::owner_read | fs::perms::owner_exec);
    held = nullptr;
    world.scheduler.runUntilIdle();
    fs::permissions(world.themesDirectory(), fs::perms::owner_all);
    ASSERT_TRUE(ended && !*ended);
    EXPECT_EQ(ended->error().description, "Permission denied");
}

TEST_F(ThemeExtractorTest, AThemeWhoseLastMoveFailsIsNotSaidToBeInstalled) {
    world.unpack({{"cursors/left_ptr", "Xcur"}});
    // The folder itself has just not too long a path, and what comes into it has.
    constexpr std::size_t kAround = 3880;
    constexpr std::size_t kWhole = 4090;
    std::string around = world.themesDirectory().string();
    while (around.size() + 1 < kAround)
        around += "/" + std::string(std::min<std::size_t>(200, kAround - around.size() - 1), 'd');
    fs::create_directories(around);
    const auto destination = around + "/" + std::string(kWhole - around.size() - 1, 'n');
    world.extractor.extract(archive, "banana", destination, [this](const Status& status) { ended = status; });
    world.scheduler.runUntilIdle();
    ASSERT_TRUE(ended && !*ended);
    EXPECT_EQ(ended->error().description, "File name too long");
}

TEST_F(ThemeExtractorTest, WhatVanishesBeforeItIsMovedIntoPlaceIsNotSaidToBeInstalled) {
    fs::path root;
    world.processes.play = [&](const ProcessRequest& request) {
        root = request.arguments.at(3);
        writeFile(root / "cursors/left_ptr", XCursorBuilder().image({.size = 24}).bytes());
        return 0;
    };
    ThemeWork::Turn held;
    world.work.begin("banana", [&](ThemeWork::Turn turn) { held = std::move(turn); });
    EXPECT_EQ(run(), "not ended");
    ASSERT_TRUE(fs::exists(root / "cursors"));
    fs::remove_all(root / "cursors");
    held = nullptr;
    world.scheduler.runUntilIdle();
    ASSERT_TRUE(ended);
    EXPECT_FALSE(*ended);
}

TEST(UnpackError, AFullDiskIsNamedWhereTheArchiverCouldSayNothing) {
    if (!fs::exists("/dev/full")) GTEST_SKIP();
    EXPECT_EQ(unpackErrorText("/dev/full", 1), "No space left on device");
    const TemporaryFolder folder;
    writeFile(folder.path() / "stderr.txt", "\n");
    EXPECT_EQ(unpackErrorText(folder.path() / "stderr.txt", 1), "exit code 1");
    EXPECT_EQ(unpackErrorText(folder.path() / "none", 1), "exit code 1");
}

TEST(UnpackError, TextThatIsNoUtf8BecomesReadable) {
    EXPECT_EQ(lastCharacters("a\xFF\xC3", 300), "a\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(lastCharacters("\x01", 300), "\xEF\xBF\xBD");
    EXPECT_EQ(lastCharacters(" a\nb ", 300), "a\nb");
    EXPECT_EQ(lastCharacters("\xED\xA0\x80z", 1), "z");
    EXPECT_EQ(lastCharacters("", 300), "");
}

}  // namespace
}  // namespace pintle
