// Long work as one function that reads from top to bottom: a coroutine on the main thread. Whoever holds the
// Flow owns it: destroying it ends the work where it waits and releases everything it holds, so that no frame
// outlives its owner. Main thread only.
#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

#include "base/lifetime.h"

namespace pintle {

class [[nodiscard]] Flow {
  public:
    struct promise_type {
        std::function<void()> ended;
        /// The owner was destroyed while the frame was running.
        bool abandoned = false;
        bool running = false;

        Flow get_return_object() { return Flow(Handle::from_promise(*this)); }
        std::suspend_always initial_suspend() noexcept { return {}; }
        struct End {
            bool await_ready() noexcept { return false; }
            /// Not inlined: a compiler may then keep its locals in the frame that it destroys.
            [[gnu::noinline]] void await_suspend(std::coroutine_handle<promise_type> handle) noexcept {
                auto& promise = handle.promise();
                promise.running = false;
                const auto report = std::move(promise.ended);
                if (promise.abandoned) return handle.destroy();
                // May destroy the frame, so nothing of it is touched from here on.
                if (report) report();
            }
            void await_resume() noexcept {}
        };
        End final_suspend() noexcept { return {}; }
        void return_void() {}
        [[noreturn]] void unhandled_exception() { std::terminate(); }
    };

    Flow() = default;
    Flow(Flow&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Flow& operator=(Flow&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    Flow(const Flow&) = delete;
    Flow& operator=(const Flow&) = delete;
    /// A flow that is destroyed by what it calls itself runs on to its next wait and ends there.
    ~Flow() {
        if (!handle_) return;
        if (handle_.promise().running)
            handle_.promise().abandoned = true;
        else
            handle_.destroy();
    }

    /// Runs up to the first wait. `ended` is called once, when the function has returned; it may destroy the
    /// flow, and it is not called when the flow was destroyed before.
    void start(std::function<void()> ended) {
        handle_.promise().ended = std::move(ended);
        resume(handle_);
    }

  private:
    template <typename T>
    friend class Answer;
    using Handle = std::coroutine_handle<promise_type>;

    explicit Flow(Handle handle) : handle_(handle) {}
    static void resume(Handle handle) {
        handle.promise().running = true;
        handle.resume();
    }

    Handle handle_;
};

/// What a callback brings to a flow, once. Give resolver() away, then `co_await` this in the flow that holds
/// it.
template <typename T>
class Answer {
  public:
    Answer() = default;
    /// Calls `start` with the resolver at once.
    template <typename Start>
    explicit Answer(Start start) {
        start(resolver());
    }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    /// Takes the value and continues the flow inside that call; does nothing once the answer is gone.
    auto resolver() {
        return lifetime_.weakly([this](T value) {
            value_.emplace(std::move(value));
            if (waiter_) Flow::resume(std::exchange(waiter_, nullptr));
        });
    }

    bool await_ready() const { return value_.has_value(); }
    /// Not inlined, for the same reason as the end of a flow.
    [[gnu::noinline]] void await_suspend(Flow::Handle waiter) {
        waiter.promise().running = false;
        if (waiter.promise().abandoned) return waiter.destroy();
        waiter_ = waiter;
    }
    T await_resume() { return std::move(*value_); }

  private:
    std::optional<T> value_;
    Flow::Handle waiter_;
    Lifetime lifetime_;
};

}  // namespace pintle
