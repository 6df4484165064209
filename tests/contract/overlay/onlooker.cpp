#include "tests/contract/overlay/onlooker.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xrandr.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <stdexcept>

namespace pintle {
namespace {

int ignore(Display*, XErrorEvent*) { return 0; }

std::uint32_t wordAt(const std::vector<char>& bytes, std::size_t index) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<std::uint8_t>(bytes[index * 4 + i]);
    return value;
}

}  // namespace

struct Onlooker::State {
    Display* display = nullptr;
    std::filesystem::path picture;
    std::map<Id, int> clicks;
    Window root() const { return DefaultRootWindow(display); }
    Atom atom(const std::string& name) const { return XInternAtom(display, name.c_str(), False); }

    void takeEvents() {
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == ButtonPress) ++clicks[event.xbutton.window];
        }
    }
    std::vector<Window> children() const {
        Window unused = 0;
        Window* list = nullptr;
        unsigned count = 0;
        XQueryTree(display, root(), &unused, &unused, &list, &count);
        std::vector<Window> windows(list, list + count);
        if (list) XFree(list);
        return windows;
    }
    bool isMapped(Window window) const {
        XWindowAttributes attributes;
        return XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state == IsViewable;
    }
    bool isOverlay(Window window) const {
        Atom type = 0;
        int format = 0;
        unsigned long count = 0;
        unsigned long rest = 0;
        unsigned char* value = nullptr;
        XGetWindowProperty(display, window, atom("_NET_WM_WINDOW_TYPE"), 0, 1, False, XA_ATOM, &type, &format,
                           &count, &rest, &value);
        const bool dragged =
            value && count == 1 && *reinterpret_cast<Atom*>(value) == atom("_NET_WM_WINDOW_TYPE_DND");
        if (value) XFree(value);
        return dragged;
    }
};

Onlooker::Onlooker(const std::string& display, std::filesystem::path drawnInto)
    : state_(std::make_unique<State>()) {
    XSetErrorHandler(ignore);
    state_->display = XOpenDisplay(display.c_str());
    if (!state_->display) throw std::runtime_error("no display " + display);
    state_->picture = std::move(drawnInto) / "Xvfb_screen0";
}

Onlooker::~Onlooker() { XCloseDisplay(state_->display); }

Onlooker::Id Onlooker::window(Place place, std::uint32_t rgb, const std::string& windowClass, Kind kind) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = kind == Kind::overrideRedirect ? True : False;
    attributes.background_pixel = rgb;
    attributes.event_mask = ButtonPressMask;
    const Window made =
        XCreateWindow(state_->display, state_->root(), place.x, place.y, static_cast<unsigned>(place.width),
                      static_cast<unsigned>(place.height), 0, CopyFromParent, InputOutput, nullptr,
                      CWOverrideRedirect | CWBackPixel | CWEventMask, &attributes);
    if (!windowClass.empty()) {
        std::string name = windowClass;
        XClassHint hint{name.data(), name.data()};
        XSetClassHint(state_->display, made, &hint);
    }
    XMapRaised(state_->display, made);
    synchronize();
    return made;
}

void Onlooker::setShape(Id window, unsigned fontShape) {
    XDefineCursor(state_->display, window, XCreateFontCursor(state_->display, fontShape));
    synchronize();
}

void Onlooker::setType(Id window, const std::string& type) {
    const Atom value = state_->atom(type);
    XChangeProperty(state_->display, window, state_->atom("_NET_WM_WINDOW_TYPE"), XA_ATOM, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(&value), 1);
    synchronize();
}

void Onlooker::listAsManaged(const std::vector<Id>& backToFront) {
    XChangeProperty(state_->display, state_->root(), state_->atom("_NET_CLIENT_LIST_STACKING"), XA_WINDOW, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(backToFront.data()),
                    static_cast<int>(backToFront.size()));
    synchronize();
}

void Onlooker::hide(Id window) {
    XUnmapWindow(state_->display, window);
    synchronize();
}

void Onlooker::close(Id window) {
    XDestroyWindow(state_->display, window);
    synchronize();
}

void Onlooker::setMonitor(const std::string& name, Place place, bool primary) {
    // Whatever output no monitor names becomes one more monitor by itself.
    XRRMonitorInfo* const monitor = XRRAllocateMonitor(state_->display, primary ? 1 : 0);
    if (primary) {
        XRRScreenResources* const resources = XRRGetScreenResources(state_->display, state_->root());
        monitor->outputs[0] = resources->outputs[0];
        XRRFreeScreenResources(resources);
    }
    monitor->name = state_->atom(name);
    monitor->primary = primary ? True : False;
    monitor->automatic = False;
    monitor->x = place.x;
    monitor->y = place.y;
    monitor->width = place.width;
    monitor->height = place.height;
    monitor->mwidth = place.width / 4;
    monitor->mheight = place.height / 4;
    XRRSetMonitor(state_->display, state_->root(), monitor);
    XRRFreeMonitors(monitor);
    synchronize();
}

void Onlooker::removeMonitor(const std::string& name) {
    XRRDeleteMonitor(state_->display, state_->root(), state_->atom(name));
    synchronize();
}

void Onlooker::move(int x, int y) {
    XTestFakeMotionEvent(state_->display, -1, x, y, CurrentTime);
    synchronize();
}

void Onlooker::warp(int x, int y) {
    XWarpPointer(state_->display, 0, state_->root(), 0, 0, 0, 0, x, y);
    synchronize();
}

void Onlooker::click() {
    XTestFakeButtonEvent(state_->display, 1, True, CurrentTime);
    XTestFakeButtonEvent(state_->display, 1, False, CurrentTime);
    synchronize();
}

int Onlooker::clicksOn(Id window) {
    synchronize();
    return std::exchange(state_->clicks[window], 0);
}

void Onlooker::focus(Id window) {
    XSetInputFocus(state_->display, window, RevertToNone, CurrentTime);
    synchronize();
}

Onlooker::Id Onlooker::focused() {
    Window window = 0;
    int unused = 0;
    XGetInputFocus(state_->display, &window, &unused);
    return window;
}

std::vector<Onlooker::Id> Onlooker::overlayWindows(bool alsoUnmapped) {
    synchronize();
    std::vector<Id> found;
    for (const Window window : state_->children())
        if (state_->isOverlay(window) && (alsoUnmapped || state_->isMapped(window))) found.push_back(window);
    return found;
}

Onlooker::Id Onlooker::topmost() {
    Id top = 0;
    for (const Window window : state_->children())
        if (state_->isMapped(window)) top = window;
    return top;
}

Onlooker::Place Onlooker::placeOf(Id window) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(state_->display, window, &attributes);
    return {attributes.x, attributes.y, attributes.width, attributes.height};
}

void Onlooker::killOwnerOf(Id window) {
    XKillClient(state_->display, window);
    synchronize();
}

Drawn Onlooker::drawn() {
    synchronize();
    std::ifstream file(state_->picture, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    constexpr std::size_t kHeaderSize = 0;
    constexpr std::size_t kWidth = 4;
    constexpr std::size_t kHeight = 5;
    constexpr std::size_t kBytesPerLine = 12;
    constexpr std::size_t kColors = 19;
    constexpr std::size_t kColorBytes = 12;
    if (bytes.size() < 100) throw std::runtime_error("the server draws into no file");
    const auto width = wordAt(bytes, kWidth);
    const auto height = wordAt(bytes, kHeight);
    const std::size_t first = wordAt(bytes, kHeaderSize) + wordAt(bytes, kColors) * kColorBytes;
    std::vector<Pixel> pixels;
    pixels.reserve(std::size_t{width} * height);
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            const char* const bgr = &bytes[first + y * wordAt(bytes, kBytesPerLine) + x * 4];
            pixels.push_back({static_cast<std::uint8_t>(bgr[2]), static_cast<std::uint8_t>(bgr[1]),
                              static_cast<std::uint8_t>(bgr[0])});
        }
    return {static_cast<int>(width), static_cast<int>(height), std::move(pixels)};
}

void Onlooker::synchronize() {
    XSync(state_->display, False);
    state_->takeEvents();
}

Drawn drawnOver(const Drawn& under, const Bitmap& image, int left, int top, bool blended) {
    std::vector<Pixel> pixels;
    for (int y = 0; y < under.height(); ++y)
        for (int x = 0; x < under.width(); ++x) {
            Pixel pixel = under.at(x, y);
            const int column = x - left;
            const int row = y - top;
            if (column >= 0 && row >= 0 && column < image.width() && row < image.height()) {
                const auto over = image.pixel(column, row);
                for (std::size_t i = 0; i < 3; ++i) {
                    if (blended)
                        pixel[i] = static_cast<std::uint8_t>(
                            std::min(255, over[i] + (pixel[i] * (255 - over[3]) + 127) / 255));
                    else if (over[3] >= 128)
                        pixel[i] = over[i];
                }
            }
            pixels.push_back(pixel);
        }
    return {under.width(), under.height(), std::move(pixels)};
}

std::string firstDifference(const Drawn& a, const Drawn& b) {
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            if (a.at(x, y) == b.at(x, y)) continue;
            std::string text = "at " + std::to_string(x) + "," + std::to_string(y) + ":";
            for (const Drawn* each : {&a, &b})
                for (const auto channel : each->at(x, y)) text += " " + std::to_string(channel);
            return text;
        }
    return "nowhere";
}

int largestDifference(const Drawn& a, const Drawn& b) {
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (std::size_t i = 0; i < 3; ++i)
                largest = std::max(largest, std::abs(int{a.at(x, y)[i]} - int{b.at(x, y)[i]}));
    return largest;
}

}  // namespace pintle
