// How long a person waits for a panel: presses the pointer's button at a place of the screen, as on a tray
// icon, and watches the pixels of the window that comes. Closes it with a second press and begins again.
//
//   popover_clock X Y ROUNDS     prints "shown MAPPED PAINTED SETTLED X Y W H ID" a round: microseconds after
//   the
//                                press until the window is there, until at least half of its last colours
//                                are, and until nothing changes any more; then where it stands. Ends with 1
//                                when none comes.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <set>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kLeastSide = 200;
constexpr milliseconds kPatience{5000};
constexpr milliseconds kStill{700};

struct Panel {
    Window window;
    int x, y, width, height;
};

struct Look {
    Clock::time_point when;
    std::uint64_t hash;
    std::size_t colours;
};

class PanelClock {
  public:
    explicit PanelClock(Display* display) : display_(display), root_(DefaultRootWindow(display)) {
        XSelectInput(display_, root_, SubstructureNotifyMask);
        XSync(display_, False);
    }

    bool round(int x, int y) {
        // Two presses close together would be a double click.
        poll(nullptr, 0, 600);
        forgetEvents();
        const auto pressed = press(x, y);
        const auto panel = awaitMapped();
        if (!panel) return false;
        const auto mapped = Clock::now();
        std::vector<Look> looks;
        auto changed = mapped;
        while (Clock::now() - changed < kStill && Clock::now() - mapped < kPatience) {
            const Look look = lookAt(*panel);
            if (looks.empty() || looks.back().hash != look.hash) {
                changed = look.when;
                looks.push_back(look);
            }
            poll(nullptr, 0, 2);
        }
        auto painted = looks.back().when;
        for (const Look& look : looks) {
            if (look.colours * 2 < looks.back().colours) continue;
            painted = look.when;
            break;
        }
        std::printf("shown %ld %ld %ld %d %d %d %d %lu\n", since(pressed, mapped), since(pressed, painted),
                    since(pressed, looks.back().when), panel->x, panel->y, panel->width, panel->height,
                    panel->window);
        std::fflush(stdout);
        forgetEvents();
        press(x, y);
        return awaitGone(panel->window);
    }

  private:
    static long since(Clock::time_point from, Clock::time_point to) {
        return static_cast<long>(std::chrono::duration_cast<std::chrono::microseconds>(to - from).count());
    }

    Clock::time_point press(int x, int y) {
        XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
        XSync(display_, False);
        poll(nullptr, 0, 100);
        const auto now = Clock::now();
        XTestFakeButtonEvent(display_, 1, True, CurrentTime);
        XTestFakeButtonEvent(display_, 1, False, CurrentTime);
        XFlush(display_);
        return now;
    }

    void forgetEvents() {
        XSync(display_, False);
        XEvent event;
        while (XPending(display_) != 0) XNextEvent(display_, &event);
    }

    /// The next event within the patience; false when none came.
    bool next(XEvent& event, Clock::time_point end) {
        while (XPending(display_) == 0) {
            if (Clock::now() > end) return false;
            pollfd connection{ConnectionNumber(display_), POLLIN, 0};
            poll(&connection, 1, 20);
        }
        XNextEvent(display_, &event);
        return true;
    }

    std::optional<Panel> awaitMapped() {
        const auto end = Clock::now() + kPatience;
        XEvent event;
        while (next(event, end)) {
            if (event.type != MapNotify || event.xmap.event != root_) continue;
            XWindowAttributes is;
            if (XGetWindowAttributes(display_, event.xmap.window, &is) == 0) continue;
            if (is.width < kLeastSide || is.height < kLeastSide || is.c_class != InputOutput) continue;
            // What is beyond the edge of the screen cannot be looked at.
            const int left = std::max(is.x, 0);
            const int top = std::max(is.y, 0);
            const int right = std::min(is.x + is.width, DisplayWidth(display_, DefaultScreen(display_)));
            const int bottom = std::min(is.y + is.height, DisplayHeight(display_, DefaultScreen(display_)));
            return Panel{event.xmap.window, left, top, right - left, bottom - top};
        }
        return std::nullopt;
    }

    bool awaitGone(Window window) {
        const auto end = Clock::now() + kPatience;
        XEvent event;
        while (next(event, end)) {
            if (event.type == UnmapNotify && event.xunmap.window == window) return true;
            if (event.type == DestroyNotify && event.xdestroywindow.window == window) return true;
        }
        return false;
    }

    Look lookAt(const Panel& panel) {
        Look look{Clock::now(), 0, 0};
        XImage* image = XGetImage(display_, root_, panel.x, panel.y, static_cast<unsigned>(panel.width),
                                  static_cast<unsigned>(panel.height), AllPlanes, ZPixmap);
        if (image == nullptr) return look;
        std::set<std::uint32_t> colours;
        std::uint32_t last = 0;
        std::uint64_t hash = 14695981039346656037ULL;
        for (int y = 0; y < panel.height; ++y) {
            const auto* row = reinterpret_cast<const std::uint32_t*>(image->data + y * image->bytes_per_line);
            for (int x = 0; x < panel.width; ++x) {
                const std::uint32_t pixel = row[x] & 0xffffffU;
                hash = (hash ^ pixel) * 1099511628211ULL;
                if (pixel != last) colours.insert(pixel);
                last = pixel;
            }
        }
        XDestroyImage(image);
        look.hash = hash;
        look.colours = colours.size();
        return look;
    }

    Display* display_;
    Window root_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) return 2;
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    PanelClock clock(display);
    for (int round = 0; round < std::atoi(argv[3]); ++round)
        if (!clock.round(std::atoi(argv[1]), std::atoi(argv[2]))) return 1;
    XCloseDisplay(display);
    return 0;
}
