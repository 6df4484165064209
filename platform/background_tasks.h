// Work off the main thread.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "base/flow.h"
#include "base/lifetime.h"
#include "platform/main_queue.h"

namespace pintle {

enum class Priority { userInitiated, utility };

class BackgroundTasks {
  public:
    virtual ~BackgroundTasks() = default;
    /// Runs `work` on some other thread, soon; work of the higher priority is begun first. Any thread.
    virtual void run(Priority priority, std::function<void()> work) = 0;
};

/// Runs `work` in the background, then hands its result to `done` on the main queue, unless the owner of
/// `lifetime` is gone by then. Call on the main thread. `work` must not touch the owner.
template <typename Work, typename Done>
void runInBackground(BackgroundTasks& tasks, MainQueue& queue, const Lifetime& lifetime, Priority priority,
                     Work work, Done done) {
    // Copyable holder: std::function wants copyable callables, results and continuations may be move-only.
    auto finish =
        std::make_shared<decltype(lifetime.weakly(std::move(done)))>(lifetime.weakly(std::move(done)));
    tasks.run(priority, [&queue, finish, work = std::make_shared<Work>(std::move(work))] {
        if constexpr (std::is_void_v<std::invoke_result_t<Work&>>) {
            (*work)();
            queue.post([finish] { (*finish)(); });
        } else {
            auto result = std::make_shared<std::invoke_result_t<Work&>>((*work)());
            queue.post([finish, result] { (*finish)(std::move(*result)); });
        }
    });
}

/// The same for a flow, which waits for the result with `co_await`.
template <typename Work>
auto inBackground(BackgroundTasks& tasks, MainQueue& queue, Priority priority, Work work) {
    return Answer<std::invoke_result_t<Work&>>([&](auto resolve) {
        // The answer itself knows when nobody waits for it any more.
        static const Lifetime always;
        runInBackground(tasks, queue, always, priority, std::move(work), std::move(resolve));
    });
}

}  // namespace pintle
