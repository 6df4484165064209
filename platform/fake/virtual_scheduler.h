// Virtual time and threads for tests: main-queue work, timers and background work run on the calling thread
// when the test says so, in the order of posting or shuffled by a seed.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "platform/background_tasks.h"
#include "platform/main_queue.h"

namespace pintle {

class VirtualScheduler {
  public:
    VirtualScheduler();
    ~VirtualScheduler();

    MainQueue& mainQueue();
    BackgroundTasks& backgroundTasks();

    /// From now on each step picks by this seed between the next main-queue work and any pending background
    /// work. Main-queue order itself never changes.
    void shuffle(std::uint64_t seed);
    /// Runs one piece of work that is due now. False when there is none.
    bool step();
    /// Runs work until nothing is due at the present time. Timers in the future stay pending.
    void runUntilIdle();
    /// Moves time forward, running everything that becomes due in its order.
    void advance(std::chrono::nanoseconds duration);

    std::size_t pendingBackground() const;
    /// Of the pending background work, in the order in which it was asked for.
    std::vector<Priority> pendingPriorities() const;
    std::size_t pendingTimers() const;
    /// Holds background work back: step() and runUntilIdle() run main-queue work only.
    void holdBackground(bool hold);

  private:
    struct State;
    class Queue;
    class Tasks;
    void runMain();
    void runBackground(std::size_t index);
    void endTurn();

    std::shared_ptr<State> state_;
    std::unique_ptr<Queue> queue_;
    std::unique_ptr<Tasks> tasks_;
};

}  // namespace pintle
