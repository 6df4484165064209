#include "themes/scratch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/long_path.h"
#include "tests/support/temporary_folder.h"
#include "themes/folder_tree.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

struct ScratchTest : testing::Test {
    TemporaryFolder folder;
    fs::path themes = folder.path() / "Themes";
    fs::path temporary = folder.path() / "tmp";
    ScratchTest() {
        fs::create_directories(themes);
        fs::create_directories(temporary);
    }
};

TEST_F(ScratchTest, UuidsHaveTheirFormAndDiffer) {
    const auto uuid = freshUuid();
    EXPECT_TRUE(testing::internal::RE::FullMatch(
        uuid,
        testing::internal::RE("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$")));
    EXPECT_NE(uuid, freshUuid());
}

TEST_F(ScratchTest, AScratchFolderGoesWithEverythingInIt) {
    fs::path path;
    {
        auto scratch = ScratchFolder::create(themes / "not" / "there");
        ASSERT_TRUE(scratch);
        path = scratch.value()->path();
        EXPECT_TRUE(path.filename().string().starts_with(".extract-"));
        writeFile(path / "x/a/b/c", "text");
        fs::permissions(path / "x/a/b", fs::perms::none);
        fs::permissions(path / "x", fs::perms(0500));
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(ScratchTest, LinksAreRemovedAndNotFollowed) {
    writeFile(folder.path() / "outside/file", "text");
    writeFile(themes / "a/b", "text");
    fs::create_directory_symlink(folder.path() / "outside", themes / "a/link");
    EXPECT_FALSE(removeTree(themes / "a"));
    EXPECT_FALSE(fs::exists(themes / "a"));
    EXPECT_TRUE(fs::exists(folder.path() / "outside/file"));
    fs::create_directory_symlink(folder.path() / "outside", themes / "l");
    EXPECT_FALSE(removeTree(themes / "l"));
    EXPECT_TRUE(fs::exists(folder.path() / "outside/file"));
}

TEST_F(ScratchTest, ATreeDeeperThanTheLongestPathIsRemoved) {
    const auto start = fs::current_path();
    fs::create_directories(themes / "deep");
    fs::current_path(themes / "deep");
    for (int i = 0; i < 600; ++i) {
        ASSERT_EQ(::mkdir("deep-deep", 0755), 0);
        ASSERT_EQ(::chdir("deep-deep"), 0);
    }
    fs::current_path(start);
    EXPECT_GT(measureTree(themes / "deep", {100000, 1 << 20, 64}).depth, 64);
    EXPECT_FALSE(removeTree(themes / "deep"));
    EXPECT_FALSE(fs::exists(themes / "deep"));
}

TEST_F(ScratchTest, FewFoldersOfLongNamesThatNoPathReachesAreTooDeep) {
    fs::create_directories(themes / "long");
    ASSERT_TRUE(makeBeyondPaths(themes / "long"));
    EXPECT_GT(measureTree(themes / "long", {100000, 1 << 20, 64}).depth, 64);
    EXPECT_FALSE(removeTree(themes / "long"));
}

TEST_F(ScratchTest, NothingAtThePathIsAnError) {
    EXPECT_EQ(removeTree(themes / "none"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(removeWhole(themes / "none"), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(fs::is_empty(themes));
}

TEST_F(ScratchTest, RemovingWholeLeavesNothingBehind) {
    writeFile(themes / "banana/cursors/left_ptr", "Xcur");
    fs::permissions(themes / "banana", fs::perms(0500));
    EXPECT_FALSE(removeWhole(themes / "banana"));
    EXPECT_TRUE(fs::is_empty(themes));
}

TEST_F(ScratchTest, MeasuringCountsEntriesAndBytesAndStopsAtALimit) {
    writeFile(themes / "a/one", std::string(10000, 'x'));
    writeFile(themes / "a/two", std::string(10000, 'y'));
    fs::create_hard_link(themes / "a/one", themes / "a/three");
    const auto size = measureTree(themes, {1000, 1 << 30, 64});
    EXPECT_EQ(size.entries, 4u);
    EXPECT_GE(size.bytes, 20000u);
    EXPECT_LT(size.bytes, 30000u);
    EXPECT_EQ(size.depth, 1);
    EXPECT_EQ(measureTree(themes, {1, 1 << 30, 64}).entries, 2u);
    EXPECT_GT(measureTree(themes, {1000, 100, 64}).bytes, 100u);
}

TEST_F(ScratchTest, AnArchiveFileChangesItsNameWhenCompleteAndGoesAtTheEnd) {
    {
        ArchiveFile archive(temporary);
        EXPECT_EQ(archive.path().extension(), ".part");
        EXPECT_TRUE(fs::exists(archive.path()));
        writeFile(archive.path(), "bytes");
        EXPECT_FALSE(archive.complete(archive.path()));
        EXPECT_EQ(archive.path().extension(), ".download");
        EXPECT_TRUE(archive.path().filename().string().starts_with("pintle-"));
        EXPECT_EQ(fs::file_size(archive.path()), 5u);
        EXPECT_EQ(archive.complete(temporary / "not-there"), std::errc::no_such_file_or_directory);
    }
    EXPECT_TRUE(fs::is_empty(temporary));
}

TEST_F(ScratchTest, WhatADeadRunLeftIsRemovedAndNothingElse) {
    const auto uuid = freshUuid();
    writeFile(themes / (".extract-" + uuid) / "x/file", "text");
    writeFile(temporary / ("pintle-" + uuid + ".part"), "text");
    writeFile(temporary / ("pintle-" + uuid + ".download"), "text");
    const std::vector<fs::path> strangers = {
        themes / ".extract-me" / "file", themes / "banana/cursors/left_ptr",
        temporary / ("pintle-" + uuid + ".downloads"), temporary / "pintle-1.download",
        temporary / ("other-" + uuid + ".download")};
    for (const auto& stranger : strangers) writeFile(stranger, "text");
    writeFile(folder.path() / "outside", "text");
    const auto second = freshUuid();
    fs::create_symlink(folder.path() / "outside", temporary / ("pintle-" + second + ".download"));
    fs::create_directories(temporary / ("pintle-" + freshUuid() + ".download"));

    removeLeftovers(themes, temporary);
    EXPECT_FALSE(fs::exists(themes / (".extract-" + uuid)));
    EXPECT_FALSE(fs::exists(temporary / ("pintle-" + uuid + ".part")));
    EXPECT_FALSE(fs::exists(temporary / ("pintle-" + uuid + ".download")));
    for (const auto& stranger : strangers) EXPECT_TRUE(fs::exists(stranger)) << stranger;
    EXPECT_TRUE(fs::exists(folder.path() / "outside"));
    EXPECT_TRUE(fs::is_symlink(temporary / ("pintle-" + second + ".download")));
}

TEST_F(ScratchTest, WhatALivingRunWorksWithStays) {
    auto scratch = ScratchFolder::create(themes);
    ASSERT_TRUE(scratch);
    ArchiveFile archive(temporary);
    ASSERT_FALSE(archive.complete(archive.path()));
    const pid_t other = ::fork();
    if (other == 0) {
        removeLeftovers(themes, temporary);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_TRUE(fs::exists(scratch.value()->path()));
    EXPECT_TRUE(fs::exists(archive.path()));
}

TEST_F(ScratchTest, AMissingFolderOfLeftoversIsNoMatter) {
    removeLeftovers(folder.path() / "a", folder.path() / "b");
    EXPECT_FALSE(fs::exists(folder.path() / "a"));
}

}  // namespace
}  // namespace pintle
