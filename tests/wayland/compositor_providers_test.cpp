#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <mutex>

#include "platform/wayland/hyprland_provider.h"
#include "platform/wayland/sway_provider.h"
#include "tests/support/temporary_folder.h"
#include "tests/wayland/fake_compositor.h"

namespace pintle::wayland {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SwaySocket : public ::testing::Test {
  protected:
    SwaySocket()
        : compositor_(folder_.path() / "sway", [this](int descriptor) {
              const auto header = FakeCompositor::receive(descriptor, 14);
              if (header.size() != 14) return;
              std::uint32_t length = 0;
              std::uint32_t type = 0;
              std::memcpy(&length, header.data() + 6, 4);
              std::memcpy(&type, header.data() + 10, 4);
              const auto payload = FakeCompositor::receive(descriptor, length);
              const std::lock_guard lock(mutex_);
              if (type == 0) commands_.push_back(payload);
              const auto& body = answers_[type];
              auto answer = header.substr(0, 6);
              length = announced_ ? announced_ : static_cast<std::uint32_t>(body.size());
              answer.append(reinterpret_cast<const char*>(&length), 4);
              answer.append(reinterpret_cast<const char*>(&type), 4);
              FakeCompositor::send(descriptor, answer + body);
          }) {}

    std::optional<std::string> environment(const std::string& name) const {
        const auto found = variables_.find(name);
        return found == variables_.end() ? std::nullopt : std::optional(found->second);
    }
    std::unique_ptr<SettingsProvider> make() {
        return makeSwayProvider([this](const std::string& name) { return environment(name); });
    }
    std::vector<double> scales() {
        return swayOutputScales([this](const std::string& name) { return environment(name); });
    }

    TemporaryFolder folder_;
    std::mutex mutex_;
    std::map<std::uint32_t, std::string> answers_ = {
        {0, R"([{"success":true}])"},
        {3, R"([{"name":"eDP-1","active":true,"scale":1.5},{"name":"HDMI-A-1","active":false,"scale":3.0},)"
            R"({"name":"DP-2","active":true,"dpms":false,"scale":2.0},)"
            R"({"name":"bad\"; exec evil","active":true,"scale":1.0}])"},
        {7, R"({"major":1,"minor":9})"},
        {101, R"([{"name":"seat0"},{"name":"x\" y"}])"}};
    std::uint32_t announced_ = 0;
    std::vector<std::string> commands_;
    std::map<std::string, std::string> variables_ = {
        {"SWAYSOCK", (folder_.path() / "sway").string()}, {"XCURSOR_THEME", "Adwaita"}, {"XCURSOR_SIZE", ""}};
    FakeCompositor compositor_;
};

TEST_F(SwaySocket, IsAbsentElsewhere) {
    variables_["SWAYSOCK"] = "";
    EXPECT_FALSE(make());
    variables_.erase("SWAYSOCK");
    EXPECT_FALSE(make());
    EXPECT_THAT(scales(), IsEmpty());
}

TEST_F(SwaySocket, TheBeginningIsWhatTheEnvironmentSays) {
    EXPECT_EQ(make()->read().value(), (PointerSetting{"Adwaita", std::nullopt}));
}

TEST_F(SwaySocket, EverySeatGetsThemeAndSize) {
    ASSERT_TRUE(make()->write({"Pintle-A", "41"}));
    EXPECT_THAT(commands_, ElementsAre(R"(seat "seat0" xcursor_theme "Pintle-A" 41; )"));
}

TEST_F(SwaySocket, UnsetIsWhatSwayTakesByItself) {
    ASSERT_TRUE(make()->write({}));
    EXPECT_THAT(commands_, ElementsAre(R"(seat "seat0" xcursor_theme "default" 24; )"));
}

TEST_F(SwaySocket, VersionsThatTakeNoThemeLiveAreNudgedByWhatTheirOutputsAreAnyway) {
    answers_[7] = R"({"major":1,"minor":8})";
    ASSERT_TRUE(make()->write({"Pintle-A", "32"}));
    EXPECT_THAT(commands_,
                ElementsAre(R"(seat "seat0" xcursor_theme "Pintle-A" 32; )", R"(output "eDP-1" enable)"));
}

TEST_F(SwaySocket, ValuesThatWouldBeCommandsAreNotSent) {
    const auto provider = make();
    EXPECT_FALSE(provider->write({"a\" 24; exec \"evil", "24"}));
    EXPECT_FALSE(provider->write({"a;b", "24"}));
    EXPECT_FALSE(provider->write({"a\nb", "24"}));
    EXPECT_FALSE(provider->write({"a", "24; exec evil"}));
    EXPECT_FALSE(provider->write({"a", ""}));
    EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(SwaySocket, ARefusalIsAnError) {
    answers_[0] = R"([{"success":false,"error":"no such theme"}])";
    const auto written = make()->write({"Pintle-A", "32"});
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().description, "no such theme");
}

TEST_F(SwaySocket, NonsenseIsAnErrorAndEndsNothing) {
    for (const auto* const nonsense : {"", "[", "{}", "5", R"(["x"])", R"([{"name":5}])", R"([])"}) {
        answers_[101] = nonsense;
        EXPECT_FALSE(make()->write({"Pintle-A", "32"})) << nonsense;
        answers_[3] = nonsense;
        EXPECT_THAT(scales(), IsEmpty()) << nonsense;
    }
    announced_ = 0xFFFFFFFF;
    EXPECT_FALSE(make()->write({"Pintle-A", "32"}));
    announced_ = 1000;
    EXPECT_FALSE(make()->write({"Pintle-A", "32"}));
}

TEST_F(SwaySocket, ScalesAreThoseOfActiveOutputs) { EXPECT_THAT(scales(), ElementsAre(1.5, 2.0, 1.0)); }

TEST_F(SwaySocket, ACompositorThatDiedIsAnError) {
    variables_["SWAYSOCK"] = (folder_.path() / "gone").string();
    EXPECT_FALSE(make()->write({"Pintle-A", "32"}));
    variables_["SWAYSOCK"] = "/" + std::string(300, 'x');
    EXPECT_FALSE(make()->write({"Pintle-A", "32"}));
}

class HyprlandSocket : public ::testing::Test {
  protected:
    HyprlandSocket() {
        std::filesystem::create_directories(folder_.path() / "hypr" / "abc");
        compositor_.emplace(folder_.path() / "hypr" / "abc" / ".socket.sock", [this](int descriptor) {
            const std::lock_guard lock(mutex_);
            std::string text(256, '\0');
            text.resize(
                static_cast<std::size_t>(std::max<ssize_t>(0, ::recv(descriptor, text.data(), 256, 0))));
            commands_.push_back(text);
            FakeCompositor::send(descriptor, answer_);
        });
    }
    std::unique_ptr<SettingsProvider> make() {
        return makeHyprlandProvider([this](const std::string& name) -> std::optional<std::string> {
            if (name == "HYPRLAND_INSTANCE_SIGNATURE") return instance_;
            if (name == "XDG_RUNTIME_DIR") return folder_.path().string();
            return std::nullopt;
        });
    }

    TemporaryFolder folder_;
    std::string instance_ = "abc";
    std::mutex mutex_;
    std::string answer_ = "ok";
    std::vector<std::string> commands_;
    std::optional<FakeCompositor> compositor_;
};

TEST_F(HyprlandSocket, GetsThemeAndSize) {
    ASSERT_TRUE(make()->write({"Pintle-A", "32"}));
    ASSERT_TRUE(make()->write({}));
    EXPECT_THAT(commands_, ElementsAre("setcursor Pintle-A 32", "setcursor default 24"));
}

TEST_F(HyprlandSocket, WhatIsNotOkIsAnError) {
    answer_ = "invalid";
    EXPECT_FALSE(make()->write({"Pintle-A", "32"}));
    EXPECT_FALSE(make()->write({"a b", "32"}));
    EXPECT_FALSE(make()->write({"a", "32;x"}));
    EXPECT_EQ(commands_.size(), 1U);
}

TEST_F(HyprlandSocket, IsAbsentElsewhere) {
    instance_ = "";
    EXPECT_FALSE(make());
    instance_ = "../abc";
    EXPECT_FALSE(make());
}

}  // namespace
}  // namespace pintle::wayland
