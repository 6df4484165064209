// What every main queue does. Include it once, after naming the backends to try as the
// type list `QueueWorlds`.
#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <vector>

#include "platform/background_tasks.h"
#include "platform/main_queue.h"

namespace pintle {
namespace {

using ::testing::ElementsAre;
using namespace std::chrono_literals;

template <typename World>
class MainQueueContract : public ::testing::Test {
  protected:
    MainQueue& queue() { return world_.queue(); }
    World world_;
};
TYPED_TEST_SUITE(MainQueueContract, QueueWorlds);

TYPED_TEST(MainQueueContract, PostedWorkRunsInOrderAndNeverInsideTheCall) {
    std::vector<int> ran;
    for (int i = 0; i < 4; ++i) this->queue().post([&ran, i] { ran.push_back(i); });
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.size() >= 4; }));
    EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3));
}

TYPED_TEST(MainQueueContract, WorkPostedByWorkRunsAfterWhatWasPostedBefore) {
    std::vector<int> ran;
    this->queue().post([&] {
        this->queue().post([&] { ran.push_back(3); });
        ran.push_back(1);
    });
    this->queue().post([&] { ran.push_back(2); });
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.size() >= 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TYPED_TEST(MainQueueContract, WorkPostedInTheBackgroundRunsOnTheMainThread) {
    bool mainInBackground = true;
    bool mainAfterwards = false;
    bool ran = false;
    EXPECT_TRUE(this->queue().isMain());
    this->world_.tasks().run(Priority::utility, [&] {
        mainInBackground = this->queue().isMain();
        this->queue().post([&] {
            mainAfterwards = this->queue().isMain();
            ran = true;
        });
    });
    ASSERT_TRUE(this->world_.runUntil([&] { return ran; }));
    EXPECT_FALSE(mainInBackground);
    EXPECT_TRUE(mainAfterwards);
}

TYPED_TEST(MainQueueContract, ATimerRunsOnceAndNotBeforeItsDelay) {
    const auto start = this->queue().now();
    int runs = 0;
    std::chrono::nanoseconds at{0};
    const Timer timer = this->queue().after(7300us, [&] {
        ++runs;
        at = this->queue().now();
    });
    EXPECT_EQ(runs, 0);
    bool later = false;
    const Timer end = this->queue().after(30ms, [&] { later = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return later; }));
    EXPECT_EQ(runs, 1);
    EXPECT_GE(at - start, 7300us);
}

TYPED_TEST(MainQueueContract, ATimerWithoutDelayNeverRunsInsideTheCall) {
    bool ran = false;
    const Timer timer = this->queue().after(0ns, [&] { ran = true; });
    EXPECT_FALSE(ran);
    ASSERT_TRUE(this->world_.runUntil([&] { return ran; }));
}

TYPED_TEST(MainQueueContract, ACancelledTimerDoesNotRun) {
    bool ran = false;
    Timer timer = this->queue().after(1ms, [&] { ran = true; });
    timer.end();
    bool later = false;
    const Timer end = this->queue().after(10ms, [&] { later = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return later; }));
    EXPECT_FALSE(ran);
}

TYPED_TEST(MainQueueContract, ATimerCancelledWhenAlreadyDueDoesNotRun) {
    bool ran = false;
    Timer second;
    const Timer first = this->queue().after(2ms, [&] {
        this->world_.letPass(5ms);
        second.end();
    });
    second = this->queue().after(2ms, [&] { ran = true; });
    bool later = false;
    const Timer end = this->queue().after(20ms, [&] { later = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return later; }));
    EXPECT_FALSE(ran);
}

TYPED_TEST(MainQueueContract, TimersRunInTheOrderOfTheirTimes) {
    std::vector<int> ran;
    const Timer late = this->queue().after(12ms, [&] { ran.push_back(3); });
    const Timer early = this->queue().after(2ms, [&] { ran.push_back(1); });
    const Timer middle = this->queue().after(7ms, [&] { ran.push_back(2); });
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.size() >= 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TYPED_TEST(MainQueueContract, ARepeatingTimerGoesOnUntilItsHandleEndsInItsOwnCall) {
    int ticks = 0;
    Timer timer;
    timer = this->queue().every(2ms, [&] {
        if (++ticks == 3) timer.end();
    });
    ASSERT_TRUE(this->world_.runUntil([&] { return ticks >= 3; }));
    bool later = false;
    const Timer end = this->queue().after(20ms, [&] { later = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return later; }));
    EXPECT_EQ(ticks, 3);
}

TYPED_TEST(MainQueueContract, ATickNeverComesBeforeItsPlaceOnTheGrid) {
    constexpr auto kInterval = 8333333ns;
    const auto start = this->queue().now();
    std::vector<std::chrono::nanoseconds> ticks;
    Timer timer = this->queue().every(kInterval, [&] { ticks.push_back(this->queue().now() - start); });
    ASSERT_TRUE(this->world_.runUntil([&] { return ticks.size() >= 12; }));
    timer.end();
    for (std::size_t i = 0; i < 12; ++i) EXPECT_GE(ticks[i], kInterval * static_cast<int>(i + 1));
}

TYPED_TEST(MainQueueContract, TheEndOfTheTurnFollowsPostedWork) {
    std::vector<int> ran;
    const Subscription end = this->queue().atEndOfTurn([&] { ran.push_back(9); });
    this->queue().post([&] { ran.push_back(1); });
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.size() >= 2; }));
    EXPECT_THAT(ran, ElementsAre(1, 9));
}

TYPED_TEST(MainQueueContract, TheEndOfTheTurnFollowsTimers) {
    std::vector<int> ran;
    const Subscription end = this->queue().atEndOfTurn([&] { ran.push_back(9); });
    const Timer timer = this->queue().after(2ms, [&] { ran.push_back(1); });
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.size() >= 2; }));
    EXPECT_THAT(ran, ElementsAre(1, 9));
}

TYPED_TEST(MainQueueContract, ATurnWithoutWorkHasNoEnd) {
    int ends = 0;
    bool done = false;
    this->queue().post([&] { done = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return done; }));
    const Subscription end = this->queue().atEndOfTurn([&] { ++ends; });
    const auto start = this->queue().now();
    ASSERT_TRUE(this->world_.runUntil([&] { return this->queue().now() - start >= 20ms; }));
    EXPECT_EQ(ends, 0);
}

TYPED_TEST(MainQueueContract, WorkThatTheEndOfATurnPostsHasATurnOfItsOwn) {
    std::vector<int> ran;
    bool posted = false;
    const Subscription end = this->queue().atEndOfTurn([&] {
        ran.push_back(9);
        if (!posted) this->queue().post([&] { ran.push_back(2); });
        posted = true;
    });
    this->queue().post([&] { ran.push_back(1); });
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.size() >= 4; }));
    EXPECT_THAT(ran, ElementsAre(1, 9, 2, 9));
}

TYPED_TEST(MainQueueContract, AnEndedTurnHandlerIsNotCalledEvenInTheSameTurn) {
    int calls = 0;
    Subscription second;
    const Subscription first = this->queue().atEndOfTurn([&] { second.end(); });
    second = this->queue().atEndOfTurn([&] { ++calls; });
    bool done = false;
    this->queue().post([&] { done = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return done; }));
    EXPECT_EQ(calls, 0);
}

TYPED_TEST(MainQueueContract, HandlesMayOutliveTheQueue) {
    Timer once = this->queue().after(1h, [] {});
    Timer repeating = this->queue().every(1h, [] {});
    Subscription end = this->queue().atEndOfTurn([] {});
    this->world_.end();
    once.end();
    repeating.end();
    end.end();
}

TYPED_TEST(MainQueueContract, TheClockNeverGoesBack) {
    const auto first = this->queue().now();
    bool done = false;
    const Timer timer = this->queue().after(2ms, [&] { done = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return done; }));
    EXPECT_GE(this->queue().now() - first, 2ms);
}

}  // namespace
}  // namespace pintle
