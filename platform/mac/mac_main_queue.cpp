#include "platform/mac/mac_main_queue.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/mac/cf.h"
#include "platform/mac/foundation_process.h"

namespace pintle {
namespace {

using std::chrono::nanoseconds;
using Work = MainQueue::Work;

double seconds(nanoseconds duration) { return std::chrono::duration<double>(duration).count(); }

class Turns {
  public:
    std::uint64_t add(Work work) {
        works_.emplace(next_, std::make_shared<Work>(std::move(work)));
        return next_++;
    }
    void remove(std::uint64_t id) { works_.erase(id); }
    void end() {
        const auto called = works_;
        for (const auto& [id, work] : called)
            if (works_.contains(id)) (*work)();
    }

  private:
    std::uint64_t next_ = 0;
    std::map<std::uint64_t, std::shared_ptr<Work>> works_;
};

/// Posted work and the run-loop source that asks for the main thread. Outlives the queue in the hands of the
/// source, which may be in the middle of it.
struct Posted {
    std::mutex mutex;
    std::deque<Work> works;
    std::shared_ptr<Turns> turns = std::make_shared<Turns>();
    CfRef<CFRunLoopSourceRef> source;

    void post(Work work) {
        const std::lock_guard lock(mutex);
        works.push_back(std::move(work));
        signal();
    }
    void signal() {
        if (!source) return;
        CFRunLoopSourceSignal(source.get());
        CFRunLoopWakeUp(CFRunLoopGetMain());
    }
    /// As many as are there now: what they post belongs to the next turn.
    void run() {
        std::size_t batch = 0;
        {
            const std::lock_guard lock(mutex);
            batch = works.size();
        }
        bool ran = false;
        for (; batch > 0; --batch) {
            Work work;
            {
                const std::lock_guard lock(mutex);
                if (works.empty()) break;
                work = std::move(works.front());
                works.pop_front();
                // A loop inside `work` must be able to go on with the rest, in order.
                if (!works.empty()) signal();
            }
            work();
            ran = true;
        }
        if (ran) turns->end();
    }
};

extern "C" void runPostedWork(void* info) {
    const auto posted = *static_cast<std::shared_ptr<Posted>*>(info);
    // The run loop has a pool of its own only where events end its turns, which none may for hours.
    inAutoreleasePool([&] { posted->run(); });
}

struct Tick {
    Work work;
    bool repeats = false;
    std::weak_ptr<Turns> turns;
    CfRef<CFRunLoopTimerRef> timer;
};

extern "C" void beatFired(CFRunLoopTimerRef timer, void* info) {
    // The work may end its own timer.
    const auto tick = *static_cast<std::shared_ptr<Tick>*>(info);
    if (!tick->repeats) CFRunLoopTimerInvalidate(timer);
    inAutoreleasePool([&] {
        tick->work();
        if (const auto turns = tick->turns.lock()) turns->end();
    });
}

extern "C" void releaseBeat(const void* info) {
    delete static_cast<std::shared_ptr<Tick>*>(const_cast<void*>(info));
}

extern "C" const void* retainBeat(const void* info) {
    return new std::shared_ptr<Tick>(*static_cast<const std::shared_ptr<Tick>*>(info));
}

class MacMainQueue : public MainQueue {
  public:
    MacMainQueue() {
        CFRunLoopSourceContext context = {};
        context.info = &posted_;
        context.perform = runPostedWork;
        posted_->source =
            CfRef<CFRunLoopSourceRef>::adopt(CFRunLoopSourceCreate(kCFAllocatorDefault, 0, &context));
        CFRunLoopAddSource(CFRunLoopGetMain(), posted_->source.get(), kCFRunLoopCommonModes);
    }
    ~MacMainQueue() override {
        // What was posted and has not run goes outside the lock: its end may post.
        std::deque<Work> abandoned;
        {
            const std::lock_guard lock(posted_->mutex);
            CFRunLoopSourceInvalidate(posted_->source.get());
            posted_->source = {};
            abandoned.swap(posted_->works);
        }
    }

    void post(Work work) override { posted_->post(std::move(work)); }

    Timer after(nanoseconds delay, Work work) override {
        return start(std::max(delay, nanoseconds{0}), nanoseconds{0}, std::move(work));
    }
    Timer every(nanoseconds interval, Work work) override {
        interval = std::max(interval, nanoseconds{1});
        return start(interval, interval, std::move(work));
    }

    Subscription atEndOfTurn(Work work) override {
        return Subscription(
            [weak = std::weak_ptr(posted_->turns), id = posted_->turns->add(std::move(work))] {
                if (const auto turns = weak.lock()) turns->remove(id);
            });
    }
    bool isMain() const override { return std::this_thread::get_id() == main_; }
    nanoseconds now() const override {
        return std::chrono::duration_cast<nanoseconds>(std::chrono::steady_clock::now().time_since_epoch());
    }

  private:
    /// An interval of 0 fires once.
    Timer start(nanoseconds delay, nanoseconds interval, Work work) {
        auto tick = std::make_shared<Tick>();
        tick->work = std::move(work);
        tick->repeats = interval > nanoseconds{0};
        tick->turns = posted_->turns;
        CFRunLoopTimerContext context = {};
        context.info = &tick;
        context.retain = retainBeat;
        context.release = releaseBeat;
        tick->timer = CfRef<CFRunLoopTimerRef>::adopt(
            CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + seconds(delay),
                                 seconds(interval), 0, 0, beatFired, &context));
        CFRunLoopAddTimer(CFRunLoopGetMain(), tick->timer.get(), kCFRunLoopCommonModes);
        return Timer([weak = std::weak_ptr(tick)] {
            // A timer that has fired is gone already.
            if (const auto alive = weak.lock()) CFRunLoopTimerInvalidate(alive->timer.get());
        });
    }

    std::shared_ptr<Posted> posted_ = std::make_shared<Posted>();
    const std::thread::id main_ = std::this_thread::get_id();
};

}  // namespace

std::unique_ptr<MainQueue> makeMacMainQueue() { return std::make_unique<MacMainQueue>(); }

}  // namespace pintle
