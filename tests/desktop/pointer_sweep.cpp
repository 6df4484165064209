// An X client of its own that moves the pointer over points of the root window and writes down what the
// server shows on the way, as its cursor events say it. It shares no code with the program under test.
//
//   pointer_sweep DWELL X Y [X Y...]   goes to each point and stays there for DWELL milliseconds
//   answers on standard output a line each:
//     point US                         the pointer went to the next point
//     cursor US LOOK NAME              another cursor came to be shown
//
// US: microseconds since the start. LOOK is the word of look.h, "-" where the cursor had already gone when it
// was read. NAME is empty when the cursor has none; the event itself tells it, so it is known also then.
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xfixes.h>
#include <poll.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "tests/desktop/look.h"

namespace {

using Clock = std::chrono::steady_clock;

class Sweep {
  public:
    explicit Sweep(Display* display) : display_(display) {
        int errorBase = 0;
        XFixesQueryExtension(display_, &eventBase_, &errorBase);
        XFixesSelectCursorInput(display_, DefaultRootWindow(display_), XFixesDisplayCursorNotifyMask);
        XSync(display_, False);
    }

    void visit(int x, int y, std::chrono::milliseconds dwell) {
        std::cout << "point " << elapsed() << "\n";
        XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
        XFlush(display_);
        const auto end = Clock::now() + dwell;
        while (true) {
            // Reading the picture may have fetched more events, for which the connection does not wake again.
            while (takeEvents()) continue;
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
            if (left <= 0) return;
            pollfd descriptor{ConnectionNumber(display_), POLLIN, 0};
            poll(&descriptor, 1, static_cast<int>(left));
        }
    }

  private:
    struct Seen {
        long long microseconds;
        unsigned long serial;
        Atom name;
    };

    long long elapsed() const {
        return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start_).count();
    }

    /// False when there was none.
    bool takeEvents() {
        std::vector<Seen> seen;
        while (XPending(display_) > 0) {
            XEvent event;
            XNextEvent(display_, &event);
            if (event.type != eventBase_ + XFixesCursorNotify) continue;
            const auto& change = reinterpret_cast<const XFixesCursorNotifyEvent&>(event);
            seen.push_back({elapsed(), change.cursor_serial, change.cursor_name});
        }
        if (seen.empty()) return false;
        XFixesCursorImage* const image = XFixesGetCursorImage(display_);
        for (const auto& each : seen) {
            std::string look = "-";
            if (image != nullptr && image->cursor_serial == each.serial) {
                const auto count = static_cast<std::size_t>(image->width) * image->height;
                const auto hash =
                    look::hashPixels(count, [image](std::size_t i) { return image->pixels[i]; });
                look = look::word(image->width, image->height, image->xhot, image->yhot, hash);
            }
            std::cout << "cursor " << each.microseconds << " " << look << " " << nameOf(each.name) << "\n";
        }
        if (image != nullptr) XFree(image);
        return true;
    }

    const std::string& nameOf(Atom atom) {
        const auto [known, isNew] = names_.try_emplace(atom);
        if (isNew && atom != None)
            if (char* const text = XGetAtomName(display_, atom)) {
                known->second = text;
                XFree(text);
            }
        return known->second;
    }

    Display* display_;
    int eventBase_ = 0;
    const Clock::time_point start_ = Clock::now();
    std::map<Atom, std::string> names_;
};

}  // namespace

int main(int argc, char** argv) {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr || argc < 4 || argc % 2 != 0) {
        std::cerr << "pointer_sweep DWELL X Y [X Y...]\n";
        return 2;
    }
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    {
        Sweep sweep(display);
        const std::chrono::milliseconds dwell(std::atoi(argv[1]));
        for (int i = 2; i < argc; i += 2) sweep.visit(std::atoi(argv[i]), std::atoi(argv[i + 1]), dwell);
    }
    XCloseDisplay(display);
}
