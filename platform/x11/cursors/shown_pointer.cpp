#include "platform/x11/cursors/shown_pointer.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <span>

namespace pintle::x11 {
namespace {

constexpr std::uint16_t kAnyButton = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
constexpr int kDeepestNesting = 256;
constexpr int kLargestGlyph = 64;

}  // namespace

std::optional<ShownCursor> shownCursor(XConnection& connection, const std::optional<ShownCursor>& lastKnown) {
    auto* const c = connection.get();
    const Reply<xcb_xfixes_get_cursor_image_and_name_reply_t> reply(
        xcb_xfixes_get_cursor_image_and_name_reply(c, xcb_xfixes_get_cursor_image_and_name(c), nullptr));
    if (!reply) return connection.isBroken() ? std::nullopt : lastKnown;
    ShownCursor shown;
    shown.serial = reply->cursor_serial;
    shown.name.assign(
        xcb_xfixes_get_cursor_image_and_name_name(reply.get()),
        static_cast<std::size_t>(xcb_xfixes_get_cursor_image_and_name_name_length(reply.get())));
    const std::span pixels(
        xcb_xfixes_get_cursor_image_and_name_cursor_image(reply.get()),
        static_cast<std::size_t>(xcb_xfixes_get_cursor_image_and_name_cursor_image_length(reply.get())));
    const bool isBlank =
        std::all_of(pixels.begin(), pixels.end(), [](std::uint32_t pixel) { return pixel >> 24 == 0; });
    // Until its first frame is due an animation is reported with its name and one invisible pixel.
    if (isBlank && pixels.size() == 1 && !shown.name.empty()) return shown;
    shown.fingerprint = fingerprintOf(reply->width, reply->height, reply->xhot, reply->yhot, pixels);
    shown.isBlank = isBlank;
    if (shown.name.empty() && reply->width <= kLargestGlyph && reply->height <= kLargestGlyph)
        shown.shape = twoColorShapeOf(reply->width, reply->height, reply->xhot, reply->yhot, pixels);
    return shown;
}

std::optional<PointerState> pointerState(XConnection& connection) {
    auto* const c = connection.get();
    PointerState state;
    state.deepest = connection.root();
    for (int depth = 0; depth < kDeepestNesting; ++depth) {
        const Reply<xcb_query_pointer_reply_t> reply(
            xcb_query_pointer_reply(c, xcb_query_pointer(c, state.deepest), nullptr));
        if (!reply) {
            if (depth == 0) return std::nullopt;
            break;
        }
        state.x = reply->root_x;
        state.y = reply->root_y;
        state.buttonPressed = (reply->mask & kAnyButton) != 0;
        if (reply->child == XCB_WINDOW_NONE) break;
        state.deepest = reply->child;
    }
    return state;
}

ServerGrab::ServerGrab(XConnection& connection) : connection_(connection) {
    xcb_grab_server(connection_.get());
}

ServerGrab::~ServerGrab() {
    xcb_ungrab_server(connection_.get());
    xcb_flush(connection_.get());
}

}  // namespace pintle::x11
