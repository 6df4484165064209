#include <xcb/shape.h>

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <cstring>
#include <iterator>
#include <thread>
#include <vector>

#include "platform/x11/windows/x11_shell.h"

namespace pintle::toolkit_windows {
namespace {

using x11::Reply;

constexpr std::uint32_t kFromPager = 2;
constexpr std::uint32_t kLongestProperty = 1u << 12;
constexpr int kExtentTries = 20;
constexpr std::chrono::milliseconds kBetweenTries{2};

xcb_connection_t* connection() {
    const auto* const x = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x ? x->connection() : nullptr;
}

xcb_window_t rootOf(xcb_connection_t* c) { return xcb_setup_roots_iterator(xcb_get_setup(c)).data->root; }

xcb_atom_t atom(xcb_connection_t* c, const char* name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint32_t> numbers(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        c, xcb_get_property(c, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestProperty),
        nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

void tellWindowManager(xcb_connection_t* c, xcb_window_t window, const char* type, std::uint32_t first = 0) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(c, type);
    message.data.data32[0] = first;
    xcb_send_event(c, 0, rootOf(c), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(c);
}

}  // namespace

void activate(std::uintptr_t window) {
    if (auto* const c = connection())
        tellWindowManager(c, static_cast<xcb_window_t>(window), "_NET_ACTIVE_WINDOW", kFromPager);
}

void leaveTaskbar(std::uintptr_t id) {
    auto* const c = connection();
    if (!c) return;
    const auto window = static_cast<xcb_window_t>(id);
    const auto state = atom(c, "_NET_WM_STATE");
    // The toolkit keeps what it does not know.
    const auto now = numbers(c, window, state);
    for (const auto added : {atom(c, "_NET_WM_STATE_SKIP_TASKBAR"), atom(c, "_NET_WM_STATE_SKIP_PAGER")})
        if (std::find(now.begin(), now.end(), added) == now.end())
            xcb_change_property(c, XCB_PROP_MODE_APPEND, window, state, XCB_ATOM_ATOM, 32, 1, &added);
}

void setInputArea(std::uintptr_t window, int x, int y, int width, int height) {
    auto* const c = connection();
    if (!c) return;
    const auto* const shape = xcb_get_extension_data(c, &xcb_shape_id);
    if (!shape || !shape->present) return;
    const xcb_rectangle_t area{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                               static_cast<std::uint16_t>(std::max(width, 1)),
                               static_cast<std::uint16_t>(std::max(height, 1))};
    xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         static_cast<xcb_window_t>(window), 0, 0, 1, &area);
    xcb_flush(c);
}

void setShape(std::uintptr_t id, const std::vector<xcb_rectangle_t>& parts) {
    auto* const c = connection();
    if (!c) return;
    const auto* const extension = xcb_get_extension_data(c, &xcb_shape_id);
    if (!extension || !extension->present) return;
    const auto window = static_cast<xcb_window_t>(id);
    if (parts.empty())
        xcb_shape_mask(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0, XCB_PIXMAP_NONE);
    else
        xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, window,
                             0, 0, static_cast<std::uint32_t>(parts.size()), parts.data());
    xcb_flush(c);
}

void setBlurBehind(std::uintptr_t id, const std::vector<xcb_rectangle_t>& parts) {
    auto* const c = connection();
    if (!c) return;
    const auto window = static_cast<xcb_window_t>(id);
    const auto property = atom(c, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    std::vector<std::uint32_t> values;
    for (const auto& part : parts)
        for (const int value : {int{part.x}, int{part.y}, int{part.width}, int{part.height}})
            values.push_back(static_cast<std::uint32_t>(value));
    if (values.empty())
        // An empty property would ask for the whole window.
        xcb_delete_property(c, window, property);
    else
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                            static_cast<std::uint32_t>(values.size()), values.data());
    xcb_flush(c);
}

panels::Insets frameExtents(std::uintptr_t id) {
    auto* const c = connection();
    if (!c) return {};
    const auto window = static_cast<xcb_window_t>(id);
    const auto answers = numbers(c, rootOf(c), atom(c, "_NET_SUPPORTED"));
    if (std::find(answers.begin(), answers.end(), atom(c, "_NET_REQUEST_FRAME_EXTENTS")) == answers.end())
        return {};
    tellWindowManager(c, window, "_NET_REQUEST_FRAME_EXTENTS");
    const auto extents = atom(c, "_NET_FRAME_EXTENTS");
    for (int i = 0; i < kExtentTries; ++i) {
        const auto values = numbers(c, window, extents);
        if (values.size() == 4)
            return {static_cast<int>(values[0]), static_cast<int>(values[2]), static_cast<int>(values[1]),
                    static_cast<int>(values[3])};
        std::this_thread::sleep_for(kBetweenTries);
    }
    return {};
}

}  // namespace pintle::toolkit_windows
