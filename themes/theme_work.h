// Serialises work that changes the themes on disk: one piece at a time per theme, and none once a full reset
// has ended all work. Shared by download, extraction and removal; made by the root. Main thread, except
// for DiskPermit.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <utility>

#include "base/signal.h"
#include "base/subscription.h"

namespace pintle {

/// The right of background work to write to the disk. Held by the work itself; any thread.
class DiskPermit {
  public:
    /// Runs `work`, unless the permit is withdrawn; answers whether it ran.
    template <typename Work>
    bool use(Work work) {
        const std::shared_lock lock(mutex_);
        if (!valid_) return false;
        work();
        return true;
    }
    /// Waits for what is running, and lets nothing begin after it.
    void withdraw() {
        const std::unique_lock lock(mutex_);
        valid_ = false;
    }

  private:
    std::shared_mutex mutex_;
    bool valid_ = true;
};

class ThemeWork {
  public:
    /// As long as it lives, no other work on the same theme begins.
    using Turn = std::shared_ptr<void>;

    /// Begins `work` as soon as nobody else works on the theme: inside this call or later.
    void begin(const std::string& themeId, std::function<void(Turn)> work);

    /// For the work that is begun now; take it before going to the background.
    std::shared_ptr<DiskPermit> permit() const { return permit_; }

    /// Ends everything under way: when this returns, nothing of it writes to the disk any more. What is begun
    /// afterwards is not touched.
    void endAll();
    /// Emitted by endAll(). Observers drop what they have under way.
    Signal<> ended;

  private:
    struct Queues {
        /// The works that wait, by theme; an entry without any stands for a theme whose turn is taken.
        std::map<std::string, std::deque<std::function<void(Turn)>>> waiting;
    };
    static void run(const std::shared_ptr<Queues>& queues, const std::string& themeId,
                    const std::function<void(Turn)>& work);

    std::shared_ptr<Queues> queues_ = std::make_shared<Queues>();
    std::shared_ptr<DiskPermit> permit_ = std::make_shared<DiskPermit>();
};

}  // namespace pintle
