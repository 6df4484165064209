// What only the real main queue has: threads, nested loops, lateness and sockets.
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>
#include <vector>

#include "platform/qt/qt_socket_watch.h"
#include "tests/contract/queue_worlds.h"

namespace pintle {
namespace {

using std::chrono::nanoseconds;
using ::testing::ElementsAre;

TEST(QtMainQueue, WorkOfManyThreadsAllArrivesAndKeepsEachThreadsOrder) {
    QtWorld world;
    constexpr int kThreads = 4;
    constexpr int kEach = 500;
    std::array<std::vector<int>, kThreads> ran;
    int total = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < kEach; ++i)
                world.queue().post([&, t, i] {
                    ran[static_cast<std::size_t>(t)].push_back(i);
                    ++total;
                });
        });
    ASSERT_TRUE(world.runUntil([&] { return total == kThreads * kEach; }));
    for (auto& thread : threads) thread.join();
    for (const auto& order : ran) EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(QtMainQueue, ANestedLoopGoesOnWithTheRestInOrder) {
    QtWorld world;
    std::vector<int> ran;
    world.queue().post([&] {
        ran.push_back(1);
        EXPECT_TRUE(world.runUntil([&] { return ran.size() >= 3; }));
        ran.push_back(4);
    });
    world.queue().post([&] { ran.push_back(2); });
    world.queue().post([&] { ran.push_back(3); });
    ASSERT_TRUE(world.runUntil([&] { return ran.size() >= 4; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
}

TEST(QtMainQueue, ATimerGoesOnBeatingInsideANestedLoopOfItsOwn) {
    QtWorld world;
    int ticks = 0;
    Timer timer = world.queue().every(2ms, [&] {
        if (++ticks > 1) return;
        EXPECT_TRUE(world.runUntil([&] { return ticks >= 3; }));
    });
    ASSERT_TRUE(world.runUntil([&] { return ticks >= 4; }));
}

TEST(QtMainQueue, BeatsMissedWhileTheThreadWasBusyAreLeftOut) {
    QtWorld world;
    constexpr auto kInterval = 4ms;
    const auto start = world.queue().now();
    std::vector<nanoseconds> ticks;
    Timer timer = world.queue().every(kInterval, [&] {
        ticks.push_back(world.queue().now() - start);
        if (ticks.size() == 1) world.letPass(10 * kInterval);
    });
    ASSERT_TRUE(world.runUntil([&] { return ticks.size() >= 3; }));
    timer.end();
    // One tick may follow at once, the next keeps to the grid again.
    EXPECT_GE(ticks[1], 11 * kInterval);
    EXPECT_GE(ticks[2] / kInterval, ticks[1] / kInterval + 1);
}

TEST(QtMainQueue, ATickThatIsNoWholeNumberOfMillisecondsDoesNotDrift) {
    QtWorld world;
    constexpr nanoseconds kInterval{8333333};
    bool close = false;
    // A busy machine may spoil a run, drift spoils each: rounded to 9 ms, two ticks of three would be late.
    for (int attempt = 0; attempt < 5 && !close; ++attempt) {
        const auto start = world.queue().now();
        std::vector<nanoseconds> late;
        Timer timer = world.queue().every(kInterval,
                                          [&] { late.push_back((world.queue().now() - start) % kInterval); });
        ASSERT_TRUE(world.runUntil([&] { return late.size() >= 40; }));
        close = std::count_if(late.begin(), late.end(), [](nanoseconds by) { return by < 3ms; }) >= 28;
    }
    EXPECT_TRUE(close);
}

TEST(QtMainQueue, AnEndlessDelayWaitsAndCanBeCancelled) {
    QtWorld world;
    bool ran = false;
    Timer endless = world.queue().after(nanoseconds::max(), [&] { ran = true; });
    bool later = false;
    const Timer end = world.queue().after(5ms, [&] { later = true; });
    ASSERT_TRUE(world.runUntil([&] { return later; }));
    EXPECT_FALSE(ran);
    endless.end();
}

TEST(QtMainQueue, OneTurnEndFollowsABatchOfPostedWork) {
    QtWorld world;
    std::vector<int> ran;
    const Subscription end = world.queue().atEndOfTurn([&] { ran.push_back(9); });
    for (int i = 1; i <= 3; ++i) world.queue().post([&ran, i] { ran.push_back(i); });
    ASSERT_TRUE(world.runUntil([&] { return ran.size() >= 4; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 9));
}

class SocketWatch : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, pair_), 0); }
    void TearDown() override {
        ::close(pair_[0]);
        ::close(pair_[1]);
    }
    std::string readAll() {
        std::string text;
        char byte = 0;
        while (::read(pair_[0], &byte, 1) == 1) text += byte;
        return text;
    }
    void say(std::string_view text) {
        ASSERT_EQ(::write(pair_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    QtWorld world_;
    int pair_[2] = {-1, -1};
};

TEST_F(SocketWatch, EachArrivalIsHandledAndTheEndOfTheTurnFollows) {
    std::vector<std::string> events;
    const Subscription end = world_.queue().atEndOfTurn([&] { events.push_back("end"); });
    const Subscription watch = watchReadable(world_.queue(), pair_[0], [&] { events.push_back(readAll()); });
    say("a");
    ASSERT_TRUE(world_.runUntil([&] { return events.size() >= 2; }));
    say("b");
    ASSERT_TRUE(world_.runUntil([&] { return events.size() >= 4; }));
    EXPECT_THAT(events, ElementsAre("a", "end", "b", "end"));
}

TEST_F(SocketWatch, AnEndedWatchIsSilent) {
    int calls = 0;
    Subscription watch;
    watch = watchReadable(world_.queue(), pair_[0], [&] {
        ++calls;
        watch.end();
    });
    say("a");
    ASSERT_TRUE(world_.runUntil([&] { return calls >= 1; }));
    bool later = false;
    const Timer timer = world_.queue().after(20ms, [&] { later = true; });
    ASSERT_TRUE(world_.runUntil([&] { return later; }));
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace pintle
