#include "platform/wayland/theme_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/fake/fake_log.h"
#include "tests/support/temporary_folder.h"
#include "tests/wayland/fake_provider.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

/// A session of another kind that follows one in which a theme was applied.
class LeftTheme : public ::testing::Test {
  protected:
    LeftTheme() {
        SettingsChannel channel(providers(), StateFile(state_), log_);
        EXPECT_TRUE(writeTheme(icons_, kThemeNames[0], {}, {}));
        EXPECT_TRUE(channel.put({std::string(kThemeNames[0]), 32}));
    }
    std::vector<std::unique_ptr<SettingsProvider>> providers() {
        std::vector<std::unique_ptr<SettingsProvider>> all;
        all.push_back(std::make_unique<FakeProvider>("gsettings", desktop_));
        return all;
    }
    bool putBack() {
        return putBackLeftTheme(
            icons_, state_, [this] { return providers(); }, log_);
    }

    TemporaryFolder folder_;
    const IconFolders icons_{folder_.path() / "icons", folder_.path() / ".icons"};
    const fs::path state_ = folder_.path() / "state.json";
    FakeSettings desktop_{{"Adwaita", "24"}};
    FakeLog log_;
};

TEST_F(LeftTheme, IsNotTheUsersOwnInASessionOfAnotherKind) {
    EXPECT_TRUE(putBack());
    EXPECT_EQ(desktop_.value, (PointerSetting{"Adwaita", "24"}));
    EXPECT_FALSE(fs::exists(state_));
    EXPECT_FALSE(hasTheme(icons_, kThemeNames[0]));
}

TEST_F(LeftTheme, StaysWholeAndNotedWhileItsSettingCannotBeWritten) {
    desktop_.writable = false;
    EXPECT_FALSE(putBack());
    EXPECT_TRUE(fs::exists(state_));
    EXPECT_TRUE(hasTheme(icons_, kThemeNames[0]));
    desktop_.writable = true;
    EXPECT_TRUE(putBack());
    EXPECT_EQ(desktop_.value, (PointerSetting{"Adwaita", "24"}));
}

TEST_F(LeftTheme, LeavesAThemeThatTheUserChoseMeanwhile) {
    desktop_.value.theme = "Breeze";
    EXPECT_TRUE(putBack());
    EXPECT_EQ(desktop_.value.theme, "Breeze");
}

TEST_F(LeftTheme, WithoutAStateFileNoSettingIsAskedFor) {
    StateFile(state_).remove();
    bool asked = false;
    EXPECT_TRUE(putBackLeftTheme(
        icons_, state_,
        [&] {
            asked = true;
            return providers();
        },
        log_));
    EXPECT_FALSE(asked);
}

}  // namespace
}  // namespace pintle::wayland
