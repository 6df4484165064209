#include "cursor/cursor_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class CursorFolderTest : public testing::Test {
  protected:
    void write(const std::string& name, const XCursorBuilder& builder) {
        writeFile(temporary.path() / name, builder.bytes());
    }
    void link(const std::string& name, const std::string& target) {
        std::filesystem::create_symlink(target, temporary.path() / name);
    }

    TemporaryFolder temporary;
};

TEST_F(CursorFolderTest, ListsEveryEntryOnce) {
    write("left_ptr", XCursorBuilder().image({.size = 4}));
    link("arrow", "left_ptr");
    link("lost", "nowhere");
    std::filesystem::create_directory(temporary.path() / "folder");
    EXPECT_THAT(CursorFolder(temporary.path()).names(),
                UnorderedElementsAre("left_ptr", "arrow", "lost", "folder"));
}

TEST_F(CursorFolderTest, ListsInTheOrderOfTheFileSystem) {
    for (int i = 0; i < 40; ++i)
        write("cursor" + std::to_string(i * 7 % 40), XCursorBuilder().image({.size = 1}));
    std::vector<std::string> expected;
    for (const auto& entry : std::filesystem::directory_iterator(temporary.path()))
        expected.push_back(entry.path().filename());
    EXPECT_EQ(CursorFolder(temporary.path()).names(), expected);
}

TEST_F(CursorFolderTest, ListsNothingWhereThereIsNoFolder) {
    write("file", XCursorBuilder().image({.size = 4}));
    EXPECT_THAT(CursorFolder(temporary.path() / "nothing").names(), IsEmpty());
    CursorFolder file(temporary.path() / "file");
    EXPECT_THAT(file.names(), IsEmpty());
    EXPECT_FALSE(file.read("file", 48));
}

TEST_F(CursorFolderTest, ReadsAFileOnceForAllItsNames) {
    write("left_ptr", XCursorBuilder().image({.size = 4}));
    link("arrow", "left_ptr");
    link("default", "arrow");
    std::filesystem::create_hard_link(temporary.path() / "left_ptr", temporary.path() / "top_left_arrow");
    for (const bool listFirst : {false, true}) {
        CursorFolder folder(temporary.path());
        if (listFirst) folder.names();
        const auto images = folder.read("left_ptr", 48);
        ASSERT_TRUE(images);
        EXPECT_THAT(images->images, SizeIs(1));
        for (const auto* name : {"arrow", "default", "top_left_arrow", "left_ptr"})
            EXPECT_EQ(folder.read(name, 48), images) << name;
    }
}

TEST_F(CursorFolderTest, ReadsALinkBeforeItsFileAsWell) {
    write("left_ptr", XCursorBuilder().image({.size = 4}));
    link("arrow", "left_ptr");
    CursorFolder folder(temporary.path());
    folder.names();
    const auto images = folder.read("arrow", 48);
    ASSERT_TRUE(images);
    EXPECT_EQ(folder.read("left_ptr", 48), images);
}

TEST_F(CursorFolderTest, KeepsAnswersOfDifferentLimitsApart) {
    write("left_ptr", XCursorBuilder().image({.size = 4}).image({.size = 8}));
    CursorFolder folder(temporary.path());
    EXPECT_THAT(folder.read("left_ptr", 48)->images, SizeIs(2));
    EXPECT_THAT(folder.read("left_ptr", 4)->images, SizeIs(1));
}

TEST_F(CursorFolderTest, AnswersNothingForEntriesThatAreNoCursor) {
    writeFile(temporary.path() / "text", "not a cursor at all");
    writeFile(temporary.path() / "empty", "");
    link("lost", "nowhere");
    link("circle", "circle");
    std::filesystem::create_directory(temporary.path() / "folder");
    CursorFolder folder(temporary.path());
    for (const auto& name : folder.names()) EXPECT_FALSE(folder.read(name, 48)) << name;
    EXPECT_FALSE(folder.read("missing", 48));
}

TEST_F(CursorFolderTest, ReadsAFileThatAppearsAfterTheListing) {
    CursorFolder folder(temporary.path());
    folder.names();
    EXPECT_FALSE(folder.read("left_ptr", 48));
    write("left_ptr", XCursorBuilder().image({.size = 4}));
    EXPECT_TRUE(folder.read("left_ptr", 48));
}

TEST_F(CursorFolderTest, ImagesOutliveTheFolderAndItsFiles) {
    write("left_ptr", XCursorBuilder().image({.size = 2, .colour = 9}));
    XCursorImages images;
    {
        CursorFolder folder(temporary.path());
        images = folder.read("left_ptr", 48);
    }
    std::filesystem::remove(temporary.path() / "left_ptr");
    ASSERT_TRUE(images);
    EXPECT_THAT(images->images.front().pixels.values(), testing::ElementsAre(9, 9, 9, 9));
}

}  // namespace
}  // namespace pintle
