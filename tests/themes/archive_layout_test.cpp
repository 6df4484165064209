#include "themes/archive_layout.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <iterator>

#include "tests/support/long_path.h"
#include "tests/support/temporary_folder.h"
#include "themes/folder_tree.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

struct ArchiveLayoutTest : testing::Test {
    TemporaryFolder folder;
    fs::path root = folder.path() / "x";

    ArchiveLayoutTest() { fs::create_directories(root); }

    void cursors(const fs::path& inside, int count) {
        for (int i = 0; i < count; ++i) writeFile(root / inside / ("cursor" + std::to_string(i)), "Xcur.");
    }
    void link(const fs::path& inside, const fs::path& text) {
        fs::create_directories((root / inside).parent_path());
        fs::create_symlink(text, root / inside);
    }
    std::string pick(const std::string& id = "banana") {
        const auto found = pickCursorDirectory(root, id);
        return found ? found->lexically_relative(root).string() : "none";
    }
    static std::string content(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Makes `inside` self-contained and moves it to where themes lie.
    fs::path install(const fs::path& inside, std::uint64_t mostCopies = 1000) {
        const auto status = makeSelfContained(root / inside, root, mostCopies);
        EXPECT_TRUE(status) << (status ? "" : status.error().description);
        const auto place = folder.path() / "Themes" / "banana";
        fs::create_directories(place);
        fs::rename(root / inside, place / "cursors");
        return place / "cursors";
    }
};

TEST_F(ArchiveLayoutTest, ATopFolderWithCursorsInsideIsFound) {
    cursors("Banana/cursors", 3);
    EXPECT_EQ(pick(), "Banana/cursors");
}

TEST_F(ArchiveLayoutTest, AFolderOfAnyOtherNameIsFoundToo) {
    cursors("Banana/x11-cursors", 1);
    EXPECT_EQ(pick(), "Banana/x11-cursors");
}

TEST_F(ArchiveLayoutTest, WithoutAFileThatBeginsWithTheMagicThereIsNone) {
    writeFile(root / "src/left_ptr.png", "\x89PNG");
    writeFile(root / "cursors/left_ptr", "Xcu");
    writeFile(root / "cursors/xterm", "xcur");
    writeFile(root / "cursors/empty", "");
    EXPECT_EQ(pick(), "none");
}

TEST_F(ArchiveLayoutTest, ALinkThatWalksThroughAFileLeadsToNoCursor) {
    writeFile(root / "real", "Xcur.");
    link("Banana/cursors/left_ptr", "../../real/");
    link("Banana/cursors/xterm", "../../real/.");
    EXPECT_EQ(pick(), "none");
}

TEST_F(ArchiveLayoutTest, FilesDirectlyInTheUnpackRootAreNoCandidate) {
    writeFile(root / "left_ptr", "Xcur");
    EXPECT_EQ(pick(), "none");
}

TEST_F(ArchiveLayoutTest, OfFourVariantsSideBySideEachIdGetsItsOwn) {
    for (const char* id : {"phinger-cursors-light", "phinger-cursors-dark", "phinger-cursors-light-left",
                           "phinger-cursors-dark-left"})
        cursors(fs::path(id) / "cursors", 5);
    for (const char* id : {"phinger-cursors-light", "phinger-cursors-dark", "phinger-cursors-light-left",
                           "phinger-cursors-dark-left"})
        EXPECT_EQ(pick(id), std::string(id) + "/cursors");
}

TEST_F(ArchiveLayoutTest, TheIdMatchesInAnyLetterCaseAndBeatsEverythingElse) {
    cursors("other/cursors", 9);
    cursors("BANANA/dist/pointers", 1);
    EXPECT_EQ(pick(), "BANANA/dist/pointers");
}

TEST_F(ArchiveLayoutTest, ThePartOfANameIsNoMatch) {
    cursors("banana-blue/cursors", 1);
    cursors("other/cursors", 2);
    EXPECT_EQ(pick(), "other/cursors");
}

TEST_F(ArchiveLayoutTest, ComponentsAboveTheUnpackRootDoNotMatch) {
    root = folder.path() / "banana" / "x";
    cursors("one/pointers", 5);
    cursors("two/cursors", 1);
    EXPECT_EQ(pick(), "two/cursors");
}

TEST_F(ArchiveLayoutTest, TheNameCursorsBeatsMoreFilesAndIsCaseSensitive) {
    cursors("built/Cursors", 9);
    cursors("built/cursors", 2);
    EXPECT_EQ(pick(), "built/cursors");
}

TEST_F(ArchiveLayoutTest, AmongEqualNamesTheLargerSetWins) {
    cursors("a/cursors", 30);
    cursors("b/cursors", 40);
    EXPECT_EQ(pick(), "b/cursors");
    cursors("c/cursors", 39);
    EXPECT_EQ(pick(), "b/cursors");
}

TEST_F(ArchiveLayoutTest, AmongEqualSetsTheOneMetFirstStays) {
    cursors("a/cursors", 4);
    cursors("b/cursors", 4);
    cursors("c/cursors", 4);
    std::string first;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (first.empty() && entry.path().filename() == "cursors")
            first = entry.path().lexically_relative(root).string();
    EXPECT_EQ(pick(), first);
}

TEST_F(ArchiveLayoutTest, LinkedFoldersAreNotWalked) {
    cursors("real/pointers", 2);
    link("banana", "real");
    EXPECT_EQ(pick(), "real/pointers");
}

TEST_F(ArchiveLayoutTest, LinksToFilesOfTheArchiveCountAndLinksToOutsideDoNot) {
    writeFile(folder.path() / "outside", "Xcur");
    cursors("a/cursors", 2);
    cursors("b/cursors", 1);
    link("b/cursors/one", "cursor0");
    link("b/cursors/two", "one");
    link("a/cursors/one", "../../../outside");
    link("a/cursors/two", (folder.path() / "outside").string());
    link("a/cursors/three", "three");
    EXPECT_EQ(pick(), "b/cursors");
}

TEST_F(ArchiveLayoutTest, FifosNamedLikeCursorsNeitherHangNorCount) {
    fs::create_directories(root / "cursors");
    ASSERT_EQ(::mkfifo((root / "cursors/left_ptr").c_str(), 0600), 0);
    link("cursors/default", "left_ptr");
    EXPECT_EQ(pick(), "none");
}

TEST_F(ArchiveLayoutTest, ALinkBetweenFilesOfTheFolderStaysALink) {
    cursors("T/cursors", 1);
    link("T/cursors/default", "cursor0");
    const auto installed = install("T/cursors");
    EXPECT_TRUE(fs::is_symlink(installed / "default"));
    EXPECT_EQ(content(installed / "default"), "Xcur.");
}

TEST_F(ArchiveLayoutTest, ALinkThatLeavesAndComesBackByTheNameCursorsStays) {
    cursors("T/cursors", 1);
    link("T/cursors/default", "../cursors/cursor0");
    const auto installed = install("T/cursors");
    EXPECT_TRUE(fs::is_symlink(installed / "default"));
    EXPECT_EQ(content(installed / "default"), "Xcur.");
}

TEST_F(ArchiveLayoutTest, ALinkWhoseTextTheMoveWouldBreakBecomesACopy) {
    cursors("T/x11-cursors", 1);
    link("T/x11-cursors/a", "../x11-cursors/cursor0");
    link("T/x11-cursors/b", "../../T/x11-cursors/cursor0");
    link("T/x11-cursors/c", (root / "T/x11-cursors/cursor0").string());
    const auto installed = install("T/x11-cursors");
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_FALSE(fs::is_symlink(installed / name)) << name;
        EXPECT_EQ(content(installed / name), "Xcur.") << name;
    }
}

TEST_F(ArchiveLayoutTest, ALinkIntoASiblingFolderBecomesACopy) {
    cursors("T/cursors", 1);
    writeFile(root / "common/watch", "Xcurwatch");
    link("T/cursors/watch", "../../common/watch");
    link("T/cursors/wait", "watch");
    const auto installed = install("T/cursors");
    EXPECT_EQ(content(installed / "watch"), "Xcurwatch");
    EXPECT_FALSE(fs::is_symlink(installed / "watch"));
    EXPECT_EQ(content(installed / "wait"), "Xcurwatch");
}

TEST_F(ArchiveLayoutTest, ALinkToOutsideIsRemovedAndNotCopied) {
    writeFile(folder.path() / "outside", "Xcursecret");
    cursors("T/cursors", 1);
    link("T/cursors/a", (folder.path() / "outside").string());
    link("T/cursors/b", "../../../outside");
    link("T/cursors/c", "a");
    link("T/cursors/d", "/etc/passwd");
    const auto installed = install("T/cursors");
    for (const char* name : {"a", "b", "c", "d"})
        EXPECT_EQ(fs::symlink_status(installed / name).type(), fs::file_type::not_found) << name;
    EXPECT_EQ(content(folder.path() / "outside"), "Xcursecret");
}

TEST_F(ArchiveLayoutTest, AFolderWhoseNameOnlyBeginsAlikeIsOutside) {
    cursors("T/cursors", 1);
    writeFile(root / "T/cursors-more/watch", "Xcurmore");
    link("T/cursors/watch", "../cursors-more/watch");
    const auto installed = install("T/cursors");
    EXPECT_FALSE(fs::is_symlink(installed / "watch"));
    EXPECT_EQ(content(installed / "watch"), "Xcurmore");
}

TEST_F(ArchiveLayoutTest, LoopsAndLongChainsOfLinksAreRemoved) {
    cursors("T/cursors", 1);
    link("T/cursors/a", "b");
    link("T/cursors/b", "a");
    link("T/cursors/self", "self");
    link("T/cursors/chain0", "cursor0");
    for (int i = 1; i <= 60; ++i)
        link("T/cursors/chain" + std::to_string(i), "chain" + std::to_string(i - 1));
    const auto installed = install("T/cursors");
    for (const char* name : {"a", "b", "self", "chain60"})
        EXPECT_FALSE(fs::is_symlink(installed / name)) << name;
    EXPECT_EQ(content(installed / "chain5"), "Xcur.");
}

TEST_F(ArchiveLayoutTest, ALinkToNowhereInsideTheFolderStays) {
    cursors("T/cursors", 1);
    link("T/cursors/lost", "never-there");
    const auto installed = install("T/cursors");
    EXPECT_TRUE(fs::is_symlink(installed / "lost"));
}

TEST_F(ArchiveLayoutTest, LinksDeeperInTheFolderAreSecuredToo) {
    writeFile(folder.path() / "outside", "Xcur");
    cursors("T/cursors", 1);
    link("T/cursors/sub/deep/in", "../../cursor0");
    link("T/cursors/sub/deep/out", "../../../../../outside");
    const auto installed = install("T/cursors");
    EXPECT_EQ(content(installed / "sub/deep/in"), "Xcur.");
    EXPECT_FALSE(fs::is_symlink(installed / "sub/deep/out"));
}

TEST_F(ArchiveLayoutTest, ALinkToAFolderOfTheArchiveBecomesACopyWithoutWaysOut) {
    writeFile(folder.path() / "outside", "Xcur");
    cursors("T/cursors", 1);
    cursors("other", 2);
    link("other/out", "../../outside");
    link("other/alias", "cursor1");
    link("other/up", "..");
    link("T/cursors/sub", "../../other");
    const auto installed = install("T/cursors");
    EXPECT_EQ(content(installed / "sub/cursor0"), "Xcur.");
    EXPECT_EQ(content(installed / "sub/alias"), "Xcur.");
    EXPECT_FALSE(fs::exists(fs::symlink_status(installed / "sub/out")));
    EXPECT_FALSE(fs::exists(fs::symlink_status(installed / "sub/up")));
}

TEST_F(ArchiveLayoutTest, LinksToTheFolderItselfAndToThoseAroundItAreRemoved) {
    cursors("T/cursors", 1);
    link("T/cursors/here", ".");
    link("T/cursors/above", "..");
    link("T/cursors/top", "../..");
    const auto installed = install("T/cursors");
    for (const char* name : {"here", "above", "top"})
        EXPECT_FALSE(fs::exists(fs::symlink_status(installed / name))) << name;
}

TEST_F(ArchiveLayoutTest, ALinkToAFolderAroundItInsideTheChosenOneIsRemoved) {
    for (const char* chosen : {"T/cursors", "T/x11"}) {
        cursors(chosen, 1);
        cursors(fs::path(chosen) / "sub/deep", 1);
    }
    link("T/cursors/sub/x", "../../../T/cursors/sub");
    link("T/cursors/sub/deep/x", "../../../../T/cursors/sub");
    link("T/x11/sub/x", "../../x11/sub");
    for (const char* chosen : {"T/cursors", "T/x11"}) {
        const auto installed = install(chosen);
        EXPECT_EQ(content(installed / "sub/deep/cursor0"), "Xcur.") << chosen;
        for (const char* name : {"sub/x", "sub/deep/x"})
            EXPECT_FALSE(fs::exists(fs::symlink_status(installed / name))) << chosen << " " << name;
        fs::remove_all(installed);
    }
}

TEST_F(ArchiveLayoutTest, FoldersThatLinkToEachOtherAreCopiedOnce) {
    cursors("T/cursors/a", 1);
    cursors("T/cursors/b", 1);
    link("T/cursors/a/x", "../../../T/cursors/b");
    link("T/cursors/b/x", "../../../T/cursors/a");
    const auto installed = install("T/cursors");
    EXPECT_EQ(content(installed / "a/x/cursor0"), "Xcur.");
    EXPECT_EQ(content(installed / "b/x/cursor0"), "Xcur.");
    EXPECT_LT(std::distance(fs::recursive_directory_iterator(installed), {}), 20);
}

TEST_F(ArchiveLayoutTest, LinksThatLeadOverTooManyOthersAreAFailure) {
    cursors("T/cursors", 1);
    std::string way;
    for (int i = 0; i < 500; ++i) way += "sub/../";
    fs::create_directories(root / "T/cursors/sub");
    for (int chain = 0; chain < 40; ++chain)
        for (int i = 0; i < 39; ++i)
            link("T/cursors/" + std::to_string(chain) + "-" + std::to_string(i),
                 way + (i == 0 ? "cursor0" : std::to_string(chain) + "-" + std::to_string(i - 1)));
    EXPECT_EQ(pick(), "T/cursors");
    const auto status = makeSelfContained(root / "T/cursors", root, 100'000);
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().description, "Extraction failed: the archive holds links that lead to too much");
}

TEST_F(ArchiveLayoutTest, CopiesHaveUsualModes) {
    cursors("T/cursors", 1);
    cursors("other", 2);
    for (const char* name : {"other/cursor0", "other/cursor1"})
        fs::permissions(root / name, fs::perms(06444));
    link("T/cursors/file", "../../other/cursor0");
    link("T/cursors/folder", "../../other");
    const auto installed = install("T/cursors");
    for (const char* name : {"file", "folder/cursor0", "folder/cursor1"})
        EXPECT_EQ(fs::status(installed / name).permissions(), fs::perms(0644)) << name;
}

TEST_F(ArchiveLayoutTest, AWayThroughALinkedFolderIsFollowed) {
    cursors("T/cursors", 1);
    writeFile(root / "T/cursors/real/file", "Xcurreal");
    link("T/cursors/alias", "real");
    link("T/cursors/through", "alias/file");
    link("T/cursors/back", "alias/../cursor0");
    const auto installed = install("T/cursors");
    EXPECT_EQ(content(installed / "through"), "Xcurreal");
    EXPECT_EQ(content(installed / "back"), "Xcur.");
}

TEST_F(ArchiveLayoutTest, ALinkOverALinkThatGoesBecomesACopy) {
    cursors("T/cursors", 1);
    writeFile(root / "T/cursors/sub/file", "Xcurfile");
    link("T/cursors/here", ".");
    link("T/cursors/file", "here/cursor0");
    link("T/cursors/folder", "here/sub");
    link("T/cursors/over", "folder/file");
    const auto installed = install("T/cursors");
    EXPECT_FALSE(fs::exists(fs::symlink_status(installed / "here")));
    EXPECT_EQ(content(installed / "file"), "Xcur.");
    EXPECT_EQ(content(installed / "folder/file"), "Xcurfile");
    EXPECT_EQ(content(installed / "over"), "Xcurfile");
}

TEST_F(ArchiveLayoutTest, FifosAreNotInstalledAndModesAreMadeUsual) {
    cursors("T/cursors", 1);
    ASSERT_EQ(::mkfifo((root / "T/cursors/left_ptr").c_str(), 0600), 0);
    fs::permissions(root / "T/cursors/cursor0", fs::perms(04400));
    fs::permissions(root / "T/cursors", fs::perms(0500));
    fs::permissions(root / "T", fs::perms(0500));
    const auto installed = install("T/cursors");
    EXPECT_FALSE(fs::exists(installed / "left_ptr"));
    EXPECT_EQ(fs::status(installed / "cursor0").permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(installed).permissions(), fs::perms(0700));
}

TEST_F(ArchiveLayoutTest, NothingIsInstalledThatHoldsMoreThanPathsReach) {
    cursors("T/cursors", 1);
    link("T/cursors/passwords", "/etc/passwd");
    ASSERT_TRUE(makeBeyondPaths(root / "T/cursors"));
    const auto status = makeSelfContained(root / "T/cursors", root, 1000);
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().code, ENAMETOOLONG);
    EXPECT_TRUE(fs::is_symlink(root / "T/cursors/passwords")) << "changed before it was refused";
    EXPECT_FALSE(removeTree(root));
}

TEST_F(ArchiveLayoutTest, LinksAreNotFollowedOutsideEvenWhereTheyWouldComeBack) {
    fs::create_directory_symlink(root, folder.path() / "way");
    cursors("T/cursors", 1);
    writeFile(root / "common/watch", "Xcurwatch");
    link("T/cursors/file", "../../../way/T/cursors/cursor0");
    link("T/cursors/copied", (folder.path() / "way/common/watch").string());
    link("T/more/cursor", "../../../way/common/watch");
    link("T/cursors/more", "../more");
    EXPECT_EQ(pick("T"), "T/cursors");
    const auto installed = install("T/cursors");
    for (const char* name : {"file", "copied", "more/cursor"})
        EXPECT_FALSE(fs::exists(fs::symlink_status(installed / name))) << name;
    EXPECT_TRUE(fs::is_directory(installed / "more"));
}

TEST_F(ArchiveLayoutTest, AFolderOfLinksThatComeBackFromOutsideHoldsNoCursors) {
    fs::create_directory_symlink(root, folder.path() / "way");
    writeFile(root / "left_ptr", "Xcur");
    link("T/cursors/left_ptr", "../../../way/left_ptr");
    EXPECT_EQ(pick(), "none");
}

TEST_F(ArchiveLayoutTest, MoreCopiesThanAllowedAreAFailure) {
    cursors("T/cursors", 1);
    cursors("other", 3);
    for (int i = 0; i < 3; ++i)
        link("T/cursors/l" + std::to_string(i), "../../other/cursor" + std::to_string(i));
    EXPECT_FALSE(makeSelfContained(root / "T/cursors", root, 2));
}

TEST_F(ArchiveLayoutTest, NamesWithLineEndsBlanksAndUmlautsAreNames) {
    cursors("a b/cür sors\n", 1);
    link("a b/cür sors\n/left\nptr", "cursor0");
    EXPECT_EQ(pick(), "a b/cür sors\n");
    const auto installed = install("a b/cür sors\n");
    EXPECT_EQ(content(installed / "left\nptr"), "Xcur.");
}

}  // namespace
}  // namespace pintle
