#include "platform/wayland/setting_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/temporary_folder.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

SettingState example() {
    return {{"gsettings:a.b", {{"Adwaita", "24"}, {"Pintle-A", "32"}, "41"}},
            {"sway", {{std::nullopt, std::nullopt}, {"Pintle-A", "32"}, std::nullopt}}};
}

class SettingStateFile : public ::testing::Test {
  protected:
    TemporaryFolder folder_;
    fs::path path_ = folder_.path() / "Pintle" / "pointer_setting.json";
    fs::path copy_ = folder_.path() / "Pintle" / "pointer_setting.json.copy";
    StateFile file_{path_};
};

TEST_F(SettingStateFile, ComesBackAsItWasWithSetAndUnsetValues) {
    ASSERT_TRUE(file_.save(example()));
    const auto loaded = file_.load();
    EXPECT_EQ(loaded.state, example());
    EXPECT_FALSE(loaded.wasDamaged);
}

TEST_F(SettingStateFile, IsReadableByTheUserAlone) {
    ASSERT_TRUE(file_.save(example()));
    for (const auto& each : {path_, copy_}) {
        struct stat facts {};
        ASSERT_EQ(::stat(each.c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777, 0600U) << each;
    }
}

TEST_F(SettingStateFile, NoneIsAnEmptyState) {
    const auto loaded = file_.load();
    EXPECT_TRUE(loaded.state.empty());
    EXPECT_FALSE(loaded.wasDamaged);
}

TEST_F(SettingStateFile, ADamagedOneIsTakenFromItsCopy) {
    ASSERT_TRUE(file_.save(example()));
    for (const std::string_view damage :
         {"", "{", "[]", "{\"version\":1}", "{\"version\":2,\"providers\":{}}",
          "{\"version\":1,\"providers\":{\"sway\":{}}}",
          "{\"version\":1,\"providers\":{\"sway\":{\"previous\":{\"theme\":5,\"size\":null},\"written\":{},"
          "\"sizeBefore\":null}}}"}) {
        writeFile(path_, damage);
        const auto loaded = file_.load();
        EXPECT_EQ(loaded.state, example()) << damage;
        EXPECT_TRUE(loaded.wasDamaged) << damage;
    }
    fs::remove(path_);
    EXPECT_EQ(file_.load().state, example());
}

TEST_F(SettingStateFile, BothDamagedIsSaid) {
    writeFile(path_, "x");
    writeFile(copy_, "y");
    const auto loaded = file_.load();
    EXPECT_TRUE(loaded.state.empty());
    EXPECT_TRUE(loaded.wasDamaged);
}

TEST_F(SettingStateFile, AFileWithoutEndIsNotRead) {
    writeFile(path_, std::string(std::size_t{1} << 20, ' ') + *encodeSettingState(example()));
    EXPECT_TRUE(file_.load().wasDamaged);
    fs::remove(path_);
    ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
    EXPECT_TRUE(file_.load().wasDamaged);
}

TEST_F(SettingStateFile, ValuesThatWouldNotComeBackAsTheyWereAreNotTaken) {
    SettingState state = example();
    state["sway"].previous.theme = "\xFF\xFE";
    EXPECT_FALSE(encodeSettingState(state));
    EXPECT_FALSE(file_.save(state));
    state["sway"].previous.theme = std::string(20000, 'x');
    EXPECT_FALSE(encodeSettingState(state));
    state["sway"].previous.theme = std::string("a\0b\n\"\\\x7f\xC3\xA4", 9);
    EXPECT_TRUE(encodeSettingState(state));
}

TEST_F(SettingStateFile, AFolderThatCannotBeWrittenKeepsTheEarlierState) {
    ASSERT_TRUE(file_.save(example()));
    writeFile(folder_.path() / "file", "x");
    const StateFile elsewhere(folder_.path() / "file" / "state");
    EXPECT_FALSE(elsewhere.save(example()));
    EXPECT_EQ(file_.load().state, example());
}

TEST_F(SettingStateFile, IsRemovedWithItsCopy) {
    ASSERT_TRUE(file_.save(example()));
    file_.remove();
    EXPECT_TRUE(fs::is_empty(folder_.path() / "Pintle"));
    file_.remove();
}

TEST_F(SettingStateFile, HoldsTextThatAPersonCanRead) {
    ASSERT_TRUE(file_.save(example()));
    EXPECT_THAT(contentOf(path_), ::testing::HasSubstr("\"theme\": \"Adwaita\""));
}

}  // namespace
}  // namespace pintle::wayland
