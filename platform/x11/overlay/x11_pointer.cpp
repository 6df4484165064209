#include "platform/x11/overlay/x11_pointer.h"

#include <xcb/xfixes.h>

#include <array>
#include <span>
#include <utility>

#include "platform/x11/cursors/cursor_names.h"

namespace pintle::overlay {
namespace {

constexpr std::array<const char*, 24> kStandardNames = {
    "left_ptr",    "xterm",    "pointer",    "crosshair",    "grab",          "grabbing",
    "size_hor",    "size_ver", "left_side",  "right_side",   "top_side",      "bottom_side",
    "not-allowed", "alias",    "copy",       "context-menu", "vertical-text", "pirate",
    "zoom-in",     "zoom-out", "col-resize", "row-resize",   "size_fdiag",    "size_bdiag"};

std::optional<Bitmap> bitmapOf(int width, int height, std::span<const std::uint32_t> argb) {
    if (argb.size() < static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) return std::nullopt;
    return Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size() / 4; ++i) {
            out[i * 4] = static_cast<std::uint8_t>(argb[i] >> 16);
            out[i * 4 + 1] = static_cast<std::uint8_t>(argb[i] >> 8);
            out[i * 4 + 2] = static_cast<std::uint8_t>(argb[i]);
            out[i * 4 + 3] = static_cast<std::uint8_t>(argb[i] >> 24);
        }
    });
}

/// Names of 32 hexadecimal digits are the fingerprints by which old toolkits ask for a shape.
bool isFingerprintName(std::string_view name) {
    return name.size() == 32 && name.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

}  // namespace

X11Pointer::X11Pointer(OverlayConnection& connection, const std::string& display,
                       x11::Environment environment, std::function<bool()> screenWatched,
                       std::function<void()> flushWanted)
    : connection_(connection),
      settings_(x11::Watcher::open(display)),
      environment_(std::move(environment)),
      theme_(environment_),
      screenWatched_(std::move(screenWatched)),
      flushWanted_(std::move(flushWanted)) {
    reopened_ = connection_.reopened().observe([this] {
        hiddenAtServer_ = false;
        readSerial_.reset();
        flush();
    });
}

void X11Pointer::show(DisplayId) {
    if (hidings_ > 0) --hidings_;
    askForFlush();
}

void X11Pointer::hide(DisplayId) {
    ++hidings_;
    askForFlush();
}

void X11Pointer::askForFlush() {
    if ((hidings_ > 0) == hiddenAtServer_ || !flushWanted_) return;
    if (!std::exchange(askedForFlush_, true)) flushWanted_();
}

void X11Pointer::flush() {
    askedForFlush_ = false;
    const bool hidden = hidings_ > 0;
    if (hidden != hiddenAtServer_) {
        hiddenAtServer_ = hidden;
        if (hidden)
            xcb_xfixes_hide_cursor(connection_.get(), connection_.x().root());
        else
            xcb_xfixes_show_cursor(connection_.get(), connection_.x().root());
    }
    connection_.flush();
}

std::optional<std::int64_t> X11Pointer::currentCursorSeed() {
    currentSystemCursor();
    if (!readSerial_) return std::nullopt;
    return *readSerial_;
}

std::optional<SystemCursor> X11Pointer::currentSystemCursor() {
    connection_.follow();
    connection_.drain();
    if (connection_.cursorSerial() != 0 && readSerial_ == connection_.cursorSerial()) return read_;
    auto* const c = connection_.get();
    const x11::Reply<xcb_xfixes_get_cursor_image_and_name_reply_t> reply(
        xcb_xfixes_get_cursor_image_and_name_reply(c, xcb_xfixes_get_cursor_image_and_name(c), nullptr));
    if (!reply) {
        // A cursor whose client is gone cannot be read; the event of its change still carries its name.
        readSerial_ = connection_.cursorSerial();
        const x11::Reply<xcb_get_atom_name_reply_t> name(
            xcb_get_atom_name_reply(c, xcb_get_atom_name(c, connection_.cursorName()), nullptr));
        read_.reset();
        if (name && connection_.cursorName() != XCB_ATOM_NONE)
            read_ =
                SystemCursor{*Bitmap::create(1, 1, [](auto out) { std::fill(out.begin(), out.end(), 0); }),
                             {0, 0},
                             nameFor({xcb_get_atom_name_name(name.get()),
                                      static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get()))},
                                     0)};
        return read_;
    }
    readSerial_ = reply->cursor_serial;
    connection_.cursorWasRead(reply->cursor_serial);
    const std::span pixels(
        xcb_xfixes_get_cursor_image_and_name_cursor_image(reply.get()),
        static_cast<std::size_t>(xcb_xfixes_get_cursor_image_and_name_cursor_image_length(reply.get())));
    const std::string_view name(
        xcb_xfixes_get_cursor_image_and_name_name(reply.get()),
        static_cast<std::size_t>(xcb_xfixes_get_cursor_image_and_name_name_length(reply.get())));
    const auto fingerprint =
        x11::fingerprintOf(reply->width, reply->height, reply->xhot, reply->yhot, pixels);
    read_.reset();
    if (auto image = bitmapOf(reply->width, reply->height, pixels))
        read_ = SystemCursor{std::move(*image),
                             {static_cast<double>(reply->xhot), static_cast<double>(reply->yhot)},
                             nameFor(name, fingerprint)};
    return read_;
}

std::optional<std::string> X11Pointer::nameFor(std::string_view shownName, x11::Fingerprint fingerprint) {
    if (isFingerprintName(shownName)) {
        const auto* const row = x11::rowOf(shownName);
        return row ? std::optional<std::string>(row->names.front()) : std::nullopt;
    }
    if (!shownName.empty()) return std::string(shownName);
    // Frames of the desktop's animated cursors and private copies carry no name, but their pixels are known.
    const std::string_view known = theme_.nameOf(fingerprint);
    if (known.empty()) return std::nullopt;
    return std::string(known);
}

std::vector<std::pair<std::string, Bitmap>> X11Pointer::standardCursors() {
    std::vector<std::pair<std::string, Bitmap>> cursors;
    if (!settings_) return cursors;
    settings_->takeNews();
    theme_.choose(settings_->cursorTheme(environment_));
    for (const char* name : kStandardNames) {
        const x11::PicturePtr picture = theme_.picture(name);
        if (!picture) continue;
        const x11::CursorFrame& frame = picture->frames().front();
        if (auto image = bitmapOf(frame.width, frame.height, frame.argb()))
            cursors.emplace_back(name, std::move(*image));
    }
    return cursors;
}

}  // namespace pintle::overlay
