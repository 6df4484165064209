// The update check over the real client against a server on the loopback that answers in every way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

#include "platform/qt/qt_http_client.h"
#include "settings/update_checker.h"
#include "tests/contract/session/loop_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;

class VersionServer {
  public:
    VersionServer() {
        std::array<int, 2> in{}, out{};
        if (::pipe(in.data()) != 0 || ::pipe(out.data()) != 0) throw std::runtime_error("no pipe");
        pid_ = ::fork();
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::dup2(in[0], 0);
            ::dup2(out[1], 1);
            for (const int end : {in[0], in[1], out[0], out[1]}) ::close(end);
            ::execl("/usr/bin/python3", "python3", VERSION_SERVER, nullptr);
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        input_ = in[1];
        char character = 0;
        while (::read(out[0], &character, 1) == 1 && character != '\n') port_ += character;
        ::close(out[0]);
        if (port_.empty()) throw std::runtime_error("no server");
    }
    ~VersionServer() { end(); }
    VersionServer(const VersionServer&) = delete;
    VersionServer& operator=(const VersionServer&) = delete;
    std::string url(const std::string& path) const { return "http://127.0.0.1:" + port_ + "/" + path; }
    void end() {
        if (pid_ <= 0) return;
        ::close(input_);
        ::waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

  private:
    pid_t pid_ = -1;
    int input_ = -1;
    std::string port_;
};

struct UpdateCheckTest : testing::Test, UpdateChecker::Mediator {
    void activateIgnoringOtherApps() override {}
    void runAlert(const UpdateAlert& alert, std::function<void(int)>) override {
        alerts.push_back(alert.message);
    }
    void openUrl(const std::string&) override {}

    LoopWorld world;
    VersionServer server;
    std::unique_ptr<HttpClient> http = makeQtHttpClient(*world.queue);
    std::vector<std::string> alerts;

    std::unique_ptr<UpdateChecker> checkerFor(const std::string& path) {
        Bundle bundle;
        bundle.shortVersion = "1.1.0";
        bundle.build = "11";
        return std::make_unique<UpdateChecker>(*http, *world.queue, *this, bundle,
                                               UpdateEndpoint{server.url(path), server.url("page")});
    }
    std::optional<RemoteVersion> fetch(const std::string& path) {
        const auto checker = checkerFor(path);
        std::optional<RemoteVersion> document;
        bool answered = false;
        checker->fetch(server.url(path), [&](std::optional<RemoteVersion> obtained) {
            document = std::move(obtained);
            answered = true;
        });
        EXPECT_TRUE(LoopWorld::until([&] { return answered; })) << path;
        return document;
    }
};

const RemoteVersion kRemote{"1.2.0", 12};

TEST_F(UpdateCheckTest, AGoodAnswerIsADocument) { EXPECT_EQ(fetch("good"), kRemote); }

TEST_F(UpdateCheckTest, TheServerSeesTheBuildAsUserAgent) {
    EXPECT_EQ(fetch("agent"), (RemoteVersion{"Pintle/11", 12}));
}

TEST_F(UpdateCheckTest, AnyOtherStatusIsNoDocument) {
    for (const auto* status : {"201", "203", "403", "404", "410", "500", "503"})
        EXPECT_FALSE(fetch(std::string("status/") + status)) << status;
}

TEST_F(UpdateCheckTest, AWebPageIsNoDocument) { EXPECT_FALSE(fetch("html")); }

TEST_F(UpdateCheckTest, ABodyOf64KibibytesIsReadAndALongerOneIsNoDocument) {
    EXPECT_EQ(fetch("padded/65536"), kRemote);
    EXPECT_FALSE(fetch("padded/65537"));
    EXPECT_FALSE(fetch("endless"));
}

TEST_F(UpdateCheckTest, AnAnswerThatBreaksOffIsNoDocument) {
    EXPECT_FALSE(fetch("cut"));
    EXPECT_FALSE(fetch("close"));
    EXPECT_FALSE(fetch("garbage"));
}

TEST_F(UpdateCheckTest, ARedirectToAnUnprotectedAddressElsewhereIsNoDocument) { EXPECT_FALSE(fetch("away")); }

TEST_F(UpdateCheckTest, AnAllowedRedirectIsFollowedAndACircleIsNoDocument) {
    EXPECT_EQ(fetch("moved"), kRemote);
    EXPECT_FALSE(fetch("circle"));
}

TEST_F(UpdateCheckTest, EveryCheckAsksTheServerAgainThoughItAllowsKeepingTheAnswer) {
    const auto first = fetch("count");
    const auto second = fetch("count");
    ASSERT_TRUE(first && second);
    EXPECT_EQ(second->build, first->build + 1);
}

TEST_F(UpdateCheckTest, ASlowDripIsNoDocument) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(fetch("drip"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(19));
}

TEST_F(UpdateCheckTest, TheUserIsNotifiedOfANewVersionAlsoAfterTheServerIsGone) {
    const auto checker = checkerFor("good");
    checker->checkInteractively();
    ASSERT_TRUE(LoopWorld::until([&] { return alerts.size() == 1; }));
    server.end();
    checker->checkInteractively();
    ASSERT_TRUE(LoopWorld::until([&] { return alerts.size() == 2; }));
    EXPECT_THAT(alerts, ElementsAre("Pintle 1.2.0 is available", "Pintle 1.2.0 is available"));
}

TEST_F(UpdateCheckTest, WithoutAServerTheUserLearnsThatTheCheckFailed) {
    const auto checker = checkerFor("good");
    server.end();
    checker->checkInteractively();
    ASSERT_TRUE(LoopWorld::until([&] { return !alerts.empty(); }));
    EXPECT_THAT(alerts, ElementsAre("Could not check for updates"));
}

}  // namespace
}  // namespace pintle
