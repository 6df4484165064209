// An X client of its own that moves the pointer and says which picture the server shows for it. It shares no
// code with the program under test. One command a line on standard input, one answer a line on standard
// output; run_tour.py keeps one running for the length of a tour.
//
//   move X Y              the pointer goes to a point of the root window         ok
//   read                  the pointer's picture now                              cursor LOOK NAME | none
//   await MS LOOK...      until one of these is shown, at most MS milliseconds   cursor LOOK NAME | none
//   settle QUIET MS       until nothing changed for QUIET ms, at most MS         cursor LOOK NAME | none
//   frames COUNT MS       until COUNT different pictures were seen, at most MS   frames LOOK...
//   pixels FILE           writes the shown picture as PAM (straight RGBA)        ok | none
//   library THEME SIZE NAME   what libXcursor loads for a name                   images LOOK...
//   window TITLE          client and frame of a mapped window, x y w h each      window 8 numbers | none
//   wm                    whether a window manager runs                          yes | no
//   click                 presses and releases button 1                          ok
//   cover CLASS X Y W H   a window no manager manages, of that class and one colour   ok
//   uncover               closes it                                              ok
//   overlays              how many mapped windows are pointers being dragged     overlays COUNT
//   active                the title of the window that the manager says is active   active TITLE
//   resource TEXT         appends a line to the RESOURCE_MANAGER property        ok
//   owner SELECTION       whether some client owns a selection                   yes | no
//   windows CLASS         the mapped windows of that class, id x y w h each      windows NUMBERS...
//   embedded              the mapped windows that ask to be embedded, the same   windows NUMBERS...
//   pings WINDOW MS       asks a window again and again whether its program lives; how often it answered and
//   the
//                         longest wait in microseconds                           pings COUNT LONGEST
//
// LOOK is the word of look.h. `none`: the server gave no answer (no picture, or its owner is gone).
#include <X11/Xatom.h>
#include <X11/Xcursor/Xcursor.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xfixes.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/desktop/look.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct XFreeDeleter {
    void operator()(void* memory) const { XFree(memory); }
};
using CursorImage = std::unique_ptr<XFixesCursorImage, XFreeDeleter>;

struct Shown {
    bool known = false;
    std::string look;
    std::string name;
};

struct Box {
    int x, y, width, height;
};

class Probe {
  public:
    explicit Probe(Display* display) : display_(display), root_(DefaultRootWindow(display)) {
        int errorBase = 0;
        XFixesQueryExtension(display_, &eventBase_, &errorBase);
        XFixesSelectCursorInput(display_, root_, XFixesDisplayCursorNotifyMask);
    }

    std::string answer(const std::string& line) {
        std::istringstream words(line);
        std::string command;
        words >> command;
        if (command == "move") return move(words);
        if (command == "read") return text(read());
        if (command == "await") return text(await(words));
        if (command == "settle") return text(settle(words));
        if (command == "frames") return frames(words);
        if (command == "pixels") return pixels(words);
        if (command == "library") return library(words);
        if (command == "window") return window(rest(words));
        if (command == "wm") return windowProperty(root_, "_NET_SUPPORTING_WM_CHECK").empty() ? "no" : "yes";
        if (command == "click") return click();
        if (command == "cover") return cover(words);
        if (command == "uncover") return uncover();
        if (command == "overlays") return overlays();
        if (command == "active") return active();
        if (command == "resource") return resource(rest(words));
        if (command == "owner") return owner(rest(words));
        if (command == "windows") return windows(rest(words));
        if (command == "embedded") return embedded();
        if (command == "pings") return pings(words);
        return "what";
    }

  private:
    static std::string text(const Shown& shown) {
        return shown.known ? "cursor " + shown.look + " " + shown.name : "none";
    }

    static std::string rest(std::istringstream& words) {
        std::string text;
        std::getline(words >> std::ws, text);
        return text;
    }

    CursorImage image() { return CursorImage(XFixesGetCursorImage(display_)); }

    Shown read() {
        const CursorImage image = this->image();
        if (!image) return {};
        const unsigned long* values = image->pixels;
        const auto count = static_cast<std::size_t>(image->width) * image->height;
        const auto hash = look::hashPixels(count, [values](std::size_t i) { return values[i]; });
        return {true, look::word(image->width, image->height, image->xhot, image->yhot, hash),
                image->name ? image->name : ""};
    }

    /// Returns when the pointer's picture may have changed, or at the deadline. True when an event said so.
    bool waitForChange(Clock::time_point deadline) {
        while (true) {
            bool changed = false;
            while (XPending(display_) > 0) {
                XEvent event;
                XNextEvent(display_, &event);
                if (event.type == eventBase_ + XFixesCursorNotify) changed = true;
            }
            if (changed) return true;
            const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now()).count();
            if (left <= 0) return false;
            pollfd descriptor{ConnectionNumber(display_), POLLIN, 0};
            poll(&descriptor, 1, static_cast<int>(left));
        }
    }

    std::string move(std::istringstream& words) {
        int x = 0;
        int y = 0;
        words >> x >> y;
        XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
        XSync(display_, False);
        return "ok";
    }

    Shown await(std::istringstream& words) {
        int limit = 0;
        words >> limit;
        std::vector<std::string> wanted;
        for (std::string word; words >> word;) wanted.push_back(word);
        const auto deadline = Clock::now() + milliseconds(limit);
        while (true) {
            Shown shown = read();
            if (shown.known && std::find(wanted.begin(), wanted.end(), shown.look) != wanted.end())
                return shown;
            if (!waitForChange(deadline)) return read();
        }
    }

    Shown settle(std::istringstream& words) {
        int quiet = 0;
        int limit = 0;
        words >> quiet >> limit;
        const auto deadline = Clock::now() + milliseconds(limit);
        while (waitForChange(std::min(deadline, Clock::now() + milliseconds(quiet))) &&
               Clock::now() < deadline) {
        }
        return read();
    }

    std::string frames(std::istringstream& words) {
        std::size_t count = 0;
        int limit = 0;
        words >> count >> limit;
        const auto deadline = Clock::now() + milliseconds(limit);
        std::vector<std::string> seen;
        do {
            const Shown shown = read();
            if (shown.known && std::find(seen.begin(), seen.end(), shown.look) == seen.end())
                seen.push_back(shown.look);
        } while (seen.size() < count && waitForChange(deadline));
        std::string answer = "frames";
        for (const auto& look : seen) answer += " " + look;
        return answer;
    }

    std::string pixels(std::istringstream& words) {
        const std::string path = rest(words);
        const CursorImage image = this->image();
        if (!image) return "none";
        std::ofstream file(path, std::ios::binary);
        file << "P7\nWIDTH " << image->width << "\nHEIGHT " << image->height
             << "\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
        const auto count = static_cast<std::size_t>(image->width) * image->height;
        for (std::size_t i = 0; i < count; ++i) {
            const auto pixel = static_cast<std::uint32_t>(image->pixels[i]);
            const std::uint32_t alpha = pixel >> 24;
            for (int shift = 16; shift >= 0; shift -= 8) {
                const std::uint32_t level = (pixel >> shift) & 0xffu;
                file.put(static_cast<char>(alpha == 0 ? 0 : std::min(255u, level * 255u / alpha)));
            }
            file.put(static_cast<char>(alpha));
        }
        return file.good() ? "ok" : "none";
    }

    static std::string library(std::istringstream& words) {
        std::string theme;
        int size = 0;
        std::string name;
        words >> theme >> size >> name;
        XcursorImages* images = XcursorLibraryLoadImages(name.c_str(), theme.c_str(), size);
        std::string answer = "images";
        for (int i = 0; images != nullptr && i < images->nimage; ++i) {
            const XcursorImage& image = *images->images[i];
            const auto count = static_cast<std::size_t>(image.width) * image.height;
            const auto hash = look::hashPixels(count, [&image](std::size_t at) { return image.pixels[at]; });
            answer += " " + look::word(static_cast<int>(image.width), static_cast<int>(image.height),
                                       static_cast<int>(image.xhot), static_cast<int>(image.yhot), hash);
        }
        if (images != nullptr) XcursorImagesDestroy(images);
        return answer;
    }

    std::vector<Window> children(Window window) {
        Window root = 0;
        Window parent = 0;
        Window* list = nullptr;
        unsigned count = 0;
        if (XQueryTree(display_, window, &root, &parent, &list, &count) == 0) return {};
        std::vector<Window> windows(list, list + count);
        if (list != nullptr) XFree(list);
        return windows;
    }

    std::string title(Window window) {
        for (const char* property : {"_NET_WM_NAME", "WM_NAME"}) {
            std::string value = windowProperty(window, property);
            if (!value.empty()) return value;
        }
        return {};
    }

    /// The bytes of a property; empty when it is absent.
    std::string windowProperty(Window window, const char* name) {
        Atom type = None;
        int format = 0;
        unsigned long count = 0;
        unsigned long after = 0;
        unsigned char* data = nullptr;
        const Atom atom = XInternAtom(display_, name, False);
        if (XGetWindowProperty(display_, window, atom, 0, 65536, False, AnyPropertyType, &type, &format,
                               &count, &after, &data) != Success)
            return {};
        const std::size_t unit = format == 32 ? sizeof(long) : static_cast<std::size_t>(format) / 8;
        std::string value(reinterpret_cast<const char*>(data), data == nullptr ? 0 : count * unit);
        if (data != nullptr) XFree(data);
        return value;
    }

    bool isViewable(Window window) {
        XWindowAttributes attributes;
        return XGetWindowAttributes(display_, window, &attributes) != 0 && attributes.map_state == IsViewable;
    }

    Window find(Window above, const std::string& wanted, int depth) {
        for (Window window : children(above)) {
            if (!isViewable(window)) continue;
            // Some window managers copy the title to the frame, whose child is then the window meant.
            if (depth < 4) {
                if (const Window inner = find(window, wanted, depth + 1)) return inner;
            }
            if (title(window) == wanted) return window;
        }
        return None;
    }

    Box box(Window window) {
        Window root = 0;
        Window child = 0;
        int x = 0;
        int y = 0;
        unsigned width = 0;
        unsigned height = 0;
        unsigned border = 0;
        unsigned depth = 0;
        XGetGeometry(display_, window, &root, &x, &y, &width, &height, &border, &depth);
        XTranslateCoordinates(display_, window, root_, 0, 0, &x, &y, &child);
        const int edge = static_cast<int>(border);
        return {x - edge, y - edge, static_cast<int>(width) + 2 * edge, static_cast<int>(height) + 2 * edge};
    }

    std::string window(const std::string& wanted) {
        const Window client = find(root_, wanted, 0);
        if (client == None) return "none";
        Window frame = client;
        while (true) {
            Window root = 0;
            Window parent = 0;
            Window* list = nullptr;
            unsigned count = 0;
            if (XQueryTree(display_, frame, &root, &parent, &list, &count) == 0) return "none";
            if (list != nullptr) XFree(list);
            if (parent == root_ || parent == None) break;
            frame = parent;
        }
        std::ostringstream answer;
        answer << "window";
        for (const Box& area : {box(client), box(frame)})
            answer << " " << area.x << " " << area.y << " " << area.width << " " << area.height;
        return answer.str();
    }

    std::string resource(const std::string& line) {
        const std::string text = line + "\n";
        XChangeProperty(display_, root_, XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeAppend,
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
        XSync(display_, False);
        return "ok";
    }

    std::string click() {
        XTestFakeButtonEvent(display_, 1, True, CurrentTime);
        XTestFakeButtonEvent(display_, 1, False, CurrentTime);
        XSync(display_, False);
        return "ok";
    }

    std::string cover(std::istringstream& words) {
        std::string name;
        int x = 0;
        int y = 0;
        unsigned width = 0;
        unsigned height = 0;
        words >> name >> x >> y >> width >> height;
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        attributes.background_pixel = 0x405060;
        covering_ = XCreateWindow(display_, root_, x, y, width, height, 0, CopyFromParent, InputOutput,
                                  nullptr, CWOverrideRedirect | CWBackPixel, &attributes);
        XClassHint hint{name.data(), name.data()};
        XSetClassHint(display_, covering_, &hint);
        XMapRaised(display_, covering_);
        XSync(display_, False);
        return "ok";
    }

    std::string uncover() {
        XDestroyWindow(display_, covering_);
        XSync(display_, False);
        return "ok";
    }

    std::string overlays() {
        const Atom dragged = XInternAtom(display_, "_NET_WM_WINDOW_TYPE_DND", False);
        int count = 0;
        for (const Window window : children(root_)) {
            const std::string type = windowProperty(window, "_NET_WM_WINDOW_TYPE");
            if (type.size() == sizeof dragged &&
                std::equal(type.begin(), type.end(), reinterpret_cast<const char*>(&dragged)) &&
                isViewable(window))
                ++count;
        }
        return "overlays " + std::to_string(count);
    }

    std::string active() {
        const std::string value = windowProperty(root_, "_NET_ACTIVE_WINDOW");
        Window window = None;
        if (value.size() >= sizeof window)
            std::copy_n(value.data(), sizeof window, reinterpret_cast<char*>(&window));
        return "active " + (window == None ? "" : title(window));
    }

    std::string owner(const std::string& selection) {
        const Atom atom = XInternAtom(display_, selection.c_str(), False);
        return XGetSelectionOwner(display_, atom) == None ? "no" : "yes";
    }

    template <typename Question>
    void eachViewable(Window above, int depth, const Question& question) {
        for (const Window window : children(above)) {
            if (!isViewable(window)) continue;
            question(window);
            if (depth < 4) eachViewable(window, depth + 1, question);
        }
    }

    template <typename Question>
    std::string windowsThat(const Question& fits) {
        std::ostringstream answer;
        answer << "windows";
        eachViewable(root_, 0, [&](Window window) {
            if (!fits(window)) return;
            const Box area = box(window);
            answer << " " << window << " " << area.x << " " << area.y << " " << area.width << " "
                   << area.height;
        });
        return answer.str();
    }

    std::string windows(const std::string& wanted) {
        return windowsThat([&](Window window) {
            XClassHint hint{nullptr, nullptr};
            if (XGetClassHint(display_, window, &hint) == 0) return false;
            const bool same = hint.res_class != nullptr && wanted == hint.res_class;
            if (hint.res_name != nullptr) XFree(hint.res_name);
            if (hint.res_class != nullptr) XFree(hint.res_class);
            return same;
        });
    }

    std::string embedded() {
        return windowsThat([&](Window window) { return !windowProperty(window, "_XEMBED_INFO").empty(); });
    }

    /// A window's program answers from the loop that also draws and takes clicks, so the longest wait is that
    /// of a person.
    std::string pings(std::istringstream& words) {
        XClientMessageEvent message{};
        int patience = 0;
        words >> message.window >> patience;
        XSelectInput(display_, root_, SubstructureNotifyMask);
        message.type = ClientMessage;
        message.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
        message.format = 32;
        const Atom ping = XInternAtom(display_, "_NET_WM_PING", False);
        message.data.l[0] = static_cast<long>(ping);
        message.data.l[2] = static_cast<long>(message.window);
        const auto asked = message.window;
        const auto end = Clock::now() + milliseconds(patience);
        long number = 0;
        long longest = 0;
        while (Clock::now() < end) {
            message.window = asked;
            message.data.l[1] = ++number;
            XEvent event{};
            event.xclient = message;
            const auto sent = Clock::now();
            XSendEvent(display_, asked, False, NoEventMask, &event);
            XFlush(display_);
            const auto answered = [&] {
                XEvent news{};
                while (XCheckTypedWindowEvent(display_, root_, ClientMessage, &news) != 0)
                    if (news.xclient.data.l[0] == static_cast<long>(ping) && news.xclient.data.l[1] == number)
                        return true;
                return false;
            };
            // A program that hangs for good must not hang its onlooker.
            while (!answered() && Clock::now() < end + milliseconds(2000)) {
                pollfd connection{ConnectionNumber(display_), POLLIN, 0};
                poll(&connection, 1, 50);
            }
            const auto waited = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - sent);
            longest = std::max(longest, static_cast<long>(waited.count()));
            poll(nullptr, 0, 2);
            XEvent other{};
            while (XCheckWindowEvent(display_, root_, SubstructureNotifyMask, &other) != 0) {
            }
        }
        XSelectInput(display_, root_, NoEventMask);
        return "pings " + std::to_string(number) + " " + std::to_string(longest);
    }

    Display* display_;
    Window root_;
    Window covering_ = None;
    int eventBase_ = 0;
};

}  // namespace

int main() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        std::cerr << "pointer_probe: no display\n";
        return 1;
    }
    // Windows and cursors come and go while they are asked about; a refused request is an answer here.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    Probe probe(display);
    for (std::string line; std::getline(std::cin, line);) std::cout << probe.answer(line) << std::endl;
    XCloseDisplay(display);
}
