#include "platform/freedesktop/desktop_entry.h"

#include <gtest/gtest.h>

namespace pintle {
namespace {

TEST(DesktopEntry, APlainPathIsQuotedAndReadBack) {
    EXPECT_EQ(execValue("/usr/bin/pintle"), R"("/usr/bin/pintle")");
    EXPECT_EQ(execProgram(R"("/usr/bin/pintle")"), "/usr/bin/pintle");
}

TEST(DesktopEntry, EveryCharacterOfAPathIsReadBack) {
    for (int c = 1; c < 256; ++c) {
        const std::string path = std::string("/a") + static_cast<char>(c) + "b";
        EXPECT_EQ(execProgram(execValue(path)), path) << c;
    }
    const std::string all = R"(/home/o'neil/My "Apps"/50%/$HOME/`x`/back\slash \\ /~#&;|<>*?()[]{}/ä)";
    EXPECT_EQ(execProgram(execValue(all)), all);
    EXPECT_EQ(execProgram(execValue("/a\nb\tc\r\\n")), "/a\nb\tc\r\\n");
}

TEST(DesktopEntry, AProgramBehindAPercentSignIsStartedByTheShell) {
    EXPECT_EQ(execValue("/a 100%/b"), R"(sh -c "exec \\"\\$0\\"" "/a 100%%/b")");
    EXPECT_EQ(execProgram(execValue("/a 100%/b")), "/a 100%/b");
    EXPECT_EQ(execProgram(R"(sh -c "something else" "/a")"), "sh");
    EXPECT_EQ(execProgram("sh"), "sh");
}

TEST(DesktopEntry, AnUnquotedCommandEndsAtItsFirstBlank) {
    EXPECT_EQ(execProgram("/usr/bin/pintle --flag %U"), "/usr/bin/pintle");
    EXPECT_EQ(execProgram("  pintle"), "pintle");
}

TEST(DesktopEntry, ACommandWithBrokenQuotingHasNoProgram) {
    for (const auto* value : {"", "   ", "\"", "\"/usr/bin/pintle", "\"\"", "%U", "\"/a\\\\"})
        EXPECT_FALSE(execProgram(value)) << value;
}

TEST(DesktopEntry, OnlyTheMainGroupCounts) {
    const auto* text =
        "# Hidden=true\n"
        "Hidden=true\n"
        "[Desktop Action x]\n"
        "Hidden=true\n"
        "Exec=other\n"
        "[Desktop Entry]\n"
        " Exec = right \r\n"
        "Exec=second\n"
        "Hidden[de]=true\n"
        "[Desktop Action y]\n"
        "Hidden=true";
    EXPECT_EQ(desktopEntryValue(text, "Exec"), "right");
    EXPECT_FALSE(desktopEntryValue(text, "Hidden"));
    EXPECT_FALSE(desktopEntryValue("", "Exec"));
    EXPECT_EQ(desktopEntryValue("[Desktop Entry]\nHidden=true", "Hidden"), "true");
    EXPECT_EQ(desktopEntryValue("[Desktop Entry]\nName=", "Name"), "");
}

}  // namespace
}  // namespace pintle
