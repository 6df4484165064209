// A child process for tests of what only another process can show: deaths by signals and shared files.
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTimer>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/fake/fake_log.h"
#include "platform/fake/virtual_scheduler.h"
#include "platform/freedesktop/dbus_instance_bus.h"
#include "platform/plist/plist_coder.h"
#include "platform/plist/plist_key_value_store.h"
#include "platform/posix/signal_recovery.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_main_queue.h"

namespace {

int reportTo = -1;

void recover() {
    // One byte for one call.
    if (write(reportTo, "r", 1) != 1) _exit(9);
}

// Calls itself until the stack is used up; the volatile reads keep it from becoming a loop.
volatile int never = 0;
int overflow(int depth) {  // NOLINT(misc-no-recursion)
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    if (never) return room[0];
    return overflow(depth + 1) + room[0];
}

/// helper signal KIND REPORT_FD: dies in the given way.
int dieBySignal(const std::string& kind, int argc, char** argv) {
    // A child that is meant to die leaves no core file behind.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    pintle::installSignalRecovery(kind.ends_with("-null") ? nullptr : recover);
    if (kind.starts_with("abort")) abort();
    if (kind.starts_with("raise-segv")) {
        raise(SIGSEGV);
    } else if (kind.starts_with("segv")) {
        // Not through null: the sanitizers would report that before it faults.
        void* const closed = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        *static_cast<volatile int*>(closed) = 1;
    } else if (kind.starts_with("overflow")) {
        return overflow(0);
    } else if (kind.starts_with("loop")) {
        const QCoreApplication application(argc, argv);
        const auto queue = pintle::makeQtMainQueue();
        queue->post([] {
            if (write(reportTo, "s", 1) != 1) _exit(9);
        });
        return QCoreApplication::exec();
    }
    return 1;
}

/// helper write FILE KEY COUNT: stores 1 to COUNT (0: without end) under KEY, with an array beside it.
int writePreferences(const char* file, const std::string& key, long count) {
    pintle::VirtualScheduler scheduler;
    pintle::FakeLog log;
    const auto coder = pintle::makePlistCoder();
    const auto store =
        pintle::makePlistKeyValueStore(file, *coder, log, scheduler.mainQueue(), scheduler.backgroundTasks(),
                                       [](const auto&) { return true; });
    pintle::PropertyArray ballast;
    for (int i = 0; i < 500; ++i) ballast.emplace_back("element " + std::to_string(i));
    if (count == 0) store->set(key + " ballast", ballast);
    for (long i = 1; count == 0 || i <= count; ++i) store->set(key, std::int64_t{i});
    return log.systemLines.empty() ? 0 : 3;
}

/// helper post NAME MESSAGE: a second copy, which notifies the first one and ends at once. 3: there is no
/// first.
int postAndEnd(const std::string& name, const std::string& message, int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto queue = pintle::makeQtMainQueue();
    const auto background = pintle::makeQtBackgroundTasks();
    const auto bus = pintle::makeDbusInstanceBus(name, *queue, *background);
    if (!bus->anotherCopyRuns()) return 3;
    bus->post(message);
    _exit(0);
}

/// helper hold NAME REPORT_FD: a copy that runs until it is killed or finds an older one, and then ends
/// with 4.
int holdName(const std::string& name, int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto queue = pintle::makeQtMainQueue();
    const auto background = pintle::makeQtBackgroundTasks();
    const auto bus = pintle::makeDbusInstanceBus(name, *queue, *background);
    const auto older = bus->observeOlderCopy([] { QCoreApplication::exit(4); });
    const bool alone = !bus->anotherCopyRuns();
    if (write(reportTo, alone ? "a" : "b", 1) != 1) _exit(9);
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "";
    if (mode == "signal" && argc == 4) {
        reportTo = std::atoi(argv[3]);
        return dieBySignal(argv[2], argc, argv);
    }
    if (mode == "write" && argc == 5) return writePreferences(argv[2], argv[3], std::atol(argv[4]));
    if (mode == "post" && argc == 4) return postAndEnd(argv[2], argv[3], argc, argv);
    if (mode == "hold" && argc == 4) {
        reportTo = std::atoi(argv[3]);
        return holdName(argv[2], argc, argv);
    }
    return 2;
}
