#include "platform/x11/cursors/registration.h"

#include <xcb/xfixes.h>
#include <xcb/xinput.h>

namespace pintle::x11 {
namespace {

constexpr std::string_view kMark = "_PINTLE_REGISTRATION";

}  // namespace

std::unique_ptr<Registration> Registration::open(const std::string& display, bool& reachedServer) {
    auto connection = XConnection::open(display);
    reachedServer = connection != nullptr;
    if (!connection || !connection->announceExtensions()) return nullptr;
    std::unique_ptr<Registration> registration(new Registration(std::move(connection)));
    return registration->maker_.isUsable() ? std::move(registration) : nullptr;
}

Registration::Registration(std::unique_ptr<XConnection> connection)
    : connection_(std::move(connection)),
      maker_(*connection_),
      mark_(connection_->atom(kMark)),
      window_(xcb_generate_id(connection_->get())) {}

int Registration::prepare(const PicturePtr& picture, std::span<const std::string_view> names) {
    std::vector<std::string_view> missing;
    for (const auto name : names) {
        const auto waiting = prepared_.find(name);
        if (waiting != prepared_.end() && waiting->second.picture->equals(*picture)) continue;
        const auto shown = inForce_.find(name);
        if (shown != inForce_.end() && shown->second->equals(*picture)) continue;
        missing.push_back(name);
    }
    if (missing.empty()) return 0;
    std::vector<xcb_cursor_t> made;
    if (const int error = maker_.make(*picture, missing, made)) return error;
    for (std::size_t i = 0; i < missing.size(); ++i) {
        Made& slot = prepared_[missing[i]];
        if (slot.cursor != 0) free(slot.cursor);
        slot = {made[i], picture};
    }
    return 0;
}

std::vector<WantedCursors::Change> Registration::send(const std::vector<WantedCursors::Change>& changes) {
    std::vector<WantedCursors::Change> sent;
    for (const auto& wanted : changes) {
        if (prepare(wanted.picture, std::span(&wanted.name, 1)) != 0) continue;
        if (!permanent_) makePermanent();
        const auto next = prepared_.find(wanted.name);
        if (next != prepared_.end() && next->second.picture->equals(*wanted.picture)) {
            inForce_[wanted.name] = wanted.picture;
            nameIt(next->second.cursor, wanted.name);
            change(wanted.name, next->second.cursor);
            free(next->second.cursor);
            prepared_.erase(next);
        } else {
            replaceByName(wanted.name);
        }
        sent.push_back(wanted);
    }
    dropPrepared();
    endPredecessor();
    connection_->synchronize();
    return sent;
}

void Registration::dropPrepared() {
    for (const auto& [name, made] : prepared_) free(made.cursor);
    prepared_.clear();
}

xcb_cursor_t Registration::freshCursor(std::string_view name) {
    const auto shown = inForce_.find(name);
    std::vector<xcb_cursor_t> made;
    if (shown == inForce_.end() || maker_.make(*shown->second, std::span(&name, 1), made) != 0) return 0;
    nameIt(made.front(), name);
    return made.front();
}

void Registration::replaceByName(std::string_view name) {
    const auto cursor = freshCursor(name);
    if (cursor == 0) return;
    change(name, cursor);
    free(cursor);
}

void Registration::define(xcb_window_t window, std::string_view name, CursorChannel channel) {
    const auto cursor = freshCursor(name);
    if (cursor == 0) return;
    set(window, cursor, channel);
    free(cursor);
}

void Registration::undefine(xcb_window_t window, CursorChannel channel) {
    set(window, XCB_CURSOR_NONE, channel);
}

void Registration::defineGlyph(xcb_window_t window, const CoreGlyph& glyph) {
    const auto cursor = makeGlyphCursor(*connection_, glyph);
    set(window, cursor, CursorChannel::core);
    free(cursor);
}

void Registration::makePermanent() {
    auto* const c = connection_->get();
    permanent_ = true;
    xcb_set_close_down_mode(c, XCB_CLOSE_DOWN_RETAIN_PERMANENT);
    xcb_create_window(c, 0, window_, connection_->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window_, mark_, XCB_ATOM_WINDOW, 32, 1, &window_);

    const auto earlier = connection_->windowProperty(connection_->root(), mark_);
    if (earlier != 0 && earlier != window_ && isRegistration(earlier)) predecessor_ = earlier;
}

bool Registration::hasSuccessor(const Registration& lost) {
    const auto latest = connection_->windowProperty(connection_->root(), mark_);
    return lost.permanent_ && latest != 0 && latest != lost.window_ && isRegistration(latest);
}

bool Registration::isRegistration(xcb_window_t window) {
    auto* const c = connection_->get();
    // Ids are given out again, and properties can be written by anybody. Other programs make something else
    // first than a window that shows nothing.
    const auto ownPart = xcb_get_setup(c)->resource_id_mask;
    if ((window & ownPart) != (window_ & ownPart)) return false;
    if (connection_->windowProperty(window, mark_) != window) return false;
    const auto attributesAsked = xcb_get_window_attributes(c, window);
    const auto geometryAsked = xcb_get_geometry(c, window);
    const auto treeAsked = xcb_query_tree(c, window);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, attributesAsked, nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, geometryAsked, nullptr));
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, treeAsked, nullptr));
    return attributes && geometry && tree && attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY &&
           attributes->map_state == XCB_MAP_STATE_UNMAPPED && geometry->width == 1 && geometry->height == 1 &&
           tree->parent == connection_->root();
}

void Registration::endPredecessor() {
    if (!permanent_ || announced_) return;
    announced_ = true;
    auto* const c = connection_->get();
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, connection_->root(), mark_, XCB_ATOM_WINDOW, 32, 1,
                        &window_);
    if (predecessor_ != 0) xcb_kill_client(c, predecessor_);
}

void Registration::nameIt(xcb_cursor_t cursor, std::string_view name) {
    xcb_xfixes_set_cursor_name(connection_->get(), cursor, static_cast<std::uint16_t>(name.size()),
                               name.data());
}

void Registration::change(std::string_view name, xcb_cursor_t cursor) {
    xcb_xfixes_change_cursor_by_name(connection_->get(), cursor, static_cast<std::uint16_t>(name.size()),
                                     name.data());
}

void Registration::set(xcb_window_t window, xcb_cursor_t cursor, CursorChannel channel) {
    auto* const c = connection_->get();
    // Errors are answered to nobody: the window may be gone by now.
    std::vector<xcb_void_cookie_t> requests;
    if (channel == CursorChannel::core)
        requests.push_back(xcb_change_window_attributes_checked(c, window, XCB_CW_CURSOR, &cursor));
    else
        for (const auto pointer : connection_->masterPointers())
            requests.push_back(xcb_input_xi_change_cursor_checked(c, window, cursor, pointer));
    for (const auto request : requests) xcb_discard_reply(c, request.sequence);
    xcb_flush(c);
}

}  // namespace pintle::x11
