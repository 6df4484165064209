#include "tests/contract/x11/x_test_client.h"

#include <X11/Xatom.h>
#include <X11/Xcursor/Xcursor.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/Xfixes.h>

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace pintle {
namespace {

bool sawError = false;

int remember(Display*, XErrorEvent*) {
    sawError = true;
    return 0;
}

XcursorImage* solid(int size, std::uint32_t color, std::uint32_t delay) {
    XcursorImage* const image = XcursorImageCreate(size, size);
    image->xhot = 3;
    image->yhot = 4;
    image->delay = delay;
    std::fill_n(image->pixels, size * size, color);
    return image;
}

}  // namespace

struct XTestClient::State {
    Display* display = nullptr;
    Window settings = 0;
    int fixesEvent = 0;
    bool listens = false;
};

XTestClient::XTestClient(const std::string& display, const std::string& theme)
    : state_(std::make_unique<State>()) {
    XSetErrorHandler(remember);
    state_->display = XOpenDisplay(display.c_str());
    if (!state_->display) throw std::runtime_error("no display " + display);
    int unused = 0;
    int major = 2;
    int minor = 0;
    XIQueryVersion(state_->display, &major, &minor);
    XFixesQueryExtension(state_->display, &state_->fixesEvent, &unused);
    XcursorSetTheme(state_->display, theme.c_str());
    XcursorSetDefaultSize(state_->display, 24);
}

XTestClient::~XTestClient() { XCloseDisplay(state_->display); }

XTestClient::Id XTestClient::root() const { return DefaultRootWindow(state_->display); }

XTestClient::Id XTestClient::window(int x, int y) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    const Window made = XCreateWindow(state_->display, root(), x, y, 100, 100, 0, CopyFromParent, InputOutput,
                                      nullptr, CWOverrideRedirect, &attributes);
    XMapRaised(state_->display, made);
    synchronize();
    return made;
}

XTestClient::Id XTestClient::cursor(const std::string& name) {
    return XcursorLibraryLoadCursor(state_->display, name.c_str());
}

XTestClient::Id XTestClient::namelessCursor(const std::string& name) {
    XcursorImages* const images =
        XcursorLibraryLoadImages(name.c_str(), XcursorGetTheme(state_->display), 24);
    if (!images) return 0;
    const Cursor made = XcursorImageLoadCursor(state_->display, images->images[0]);
    XcursorImagesDestroy(images);
    return made;
}

XTestClient::Id XTestClient::glyphCursor(unsigned number, std::uint32_t foreground,
                                         std::uint32_t background) {
    const Cursor made = XCreateFontCursor(state_->display, number);
    const auto color = [](std::uint32_t value) {
        XColor parts{};
        parts.red = static_cast<unsigned short>((value >> 16 & 0xFF) * 0x101);
        parts.green = static_cast<unsigned short>((value >> 8 & 0xFF) * 0x101);
        parts.blue = static_cast<unsigned short>((value & 0xFF) * 0x101);
        return parts;
    };
    XColor front = color(foreground);
    XColor back = color(background);
    XRecolorCursor(state_->display, made, &front, &back);
    return made;
}

XTestClient::Id XTestClient::blankCursor(const std::string& name) {
    XcursorImage* const image = solid(16, 0, 0);
    const Cursor made = XcursorImageLoadCursor(state_->display, image);
    XcursorImageDestroy(image);
    XFixesSetCursorName(state_->display, made, name.c_str());
    return made;
}

void XTestClient::define(Id window, Id cursor) {
    XDefineCursor(state_->display, window, cursor);
    synchronize();
}

void XTestClient::defineForDevice(Id window, Id cursor) {
    int count = 0;
    XIDeviceInfo* const devices = XIQueryDevice(state_->display, XIAllMasterDevices, &count);
    for (int i = 0; i < count; ++i)
        if (devices[i].use == XIMasterPointer)
            XIDefineCursor(state_->display, devices[i].deviceid, window, cursor);
    XIFreeDeviceInfo(devices);
    synchronize();
}

void XTestClient::changeByName(Id cursor, const std::string& name) {
    XFixesChangeCursorByName(state_->display, cursor, name.c_str());
    synchronize();
}

void XTestClient::grab(Id cursor) {
    XGrabPointer(state_->display, root(), False, 0, GrabModeAsync, GrabModeAsync, 0, cursor, CurrentTime);
    synchronize();
}

void XTestClient::ungrab() {
    XUngrabPointer(state_->display, CurrentTime);
    synchronize();
}

void XTestClient::warp(int x, int y) {
    XWarpPointer(state_->display, 0, root(), 0, 0, 0, 0, x, y);
    synchronize();
}

std::pair<int, int> XTestClient::pointer() {
    Window unusedWindow = 0;
    int x = 0;
    int y = 0;
    int unused = 0;
    unsigned mask = 0;
    XQueryPointer(state_->display, root(), &unusedWindow, &unusedWindow, &x, &y, &unused, &unused, &mask);
    return {x, y};
}

void XTestClient::killOwnerOf(Id resource) {
    XKillClient(state_->display, resource);
    synchronize();
}

bool XTestClient::exists(Id window) {
    sawError = false;
    XWindowAttributes attributes;
    return XGetWindowAttributes(state_->display, window, &attributes) != 0 && !sawError;
}

XTestClient::Id XTestClient::windowProperty(Id window, const std::string& name) {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(state_->display, window, XInternAtom(state_->display, name.c_str(), False), 0, 1,
                       False, XA_WINDOW, &type, &format, &count, &rest, &value);
    const Id found = value && count == 1 ? *reinterpret_cast<Id*>(value) : 0;
    if (value) XFree(value);
    return found;
}

void XTestClient::setWindowProperty(Id window, const std::string& name, Id value) {
    XChangeProperty(state_->display, window, XInternAtom(state_->display, name.c_str(), False), XA_WINDOW, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(&value), 1);
    synchronize();
}

void XTestClient::setResources(const std::string& text) {
    XChangeProperty(state_->display, root(), XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    synchronize();
}

void XTestClient::publishSettings(const std::string& theme, int size) {
    std::vector<std::uint8_t> bytes;
    const auto number = [&bytes](std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    };
    const auto text = [&](const std::string& value) {
        bytes.insert(bytes.end(), value.begin(), value.end());
        while (bytes.size() % 4 != 0) bytes.push_back(0);
    };
    const auto setting = [&](int type, const std::string& name) {
        number(static_cast<std::uint32_t>(type), 1);
        number(0, 1);
        number(static_cast<std::uint32_t>(name.size()), 2);
        text(name);
        number(0, 4);
    };
    number(0, 4);
    number(1, 4);
    number(2, 4);
    setting(0, "Gtk/CursorThemeSize");
    number(static_cast<std::uint32_t>(size), 4);
    setting(1, "Gtk/CursorThemeName");
    number(static_cast<std::uint32_t>(theme.size()), 4);
    text(theme);

    auto* const display = state_->display;
    const bool isNew = state_->settings == 0;
    if (isNew) state_->settings = XCreateSimpleWindow(display, root(), -10, -10, 1, 1, 0, 0, 0);
    const Atom property = XInternAtom(display, "_XSETTINGS_SETTINGS", False);
    XChangeProperty(display, state_->settings, property, property, 8, PropModeReplace, bytes.data(),
                    static_cast<int>(bytes.size()));
    if (isNew)
        XSetSelectionOwner(display, XInternAtom(display, "_XSETTINGS_S0", False), state_->settings,
                           CurrentTime);
    synchronize();
}

int XTestClient::contendFor(Id window, const std::string& name, bool channelIsDevice) {
    if (!state_->listens) {
        XFixesSelectCursorInput(state_->display, root(), XFixesDisplayCursorNotifyMask);
        state_->listens = true;
    }
    bool changed = false;
    const auto takeEvents = [&] {
        XSync(state_->display, False);
        while (XPending(state_->display) > 0) {
            XEvent event;
            XNextEvent(state_->display, &event);
            if (event.type == state_->fixesEvent + XFixesCursorNotify) changed = true;
        }
    };
    takeEvents();
    if (!changed) return 0;
    const Cursor mine = cursor(name);
    if (channelIsDevice)
        defineForDevice(window, mine);
    else
        define(window, mine);
    XFreeCursor(state_->display, mine);
    // What came of the own answer is no reason to answer again.
    takeEvents();
    return 1;
}

void XTestClient::synchronize() { XSync(state_->display, False); }

std::optional<SeenCursor> XTestClient::shown() {
    XFixesCursorImage* const image = XFixesGetCursorImage(state_->display);
    if (!image) return std::nullopt;
    SeenCursor seen;
    seen.name = image->name ? image->name : "";
    seen.width = image->width;
    seen.height = image->height;
    seen.hotspotX = image->xhot;
    seen.hotspotY = image->yhot;
    const auto count = static_cast<std::size_t>(image->width) * image->height;
    for (std::size_t i = 0; i < count; ++i)
        seen.pixels.push_back(static_cast<std::uint32_t>(image->pixels[i]));
    XFree(image);
    return seen;
}

void writeTestTheme(const std::filesystem::path& folder, const std::string& theme,
                    const std::vector<TestThemeCursor>& cursors) {
    const auto files = folder / theme / "cursors";
    std::error_code ignored;
    std::filesystem::create_directories(files, ignored);
    for (const auto& cursor : cursors) {
        XcursorImages* const images = XcursorImagesCreate(cursor.frames);
        for (int i = 0; i < cursor.frames; ++i)
            images->images[images->nimage++] =
                solid(cursor.size, cursor.color + static_cast<std::uint32_t>(i), cursor.delay);
        XcursorFilenameSaveImages((files / cursor.name).c_str(), images);
        XcursorImagesDestroy(images);
    }
}

}  // namespace pintle
