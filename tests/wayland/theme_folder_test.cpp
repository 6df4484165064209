#include "platform/wayland/theme_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <set>

#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error))
        names.insert(each->path().filename().string());
    return names;
}

class ThemeFolder : public ::testing::Test {
  protected:
    static ThemeFile file(std::vector<std::string> names, std::string_view content = "picture") {
        return {std::move(names), {content.begin(), content.end()}};
    }
    std::vector<ThemeFile> files_ = {file({"left_ptr", "default", "arrow"}), file({"text"}, "beam")};
    Result<WrittenTheme> write(std::string_view name = "Pintle-A",
                               std::vector<std::string> inherits = {"Adwaita"}) {
        return writeTheme(icons_, name, inherits, files_);
    }

    TemporaryFolder folder_;
    IconFolders icons_{folder_.path() / "share" / "icons", folder_.path() / ".icons"};
    fs::path theme_ = icons_.data / "Pintle-A";
};

TEST_F(ThemeFolder, HoldsOneFileForEachPictureAndRelativeLinksInside) {
    const auto written = write();
    ASSERT_TRUE(written);
    EXPECT_FALSE(written.value().linkError);
    EXPECT_EQ(contentOf(theme_ / "cursors" / "left_ptr"), "picture");
    EXPECT_EQ(fs::read_symlink(theme_ / "cursors" / "default"), "left_ptr");
    EXPECT_EQ(fs::read_symlink(theme_ / "cursors" / "arrow"), "left_ptr");
    EXPECT_EQ(contentOf(theme_ / "cursors" / "text"), "beam");
    EXPECT_THAT(contentOf(theme_ / "index.theme"), HasSubstr("\nInherits=Adwaita\n"));
    EXPECT_EQ(fs::read_symlink(icons_.home / "Pintle-A"), theme_);
    EXPECT_TRUE(hasTheme(icons_, "Pintle-A"));
    EXPECT_THAT(namesIn(icons_.data), ElementsAre("Pintle-A"));
}

TEST_F(ThemeFolder, AnEarlierOneOfTheSameNameIsReplacedWhole) {
    ASSERT_TRUE(write());
    files_ = {file({"text"}, "other")};
    ASSERT_TRUE(write());
    EXPECT_THAT(namesIn(theme_ / "cursors"), ElementsAre("text"));
    EXPECT_THAT(namesIn(icons_.data), ElementsAre("Pintle-A"));
}

TEST_F(ThemeFolder, TheTwoNamesFollowEachOther) {
    EXPECT_EQ(nextThemeName("Adwaita"), "Pintle-A");
    EXPECT_EQ(nextThemeName("Pintle-A"), "Pintle-B");
    EXPECT_EQ(nextThemeName("Pintle-B"), "Pintle-A");
    EXPECT_TRUE(isOwnThemeName("Pintle-B"));
    EXPECT_FALSE(isOwnThemeName("pintle"));
}

TEST_F(ThemeFolder, ParentsThatAnIndexFileCannotHoldAreLeftOut) {
    ASSERT_TRUE(
        write("Pintle-A", {"Two Words", "a\nName=b", "../evil", "Pintle-B", "", "Good", "a,b", "x;y"}));
    EXPECT_THAT(contentOf(theme_ / "index.theme"), HasSubstr("\nInherits=Good\n"));
}

TEST_F(ThemeFolder, WithoutParentsNoneIsNamed) {
    ASSERT_TRUE(write("Pintle-A", {}));
    EXPECT_THAT(contentOf(theme_ / "index.theme"), Not(HasSubstr("Inherits")));
}

TEST_F(ThemeFolder, NamesThatAreNoFileNamesAreLeftOut) {
    files_ = {file({"../../out", "", ".", "..", ".hidden", "a/b", std::string("x\0y", 3), "good", "good"})};
    ASSERT_TRUE(write());
    EXPECT_THAT(namesIn(theme_ / "cursors"), ElementsAre("good"));
    EXPECT_FALSE(fs::exists(folder_.path() / "share" / "out"));
}

TEST_F(ThemeFolder, WhatSomebodyElsePutUnderTheNameStays) {
    writeFile(theme_ / "index.theme", "theirs");
    const auto written = write();
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, EEXIST);
    removeTheme(icons_, "Pintle-A");
    EXPECT_EQ(contentOf(theme_ / "index.theme"), "theirs");
    EXPECT_THAT(namesIn(icons_.data), ElementsAre("Pintle-A"));
    EXPECT_FALSE(hasTheme(icons_, "Pintle-A"));
}

TEST_F(ThemeFolder, ALinkUnderTheNameIsNotFollowed) {
    const auto theirs = folder_.path() / "theirs";
    writeFile(theirs / ".pintle", "looks like ours");
    writeFile(theirs / "kept", "kept");
    fs::create_directories(icons_.data);
    fs::create_directory_symlink(theirs, theme_);
    EXPECT_FALSE(write());
    removeTheme(icons_, "Pintle-A");
    EXPECT_TRUE(fs::is_symlink(theme_));
    EXPECT_EQ(contentOf(theirs / "kept"), "kept");
}

TEST_F(ThemeFolder, AnotherLinkOrFolderInTheHomeFolderStaysAndTheThemeIsWrittenNevertheless) {
    writeFile(icons_.home / "Pintle-A" / "theirs", "theirs");
    const auto written = write();
    ASSERT_TRUE(written);
    ASSERT_TRUE(written.value().linkError);
    EXPECT_EQ(written.value().linkError->code, EEXIST);
    removeTheme(icons_, "Pintle-A");
    EXPECT_EQ(contentOf(icons_.home / "Pintle-A" / "theirs"), "theirs");
}

TEST_F(ThemeFolder, OneFolderForBothNeedsNoLink) {
    fs::create_directories(icons_.data);
    fs::create_directory_symlink(icons_.data, icons_.home);
    const auto written = write();
    ASSERT_TRUE(written);
    EXPECT_FALSE(written.value().linkError);
    EXPECT_TRUE(fs::is_directory(fs::symlink_status(theme_)));
    removeTheme(icons_, "Pintle-A");
    EXPECT_THAT(namesIn(icons_.data), IsEmpty());
}

TEST_F(ThemeFolder, AHomeFolderThatIsAFileCostsTheLinkOnly) {
    writeFile(icons_.home, "a file");
    const auto written = write();
    ASSERT_TRUE(written);
    EXPECT_TRUE(written.value().linkError);
    EXPECT_EQ(contentOf(icons_.home), "a file");
}

TEST_F(ThemeFolder, AnIconFolderThatCannotBeWrittenIsAnError) {
    writeFile(icons_.data, "a file");
    EXPECT_FALSE(write());
    EXPECT_EQ(contentOf(icons_.data), "a file");
}

TEST_F(ThemeFolder, AFullDiskKeepsTheEarlierOneAndLeavesNothingBehind) {
    ASSERT_TRUE(write());
    files_ = {file({"left_ptr"}, std::string(4096, 'x'))};
    {
        const FullDisk full(1000);
        const auto written = write();
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error().code, EFBIG);
    }
    EXPECT_EQ(contentOf(theme_ / "cursors" / "left_ptr"), "picture");
    EXPECT_THAT(namesIn(icons_.data), ElementsAre("Pintle-A"));
}

TEST_F(ThemeFolder, IsRemovedWithItsLinkAndNothingElse) {
    ASSERT_TRUE(write());
    ASSERT_TRUE(write("Pintle-B"));
    removeTheme(icons_, "Pintle-A");
    EXPECT_THAT(namesIn(icons_.data), ElementsAre("Pintle-B"));
    EXPECT_THAT(namesIn(icons_.home), ElementsAre("Pintle-B"));
    removeTheme(icons_, "Pintle-A");
}

TEST_F(ThemeFolder, WhatAnInterruptedWritingLeftIsRemoved) {
    writeFile(icons_.data / ".Pintle-A.new-12" / "cursors" / "left_ptr", "half");
    writeFile(icons_.data / ".Other.new-12" / "kept", "kept");
    writeFile(icons_.data / ".Pintle-A.new-file", "kept");
    removeThemeLeftovers(icons_);
    EXPECT_THAT(namesIn(icons_.data), ElementsAre(".Other.new-12", ".Pintle-A.new-file"));
}

}  // namespace
}  // namespace pintle::wayland
