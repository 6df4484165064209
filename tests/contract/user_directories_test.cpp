#include "platform/freedesktop/user_directories.h"

#include <gtest/gtest.h>

#include <map>

namespace pintle {
namespace {

Environment environment(std::map<std::string, std::string> values) {
    return [values = std::move(values)](const char* name) -> std::optional<std::string> {
        const auto found = values.find(name);
        if (found == values.end()) return std::nullopt;
        return found->second;
    };
}

TEST(UserDirectories, FollowTheVariablesOfTheDesktop) {
    const auto values = environment({{"HOME", "/home/ann"},
                                     {"XDG_DATA_HOME", "/data"},
                                     {"XDG_CONFIG_HOME", "/config"},
                                     {"TMPDIR", "/scratch"}});
    const auto directories = makeUserDirectories(values);
    EXPECT_EQ(directories.applicationSupport, "/data");
    EXPECT_EQ(directories.temporary, "/scratch");
    EXPECT_EQ(directories.home, "/home/ann");
    EXPECT_EQ(makePreferencePath(values, Bundle{}), "/config/com.pintle.app.plist");
}

TEST(UserDirectories, WithoutVariablesAreInTheHomeFolder) {
    const auto values = environment({{"HOME", "/home/ann"}});
    const auto directories = makeUserDirectories(values);
    EXPECT_EQ(directories.applicationSupport, "/home/ann/.local/share");
    EXPECT_EQ(directories.temporary, "/tmp");
    EXPECT_EQ(makePreferencePath(values, Bundle{}), "/home/ann/.config/com.pintle.app.plist");
}

TEST(UserDirectories, RelativeAndEmptyValuesCountAsNotSet) {
    for (const char* value : {"", "share", "./share", "~/share"}) {
        const auto values = environment(
            {{"HOME", "/home/ann"}, {"XDG_DATA_HOME", value}, {"XDG_CONFIG_HOME", value}, {"TMPDIR", value}});
        const auto directories = makeUserDirectories(values);
        EXPECT_EQ(directories.applicationSupport, "/home/ann/.local/share");
        EXPECT_EQ(directories.temporary, "/tmp");
        EXPECT_EQ(makePreferencePath(values, Bundle{}), "/home/ann/.config/com.pintle.app.plist");
    }
}

TEST(UserDirectories, WithoutHomeTheListOfUsersAnswers) {
    EXPECT_TRUE(makeUserDirectories(environment({})).home.is_absolute());
}

TEST(Bundle, KnowsItsVersionAndItsExecutable) {
    const Bundle bundle = makeBundle(processEnvironment());
    EXPECT_EQ(bundle.identifier, "com.pintle.app");
    EXPECT_FALSE(bundle.shortVersion.empty());
    EXPECT_NE(bundle.shortVersion.find('.'), std::string::npos);
    ASSERT_FALSE(bundle.build.empty());
    // A plain number: only builds are compared.
    EXPECT_EQ(bundle.build.find_first_not_of("0123456789"), std::string::npos) << bundle.build;
    EXPECT_EQ(bundle.executable.filename(), "test_contract");
}

TEST(Bundle, ThePackageFileIsMeantOnlyByAProgramInsideIt) {
    const auto own = makeBundle(environment({})).executable;
    EXPECT_EQ(makeBundle(environment({{"APPIMAGE", "/opt/Other.AppImage"}, {"APPDIR", "/tmp/.mount_other"}}))
                  .executable,
              own);
    EXPECT_EQ(makeBundle(
                  environment({{"APPIMAGE", "/opt/Pintle.AppImage"}, {"APPDIR", own.parent_path().string()}}))
                  .executable,
              "/opt/Pintle.AppImage");
}

}  // namespace
}  // namespace pintle
