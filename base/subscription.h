// RAII handles of things that stay in force while someone holds them: an observer, a timer, a system
// activity. Ending one runs its cancel function once. Main thread unless the giver says otherwise.
#pragma once

#include <functional>
#include <utility>

namespace pintle {

class [[nodiscard]] Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            end();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { end(); }

    /// Ends it now; further calls do nothing.
    void end() {
        if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }
    explicit operator bool() const { return static_cast<bool>(cancel_); }

  private:
    std::function<void()> cancel_;
};

/// A pending or repeating call; ending it means the call does not come any more.
using Timer = Subscription;

}  // namespace pintle
