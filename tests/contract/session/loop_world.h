// A real main queue with a deadline for everything that is waited for.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/qt/qt_main_queue.h"

namespace pintle {

class LoopWorld {
  public:
    LoopWorld() { wakeUp_.start(5); }

    /// Runs the event loop until `reached`; false when it does not get there in time.
    static bool until(const std::function<bool()>& reached) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!reached()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

    std::unique_ptr<MainQueue> queue = makeQtMainQueue();

  private:
    QTimer wakeUp_;
};

}  // namespace pintle
