#include "platform/x11/overlay/overlay_connection.h"

#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace pintle::overlay {
namespace {

constexpr std::uint8_t kEventMask = 0x7F;

constexpr std::chrono::seconds kUnfollowedFor{2};

void listenToRawMotion(xcb_connection_t* c, xcb_window_t root, bool listen) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{};
    request.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    request.head.mask_len = 1;
    if (listen)
        request.mask = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                       XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    xcb_input_xi_select_events(c, root, 1, &request.head);
}

}  // namespace

std::unique_ptr<x11::XConnection> OverlayConnection::connect(const std::string& display) {
    auto connection = x11::XConnection::open(display);
    if (!connection || !connection->announceExtensions()) return nullptr;
    const auto* const shape = xcb_get_extension_data(connection->get(), &xcb_shape_id);
    if (!shape || !shape->present) return nullptr;
    return connection;
}

std::unique_ptr<OverlayConnection> OverlayConnection::open(const std::string& display) {
    auto connection = connect(display);
    if (!connection) return nullptr;
    return std::unique_ptr<OverlayConnection>(new OverlayConnection(display, std::move(connection)));
}

OverlayConnection::OverlayConnection(std::string display, std::unique_ptr<x11::XConnection> connection)
    : display_(std::move(display)), connection_(std::move(connection)) {
    begin();
}

bool OverlayConnection::reopen() {
    if (std::exchange(hasReopened_, true)) return false;
    auto fresh = connect(display_);
    if (!fresh) return false;
    connection_ = std::move(fresh);
    ownWindows_.clear();
    following_ = false;
    cursorSerial_ = 0;
    ++motions_;
    ++restackings_;
    ++displayChanges_;
    begin();
    reopened_.emit();
    flush();
    return true;
}

void OverlayConnection::begin() {
    auto* const c = get();
    compositorSelection_ = connection_->atom("_NET_WM_CM_S0");
    const auto root = connection_->root();
    xcb_xfixes_select_selection_input(c, root, compositorSelection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    if (const auto* const randr = xcb_get_extension_data(c, &xcb_randr_id); randr && randr->present) {
        firstRandrEvent_ = randr->first_event;
        xcb_randr_select_input(c, root,
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    inputOpcode_ = xcb_get_extension_data(c, &xcb_input_id)->major_opcode;
    listen(false);
    askForCompositor();
    flush();
}

void OverlayConnection::listen(bool toEverything) {
    auto* const c = get();
    const auto root = connection_->root();
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                               (toEverything ? std::uint32_t{XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY} : 0U);
    xcb_change_window_attributes(c, root, XCB_CW_EVENT_MASK, &mask);
    xcb_xfixes_select_cursor_input(c, root, toEverything ? XCB_XFIXES_CURSOR_NOTIFY_MASK_DISPLAY_CURSOR : 0);
    listenToRawMotion(c, root, toEverything);
}

void OverlayConnection::follow() {
    lastFollowed_ = std::chrono::steady_clock::now();
    if (following_) return;
    following_ = true;
    // What happened meanwhile was not reported.
    cursorSerial_ = 0;
    ++motions_;
    ++restackings_;
    listen(true);
    flush();
}

void OverlayConnection::askForCompositor() {
    const x11::Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(get(), xcb_get_selection_owner(get(), compositorSelection_), nullptr));
    hasCompositor_ = owner && owner->owner != XCB_WINDOW_NONE;
}

void OverlayConnection::drain() {
    const bool composited = hasCompositor_;
    while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(get())}) handle(*event);
    if (composited != hasCompositor_) compositorChanged_.emit();
    if (following_ && std::chrono::steady_clock::now() - lastFollowed_ > kUnfollowedFor) {
        following_ = false;
        listen(false);
        flush();
    }
}

void OverlayConnection::handle(const xcb_generic_event_t& event) {
    const auto type = static_cast<std::uint8_t>(event.response_type & kEventMask);
    if (type == XCB_GE_GENERIC) {
        if (reinterpret_cast<const xcb_ge_generic_event_t&>(event).extension == inputOpcode_) ++motions_;
    } else if (type == connection_->firstFixesEvent() + XCB_XFIXES_CURSOR_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_xfixes_cursor_notify_event_t&>(event);
        cursorSerial_ = change.cursor_serial;
        cursorName_ = change.name;
    } else if (type == connection_->firstFixesEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        hasCompositor_ = change.owner != XCB_WINDOW_NONE;
    } else if (type == XCB_MAP_NOTIFY) {
        if (!isOwn(reinterpret_cast<const xcb_map_notify_event_t&>(event).window)) ++restackings_;
    } else if (type == XCB_CIRCULATE_NOTIFY) {
        ++restackings_;
    } else if (type == XCB_CONFIGURE_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (change.window == connection_->root())
            ++displayChanges_;
        else if (!isOwn(change.window))
            ++restackings_;
    } else if (firstRandrEvent_ != 0 && (type == firstRandrEvent_ || type == firstRandrEvent_ + 1)) {
        ++displayChanges_;
    }
}

bool OverlayConnection::isOwn(xcb_window_t window) const {
    return std::find(ownWindows_.begin(), ownWindows_.end(), window) != ownWindows_.end();
}

void OverlayConnection::addOwnWindow(xcb_window_t window) { ownWindows_.push_back(window); }

void OverlayConnection::removeOwnWindow(xcb_window_t window) { std::erase(ownWindows_, window); }

}  // namespace pintle::overlay
