#include "platform/fake/virtual_scheduler.h"

#include <gtest/gtest.h>

#include <string>

namespace pintle {
namespace {

using namespace std::chrono_literals;

TEST(VirtualScheduler, TimersRunInTheOrderOfTheirTimes) {
    VirtualScheduler scheduler;
    std::string order;
    const auto late = scheduler.mainQueue().after(2s, [&] { order += "b"; });
    const auto early = scheduler.mainQueue().after(1s, [&] { order += "a"; });
    scheduler.advance(1500ms);
    EXPECT_EQ(order, "a");
    scheduler.advance(1s);
    EXPECT_EQ(order, "ab");
}

TEST(VirtualScheduler, ACancelledTimerDoesNotRunEvenWhenItIsAlreadyDue) {
    VirtualScheduler scheduler;
    int runs = 0;
    Timer second;
    const auto first = scheduler.mainQueue().after(1s, [&] { second.end(); });
    second = scheduler.mainQueue().after(1s, [&] { ++runs; });
    scheduler.advance(2s);
    EXPECT_EQ(runs, 0);
}

TEST(VirtualScheduler, ARepeatingTimerKeepsItsBeat) {
    VirtualScheduler scheduler;
    int runs = 0;
    const auto timer = scheduler.mainQueue().every(100ms, [&] { ++runs; });
    scheduler.advance(1s);
    EXPECT_EQ(runs, 10);
}

TEST(VirtualScheduler, AResultIsDroppedWhenItsOwnerIsGone) {
    VirtualScheduler scheduler;
    bool done = false;
    {
        Lifetime owner;
        runInBackground(
            scheduler.backgroundTasks(), scheduler.mainQueue(), owner, Priority::utility, [] { return 7; },
            [&](int) { done = true; });
    }
    scheduler.runUntilIdle();
    EXPECT_FALSE(done);
}

TEST(VirtualScheduler, TheTurnEndsAfterEachPieceOfMainWork) {
    VirtualScheduler scheduler;
    int ends = 0;
    const auto hook = scheduler.mainQueue().atEndOfTurn([&] { ++ends; });
    scheduler.mainQueue().post([] {});
    scheduler.mainQueue().post([] {});
    scheduler.runUntilIdle();
    EXPECT_EQ(ends, 2);
}

TEST(VirtualScheduler, SeedsReachDifferentOrders) {
    bool backgroundFirst = false;
    bool mainFirst = false;
    for (std::uint64_t seed = 0; seed < 32; ++seed) {
        VirtualScheduler scheduler;
        scheduler.shuffle(seed);
        std::string order;
        scheduler.mainQueue().post([&] { order += "m"; });
        scheduler.backgroundTasks().run(Priority::utility, [&] { order += "b"; });
        scheduler.runUntilIdle();
        (order == "bm" ? backgroundFirst : mainFirst) = true;
    }
    EXPECT_TRUE(backgroundFirst && mainFirst);
}

}  // namespace
}  // namespace pintle
