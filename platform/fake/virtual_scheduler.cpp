#include "platform/fake/virtual_scheduler.h"

#include <algorithm>

namespace pintle {

struct VirtualScheduler::State {
    struct PendingTimer {
        std::chrono::nanoseconds due;
        std::optional<std::chrono::nanoseconds> interval;
        MainQueue::Work work;
        /// False once cancelled, also when the call already waits in the main queue.
        std::shared_ptr<bool> wanted;
    };
    struct BackgroundWork {
        Priority priority;
        std::function<void()> work;
    };

    std::chrono::nanoseconds now{0};
    std::deque<MainQueue::Work> main;
    std::vector<BackgroundWork> background;
    std::map<std::uint64_t, PendingTimer> timers;
    std::map<std::uint64_t, MainQueue::Work> turnEnds;
    std::uint64_t next = 0;
    std::optional<std::mt19937_64> random;
    bool holdBackground = false;
    bool insideBackground = false;
};

class VirtualScheduler::Queue : public MainQueue {
  public:
    explicit Queue(std::shared_ptr<State> state) : state_(std::move(state)) {}

    void post(Work work) override { state_->main.push_back(std::move(work)); }
    Timer after(std::chrono::nanoseconds delay, Work work) override {
        return addTimer(delay, std::nullopt, std::move(work));
    }
    Timer every(std::chrono::nanoseconds interval, Work work) override {
        return addTimer(interval, interval, std::move(work));
    }
    Subscription atEndOfTurn(Work work) override {
        const auto id = state_->next++;
        state_->turnEnds.emplace(id, std::move(work));
        return Subscription([weak = std::weak_ptr<State>(state_), id] {
            if (const auto state = weak.lock()) state->turnEnds.erase(id);
        });
    }
    bool isMain() const override { return !state_->insideBackground; }
    std::chrono::nanoseconds now() const override { return state_->now; }

  private:
    Timer addTimer(std::chrono::nanoseconds delay, std::optional<std::chrono::nanoseconds> interval,
                   Work work) {
        const auto id = state_->next++;
        auto wanted = std::make_shared<bool>(true);
        state_->timers.emplace(id,
                               State::PendingTimer{state_->now + delay, interval, std::move(work), wanted});
        return Timer([weak = std::weak_ptr<State>(state_), id, wanted] {
            *wanted = false;
            if (const auto state = weak.lock()) state->timers.erase(id);
        });
    }
    std::shared_ptr<State> state_;
};

class VirtualScheduler::Tasks : public BackgroundTasks {
  public:
    explicit Tasks(std::shared_ptr<State> state) : state_(std::move(state)) {}
    void run(Priority priority, std::function<void()> work) override {
        state_->background.push_back({priority, std::move(work)});
    }

  private:
    std::shared_ptr<State> state_;
};

VirtualScheduler::VirtualScheduler()
    : state_(std::make_shared<State>()),
      queue_(std::make_unique<Queue>(state_)),
      tasks_(std::make_unique<Tasks>(state_)) {}

VirtualScheduler::~VirtualScheduler() = default;

MainQueue& VirtualScheduler::mainQueue() { return *queue_; }
BackgroundTasks& VirtualScheduler::backgroundTasks() { return *tasks_; }
void VirtualScheduler::shuffle(std::uint64_t seed) { state_->random.emplace(seed); }
std::size_t VirtualScheduler::pendingBackground() const { return state_->background.size(); }
std::vector<Priority> VirtualScheduler::pendingPriorities() const {
    std::vector<Priority> priorities;
    for (const auto& item : state_->background) priorities.push_back(item.priority);
    return priorities;
}
std::size_t VirtualScheduler::pendingTimers() const { return state_->timers.size(); }
void VirtualScheduler::holdBackground(bool hold) { state_->holdBackground = hold; }

void VirtualScheduler::runMain() {
    auto work = std::move(state_->main.front());
    state_->main.pop_front();
    work();
    endTurn();
}

void VirtualScheduler::endTurn() {
    const auto hooks = state_->turnEnds;
    for (const auto& [id, work] : hooks)
        if (state_->turnEnds.contains(id)) work();
}

void VirtualScheduler::runBackground(std::size_t index) {
    auto work = std::move(state_->background[index].work);
    state_->background.erase(state_->background.begin() + static_cast<std::ptrdiff_t>(index));
    state_->insideBackground = true;
    work();
    state_->insideBackground = false;
}

bool VirtualScheduler::step() {
    // A due timer joins the main queue; the earliest first, equal times in the order of creation.
    while (true) {
        auto first = state_->timers.end();
        for (auto it = state_->timers.begin(); it != state_->timers.end(); ++it)
            if (it->second.due <= state_->now &&
                (first == state_->timers.end() || it->second.due < first->second.due))
                first = it;
        if (first == state_->timers.end()) break;
        state_->main.push_back([wanted = first->second.wanted, work = first->second.work] {
            if (*wanted) work();
        });
        if (first->second.interval)
            first->second.due += *first->second.interval;
        else
            state_->timers.erase(first);
    }

    const std::size_t background = state_->holdBackground ? 0 : state_->background.size();
    const bool main = !state_->main.empty();
    if (!main && background == 0) return false;
    if (!state_->random) {
        if (main) {
            runMain();
        } else {
            const auto urgent =
                std::find_if(state_->background.begin(), state_->background.end(),
                             [](const auto& item) { return item.priority == Priority::userInitiated; });
            runBackground(urgent == state_->background.end()
                              ? 0
                              : static_cast<std::size_t>(urgent - state_->background.begin()));
        }
        return true;
    }
    const std::size_t choices = background + (main ? 1 : 0);
    const auto pick = static_cast<std::size_t>((*state_->random)() % choices);
    if (main && pick == 0)
        runMain();
    else
        runBackground(pick - (main ? 1 : 0));
    return true;
}

void VirtualScheduler::runUntilIdle() {
    while (step()) {
    }
}

void VirtualScheduler::advance(std::chrono::nanoseconds duration) {
    const auto end = state_->now + duration;
    runUntilIdle();
    while (true) {
        std::optional<std::chrono::nanoseconds> due;
        for (const auto& [id, timer] : state_->timers)
            if (timer.due <= end && (!due || timer.due < *due)) due = timer.due;
        if (!due) break;
        state_->now = std::max(state_->now, *due);
        runUntilIdle();
    }
    state_->now = end;
    runUntilIdle();
}

}  // namespace pintle
