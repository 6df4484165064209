// The two worlds in which the contracts of the main queue and of background work run: virtual and real.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/fake/virtual_scheduler.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_main_queue.h"

namespace pintle {

using namespace std::chrono_literals;

class VirtualWorld {
  public:
    MainQueue& queue() { return scheduler_->mainQueue(); }
    BackgroundTasks& tasks() { return scheduler_->backgroundTasks(); }
    /// Lets the world run until `reached`; false when it does not get there.
    bool runUntil(const std::function<bool()>& reached) {
        for (int i = 0; i < 5000; ++i) {
            scheduler_->runUntilIdle();
            if (reached()) return true;
            scheduler_->advance(1ms);
        }
        return reached();
    }
    /// Lets the present moment pass without running anything.
    void letPass(std::chrono::nanoseconds) {}
    void holdBackground() { scheduler_->holdBackground(true); }
    void releaseBackground() { scheduler_->holdBackground(false); }
    void end() { scheduler_.reset(); }

  private:
    std::unique_ptr<VirtualScheduler> scheduler_ = std::make_unique<VirtualScheduler>();
};

class QtWorld {
  public:
    QtWorld() { wakeUp_.start(5); }
    ~QtWorld() { end(); }
    MainQueue& queue() { return *queue_; }
    BackgroundTasks& tasks() { return *tasks_; }
    bool runUntil(const std::function<bool()>& reached) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (!reached()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }
    void letPass(std::chrono::nanoseconds duration) {
        const auto end = std::chrono::steady_clock::now() + duration;
        while (std::chrono::steady_clock::now() < end) {
        }
    }
    /// Occupies every thread until they are released one after another.
    void holdBackground() {
        for (int i = 0; i < kThreads; ++i)
            tasks_->run(Priority::userInitiated, [this, last = i == kThreads - 1] {
                std::unique_lock lock(mutex_);
                ++held_;
                changed_.notify_all();
                // All but one stay away, so that the order on the remaining thread is known.
                changed_.wait(lock, [&] { return last ? releasedOne_ : releasedAll_; });
            });
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return held_ == kThreads; });
    }
    void releaseBackground() {
        const std::lock_guard lock(mutex_);
        if (releasedOne_) releasedAll_ = true;
        releasedOne_ = true;
        changed_.notify_all();
    }
    void end() {
        releaseBackground();
        releaseBackground();
        tasks_.reset();
        queue_.reset();
    }

  private:
    static constexpr int kThreads = 2;
    std::mutex mutex_;
    std::condition_variable changed_;
    int held_ = 0;
    bool releasedOne_ = false;
    bool releasedAll_ = false;
    QTimer wakeUp_;
    std::unique_ptr<MainQueue> queue_ = makeQtMainQueue();
    std::unique_ptr<BackgroundTasks> tasks_ = makeQtBackgroundTasks(kThreads);
};

}  // namespace pintle
