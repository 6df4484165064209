#include "platform/x11/windows/press_watch.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace pintle {
namespace {

using x11::Reply;

constexpr std::uint8_t kEventMask = 0x7f;
constexpr std::uint32_t kLeft = 1;
constexpr std::uint32_t kRight = 3;
/// How long after its release a press still explains a click that a panel passes on.
constexpr std::chrono::seconds kExplains{1};

/// The child of the root window that holds `window`; 0 when it is gone.
xcb_window_t topOf(x11::XConnection& x, xcb_window_t window) {
    while (true) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(x.get(), xcb_query_tree(x.get(), window), nullptr));
        if (!tree) return 0;
        if (tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE) return window;
        window = tree->parent;
    }
}

}  // namespace

PressWatch::PressWatch(x11::XConnection& connection, std::function<std::vector<std::uintptr_t>()> ownWindows,
                       std::function<std::chrono::nanoseconds()> now)
    : connection_(connection), ownWindows_(std::move(ownWindows)), now_(std::move(now)) {
    auto* const c = connection_.get();
    const auto* const input = xcb_get_extension_data(c, &xcb_input_id);
    if (!input || !input->present) return;
    // Before 2.1, whoever grabs the pointer (a menu does) keeps raw events for itself.
    const Reply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 2), nullptr));
    if (!version || version->major_version < 2) return;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{};
    request.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    request.head.mask_len = 1;
    request.mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    if (connection_.firstError(
            {xcb_input_xi_select_events_checked(c, connection_.root(), 1, &request.head)}) == 0)
        inputOpcode_ = input->major_opcode;
}

std::optional<std::uint64_t> PressWatch::current() const {
    if (presses_ == 0 || (released_ && now_() - *released_ > kExplains)) return std::nullopt;
    return presses_;
}

void PressWatch::take(const xcb_generic_event_t& event) {
    if ((event.response_type & kEventMask) != XCB_GE_GENERIC || !works()) return;
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    // The wheel turns in presses too.
    if (raw.extension != inputOpcode_ || raw.detail < kLeft || raw.detail > kRight) return;
    if (raw.event_type == XCB_INPUT_RAW_BUTTON_RELEASE) {
        released_ = now_();
        return;
    }
    if (raw.event_type != XCB_INPUT_RAW_BUTTON_PRESS) return;
    ++presses_;
    released_.reset();
    if ((raw.detail != kLeft && raw.detail != kRight) || isOnOwnWindow()) return;
    pressed_.emit(
        {raw.detail == kLeft ? GlobalMouseDown::Button::left : GlobalMouseDown::Button::right, presses_});
}

bool PressWatch::isOnOwnWindow() const {
    const auto own = ownWindows_();
    if (own.empty()) return false;
    auto* const c = connection_.get();
    const Reply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(c, xcb_query_pointer(c, connection_.root()), nullptr));
    if (!pointer || pointer->child == XCB_WINDOW_NONE) return false;
    // A press on the frame that the window manager has drawn around a window is one on the window.
    return std::any_of(own.begin(), own.end(), [&](std::uintptr_t window) {
        return topOf(connection_, static_cast<xcb_window_t>(window)) == pointer->child;
    });
}

}  // namespace pintle
