#include "platform/qt/qt_main_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>
#include <algorithm>
#include <chrono>
#include <deque>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <utility>

namespace pintle {
namespace {

using std::chrono::nanoseconds;

nanoseconds steadyNow() {
    return std::chrono::duration_cast<nanoseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

/// Receives the toolkit's wake-ups. Lives on the main thread; `post` alone may come from any thread.
class Loop : public QObject {
  public:
    using Work = MainQueue::Work;

    ~Loop() override { QCoreApplication::removePostedEvents(this); }

    void post(Work work) {
        const std::lock_guard lock(mutex_);
        posted_.push_back(std::move(work));
        wake();
    }

    std::uint64_t addTimer(nanoseconds delay, std::optional<nanoseconds> interval, Work work) {
        const auto id = next_++;
        const nanoseconds now = steadyNow();
        const nanoseconds wait = std::clamp(delay, nanoseconds{0}, nanoseconds::max() - now);
        timers_.emplace(id, TimerEntry{now + wait, interval, std::make_shared<Work>(std::move(work))});
        deadlines_.emplace(now + wait, id);
        arm();
        return id;
    }
    void cancelTimer(std::uint64_t id) {
        const auto found = timers_.find(id);
        if (found == timers_.end()) return;
        deadlines_.erase({found->second.due, id});
        // The work goes after the tables are in order: its destructor may cancel other timers.
        const auto work = std::move(found->second.work);
        timers_.erase(found);
        arm();
    }

    std::uint64_t addTurnEnd(Work work) {
        const auto id = next_++;
        turnEnds_.emplace(id, std::make_shared<Work>(std::move(work)));
        return id;
    }
    void removeTurnEnd(std::uint64_t id) {
        const auto found = turnEnds_.find(id);
        if (found == turnEnds_.end()) return;
        const auto work = std::move(found->second);
        turnEnds_.erase(found);
    }

  protected:
    bool event(QEvent* event) override {
        if (event->type() == kWakeUp) {
            runPosted();
            return true;
        }
        return QObject::event(event);
    }
    void timerEvent(QTimerEvent* event) override {
        if (event->timerId() != armed_) return;
        disarm();
        runTimers();
    }

  private:
    static constexpr QEvent::Type kWakeUp = QEvent::User;
    struct TimerEntry {
        nanoseconds due;
        std::optional<nanoseconds> interval;
        std::shared_ptr<Work> work;
    };

    /// The mutex is held.
    void wake() {
        if (std::exchange(woken_, true)) return;
        QCoreApplication::postEvent(this, new QEvent(kWakeUp));
    }

    void runPosted() {
        std::size_t batch = 0;
        {
            const std::lock_guard lock(mutex_);
            woken_ = false;
            batch = posted_.size();
        }
        bool ran = false;
        for (; batch > 0; --batch) {
            Work work;
            {
                const std::lock_guard lock(mutex_);
                if (posted_.empty()) break;
                work = std::move(posted_.front());
                posted_.pop_front();
                // A nested event loop inside `work` must be able to go on with the rest, in order.
                if (!posted_.empty()) wake();
            }
            work();
            ran = true;
        }
        if (ran) endTurn();
    }

    void runTimers() {
        const nanoseconds now = steadyNow();
        bool ran = false;
        while (!deadlines_.empty() && deadlines_.begin()->first <= now) {
            const auto id = deadlines_.begin()->second;
            deadlines_.erase(deadlines_.begin());
            auto& timer = timers_.at(id);
            const auto work = timer.work;
            if (timer.interval) {
                timer.due += (std::max((steadyNow() - timer.due) / *timer.interval, std::int64_t{0}) + 1) *
                             *timer.interval;
                deadlines_.emplace(timer.due, id);
            } else {
                timers_.erase(id);
            }
            // Armed before the call, for a nested event loop inside it.
            arm();
            (*work)();
            ran = true;
        }
        arm();
        if (ran) endTurn();
    }

    void endTurn() {
        const auto called = turnEnds_;
        for (const auto& [id, work] : called)
            if (turnEnds_.contains(id)) (*work)();
    }

    /// One toolkit timer stands for all: the earliest deadline.
    void arm() {
        if (deadlines_.empty()) {
            disarm();
            return;
        }
        const nanoseconds due = deadlines_.begin()->first;
        if (armed_ != 0 && armedFor_ == due) return;
        disarm();
        // Rounded up, because the toolkit counts in milliseconds and an early wake-up would only be one more.
        const nanoseconds wait = std::clamp(due - steadyNow(), nanoseconds{0}, nanoseconds{kLongestWait});
        armed_ = startTimer(std::chrono::ceil<std::chrono::milliseconds>(wait), Qt::PreciseTimer);
        armedFor_ = due;
    }
    void disarm() {
        if (armed_ != 0) killTimer(std::exchange(armed_, 0));
    }

    /// The toolkit's own limit is 2³¹ ms; a wake-up before the deadline finds nothing due and arms again.
    static constexpr std::chrono::hours kLongestWait{24};

    std::mutex mutex_;
    std::deque<Work> posted_;
    bool woken_ = false;

    std::uint64_t next_ = 0;
    std::map<std::uint64_t, TimerEntry> timers_;
    std::set<std::pair<nanoseconds, std::uint64_t>> deadlines_;
    std::map<std::uint64_t, std::shared_ptr<Work>> turnEnds_;
    int armed_ = 0;
    nanoseconds armedFor_{0};
};

class QtMainQueue : public MainQueue {
  public:
    void post(Work work) override { loop_->post(std::move(work)); }
    Timer after(nanoseconds delay, Work work) override {
        return timer(loop_->addTimer(delay, std::nullopt, std::move(work)));
    }
    Timer every(nanoseconds interval, Work work) override {
        interval = std::max(interval, nanoseconds{1});
        return timer(loop_->addTimer(interval, interval, std::move(work)));
    }
    Subscription atEndOfTurn(Work work) override {
        return Subscription([weak = std::weak_ptr<Loop>(loop_), id = loop_->addTurnEnd(std::move(work))] {
            if (const auto loop = weak.lock()) loop->removeTurnEnd(id);
        });
    }
    bool isMain() const override { return std::this_thread::get_id() == main_; }
    nanoseconds now() const override { return steadyNow(); }

  private:
    Timer timer(std::uint64_t id) {
        return Timer([weak = std::weak_ptr<Loop>(loop_), id] {
            if (const auto loop = weak.lock()) loop->cancelTimer(id);
        });
    }

    std::shared_ptr<Loop> loop_ = std::make_shared<Loop>();
    std::thread::id main_ = std::this_thread::get_id();
};

}  // namespace

std::unique_ptr<MainQueue> makeQtMainQueue() { return std::make_unique<QtMainQueue>(); }

}  // namespace pintle
