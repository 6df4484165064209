#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "tests/contract/queue_worlds.h"

namespace pintle {
namespace {

using ::testing::ElementsAre;

template <typename World>
class BackgroundTasksContract : public ::testing::Test {
  protected:
    World world_;
};
using Worlds = ::testing::Types<VirtualWorld, QtWorld>;
TYPED_TEST_SUITE(BackgroundTasksContract, Worlds);

TYPED_TEST(BackgroundTasksContract, WorkRunsOffTheMainThreadAndNeverInsideTheCall) {
    std::atomic<bool> main{true};
    std::atomic<bool> ran{false};
    this->world_.holdBackground();
    this->world_.tasks().run(Priority::userInitiated, [&] {
        main = this->world_.queue().isMain();
        ran = true;
    });
    EXPECT_FALSE(ran);
    this->world_.releaseBackground();
    ASSERT_TRUE(this->world_.runUntil([&] { return ran.load(); }));
    EXPECT_FALSE(main);
}

TYPED_TEST(BackgroundTasksContract, WorkOfTheHigherPriorityIsBegunFirst) {
    std::mutex mutex;
    std::vector<int> begun;
    const auto begin = [&](int which) {
        const std::lock_guard lock(mutex);
        begun.push_back(which);
    };
    this->world_.holdBackground();
    this->world_.tasks().run(Priority::utility, [&] { begin(3); });
    this->world_.tasks().run(Priority::userInitiated, [&] { begin(1); });
    this->world_.tasks().run(Priority::utility, [&] { begin(4); });
    this->world_.tasks().run(Priority::userInitiated, [&] { begin(2); });
    this->world_.releaseBackground();
    ASSERT_TRUE(this->world_.runUntil([&] {
        const std::lock_guard lock(mutex);
        return begun.size() >= 4;
    }));
    EXPECT_THAT(begun, ElementsAre(1, 2, 3, 4));
}

TYPED_TEST(BackgroundTasksContract, AResultComesBackOnTheMainThread) {
    const Lifetime owner;
    std::unique_ptr<int> answer;
    bool main = false;
    runInBackground(
        this->world_.tasks(), this->world_.queue(), owner, Priority::utility,
        [] { return std::make_unique<int>(42); },
        [&](std::unique_ptr<int> value) {
            main = this->world_.queue().isMain();
            answer = std::move(value);
        });
    ASSERT_TRUE(this->world_.runUntil([&] { return answer != nullptr; }));
    EXPECT_EQ(*answer, 42);
    EXPECT_TRUE(main);
}

TYPED_TEST(BackgroundTasksContract, AResultWhoseOwnerIsGoneIsDropped) {
    auto owner = std::make_unique<Lifetime>();
    std::atomic<bool> worked{false};
    bool called = false;
    runInBackground(
        this->world_.tasks(), this->world_.queue(), *owner, Priority::utility, [&] { worked = true; },
        [&] { called = true; });
    owner.reset();
    ASSERT_TRUE(this->world_.runUntil([&] { return worked.load(); }));
    const Lifetime other;
    bool later = false;
    runInBackground(
        this->world_.tasks(), this->world_.queue(), other, Priority::utility, [] {}, [&] { later = true; });
    ASSERT_TRUE(this->world_.runUntil([&] { return later; }));
    EXPECT_FALSE(called);
}

TYPED_TEST(BackgroundTasksContract, WorkMayStartMoreWork) {
    std::atomic<bool> ran{false};
    this->world_.tasks().run(Priority::utility,
                             [&] { this->world_.tasks().run(Priority::utility, [&] { ran = true; }); });
    EXPECT_TRUE(this->world_.runUntil([&] { return ran.load(); }));
}

TEST(QtBackgroundTasks, TheEndWaitsForRunningWorkAndDropsTheRest) {
    std::atomic<bool> begun{false};
    std::atomic<bool> finished{false};
    std::atomic<int> others{0};
    auto tasks = makeQtBackgroundTasks(2);
    std::atomic<bool> hold{true};
    for (int i = 0; i < 2; ++i)
        tasks->run(Priority::userInitiated, [&] {
            begun = true;
            while (hold) std::this_thread::yield();
            finished = true;
        });
    auto kept = std::make_shared<int>(0);
    for (int i = 0; i < 50; ++i) tasks->run(Priority::userInitiated, [&others, kept] { ++others; });
    while (!begun) std::this_thread::yield();
    // Opens only once the end has begun to drop what waits.
    std::thread opener([&] {
        while (kept.use_count() > 1) std::this_thread::yield();
        hold = false;
    });
    tasks.reset();
    EXPECT_TRUE(finished);
    opener.join();
    EXPECT_EQ(others, 0);
}

TEST(QtBackgroundTasks, UtilityWorkLeavesAThreadForWhatTheUserWaitsFor) {
    auto tasks = makeQtBackgroundTasks(2);
    std::atomic<bool> hold{true};
    std::atomic<bool> begun{false};
    std::atomic<bool> urgent{false};
    for (int i = 0; i < 4; ++i)
        tasks->run(Priority::utility, [&] {
            begun = true;
            while (hold) std::this_thread::yield();
        });
    while (!begun) std::this_thread::yield();
    tasks->run(Priority::userInitiated, [&] { urgent = true; });
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!urgent && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    EXPECT_TRUE(urgent);
    hold = false;
}

}  // namespace
}  // namespace pintle
