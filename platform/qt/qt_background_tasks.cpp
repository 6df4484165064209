#include "platform/qt/qt_background_tasks.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace pintle {
namespace {

// Plain threads, not the toolkit's pool: that one knows no reserve for urgent work, and its locks are
// invisible to the thread sanitizer.
class ThreadTasks : public BackgroundTasks {
  public:
    using Work = std::function<void()>;

    explicit ThreadTasks(unsigned threads) : utilityLimit_(threads - 1) {
        for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([this] { serve(); });
    }
    ~ThreadTasks() override {
        {
            // Outlives the lock: what the work holds may do anything when it goes.
            std::deque<Work> dropped[2];
            const std::lock_guard lock(mutex_);
            ending_ = true;
            dropped[0].swap(urgent_);
            dropped[1].swap(utility_);
        }
        changed_.notify_all();
        for (auto& thread : threads_) thread.join();
    }

    void run(Priority priority, Work work) override {
        {
            const std::lock_guard lock(mutex_);
            if (ending_) return;
            (priority == Priority::userInitiated ? urgent_ : utility_).push_back(std::move(work));
        }
        changed_.notify_one();
    }

  private:
    void serve() {
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] {
                return ending_ || !urgent_.empty() || (!utility_.empty() && utilityRunning_ < utilityLimit_);
            });
            if (ending_) return;
            const bool urgent = !urgent_.empty();
            auto& queue = urgent ? urgent_ : utility_;
            Work work = std::move(queue.front());
            queue.pop_front();
            if (!urgent) ++utilityRunning_;
            lock.unlock();
            work();
            work = nullptr;
            lock.lock();
            if (!urgent) --utilityRunning_;
        }
    }

    const unsigned utilityLimit_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Work> urgent_;
    std::deque<Work> utility_;
    unsigned utilityRunning_ = 0;
    bool ending_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace

std::unique_ptr<BackgroundTasks> makeQtBackgroundTasks(std::optional<unsigned> threads) {
    const unsigned processors = std::min(std::thread::hardware_concurrency(), 8U);
    return std::make_unique<ThreadTasks>(std::max(threads.value_or(processors), 2U));
}

}  // namespace pintle
