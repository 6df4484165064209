// A main queue over poll(2) with real time, for tests against a real server: nothing of a toolkit.
#pragma once

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/main_queue.h"

namespace pintle {

class PollQueue : public MainQueue {
  public:
    using Nanoseconds = std::chrono::nanoseconds;

    void post(Work work) override { posted_.push_back(std::move(work)); }
    Timer after(Nanoseconds delay, Work work) override {
        const auto id = ++next_;
        timers_[id] = {now() + delay, std::move(work)};
        return Timer([this, id] { timers_.erase(id); });
    }
    Timer every(Nanoseconds interval, Work work) override {
        auto again = std::make_shared<Work>();
        auto current = std::make_shared<Timer>();
        *again = [this, interval, work = std::move(work), weak = std::weak_ptr(again), current] {
            work();
            if (const auto self = weak.lock()) *current = after(interval, *self);
        };
        *current = after(interval, *again);
        return Timer([again, current] { current->end(); });
    }
    Subscription atEndOfTurn(Work work) override {
        const auto id = ++next_;
        endOfTurn_[id] = std::move(work);
        return Subscription([this, id] { endOfTurn_.erase(id); });
    }
    bool isMain() const override { return true; }
    Nanoseconds now() const override { return std::chrono::steady_clock::now().time_since_epoch(); }

    Subscription watchReadable(int descriptor, Work readable) {
        const auto id = ++next_;
        watches_[id] = {descriptor, std::move(readable)};
        return Subscription([this, id] { watches_.erase(id); });
    }
    std::vector<int> watchedDescriptors() const {
        std::vector<int> all;
        for (const auto& [id, watch] : watches_) all.push_back(watch.first);
        return all;
    }

    /// Something is to be done at a later time.
    bool isWaiting() const { return !timers_.empty(); }
    /// While held, no later time comes.
    void holdTimers(bool hold) { held_ = hold; }
    /// Nothing is left to do, to wait for or to read.
    bool isIdle() const {
        if (!posted_.empty() || !timers_.empty()) return false;
        auto polled = polledDescriptors();
        return ::poll(polled.data(), polled.size(), 0) == 0;
    }

    /// Runs what is due, waiting for it at most `longest`.
    void runOnce(std::chrono::milliseconds longest) {
        bool ran = runDue();
        auto wait = ran ? Nanoseconds(0) : Nanoseconds(longest);
        for (const auto& [id, timer] : timers_)
            if (!held_) wait = std::clamp(timer.first - now(), Nanoseconds(0), wait);
        auto polled = polledDescriptors();
        std::vector<std::uint64_t> ids;
        for (const auto& [id, watch] : watches_) ids.push_back(id);
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(wait);
        ::poll(polled.data(), polled.size(), static_cast<int>(milliseconds.count()));
        for (std::size_t i = 0; i < polled.size(); ++i) {
            if (polled[i].revents == 0 || !watches_.contains(ids[i])) continue;
            auto work = watches_[ids[i]].second;
            work();
            ran = true;
        }
        if (runDue()) ran = true;
        if (ran) turnEnded();
    }

  private:
    std::vector<pollfd> polledDescriptors() const {
        std::vector<pollfd> polled;
        for (const auto& [id, watch] : watches_) polled.push_back({watch.first, POLLIN, 0});
        return polled;
    }
    bool runDue() {
        bool ran = false;
        for (auto count = posted_.size(); count > 0; --count) {
            auto work = std::move(posted_.front());
            posted_.pop_front();
            work();
            ran = true;
        }
        std::vector<std::uint64_t> due;
        for (const auto& [id, timer] : timers_)
            if (!held_ && timer.first <= now()) due.push_back(id);
        for (const auto id : due) {
            const auto at = timers_.find(id);
            if (at == timers_.end()) continue;
            auto work = std::move(at->second.second);
            timers_.erase(at);
            work();
            ran = true;
        }
        return ran;
    }
    void turnEnded() {
        auto all = endOfTurn_;
        for (auto& [id, work] : all) work();
    }

    std::uint64_t next_ = 0;
    bool held_ = false;
    std::deque<Work> posted_;
    std::map<std::uint64_t, std::pair<Nanoseconds, Work>> timers_;
    std::map<std::uint64_t, std::pair<int, Work>> watches_;
    std::map<std::uint64_t, Work> endOfTurn_;
};

}  // namespace pintle
