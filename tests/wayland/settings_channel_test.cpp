#include "platform/wayland/settings_channel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "platform/fake/fake_log.h"
#include "tests/support/temporary_folder.h"
#include "tests/wayland/fake_provider.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

PointerSetting setting(std::optional<std::string> theme, std::optional<std::string> size) {
    return {std::move(theme), std::move(size)};
}

class Channel : public ::testing::Test {
  protected:
    /// A program that starts now.
    SettingsChannel start() {
        std::vector<std::unique_ptr<SettingsProvider>> providers;
        providers.push_back(std::make_unique<FakeProvider>("gsettings", desktop_));
        providers.push_back(std::make_unique<FakeProvider>("kde", other_));
        return {std::move(providers), StateFile(file_), log_};
    }

    TemporaryFolder folder_;
    fs::path file_ = folder_.path() / "state.json";
    FakeSettings desktop_{setting("Adwaita", "24")};
    FakeSettings other_{setting(std::nullopt, std::nullopt)};
    FakeLog log_;
};

TEST_F(Channel, PutsTheThemeEverywhereAndTheUsersOwnBack) {
    auto channel = start();
    EXPECT_TRUE(channel.put({"Pintle-A", 32}));
    EXPECT_EQ(desktop_.value, setting("Pintle-A", "32"));
    EXPECT_EQ(other_.value, setting("Pintle-A", "32"));
    EXPECT_EQ(channel.themeInForce(), "Pintle-A");
    EXPECT_TRUE(channel.put({"Pintle-B", 41}));
    EXPECT_EQ(channel.themeInForce(), "Pintle-B");
    EXPECT_TRUE(channel.restore());
    EXPECT_EQ(desktop_.value, setting("Adwaita", "24"));
    EXPECT_EQ(other_.value, setting(std::nullopt, std::nullopt));
    EXPECT_FALSE(fs::exists(file_));
    EXPECT_EQ(channel.themeInForce(), std::nullopt);
}

TEST_F(Channel, TheNoteIsOnTheDiskBeforeAnythingIsTouched) {
    auto channel = start();
    fs::create_directories(file_);
    EXPECT_FALSE(channel.put({"Pintle-A", 32}));
    EXPECT_THAT(desktop_.writes, IsEmpty());
    EXPECT_EQ(log_.systemLines.size(), 2U) << "the folder in its place, and that nothing could be noted";
}

TEST_F(Channel, OneThatFailsLeavesTheOthersAlone) {
    desktop_.writable = false;
    auto channel = start();
    EXPECT_TRUE(channel.put({"Pintle-A", 32}));
    EXPECT_EQ(desktop_.value, setting("Adwaita", "24"));
    EXPECT_EQ(other_.value, setting("Pintle-A", "32"));
    EXPECT_THAT(log_.systemLines, ElementsAre("[Wayland] gsettings: cannot be written: locked"));
    other_.readable = false;
    EXPECT_FALSE(channel.put({"Pintle-B", 32}));
}

TEST_F(Channel, SuccessTakesOneThatReachesRunningPrograms) {
    other_.reachesRunning = false;
    auto channel = start();
    EXPECT_TRUE(channel.reachesAnybody());
    desktop_.writable = false;
    EXPECT_FALSE(channel.put({"Pintle-A", 32}));
    EXPECT_EQ(other_.value.theme, "Pintle-A");
}

TEST_F(Channel, AThemeThatTheUserChoseMeanwhileStaysAndIsHisOwnFromThenOn) {
    auto channel = start();
    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    desktop_.value = setting("Breeze", "32");
    EXPECT_EQ(channel.usersOwn().theme, "Breeze");
    ASSERT_TRUE(channel.put({"Pintle-B", 32}));
    EXPECT_EQ(channel.usersOwn(), setting("Breeze", "24"));
    EXPECT_TRUE(channel.restore());
    EXPECT_EQ(desktop_.value.theme, "Breeze");

    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    desktop_.value = setting("Other", "48");
    EXPECT_TRUE(channel.restore());
    EXPECT_EQ(desktop_.value, setting("Other", "48"));
}

TEST_F(Channel, TheUsersOwnIsAnsweredWhileOursIsInForce) {
    auto channel = start();
    EXPECT_EQ(channel.usersOwn(), setting("Adwaita", "24"));
    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    EXPECT_EQ(channel.usersOwn(), setting("Adwaita", "24"));
    EXPECT_EQ(start().usersOwn(), setting("Adwaita", "24"));
}

TEST_F(Channel, OursIsNeverTakenForTheUsersEvenWithoutANote) {
    desktop_.value = setting("Pintle-B", "32");
    auto channel = start();
    EXPECT_EQ(channel.usersOwn(), setting(std::nullopt, std::nullopt));
    EXPECT_EQ(channel.themeInForce(), "Pintle-B");
    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    EXPECT_TRUE(channel.restore());
    EXPECT_EQ(desktop_.value, setting(std::nullopt, std::nullopt));
}

TEST_F(Channel, ANoteThatCallsOursTheUsersIsNotBelieved) {
    ASSERT_TRUE(
        StateFile(file_).save({{"gsettings", {{"Pintle-A", "24"}, {"Pintle-B", "32"}, std::nullopt}}}));
    desktop_.value = setting("Pintle-B", "32");
    EXPECT_TRUE(start().restore());
    EXPECT_EQ(desktop_.value, setting(std::nullopt, "24"));
}

TEST_F(Channel, RestoringWithoutANoteRemovesOursAndTouchesNothingElse) {
    desktop_.value = setting("Pintle-A", "32");
    EXPECT_TRUE(start().restore());
    EXPECT_EQ(desktop_.value, setting(std::nullopt, std::nullopt));
    EXPECT_THAT(other_.writes, IsEmpty());
}

TEST_F(Channel, WhatCannotBePutBackNowStaysNoted) {
    auto channel = start();
    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    desktop_.writable = false;
    EXPECT_FALSE(channel.restore());
    EXPECT_EQ(other_.value, setting(std::nullopt, std::nullopt));
    desktop_.writable = true;
    EXPECT_TRUE(start().restore());
    EXPECT_EQ(desktop_.value, setting("Adwaita", "24"));
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(Channel, TheNoteOfAProviderThatIsAwayIsKept) {
    ASSERT_TRUE(start().put({"Pintle-A", 32}));
    {
        std::vector<std::unique_ptr<SettingsProvider>> alone;
        alone.push_back(std::make_unique<FakeProvider>("gsettings", desktop_));
        SettingsChannel channel(std::move(alone), StateFile(file_), log_);
        EXPECT_FALSE(channel.restore());
    }
    EXPECT_TRUE(start().restore());
    EXPECT_EQ(other_.value, setting(std::nullopt, std::nullopt));
}

TEST_F(Channel, WhereNobodyCanBeAskedTheBeginningIsPutBack) {
    desktop_.knowsPresent = false;
    auto channel = start();
    ASSERT_TRUE(channel.put({"Pintle-A", 32}));
    ASSERT_TRUE(channel.put({"Pintle-B", 32}));
    // The next program inherits ours in its environment.
    EXPECT_TRUE(start().restore());
    EXPECT_EQ(desktop_.value, setting("Adwaita", "24"));
}

TEST_F(Channel, KilledAnywhereAndStartedAgainTheUserGetsBackExactlyWhatHeHad) {
    std::mt19937 random(7);
    for (int round = 0; round < 80; ++round) {
        const auto mine = setting(round % 3 == 0 ? std::nullopt : std::optional<std::string>("Adwaita"),
                                  round % 2 == 0 ? std::nullopt : std::optional<std::string>("24"));
        desktop_.value = mine;
        other_.value = setting("Breeze", "30");
        for (int life = 0; life < 3; ++life) {
            int steps = static_cast<int>(random() % 14);
            desktop_.stepsLeft = other_.stepsLeft = &steps;
            auto channel = start();
            try {
                for (int i = 0; i < 2; ++i)
                    channel.put(
                        {random() % 2 == 0 ? "Pintle-A" : "Pintle-B", 32 + static_cast<int>(random() % 17)});
                channel.restore();
            } catch (const Killed&) {
            }
        }
        desktop_.stepsLeft = other_.stepsLeft = nullptr;
        EXPECT_TRUE(start().restore()) << round;
        ASSERT_EQ(desktop_.value, mine) << round;
        ASSERT_EQ(other_.value, setting("Breeze", "30")) << round;
    }
}

}  // namespace
}  // namespace pintle::wayland
