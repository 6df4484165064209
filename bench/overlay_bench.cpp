// What following the pointer costs: the share of a core that the running overlay takes on a private X server,
// beside a bare loop of QueryPointer and MoveWindow while the pointer moves, and beside an empty timer while
// it rests. All on the same queue at 120 Hz in one process, in turns.
//
//   overlay_bench SECONDS    how long each of the four is measured in all
//   prints "overlay: NAME REFERENCE_PERCENT PINTLE_PERCENT" for "moving" and "at-rest"
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

#include "apply/cursor_overlay_manager.h"
#include "base/notification_center.h"
#include "platform/fake/fake_hardware_cursor.h"
#include "platform/fake/fake_key_value_store.h"
#include "platform/fake/fake_log.h"
#include "platform/fake/fake_workspace.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_socket_watch.h"
#include "platform/x11/overlay/overlay_desktop.h"
#include "settings/cursor_settings.h"
#include "tests/contract/x11/x_test_server.h"

// Behind the toolkit, whose words these define as macros.
#include <X11/Xlib.h>
#include <X11/cursorfont.h>
#include <X11/extensions/XTest.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 5;
constexpr std::chrono::nanoseconds kTick{1'000'000'000 / 120};

double processSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void runFor(double seconds) {
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < end) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Percent of a core.
double share(double seconds) {
    runFor(0.3);
    const double before = processSeconds();
    const auto begin = Clock::now();
    runFor(seconds);
    return 100 * (processSeconds() - before) / std::chrono::duration<double>(Clock::now() - begin).count();
}

/// Moves the pointer 200 times a second, from a process of its own.
class Mover {
  public:
    explicit Mover(const std::string& display) : pid_(::fork()) {
        if (pid_ != 0) return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        Display* const x = XOpenDisplay(display.c_str());
        if (!x) ::_exit(1);
        for (int i = 0;; ++i) {
            XTestFakeMotionEvent(x, -1, 100 + i % 400, 100 + i * 3 % 300, CurrentTime);
            XFlush(x);
            std::this_thread::sleep_for(5ms);
        }
    }
    ~Mover() {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    Mover(const Mover&) = delete;
    Mover& operator=(const Mover&) = delete;

  private:
    pid_t pid_;
};

/// What a program does at least that draws a pointer of its own.
class BareLoop {
  public:
    BareLoop(pintle::MainQueue& queue, Display* display) : display_(display) {
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        window_ = XCreateWindow(display_, DefaultRootWindow(display_), 0, 0, 24, 24, 0, CopyFromParent,
                                InputOutput, nullptr, CWOverrideRedirect, &attributes);
        XMapRaised(display_, window_);
        timer_ = queue.every(kTick, [this] { follow(); });
    }
    ~BareLoop() {
        XDestroyWindow(display_, window_);
        XFlush(display_);
    }
    BareLoop(const BareLoop&) = delete;
    BareLoop& operator=(const BareLoop&) = delete;

  private:
    void follow() {
        Window unusedWindow = 0;
        int x = 0;
        int y = 0;
        int unused = 0;
        unsigned mask = 0;
        XQueryPointer(display_, DefaultRootWindow(display_), &unusedWindow, &unusedWindow, &x, &y, &unused,
                      &unused, &mask);
        XMoveWindow(display_, window_, x, y);
        XFlush(display_);
    }

    Display* display_;
    Window window_ = 0;
    pintle::Timer timer_;
};

/// The overlay as the root wires it.
class Overlay {
  public:
    Overlay(pintle::MainQueue& queue, const std::string& display) {
        pintle::OverlayDesktopOptions options{display, queue, log_, workspace_, {}, {}};
        options.watchReadable = [&queue](int descriptor, std::function<void()> readable) {
            return pintle::watchReadable(queue, descriptor, std::move(readable));
        };
        desktop_ = makeOverlayDesktop(std::move(options));
        if (!desktop_) std::exit(3);
        manager_ = std::make_unique<pintle::CursorOverlayManager>(pintle::CursorOverlayManager::Desktop{
            queue, log_, desktop_->displays(), desktop_->surfaces(), desktop_->windowList(), workspace_,
            desktop_->pointer(), cursors_, desktop_->accessibility(), settings_, names_});
        const auto image =
            pintle::Bitmap::create(24, 24, [](auto out) { std::fill(out.begin(), out.end(), 255); });
        manager_->loadCursorsFromPreloaded({{"left_ptr", *image, {1, 1}, {}, 0}}, 1.0);
        manager_->start();
    }
    ~Overlay() {
        manager_->deactivate();
        manager_->showSystemCursorGuaranteed();
        manager_->destroyWindows();
    }
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;
    const pintle::CursorOverlayManager& manager() const { return *manager_; }

  private:
    pintle::FakeWorkspace workspace_;
    pintle::FakeLog log_;
    pintle::FakeHardwareCursor cursors_;
    pintle::FakeKeyValueStore store_;
    pintle::NotificationCenter notifications_;
    pintle::CursorSettings settings_{store_, notifications_};
    pintle::DesktopNames names_;
    std::unique_ptr<pintle::OverlayDesktop> desktop_;
    std::unique_ptr<pintle::CursorOverlayManager> manager_;
};

}  // namespace

int main(int argc, char** argv) {
    const double seconds = argc > 1 ? std::strtod(argv[1], nullptr) : 30;
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    QCoreApplication application(argc, argv);
    const pintle::XTestServer server;
    Display* const display = XOpenDisplay(server.display().c_str());
    if (!display) return 3;
    XDefineCursor(display, DefaultRootWindow(display), XCreateFontCursor(display, XC_left_ptr));
    XSync(display, False);
    const auto queue = pintle::makeQtMainQueue();

    const double part = seconds / kRounds;
    double loop = 0;
    double moving = 0;
    double empty = 0;
    double atRest = 0;
    for (int round = 0; round < kRounds; ++round) {
        {
            const Mover mover(server.display());
            {
                const BareLoop bare(*queue, display);
                loop += share(part) / kRounds;
            }
            const Overlay overlay(*queue, server.display());
            moving += share(part) / kRounds;
        }
        {
            const auto timer = queue->every(kTick, [] {});
            empty += share(part) / kRounds;
        }
        const Overlay overlay(*queue, server.display());
        atRest += share(part) / kRounds;
        if (overlay.manager().overlayUsesSystemFallback()) {
            std::fprintf(stderr, "the overlay draws nothing\n");
            return 3;
        }
    }
    std::printf("overlay: moving %.3f %.3f\noverlay: at-rest %.3f %.3f\n", loop, moving, empty, atRest);
    XCloseDisplay(display);
}
