#include "platform/x11/desktop/screen_look_watch.h"

#include <xcb/xfixes.h>

#include <charconv>
#include <utility>

#include "platform/x11/cursors/desktop_settings.h"

namespace pintle {
namespace {

using x11::Reply;

constexpr std::uint8_t kEventMask = 0x7f;

xcb_window_t ownerOf(xcb_connection_t* x, xcb_atom_t selection) {
    const Reply<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr)};
    return owner ? owner->owner : 0;
}

}  // namespace

ScreenLookWatch::ScreenLookWatch(Options options, std::function<void(const ScreenLook&)> changed)
    : options_(std::move(options)),
      changed_(std::move(changed)),
      connection_(x11::XConnection::open(options_.display.value_or(""))) {
    if (!connection_) return;
    selectEvents();
    watch_ = options_.watchReadable(connection_->descriptor(), lifetime_.weakly([this] { readable(); }));
    read();
    // Reading the answers may have queued events in the library, which the descriptor does not announce.
    options_.queue.post(lifetime_.weakly([this] { readable(); }));
}

ScreenLookWatch::~ScreenLookWatch() {
    // Before the connection whose descriptor it watches.
    watch_.end();
}

void ScreenLookWatch::selectEvents() {
    auto* const x = connection_->get();
    settingsSelection_ = connection_->atom("_XSETTINGS_S0");
    settingsProperty_ = connection_->atom("_XSETTINGS_SETTINGS");
    compositorSelection_ = connection_->atom("_NET_WM_CM_S0");
    const auto* fixes = xcb_get_extension_data(x, &xcb_xfixes_id);
    if (fixes && fixes->present) {
        firstFixesEvent_ = fixes->first_event;
        xcb_discard_reply(x, xcb_xfixes_query_version(x, 4, 0).sequence);
        for (const auto selection : {settingsSelection_, compositorSelection_})
            xcb_xfixes_select_selection_input(x, connection_->root(), selection,
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    // Where resources are all that a desktop has for its dots per inch.
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(x, connection_->root(), XCB_CW_EVENT_MASK, &mask);
}

void ScreenLookWatch::readable() {
    if (!connection_) return;
    while (true) {
        bool any = false;
        bool news = false;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
            any = true;
            const std::uint8_t type = event->response_type & kEventMask;
            if (type == XCB_PROPERTY_NOTIFY) {
                const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
                news |= change.window == settingsManager_ && change.atom == settingsProperty_;
                news |= change.window == connection_->root() && change.atom == XCB_ATOM_RESOURCE_MANAGER;
            } else {
                news |= firstFixesEvent_ != 0 && type == firstFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY;
            }
        }
        if (connection_->isBroken()) {
            // Without a server nobody looks. The handle of the watch may be the one that called.
            options_.queue.post(
                [watch = std::make_shared<Subscription>(std::move(watch_)),
                 connection = std::shared_ptr<x11::XConnection>(std::move(connection_))] { watch->end(); });
            return;
        }
        if (!any) return;
        if (news) read();
    }
}

void ScreenLookWatch::read() {
    auto* const x = connection_->get();
    ScreenLook look;
    settingsManager_ = ownerOf(x, settingsSelection_);
    if (settingsManager_ != 0) {
        // Subscribed before reading, so that no change is lost in between.
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(x, settingsManager_, XCB_CW_EVENT_MASK, &mask);
        look.published =
            publishedLook(readXSettings(connection_->property(settingsManager_, settingsProperty_)));
    }
    if (!look.published.dpi) {
        const auto bytes = connection_->property(connection_->root(), XCB_ATOM_RESOURCE_MANAGER);
        const std::string resources(bytes.begin(), bytes.end());
        const auto text = x11::resourceValue(resources, "Xft", "dpi").value_or("");
        double dpi = 0;
        const auto end = std::from_chars(text.data(), text.data() + text.size(), dpi);
        if (end.ec == std::errc() && dpi > 0) look.published.dpi = dpi;
    }
    look.composited = ownerOf(x, compositorSelection_) != 0;
    xcb_flush(x);
    if (std::exchange(look_, look) != look) changed_(look_);
}

}  // namespace pintle
