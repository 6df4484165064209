#include "apply/exclusion_rules.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/desktop_names.h"

namespace pintle {
namespace {

const std::vector<std::string> kBuiltIn = DesktopNames{}.remoteDesktops;

bool excluded(std::string_view name, const std::vector<std::string>& usersList = {}) {
    return isExcludedApplication(name, kBuiltIn, usersList);
}

TEST(ExclusionRules, TheBuiltInListNamesTheSixProgramsInTheirOrder) {
    EXPECT_EQ(kBuiltIn, (std::vector<std::string>{"Windows App", "Microsoft Remote Desktop", "Citrix",
                                                  "TeamViewer", "AnyDesk", "Parallels"}));
}

TEST(ExclusionRules, EachBuiltInNameIsExcluded) {
    for (const auto& name : kBuiltIn) EXPECT_TRUE(excluded(name)) << name;
}

TEST(ExclusionRules, ALongerNameThatContainsABuiltInEntryIsExcluded) {
    EXPECT_TRUE(excluded("Parallels Desktop"));
    EXPECT_TRUE(excluded("Citrix Workspace"));
    EXPECT_TRUE(excluded("My AnyDesk Client 7"));
    EXPECT_TRUE(excluded("Windows Application"));
}

TEST(ExclusionRules, ABuiltInEntryCountsInAnyLetterCase) {
    EXPECT_TRUE(excluded("parallels desktop"));
    EXPECT_TRUE(excluded("TEAMVIEWER"));
    EXPECT_TRUE(excluded("citrix"));
    EXPECT_TRUE(excluded("microsoft remote DESKTOP beta"));
}

TEST(ExclusionRules, APartOfABuiltInEntryIsNotExcluded) {
    EXPECT_FALSE(excluded("Windows"));
    EXPECT_FALSE(excluded("Any Desk"));
    EXPECT_FALSE(excluded("Microsoft Word"));
    EXPECT_FALSE(excluded("Team Viewer"));
}

TEST(ExclusionRules, TheUsersListNeedsTheWholeName) {
    const std::vector<std::string> list = {"Blender", "Adobe"};
    EXPECT_TRUE(excluded("Blender", list));
    EXPECT_FALSE(excluded("Blender 4", list));
    EXPECT_FALSE(excluded("Adobe Photoshop", list));
}

TEST(ExclusionRules, TheUsersListNeedsTheSameCase) {
    const std::vector<std::string> list = {"Blender"};
    EXPECT_FALSE(excluded("blender", list));
    EXPECT_FALSE(excluded("BLENDER", list));
}

TEST(ExclusionRules, BlanksInTheUsersListCount) {
    EXPECT_FALSE(excluded("Blender", {"Blender "}));
    EXPECT_FALSE(excluded("Blender ", {"Blender"}));
}

TEST(ExclusionRules, AnEmptyNameIsExcludedOnlyByAnEmptyEntryOfTheUser) {
    EXPECT_FALSE(excluded(""));
    EXPECT_FALSE(excluded("", {"Blender"}));
    EXPECT_TRUE(excluded("", {""}));
}

TEST(ExclusionRules, AnEmptyBuiltInEntryIsContainedInNothing) {
    EXPECT_FALSE(containsAnyIgnoringCase("Blender", std::vector<std::string>{""}));
    EXPECT_FALSE(containsAnyIgnoringCase("", std::vector<std::string>{""}));
}

TEST(ExclusionRules, OtherLettersAreComparedAsTheyAre) {
    EXPECT_TRUE(excluded("Größe", {"Größe"}));
    EXPECT_FALSE(excluded("größe", {"Größe"}));
    EXPECT_TRUE(containsAnyIgnoringCase("Éditeur PARALLELS", kBuiltIn));
}

}  // namespace
}  // namespace pintle
