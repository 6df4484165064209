#include "settings/update_checker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/fake_http_client.h"
#include "platform/fake/virtual_scheduler.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using namespace std::chrono_literals;

struct RecordingShell : UpdateChecker::Mediator {
    void activateIgnoringOtherApps() override { calls.push_back("activate"); }
    void runAlert(const UpdateAlert& alert, std::function<void(int)> answered) override {
        calls.push_back("alert " + alert.message);
        alerts.push_back(alert);
        answer = std::move(answered);
    }
    void openUrl(const std::string& url) override { calls.push_back("open " + url); }

    std::vector<std::string> calls;
    std::vector<UpdateAlert> alerts;
    std::function<void(int)> answer;
};

const UpdateAlert kUpToDate{"Pintle is up to date", "You have the latest version.", {}};
const UpdateAlert kCouldNotCheck{
    "Could not check for updates", "Check your internet connection and try again.", {}};
const UpdateAlert kAvailable{
    "Pintle 1.2.0 is available",
    "You have version 1.1.0. Download the new version and replace Pintle in Applications.",
    {"Download", "Later"}};
constexpr const char* kDocument = R"({"version": "1.2.0", "build": 12})";
const RemoteVersion kRemote{"1.2.0", 12};

struct UpdateCheckerTest : testing::Test {
    VirtualScheduler scheduler;
    FakeHttpClient http{scheduler.mainQueue()};
    RecordingShell shell;
    std::unique_ptr<UpdateChecker> checker = withBuild("11");

    std::unique_ptr<UpdateChecker> withBuild(const std::string& build) {
        Bundle bundle;
        bundle.shortVersion = "1.1.0";
        bundle.build = build;
        return std::make_unique<UpdateChecker>(
            http, scheduler.mainQueue(), shell, bundle,
            UpdateEndpoint{"https://updates.test/version.json", "https://updates.test/download.php"});
    }
    void answer(std::size_t which, int status, std::string_view body) {
        http.answer(which, status, body);
        scheduler.runUntilIdle();
    }
    /// Runs one check that gets this answer.
    bool checkWith(int status, std::string_view body) {
        std::optional<bool> obtained;
        checker->check([&](bool answered) { obtained = answered; });
        answer(http.requests.size() - 1, status, body);
        EXPECT_TRUE(obtained.has_value());
        return obtained.value_or(false);
    }
    void checkInteractivelyWith(int status, std::string_view body) {
        checker->checkInteractively();
        answer(http.requests.size() - 1, status, body);
    }
};

TEST_F(UpdateCheckerTest, StartsWithoutAnAvailableVersion) { EXPECT_FALSE(checker->available()); }

TEST_F(UpdateCheckerTest, TheRequestNamesTheBuildAndTrustsNoCache) {
    checker->check({});
    ASSERT_EQ(http.requests.size(), 1u);
    const auto& request = http.requests.front();
    EXPECT_EQ(request.url, "https://updates.test/version.json");
    EXPECT_THAT(request.headers, ElementsAre(Pair("User-Agent", "Pintle/11")));
    EXPECT_EQ(request.cachePolicy, CachePolicy::reloadIgnoringLocalData);
    EXPECT_EQ(request.timeout, 15s);
    EXPECT_EQ(request.bodyLimit, 65536u);
    EXPECT_FALSE(request.file);
}

TEST_F(UpdateCheckerTest, ABundleWithoutAProperBuildAsksAsBuildZero) {
    checker = withBuild("");
    checker->check({});
    EXPECT_THAT(http.requests.front().headers, ElementsAre(Pair("User-Agent", "Pintle/0")));
}

TEST_F(UpdateCheckerTest, TheSameBuildIsUpToDate) {
    checker = withBuild("12");
    checkInteractivelyWith(200, kDocument);
    EXPECT_FALSE(checker->available());
    EXPECT_THAT(shell.alerts, ElementsAre(kUpToDate));
}

TEST_F(UpdateCheckerTest, ANewerLocalBuildIsUpToDate) {
    checker = withBuild("13");
    EXPECT_TRUE(checkWith(200, kDocument));
    EXPECT_FALSE(checker->available());
}

TEST_F(UpdateCheckerTest, ANewerBuildIsAvailableAndOfferedForDownload) {
    checkInteractivelyWith(200, kDocument);
    EXPECT_EQ(checker->available(), kRemote);
    EXPECT_THAT(shell.alerts, ElementsAre(kAvailable));
}

TEST_F(UpdateCheckerTest, OnlyTheBuildsAreCompared) {
    EXPECT_TRUE(checkWith(200, R"({"version": "9.9.9", "build": 11})"));
    EXPECT_FALSE(checker->available());
    EXPECT_TRUE(checkWith(200, R"({"version": "0.0.1", "build": 12})"));
    EXPECT_EQ(checker->available(), (RemoteVersion{"0.0.1", 12}));
}

TEST_F(UpdateCheckerTest, ABundleVersionOf1Point2CountsAsZero) {
    checker = withBuild("1.2");
    EXPECT_EQ(checker->localBuild(), 0);
    EXPECT_TRUE(checkWith(200, R"({"version": "1.2", "build": 1})"));
    EXPECT_EQ(checker->available(), (RemoteVersion{"1.2", 1}));
    EXPECT_TRUE(checkWith(200, R"({"version": "1.2", "build": 0})"));
    EXPECT_FALSE(checker->available());
}

TEST_F(UpdateCheckerTest, AnyStatusBut200ChangesNothing) {
    for (const int status : {201, 204, 301, 304, 403, 404, 500, 503}) {
        shell.alerts.clear();
        checkInteractivelyWith(status, kDocument);
        EXPECT_FALSE(checker->available()) << status;
        EXPECT_THAT(shell.alerts, ElementsAre(kCouldNotCheck)) << status;
    }
}

TEST_F(UpdateCheckerTest, AnAnswerThatIsNotHttpIsDecodedAllTheSame) {
    std::optional<bool> obtained;
    checker->check([&](bool answered) { obtained = answered; });
    http.answer(0, HttpResponse{std::nullopt, std::nullopt, kDocument});
    scheduler.runUntilIdle();
    EXPECT_EQ(obtained, true);
    EXPECT_EQ(checker->available(), kRemote);
}

TEST_F(UpdateCheckerTest, ABodyThatIsNoDocumentIsAFailedCheck) {
    for (const auto* body : {"", "<html>Please log in</html>", R"({"version": "1.2.0"})",
                             R"({"version": "1.2.0", "build": "12"})", R"({"version": 1.2, "build": 12})"})
        EXPECT_FALSE(checkWith(200, body)) << body;
    EXPECT_FALSE(checker->available());
}

TEST_F(UpdateCheckerTest, ABuildGivenAsATextCountsAsAFailedCheck) {
    checkInteractivelyWith(200, R"({"version": "1.2.0", "build": "12"})");
    EXPECT_THAT(shell.alerts, ElementsAre(kCouldNotCheck));
}

TEST_F(UpdateCheckerTest, ATransportErrorIsAFailedCheck) {
    checker->checkInteractively();
    http.fail(0, "The network connection was lost.");
    scheduler.runUntilIdle();
    EXPECT_THAT(shell.alerts, ElementsAre(kCouldNotCheck));
}

TEST_F(UpdateCheckerTest, AnAnswerThatDripsForFifteenSecondsIsAFailedCheckAndGivenUp) {
    std::optional<bool> obtained;
    checker->check([&](bool answered) { obtained = answered; });
    scheduler.advance(14999ms);
    EXPECT_FALSE(obtained);
    EXPECT_TRUE(http.running(0));
    scheduler.advance(1ms);
    EXPECT_EQ(obtained, false);
    EXPECT_FALSE(http.running(0));
}

TEST_F(UpdateCheckerTest, AnAnswerInTimeLeavesNoDeadlineBehind) {
    checkWith(200, kDocument);
    EXPECT_EQ(scheduler.pendingTimers(), 0u);
    scheduler.advance(60s);
    EXPECT_EQ(checker->available(), kRemote);
}

TEST_F(UpdateCheckerTest, AFailedCheckKeepsTheRememberedVersionAndItsAlert) {
    EXPECT_TRUE(checkWith(200, kDocument));
    checkInteractivelyWith(500, "");
    EXPECT_EQ(checker->available(), kRemote);
    EXPECT_THAT(shell.alerts, ElementsAre(kAvailable));
}

TEST_F(UpdateCheckerTest, ALaterCheckCanTakeTheAvailableVersionBack) {
    EXPECT_TRUE(checkWith(200, kDocument));
    EXPECT_TRUE(checkWith(200, R"({"version": "1.1.0", "build": 11})"));
    EXPECT_FALSE(checker->available());
}

TEST_F(UpdateCheckerTest, TheApplicationComesToTheFrontBeforeTheAlertAndAfterTheCheck) {
    checker->checkInteractively();
    EXPECT_THAT(shell.calls, IsEmpty());
    answer(0, 200, kDocument);
    EXPECT_THAT(shell.calls, ElementsAre("activate", "alert Pintle 1.2.0 is available"));
}

TEST_F(UpdateCheckerTest, DownloadOpensTheDownloadPage) {
    checkInteractivelyWith(200, kDocument);
    shell.answer(0);
    EXPECT_EQ(shell.calls.back(), "open https://updates.test/download.php");
}

TEST_F(UpdateCheckerTest, LaterDoesNothing) {
    checkInteractivelyWith(200, kDocument);
    shell.answer(1);
    EXPECT_EQ(shell.calls.size(), 2u);
}

TEST_F(UpdateCheckerTest, TheDefaultButtonOfTheOtherAlertsOpensNothing) {
    checkInteractivelyWith(404, "");
    shell.answer(0);
    EXPECT_EQ(shell.calls.size(), 2u);
}

TEST_F(UpdateCheckerTest, ABackgroundCheckShowsNoAlert) {
    checkWith(200, kDocument);
    checkWith(500, "");
    EXPECT_THAT(shell.calls, IsEmpty());
}

TEST_F(UpdateCheckerTest, StartChecksAtOnceThenEveryDay) {
    checker->start();
    EXPECT_THAT(http.requests, IsEmpty());
    scheduler.runUntilIdle();
    ASSERT_EQ(http.requests.size(), 1u);
    answer(0, 200, kDocument);
    scheduler.advance(86400s - 1ns);
    EXPECT_EQ(http.requests.size(), 1u);
    scheduler.advance(1ns);
    EXPECT_EQ(http.requests.size(), 2u);
    scheduler.advance(30 * 86400s);
    EXPECT_EQ(http.requests.size(), 32u);
}

TEST_F(UpdateCheckerTest, TheDailyChecksGoOnAfterFailures) {
    checker->start();
    scheduler.runUntilIdle();
    for (std::size_t day = 0; day < 3; ++day) {
        http.fail(day, "no network");
        scheduler.advance(86400s);
    }
    ASSERT_EQ(http.requests.size(), 4u);
    answer(3, 200, kDocument);
    EXPECT_EQ(checker->available(), kRemote);
}

TEST_F(UpdateCheckerTest, StartingAgainReplacesTheTimer) {
    checker->start();
    checker->start();
    scheduler.advance(86400s);
    // Two at once and one a day later.
    EXPECT_EQ(http.requests.size(), 3u);
}

TEST_F(UpdateCheckerTest, OfTwoOverlappingChecksTheOneThatEndsLastDecides) {
    checker->check({});
    checker->checkInteractively();
    answer(1, 200, kDocument);
    EXPECT_EQ(checker->available(), kRemote);
    answer(0, 200, R"({"version": "1.1.0", "build": 11})");
    EXPECT_FALSE(checker->available());
}

TEST_F(UpdateCheckerTest, ObserversAreNotifiedOfEverySuccessfulCheckAndOfNoOther) {
    int calls = 0;
    const auto observer = checker->changed.observe([&] { ++calls; });
    checkWith(200, kDocument);
    checkWith(404, "");
    checkWith(200, kDocument);
    EXPECT_EQ(calls, 2);
}

TEST_F(UpdateCheckerTest, NothingComesBackAfterItsEnd) {
    checker->checkInteractively();
    checker->start();
    checker.reset();
    EXPECT_FALSE(http.running(0));
    scheduler.advance(2 * 86400s);
    EXPECT_EQ(http.requests.size(), 1u);
    EXPECT_THAT(shell.calls, IsEmpty());
}

TEST(UpdateEndpoint, BothAddressesLieOnTheHostOfTheBuild) {
    const auto endpoint = builtInUpdateEndpoint();
    EXPECT_TRUE(endpoint.versionURL.starts_with("https://")) << endpoint.versionURL;
    EXPECT_TRUE(endpoint.versionURL.ends_with("/version.json")) << endpoint.versionURL;
    EXPECT_TRUE(endpoint.downloadURL.ends_with("/download.php")) << endpoint.downloadURL;
}

}  // namespace
}  // namespace pintle
