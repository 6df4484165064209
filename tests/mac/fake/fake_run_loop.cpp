// The main thread's run loop on the real clock: sources, timers, waking up from other threads.
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle::mac_fake {
namespace {

/// Keeps the context's info as long as the object is valid, if the context asks for it.
template <typename Context>
class Kept {
  public:
    explicit Kept(const Context* context) : context_(context ? *context : Context{}) {
        // What the retaining returns takes the place of what it was given.
        if (context_.retain) context_.info = const_cast<void*>(context_.retain(context_.info));
    }
    void drop() {
        if (context_.release && !std::exchange(dropped_, true)) context_.release(context_.info);
    }
    const Context& operator*() const { return context_; }

  private:
    Context context_;
    bool dropped_ = false;
};

class RunLoop;
RunLoop& mainLoop();

class Source : public Object {
  public:
    explicit Source(const CFRunLoopSourceContext* with) : Object(Kind::source), context(with) {}
    ~Source() override { context.drop(); }
    Kept<CFRunLoopSourceContext> context;
    bool signalled = false;
    bool valid = true;
};

class TimerObject : public Object {
  public:
    TimerObject(double at, double every, CFRunLoopTimerCallBack call, const CFRunLoopTimerContext* with)
        : Object(Kind::timer), fireDate(at), interval(every), callout(call), context(with) {}
    ~TimerObject() override { context.drop(); }
    double fireDate;
    const double interval;
    const CFRunLoopTimerCallBack callout;
    Kept<CFRunLoopTimerContext> context;
    bool valid = true;
};

/// Keeps a reference to what was added to it. The lock guards only the signals: everything else is the main
/// thread's.
class RunLoop : public Object {
  public:
    RunLoop() : Object(Kind::runLoop, Life::immortal) {}

    template <typename T>
    static void remove(std::vector<T*>& from, T& object) {
        const auto found = std::find(from.begin(), from.end(), &object);
        if (found == from.end()) return;
        from.erase(found);
        release(object.ref(), "the run loop");
    }

    bool runOnce(double seconds) {
        const auto deadline = CFAbsoluteTimeGetCurrent() + seconds;
        for (;;) {
            if (runReady()) return true;
            double until = deadline;
            for (const auto* timer : timers) until = std::min(until, timer->fireDate);
            const double now = CFAbsoluteTimeGetCurrent();
            if (now >= deadline) return false;
            std::unique_lock lock(mutex);
            // A wake-up without a signal ends the waiting as well, as the framework's does.
            if (!woken && until > now) changed.wait_for(lock, std::chrono::duration<double>(until - now));
            woken = false;
        }
    }

    std::mutex mutex;
    std::condition_variable changed;
    bool woken = false;
    std::vector<Source*> sources;
    std::vector<TimerObject*> timers;

  private:
    bool runReady() {
        bool ran = false;
        const auto currentSources = sources;
        for (Source* source : currentSources) retain(source->ref(), "the run loop");
        for (Source* source : currentSources) {
            bool perform = false;
            {
                const std::lock_guard lock(mutex);
                perform = source->valid && std::exchange(source->signalled, false);
            }
            if (!perform) continue;
            ran = true;
            (*source->context).perform((*source->context).info);
        }
        for (Source* source : currentSources) release(source->ref(), "the run loop");
        return fireDueTimers() || ran;
    }

    bool fireDueTimers() {
        bool ran = false;
        auto current = timers;
        std::stable_sort(current.begin(), current.end(),
                         [](const auto* a, const auto* b) { return a->fireDate < b->fireDate; });
        for (TimerObject* timer : current) retain(timer->ref(), "the run loop");
        for (TimerObject* timer : current) {
            const double now = CFAbsoluteTimeGetCurrent();
            if (!timer->valid || timer->fireDate > now) continue;
            ran = true;
            const bool repeats = timer->interval > 0;
            timer->callout((CFRunLoopTimerRef)timer->ref(), (*timer->context).info);
            if (!timer->valid) continue;
            if (!repeats) {
                CFRunLoopTimerInvalidate((CFRunLoopTimerRef)timer->ref());
            } else {
                // missed ticks are left out; the grid stays.
                const double after = CFAbsoluteTimeGetCurrent();
                do timer->fireDate += timer->interval;
                while (timer->fireDate <= after);
            }
        }
        for (TimerObject* timer : current) release(timer->ref(), "the run loop");
        return ran;
    }
};

RunLoop& mainLoop() {
    static auto* const loop = new RunLoop;
    return *loop;
}

const std::thread::id mainThread = std::this_thread::get_id();

void mainThreadOnly(const char* function) {
    if (std::this_thread::get_id() != mainThread) misuse(std::string(function) + " off the main thread");
}

void commonModesOnly(CFRunLoopMode mode, const char* function) {
    if (mode != kCFRunLoopCommonModes) misuse(std::string(function) + ": not in the common modes");
}

}  // namespace

bool runLoopOnce(double seconds) { return mainLoop().runOnce(seconds); }

std::size_t runLoopMembers() { return mainLoop().sources.size() + mainLoop().timers.size(); }

}  // namespace pintle::mac_fake

using namespace pintle::mac_fake;

extern "C" {

const CFRunLoopMode kCFRunLoopCommonModes = constantString("kCFRunLoopCommonModes");

/// Whether this is the main thread, as the C library of the desktop reports it.
int pthread_main_np() { return std::this_thread::get_id() == mainThread ? 1 : 0; }

CFRunLoopRef CFRunLoopGetMain() { return (CFRunLoopRef)mainLoop().ref(); }
void CFRunLoopWakeUp(CFRunLoopRef loop) {
    auto& known = objectAs<RunLoop>(loop, "CFRunLoopWakeUp");
    const std::lock_guard lock(known.mutex);
    known.woken = true;
    known.changed.notify_all();
}

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex, CFRunLoopSourceContext* context) {
    if (!context || context->version != 0 || !context->perform) misuse("CFRunLoopSourceCreate: context");
    return make<CFRunLoopSourceRef, Source>(context);
}
void CFRunLoopSourceSignal(CFRunLoopSourceRef source) {
    auto& known = objectAs<Source>(source, "CFRunLoopSourceSignal");
    const std::lock_guard lock(mainLoop().mutex);
    known.signalled = true;
}
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    mainThreadOnly("CFRunLoopSourceInvalidate");
    auto& known = objectAs<Source>(source, "CFRunLoopSourceInvalidate");
    {
        const std::lock_guard lock(mainLoop().mutex);
        known.valid = false;
    }
    known.context.drop();
    RunLoop::remove(mainLoop().sources, known);
}
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    mainThreadOnly("CFRunLoopAddSource");
    commonModesOnly(mode, "CFRunLoopAddSource");
    auto& known = objectAs<Source>(source, "CFRunLoopAddSource");
    retain(source, "CFRunLoopAddSource");
    objectAs<RunLoop>(loop, "CFRunLoopAddSource").sources.push_back(&known);
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate, CFTimeInterval interval,
                                       CFOptionFlags flags, CFIndex order, CFRunLoopTimerCallBack callout,
                                       CFRunLoopTimerContext* context) {
    if (!callout || flags != 0 || order != 0 || (context && context->version != 0))
        misuse("CFRunLoopTimerCreate: arguments");
    return make<CFRunLoopTimerRef, TimerObject>(fireDate, interval, callout, context);
}
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
    mainThreadOnly("CFRunLoopTimerInvalidate");
    auto& known = objectAs<TimerObject>(timer, "CFRunLoopTimerInvalidate");
    known.valid = false;
    known.context.drop();
    RunLoop::remove(mainLoop().timers, known);
}
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
    mainThreadOnly("CFRunLoopAddTimer");
    commonModesOnly(mode, "CFRunLoopAddTimer");
    auto& known = objectAs<TimerObject>(timer, "CFRunLoopAddTimer");
    if (!known.valid) misuse("CFRunLoopAddTimer: an ended timer");
    retain(timer, "CFRunLoopAddTimer");
    objectAs<RunLoop>(loop, "CFRunLoopAddTimer").timers.push_back(&known);
}

}  // extern "C"
