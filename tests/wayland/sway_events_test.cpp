#include "platform/wayland/sway_events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "platform/wayland/sway_messages.h"
#include "tests/support/temporary_folder.h"
#include "tests/wayland/fake_compositor.h"

namespace pintle::wayland {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string event(std::uint32_t type, const std::string& body) {
    const auto length = static_cast<std::uint32_t>(body.size());
    std::string bytes = "i3-ipc";
    bytes.append(reinterpret_cast<const char*>(&length), 4);
    bytes.append(reinterpret_cast<const char*>(&type), 4);
    return bytes + body;
}

const auto kReload = event(0x80000000, R"({"change":"reload","current":null})");
const auto kFocus = event(0x80000000, R"({"change":"focus","current":{"name":"reload"}})");
const auto kOutput = event(0x80000001, R"({"change":"unspecified"})");
const auto kGranted = event(2, R"({"success":true})");

/// A sway that takes the two questions, says that in pieces and ends the connection.
class ReportingSway : public ::testing::Test {
  protected:
    std::vector<CompositorNews> newsOf(std::vector<std::string> pieces) {
        const auto path = folder_.path() / std::to_string(++compositors_);
        const FakeCompositor compositor(path, [&](int descriptor) {
            for (int i = 0; i < 2; ++i) {
                const auto head = FakeCompositor::receive(descriptor, 14);
                const auto header = sway::headerOf(head);
                if (!header) return;
                asked_.push_back(FakeCompositor::receive(descriptor, header->length));
                types_.push_back(header->type);
            }
            for (const auto& piece : pieces) FakeCompositor::send(descriptor, piece);
        });
        std::vector<CompositorNews> news;
        bool watched = false;
        int watchedDescriptor = -1;
        std::function<void()> readable;
        const auto handle = observeSway(
            [&](const std::string& name) -> std::optional<std::string> {
                if (name == "SWAYSOCK") return path.string();
                return std::nullopt;
            },
            [&](int descriptor, std::function<void()> call) {
                watched = true;
                watchedDescriptor = descriptor;
                readable = std::move(call);
                return Subscription([&watched] { watched = false; });
            },
            [&](CompositorNews each) { news.push_back(each); });
        while (watched) {
            pollfd poll = {watchedDescriptor, POLLIN, 0};
            if (::poll(&poll, 1, 10'000) <= 0) {
                ADD_FAILURE() << "nothing more was said";
                break;
            }
            readable();
        }
        return news;
    }

    TemporaryFolder folder_;
    int compositors_ = 0;
    std::vector<std::string> asked_;
    std::vector<std::uint32_t> types_;
};

TEST_F(ReportingSway, IsAskedForWorkspacesAndOutputsInTurn) {
    EXPECT_THAT(newsOf({kGranted + kGranted}), IsEmpty());
    EXPECT_THAT(types_, ElementsAre(2U, 2U));
    EXPECT_THAT(asked_, ElementsAre(R"(["workspace"])", R"(["output"])"));
}

TEST_F(ReportingSway, AConfigurationThatIsLoadedAgainForgetsTheTheme) {
    EXPECT_THAT(newsOf({kGranted + kFocus + kReload + kOutput + kFocus}),
                ElementsAre(CompositorNews::forgotTheme, CompositorNews::changedOutputs));
}

TEST_F(ReportingSway, MessagesMayArriveInPieces) {
    // The first is longer than what is read at once.
    const auto large =
        event(0x80000000, R"({"change":"focus","current":")" + std::string(20'000, 'x') + "\"}");
    std::vector<std::string> pieces;
    for (const char byte : large + kReload) pieces.emplace_back(1, byte);
    EXPECT_THAT(newsOf(pieces), ElementsAre(CompositorNews::forgotTheme));
}

TEST_F(ReportingSway, WhatIsNoMessageEndsTheReports) {
    EXPECT_THAT(newsOf({kReload + "HTTP/1.1 400 Bad Request" + kReload}),
                ElementsAre(CompositorNews::forgotTheme));
    EXPECT_THAT(newsOf({"i3-ipc\xff\xff\xff\xff    " + kReload}), IsEmpty());
    for (const auto* const body : {"", "[]", "{", "null", R"({"change":7})"})
        EXPECT_THAT(newsOf({event(0x80000000, body) + kReload}), ElementsAre(CompositorNews::forgotTheme));
}

TEST(Sway, ReportsNothingWhereItIsNot) {
    const auto handle = observeSway([](const std::string&) { return std::nullopt; },
                                    [](int, const std::function<void()>&) {
                                        ADD_FAILURE();
                                        return Subscription();
                                    },
                                    [](CompositorNews) {});
    EXPECT_FALSE(handle);
    const auto unreached = observeSway([](const std::string&) { return "/nonexistent/sway"; },
                                       [](int, const std::function<void()>&) {
                                           ADD_FAILURE();
                                           return Subscription();
                                       },
                                       [](CompositorNews) {});
    EXPECT_FALSE(unreached);
}

}  // namespace
}  // namespace pintle::wayland
