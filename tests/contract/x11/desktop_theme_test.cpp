#include "platform/x11/cursors/desktop_theme.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/contract/x11/x_test_client.h"
#include "tests/support/temporary_folder.h"

namespace pintle::x11 {
namespace {

class DesktopThemeTest : public testing::Test {
  protected:
    DesktopThemeTest()
        : theme([this](const std::string& name) -> std::optional<std::string> {
              if (name == "XCURSOR_PATH") return path;
              if (name == "HOME") return (folder.path() / "home").string();
              return std::nullopt;
          }) {}
    void inherit(const std::string& name, const std::string& line) {
        writeFile(folder.path() / name / "index.theme", "[Icon Theme]\nName=x\n" + line + "\n");
    }
    std::uint32_t pixel(const std::string& name) {
        const auto found = theme.exact(name);
        return found ? found->frames().front().argb().front() : 0;
    }

    TemporaryFolder folder;
    std::string path = folder.path();
    DesktopTheme theme;
};

TEST_F(DesktopThemeTest, ANameIsFoundInTheTheme) {
    writeTestTheme(folder.path(), "A", {{"left_ptr", 0xFF0000AA}});
    theme.choose({"A", 24});
    EXPECT_EQ(pixel("left_ptr"), 0xFF0000AAu);
    EXPECT_EQ(pixel("xterm"), 0u);
    EXPECT_EQ(theme.exact("left_ptr")->frames().front().hotspotX, 3);
}

TEST_F(DesktopThemeTest, TheThemesItInheritsComeInOrderDepthFirstAndTheDefaultLast) {
    inherit("A", "Inherits = B;C, D");
    inherit("B", "Inherits=E");
    writeTestTheme(folder.path(), "C", {{"one", 0xFF000003}, {"two", 0xFF000013}});
    writeTestTheme(folder.path(), "D", {{"two", 0xFF000014}, {"four", 0xFF000024}});
    writeTestTheme(folder.path(), "E", {{"one", 0xFF000005}});
    writeTestTheme(folder.path(), "default", {{"four", 0xFF000026}, {"five", 0xFF000036}});
    theme.choose({"A", 24});
    EXPECT_EQ(pixel("one"), 0xFF000005u);
    EXPECT_EQ(pixel("two"), 0xFF000013u);
    EXPECT_EQ(pixel("four"), 0xFF000024u);
    EXPECT_EQ(pixel("five"), 0xFF000036u);
    theme.choose({"", 24});
    EXPECT_EQ(pixel("five"), 0xFF000036u);
    EXPECT_EQ(pixel("one"), 0u);
}

TEST_F(DesktopThemeTest, ThemesThatInheritEachOtherEnd) {
    inherit("A", "Inherits=B,A");
    inherit("B", "Inherits=A,default");
    inherit("default", "Inherits=default,A");
    writeTestTheme(folder.path(), "B", {{"left_ptr", 0xFF0000AA}});
    theme.choose({"A", 24});
    EXPECT_EQ(pixel("left_ptr"), 0xFF0000AAu);
    EXPECT_EQ(pixel("xterm"), 0u);
}

TEST_F(DesktopThemeTest, AHomeFolderOfTheSearchPathIsTheUsers) {
    writeTestTheme(folder.path() / "home" / "icons", "A", {{"left_ptr", 0xFF0000AB}});
    path = "/nowhere::~/icons";
    theme.choose({"A", 24});
    EXPECT_EQ(pixel("left_ptr"), 0xFF0000ABu);
}

TEST_F(DesktopThemeTest, AnotherNameOfTheRowStandsInForAMissingOne) {
    writeTestTheme(folder.path(), "A", {{"default", 0xFF0000AA}});
    theme.choose({"A", 24});
    EXPECT_FALSE(theme.exact("left_ptr"));
    ASSERT_TRUE(theme.picture("left_ptr"));
    EXPECT_EQ(theme.picture("left_ptr")->frames().front().argb().front(), 0xFF0000AAu);
    EXPECT_FALSE(theme.picture("xterm"));
    EXPECT_FALSE(theme.picture("nonsense"));
}

TEST_F(DesktopThemeTest, ANameThatIsDrawnAsTheArrowStandsInForAnotherShapeLast) {
    writeTestTheme(
        folder.path(), "A",
        {{"left_ptr", 0xFF0000AA}, {"move", 0xFF0000AA}, {"fleur", 0xFF0000BB}, {"wait", 0xFF0000AA}});
    theme.choose({"A", 24});
    EXPECT_EQ(theme.picture("size_all"), theme.exact("fleur"));
    EXPECT_EQ(theme.picture("move"), theme.exact("move"));
    EXPECT_EQ(theme.picture("watch"), theme.exact("wait"));
    EXPECT_EQ(theme.picture("default"), theme.exact("left_ptr"));
}

TEST_F(DesktopThemeTest, BrokenFilesAndOtherThingsThanFilesAreAbsent) {
    writeTestTheme(folder.path(), "A", {{"whole", 0xFF0000AA}});
    const auto cursors = folder.path() / "A" / "cursors";
    writeFile(cursors / "empty", std::string_view());
    writeFile(cursors / "text", "not a cursor at all, and longer than a header would be");
    writeFile(cursors / "edges", std::string("Xcur") + std::string(60, '\xFF'));
    std::string bytes(1, '\0');
    {
        std::ifstream file(cursors / "whole", std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    }
    writeFile(cursors / "short", std::string_view(bytes).substr(0, bytes.size() / 2));
    ASSERT_EQ(::mkfifo((cursors / "pipe").c_str(), 0600), 0);
    std::filesystem::create_directories(cursors / "folder");
    std::filesystem::create_symlink("circle", cursors / "circle");
    std::filesystem::create_symlink("/dev/zero", cursors / "device");
    ASSERT_EQ(::mkfifo((folder.path() / "A" / "index.theme").c_str(), 0600), 0);
    theme.choose({"A", 24});
    for (const auto* const name :
         {"empty", "text", "edges", "short", "pipe", "folder", "circle", "device", "../../../etc/passwd"})
        EXPECT_FALSE(theme.exact(name)) << name;
    EXPECT_TRUE(theme.exact("whole"));
}

TEST_F(DesktopThemeTest, AChangedFileIsSeenAfterChoosingAgain) {
    writeTestTheme(folder.path(), "A", {{"left_ptr", 0xFF0000AA}});
    theme.choose({"A", 24});
    EXPECT_EQ(pixel("left_ptr"), 0xFF0000AAu);
    writeTestTheme(folder.path(), "A", {{"left_ptr", 0xFF0000AB}});
    EXPECT_EQ(pixel("left_ptr"), 0xFF0000AAu);
    theme.choose({"A", 24});
    EXPECT_EQ(pixel("left_ptr"), 0xFF0000ABu);
}

TEST_F(DesktopThemeTest, AnImageLeadsToItsNameByEachFrame) {
    writeTestTheme(folder.path(), "A", {{"left_ptr", 0xFF0000AA}, {"watch", 0xFF000100, 3}});
    theme.choose({"A", 24});
    for (const auto frame : theme.exact("watch")->fingerprints()) EXPECT_EQ(theme.nameOf(frame), "watch");
    EXPECT_EQ(theme.nameOf(theme.exact("left_ptr")->fingerprints()[0]), "left_ptr");
    EXPECT_EQ(theme.nameOf(12345), "");
}

TEST_F(DesktopThemeTest, APictureOfSeveralShapesMeansThePointingHand) {
    writeTestTheme(folder.path(), "A", {{"grab", 0xFF0000AA}, {"pointer", 0xFF0000AA}, {"move", 0xFF0000AA}});
    theme.choose({"A", 24});
    EXPECT_EQ(theme.nameOf(theme.exact("grab")->fingerprints()[0]), "pointer");
}

}  // namespace
}  // namespace pintle::x11
