// The main actor: the one thread that touches cursors, windows, notification centres and published state.
#pragma once

#include <chrono>
#include <functional>

#include "base/subscription.h"

namespace pintle {

class MainQueue {
  public:
    using Work = std::function<void()>;
    virtual ~MainQueue() = default;

    /// Runs `work` on the main thread, in the order of posting, never inside this call. Any thread.
    virtual void post(Work work) = 0;
    /// Runs `work` once, `delay` from now; ending the handle cancels it. Main thread.
    virtual Timer after(std::chrono::nanoseconds delay, Work work) = 0;
    /// Runs `work` every `interval` without drift until the handle ends. Main thread.
    virtual Timer every(std::chrono::nanoseconds interval, Work work) = 0;
    /// Runs `work` at the end of each turn in which the queue ran anything. Main thread.
    virtual Subscription atEndOfTurn(Work work) = 0;
    virtual bool isMain() const = 0;
    /// A clock that only goes forward, seconds since an arbitrary start. Any thread.
    virtual std::chrono::nanoseconds now() const = 0;
};

}  // namespace pintle
