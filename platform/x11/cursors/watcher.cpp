#include "platform/x11/cursors/watcher.h"

#include <xcb/xfixes.h>

namespace pintle::x11 {
namespace {

constexpr std::uint8_t kEventMask = 0x7F;

}  // namespace

std::unique_ptr<Watcher> Watcher::open(const std::string& display) {
    auto connection = XConnection::open(display);
    if (!connection || !connection->announceExtensions()) return nullptr;
    return std::unique_ptr<Watcher>(new Watcher(std::move(connection)));
}

Watcher::Watcher(std::unique_ptr<XConnection> connection)
    : connection_(std::move(connection)),
      managerSelection_(connection_->atom("_XSETTINGS_S0")),
      managerProperty_(connection_->atom("_XSETTINGS_SETTINGS")) {
    auto* const c = connection_->get();
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(c, connection_->root(), XCB_CW_EVENT_MASK, &mask);
    xcb_xfixes_select_selection_input(c, connection_->root(), managerSelection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    followSettingsManager();
}

void Watcher::followSettingsManager() {
    auto* const c = connection_->get();
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, managerSelection_), nullptr));
    manager_ = owner ? owner->owner : 0;
    if (manager_ == 0) return;
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_discard_reply(c,
                      xcb_change_window_attributes_checked(c, manager_, XCB_CW_EVENT_MASK, &mask).sequence);
    xcb_flush(c);
}

void Watcher::listenToCursors(bool listen) {
    xcb_xfixes_select_cursor_input(connection_->get(), connection_->root(),
                                   listen ? XCB_XFIXES_CURSOR_NOTIFY_MASK_DISPLAY_CURSOR : 0);
    xcb_flush(connection_->get());
}

Watcher::News Watcher::takeNews() {
    News news;
    xcb_atom_t cursorName = XCB_ATOM_NONE;
    auto* const c = connection_->get();
    const auto fixes = connection_->firstFixesEvent();
    bool managerChanged = false;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(c)}) {
        const auto type = event->response_type & kEventMask;
        if (type == fixes + XCB_XFIXES_CURSOR_NOTIFY) {
            const auto& change = reinterpret_cast<const xcb_xfixes_cursor_notify_event_t&>(*event);
            news.cursor.emplace();
            news.cursor->serial = change.cursor_serial;
            cursorName = change.name;
        } else if (type == fixes + XCB_XFIXES_SELECTION_NOTIFY) {
            managerChanged = true;
        } else if (type == XCB_PROPERTY_NOTIFY) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            const bool resources =
                change.window == connection_->root() && change.atom == XCB_ATOM_RESOURCE_MANAGER;
            const bool settings = change.window == manager_ && change.atom == managerProperty_;
            if (resources || settings) news.settingsChanged = true;
        }
    }
    if (managerChanged) {
        followSettingsManager();
        news.settingsChanged = true;
    }
    if (news.cursor) news.cursor->name = atomName(cursorName);
    return news;
}

std::optional<ShownCursor> Watcher::cursorOfRoot() {
    const auto at = pointer();
    if (!at) return std::nullopt;
    if (at->deepest == connection_->root()) return shownCursor(std::nullopt);
    auto* const c = connection_->get();
    const xcb_window_t probe = xcb_generate_id(c);
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(c, 0, probe, connection_->root(), static_cast<std::int16_t>(at->x),
                      static_cast<std::int16_t>(at->y), 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    xcb_map_window(c, probe);
    auto shown = shownCursor(std::nullopt);
    xcb_destroy_window(c, probe);
    // Whoever asks next must not meet it.
    connection_->synchronize();
    return shown;
}

CursorThemeChoice Watcher::cursorTheme(const Environment& environment) {
    CursorXSettings settings;
    if (manager_ != 0) settings = parseXSettings(connection_->property(manager_, managerProperty_));
    const auto resources = connection_->property(connection_->root(), XCB_ATOM_RESOURCE_MANAGER);
    const std::string_view text(reinterpret_cast<const char*>(resources.data()), resources.size());
    const auto& screen = connection_->screen();
    return chooseCursorTheme(settings, environment, text, screen.width_in_pixels, screen.height_in_pixels);
}

std::string Watcher::atomName(xcb_atom_t atom) {
    if (atom == XCB_ATOM_NONE) return {};
    auto* const c = connection_->get();
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(c, xcb_get_atom_name(c, atom), nullptr));
    if (!reply) return {};
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

}  // namespace pintle::x11
