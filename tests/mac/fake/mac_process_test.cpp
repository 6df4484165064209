// This process: its log, its bundle, its hints, its copies, its alerts and its main queue.
#include <unistd.h>

#include <chrono>
#include <set>
#include <thread>

#include "platform/mac/cf_notifications.h"
#include "platform/mac/mac_alerts.h"
#include "platform/mac/mac_appearance.h"
#include "platform/mac/mac_bundle.h"
#include "platform/mac/mac_instance_bus.h"
#include "platform/mac/mac_log.h"
#include "platform/mac/mac_main_queue.h"
#include "platform/mac/mac_process_hints.h"
#include "tests/mac/fake/fake_test.h"

namespace pintle {
namespace {

using mac_fake::world;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using namespace std::chrono_literals;

bool runUntil(const std::function<bool()>& reached) {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!reached() && std::chrono::steady_clock::now() < deadline) mac_fake::runLoopOnce(0.005);
    return reached();
}

TEST(MacLog, ALineGoesToTheUnifiedLogForEverybodyToRead) {
    makeMacLog()->system("[Pintle] 100 %s of %d\x1b");
    EXPECT_THAT(world().systemLog, ElementsAre(Pair(0, "[Pintle] 100 %s of %d\x1b")));
    EXPECT_THAT(world().logFormats, ElementsAre("%{public}s"));
}

TEST(MacLog, LinesOfStandardOutputArePrintedWholeAndAtOnce) {
    ::testing::internal::CaptureStdout();
    const auto log = makeMacLog();
    log->standardOutput("[AppDelegate] System cursor restored");
    log->standardOutput("");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "[AppDelegate] System cursor restored\n\n");
    EXPECT_THAT(world().systemLog, IsEmpty());
}

TEST(MacLog, LinesOfSeveralThreadsStayWhole) {
    const auto log = makeMacLog();
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i)
        writers.emplace_back([&] {
            for (int k = 0; k < 50; ++k) log->system("a line");
        });
    for (auto& writer : writers) writer.join();
    EXPECT_EQ(world().systemLog.size(), 200U);
    for (const auto& [type, line] : world().systemLog) EXPECT_EQ(line, "a line");
}

TEST(MacProcessHints, AnActivityLastsAsLongAsItsHandle) {
    const auto hints = makeMacProcessHints();
    Subscription activity = hints->beginActivity("Download");
    EXPECT_THAT(world().activities, ElementsAre("Download"));
    EXPECT_EQ(world().activitiesEnded, 0);
    activity.end();
    EXPECT_EQ(world().activitiesEnded, 1);
}

TEST(MacProcessHints, FreeMemoryIsGivenBackFromEveryZoneWithoutAGoal) {
    makeMacProcessHints()->releaseFreeMemory();
    EXPECT_THAT(world().pressureReliefs, ElementsAre(Pair(nullptr, 0U)));
}

TEST(MacBundle, SaysWhatItsInformationSays) {
    world().bundleInfo = {{"CFBundleShortVersionString", "0.1.0"}, {"CFBundleVersion", "100"}};
    const Bundle bundle = readMacBundle();
    EXPECT_EQ(bundle.identifier, "com.pintle.app");
    EXPECT_EQ(bundle.shortVersion, "0.1.0");
    EXPECT_EQ(bundle.build, "100");
    EXPECT_EQ(bundle.executable, "/Applications/Pintle.app/Contents/MacOS/Pintle");
    EXPECT_EQ(readMacBundlePath(), "/Applications/Pintle.app");
}

TEST(MacBundle, WhatIsMissingOrNoTextIsEmpty) {
    world().bundleIdentifier.reset();
    world().bundleInfo = {{"CFBundleVersion", 100}};
    world().executablePath.reset();
    world().bundlePath.reset();
    const Bundle bundle = readMacBundle();
    EXPECT_EQ(bundle.identifier, "");
    EXPECT_EQ(bundle.shortVersion, "");
    EXPECT_EQ(bundle.build, "");
    EXPECT_EQ(bundle.executable, "");
    EXPECT_EQ(readMacBundlePath(), "");
}

TEST(MacBundle, APathThatHasNoFormForFilesIsEmpty) {
    world().failing = {"CFURLGetFileSystemRepresentation"};
    EXPECT_EQ(readMacBundle().executable, "");
    EXPECT_EQ(readMacBundlePath(), "");
    world().failing.clear();
    world().bundlePath = "/" + std::string(5000, 'a');
    EXPECT_EQ(readMacBundlePath(), "");
}

TEST(MacBundle, WithoutABundleEverythingIsEmpty) {
    world().failing = {"CFBundleGetMainBundle"};
    EXPECT_EQ(readMacBundle().identifier, "");
    EXPECT_EQ(readMacBundlePath(), "");
}

TEST(MacBundle, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        world().bundleInfo = {{"CFBundleShortVersionString", "0.1.0"}};
        readMacBundle();
        readMacBundlePath();
    });
}

TEST(MacInstanceBus, AnotherCopyIsOneOfTheSameBundleWithAnotherProcessId) {
    const auto queue = makeMacMainQueue();
    const auto bus = makeMacInstanceBus("com.pintle.app", *queue);
    EXPECT_FALSE(bus->anotherCopyRuns());
    const auto self = static_cast<std::int32_t>(::getpid());
    world().runningCopies["com.pintle.app"] = {self};
    world().runningCopies["com.example.other"] = {self + 1};
    EXPECT_FALSE(bus->anotherCopyRuns());
    world().runningCopies["com.pintle.app"] = {self, self + 1};
    EXPECT_TRUE(bus->anotherCopyRuns());
}

TEST(MacInstanceBus, AMessageIsPostedWithoutObjectOrInformationForImmediateDelivery) {
    const auto queue = makeMacMainQueue();
    makeMacInstanceBus("com.pintle.app", *queue)->post("com.pintle.app.showPopover");
    EXPECT_THAT(world().posts,
                ElementsAre(mac_fake::World::DistributedPost{"com.pintle.app.showPopover", false, false, 1}));
}

TEST(MacInstanceBus, AMessageIsReceivedOnTheMainQueueAndNotInsideThePost) {
    const auto queue = makeMacMainQueue();
    const auto bus = makeMacInstanceBus("com.pintle.app", *queue);
    int calls = 0;
    const Subscription handle = bus->observe("com.pintle.app.showPopover", [&] { ++calls; });
    mac_fake::postFromElsewhere("com.pintle.app.showPopover");
    mac_fake::postFromElsewhere("com.pintle.app.other");
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(runUntil([&] { return calls > 0; }));
    EXPECT_EQ(calls, 1);
}

TEST(MacInstanceBus, AnEndedObserverDoesNotEvenReceiveWhatIsOnItsWay) {
    const auto queue = makeMacMainQueue();
    const auto bus = makeMacInstanceBus("com.pintle.app", *queue);
    int calls = 0;
    Subscription handle = bus->observe("a", [&] { ++calls; });
    mac_fake::postFromElsewhere("a");
    handle.end();
    bool later = false;
    queue->post([&] { later = true; });
    ASSERT_TRUE(runUntil([&] { return later; }));
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(mac_fake::distributedObservers(), 0U);
}

TEST(MacDistributedCentre, ObserversOfTheSameNameEndEachByItself) {
    int first = 0;
    int second = 0;
    Subscription one = observeDistributed("a", [&] { ++first; });
    const Subscription two = observeDistributed("a", [&] { ++second; });
    postDistributed("a");
    one.end();
    postDistributed("a");
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST(MacMainQueue, AMissedTickIsLeftOutAndTheGridStays) {
    const auto queue = makeMacMainQueue();
    std::vector<std::chrono::nanoseconds> ticks;
    const auto start = queue->now();
    Timer timer = queue->every(20ms, [&] {
        ticks.push_back(queue->now() - start);
        if (ticks.size() == 1) std::this_thread::sleep_for(50ms);
    });
    ASSERT_TRUE(runUntil([&] { return ticks.size() >= 3; }));
    timer.end();
    // The first tick ends at 70 ms or later: those of 40 and 60 ms are missed.
    EXPECT_GE(ticks[1], 80ms);
    EXPECT_GE(ticks[2], 100ms);
}

TEST(MacMainQueue, PostedWorkGoesOnInALoopThatWorkItselfRuns) {
    const auto queue = makeMacMainQueue();
    std::vector<int> ran;
    queue->post([&] {
        ran.push_back(1);
        // As a menu or an alert does.
        EXPECT_TRUE(runUntil([&] { return ran.size() >= 3; }));
        ran.push_back(4);
    });
    queue->post([&] { ran.push_back(2); });
    queue->post([&] { ran.push_back(3); });
    ASSERT_TRUE(runUntil([&] { return ran.size() >= 4; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
}

TEST(MacMainQueue, WorkThatHasNotRunIsDroppedWithTheQueue) {
    auto kept = std::make_shared<int>(0);
    {
        const auto queue = makeMacMainQueue();
        queue->post([kept] {});
        Timer timer = queue->after(1h, [kept] {});
        EXPECT_GT(kept.use_count(), 1);
    }
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(MacMainQueue, DroppedWorkMayPost) {
    struct Poster {
        explicit Poster(MainQueue& to) : queue(to) {}
        ~Poster() {
            queue.post([] {});
        }
        MainQueue& queue;
    };
    const auto queue = makeMacMainQueue();
    queue->post([poster = std::make_shared<Poster>(*queue)] {});
}

TEST(MacMainQueue, ATimerThatIsEndedInItsOwnWorkFreesTheWork) {
    const auto queue = makeMacMainQueue();
    auto kept = std::make_shared<int>(0);
    Timer timer;
    bool ran = false;
    timer = queue->every(1ms, [&timer, &ran, kept] {
        timer.end();
        ran = true;
    });
    ASSERT_TRUE(runUntil([&] { return ran; }));
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(MacMainQueue, EachTurnOfPostedWorkHasOnePoolWithTheEndOfTheTurnInIt) {
    const auto queue = makeMacMainQueue();
    std::vector<int> pools;
    int ends = 0;
    const Subscription end = queue->atEndOfTurn([&] {
        ++ends;
        EXPECT_EQ(world().openPools, 1);
    });
    const auto note = [&] {
        EXPECT_EQ(world().openPools, 1);
        pools.push_back(world().pools);
    };
    queue->post([&] {
        note();
        queue->post(note);
    });
    queue->post(note);
    ASSERT_TRUE(runUntil([&] { return pools.size() == 3; }));
    EXPECT_EQ(pools[0], pools[1]);
    EXPECT_NE(pools[1], pools[2]);
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(world().openPools, 0);
}

TEST(MacMainQueue, EachFiringOfATimerHasAPoolOfItsOwn) {
    const auto queue = makeMacMainQueue();
    std::vector<int> pools;
    const auto note = [&] {
        EXPECT_EQ(world().openPools, 1);
        pools.push_back(world().pools);
    };
    const Timer repeated = queue->every(1ms, note);
    const Timer once = queue->after(1ms, note);
    ASSERT_TRUE(runUntil([&] { return pools.size() >= 4; }));
    EXPECT_THAT(std::set<int>(pools.begin(), pools.end()), ::testing::SizeIs(pools.size()));
    EXPECT_EQ(world().openPools, 0);
}

TEST(MacMainQueue, ATurnInsideOfATurnHasAPoolInThePool) {
    const auto queue = makeMacMainQueue();
    int inner = 0;
    queue->post([&] {
        queue->post([&] { inner = world().openPools; });
        mac_fake::runLoopOnce(1);
    });
    ASSERT_TRUE(runUntil([&] { return inner > 0; }));
    EXPECT_EQ(inner, 2);
}

class MacAppearanceTest : public ::testing::Test {
  protected:
    void endTurn() {
        bool later = false;
        queue_->post([&] { later = true; });
        ASSERT_TRUE(runUntil([&] { return later; }));
    }
    std::unique_ptr<MainQueue> queue_ = makeMacMainQueue();
};

TEST_F(MacAppearanceTest, TheLookIsKnownFromTheStart) {
    world().look = {true, false, true, 1, true};
    EXPECT_EQ(makeMacAppearance(*queue_)->look(), world().look);
}

TEST_F(MacAppearanceTest, AChangeIsReportedATurnAfterEitherSideAndOnlyWhenSomethingIsDifferent) {
    const auto appearance = makeMacAppearance(*queue_);
    int calls = 0;
    const Subscription observer = appearance->observe([&] { ++calls; });
    mac_fake::changeEffectiveAppearance();
    endTurn();
    EXPECT_EQ(calls, 0);
    world().look.dark = true;
    mac_fake::changeEffectiveAppearance();
    EXPECT_EQ(calls, 0);
    EXPECT_FALSE(appearance->look().dark);
    endTurn();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(appearance->look().dark);
    world().look.reducedMotion = true;
    mac_fake::postNotification("workspace", "NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification");
    endTurn();
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(appearance->look().reducedMotion);
}

TEST_F(MacAppearanceTest, AChangeThatIsOnItsWayAtTheEndIsNothing) {
    auto appearance = makeMacAppearance(*queue_);
    world().look.dark = true;
    mac_fake::changeEffectiveAppearance();
    appearance.reset();
    endTurn();
}

class MacAlertsTest : public ::testing::Test {
  protected:
    std::unique_ptr<MainQueue> queue_ = makeMacMainQueue();
    std::unique_ptr<Alerts> alerts_ = makeMacAlerts(*queue_);
};

TEST_F(MacAlertsTest, AnAnswerIsTheButtonCountedFromZero) {
    for (const long response : {1000L, 1001L, 1002L}) {
        world().answerAlert = [response](const Alert&) { return response; };
        std::optional<int> answer;
        alerts_->runModal({AlertStyle::warning, "m", "i", {"a", "b", "c"}},
                          [&](int button) { answer = button; });
        EXPECT_FALSE(answer);
        ASSERT_TRUE(runUntil([&] { return answer.has_value(); }));
        EXPECT_EQ(answer, static_cast<int>(response - 1000));
    }
    EXPECT_EQ(world().alerts.at(0), (Alert{AlertStyle::warning, "m", "i", {"a", "b", "c"}}));
}

TEST_F(MacAlertsTest, AResponseThatIsNoButtonIsTheLastOne) {
    for (const long response : {-1000L, 0L, 1002L}) {
        world().answerAlert = [response](const Alert&) { return response; };
        for (const std::size_t count : {0U, 1U, 2U}) {
            std::optional<int> answer;
            alerts_->runModal({AlertStyle::informational, "m", "", std::vector<std::string>(count, "b")},
                              [&](int button) { answer = button; });
            ASSERT_TRUE(runUntil([&] { return answer.has_value(); }));
            EXPECT_EQ(answer, count == 2 ? 1 : 0);
        }
    }
}

TEST_F(MacAlertsTest, OneWaitsForTheOtherEvenWhileItsLoopRuns) {
    int open = 0;
    std::vector<std::string> shown;
    world().answerAlert = [&](const Alert& alert) {
        EXPECT_EQ(++open, 1);
        shown.push_back(alert.message);
        for (int i = 0; i < 5; ++i) mac_fake::runLoopOnce(0.002);
        --open;
        return 1000L;
    };
    int answers = 0;
    for (const char* message : {"first", "second", "third"})
        alerts_->runModal({AlertStyle::informational, message, "", {}}, [&](int) { ++answers; });
    ASSERT_TRUE(runUntil([&] { return answers == 3; }));
    EXPECT_THAT(shown, ElementsAre("first", "second", "third"));
}

TEST_F(MacAlertsTest, AnAnswerMayAskAgain) {
    std::vector<std::string> answered;
    alerts_->runModal({AlertStyle::informational, "one", "", {}}, [&](int) {
        answered.emplace_back("one");
        alerts_->runModal({AlertStyle::informational, "two", "", {}},
                          [&](int) { answered.emplace_back("two"); });
    });
    ASSERT_TRUE(runUntil([&] { return answered.size() == 2; }));
    EXPECT_THAT(answered, ElementsAre("one", "two"));
}

TEST_F(MacAlertsTest, AnAlertThatWaitsIsNotShownAfterTheEnd) {
    alerts_->runModal({AlertStyle::informational, "m", "", {}}, [](int) { FAIL(); });
    alerts_.reset();
    bool later = false;
    queue_->post([&] { later = true; });
    ASSERT_TRUE(runUntil([&] { return later; }));
    EXPECT_THAT(world().alerts, IsEmpty());
}

}  // namespace
}  // namespace pintle
