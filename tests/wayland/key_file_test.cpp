#include "platform/wayland/key_file.h"

#include <gtest/gtest.h>

namespace pintle::wayland {
namespace {

constexpr std::string_view kFile =
    "[Keyboard]\nNumLock=0\ncursorTheme=wrong\n\n[Mouse]\nX11LibInputXAccelProfileFlat=true\n"
    "cursorTheme = Breeze \ncursorTheme[$i]=locked\n\n[Other]\ncursorSize=9\n";

TEST(KeyFile, ReadsTheValueOfItsGroupOnly) {
    EXPECT_EQ(keyFileValue(kFile, "Mouse", "cursorTheme"), "Breeze");
    EXPECT_EQ(keyFileValue(kFile, "Mouse", "cursorSize"), std::nullopt);
    EXPECT_EQ(keyFileValue("", "Mouse", "cursorSize"), std::nullopt);
    EXPECT_EQ(keyFileValue("[Mouse]\ncursorSize=1\n[Mouse]\ncursorSize=2", "Mouse", "cursorSize"), "2");
    EXPECT_EQ(keyFileValue("[Mouse]\ncursorSize=", "Mouse", "cursorSize"), "");
}

TEST(KeyFile, AValueIsChangedInItsLineAndNothingElseChanges) {
    std::string expected(kFile);
    expected.replace(expected.find("cursorTheme = Breeze "), 21, "cursorTheme=Pintle-A");
    EXPECT_EQ(withKeyFileValue(kFile, "Mouse", "cursorTheme", "Pintle-A"), expected);
}

TEST(KeyFile, ANewValueGoesToTheEndOfTheGroupAndLeavesAgainWithoutATrace) {
    std::string expected(kFile);
    expected.insert(expected.find("\n[Other]"), "cursorSize=32\n");
    const auto with = withKeyFileValue(kFile, "Mouse", "cursorSize", "32");
    EXPECT_EQ(with, expected);
    EXPECT_EQ(withKeyFileValue(with, "Mouse", "cursorSize", std::nullopt), kFile);
}

TEST(KeyFile, ANewGroupLeavesAgainWithoutATrace) {
    for (const std::string_view text : {"", "[A]\nb=c\n", "# only a comment\n"}) {
        const auto one = withKeyFileValue(text, "Mouse", "cursorSize", "32");
        const auto two = withKeyFileValue(one, "Mouse", "cursorTheme", "Pintle-A");
        EXPECT_EQ(keyFileValue(two, "Mouse", "cursorTheme"), "Pintle-A");
        EXPECT_EQ(keyFileValue(two, "Mouse", "cursorSize"), "32");
        EXPECT_EQ(withKeyFileValue(withKeyFileValue(two, "Mouse", "cursorTheme", std::nullopt), "Mouse",
                                   "cursorSize", std::nullopt),
                  text);
    }
}

TEST(KeyFile, AFileWithoutItsLastLineEndGetsOne) {
    EXPECT_EQ(withKeyFileValue("[Mouse]\na=b", "Mouse", "cursorSize", "32"), "[Mouse]\na=b\ncursorSize=32\n");
    EXPECT_EQ(withKeyFileValue("[A]\na=b", "Mouse", "cursorSize", "32"),
              "[A]\na=b\n\n[Mouse]\ncursorSize=32\n");
}

TEST(KeyFile, AllLinesOfAKeyAreRemoved) {
    EXPECT_EQ(withKeyFileValue("[Mouse]\nk=1\na=b\nk=2\n[X]\n[Mouse]\nk=3\n", "Mouse", "k", std::nullopt),
              "[Mouse]\na=b\n[X]\n");
    EXPECT_EQ(withKeyFileValue("k=1\n", "Mouse", "k", std::nullopt), "k=1\n");
}

}  // namespace
}  // namespace pintle::wayland
