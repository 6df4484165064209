#include "platform/x11/x_connection.h"

#include <xcb/render.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <algorithm>

namespace pintle::x11 {
namespace {

// In 32-bit units; more than any settings channel holds.
constexpr std::uint32_t kLongestProperty = 1u << 18;

bool atLeast(std::uint32_t major, std::uint32_t minor, std::uint32_t wantedMajor, std::uint32_t wantedMinor) {
    return major > wantedMajor || (major == wantedMajor && minor >= wantedMinor);
}

}  // namespace

std::unique_ptr<XConnection> XConnection::open(const std::string& display) {
    int screenNumber = 0;
    xcb_connection_t* const connection = xcb_connect(display.c_str(), &screenNumber);
    const xcb_setup_t* const setup =
        xcb_connection_has_error(connection) ? nullptr : xcb_get_setup(connection);
    if (setup) {
        auto screens = xcb_setup_roots_iterator(setup);
        while (screenNumber > 0 && screens.rem > 1) {
            xcb_screen_next(&screens);
            --screenNumber;
        }
        if (screens.rem > 0) return std::unique_ptr<XConnection>(new XConnection(connection, screens.data));
    }
    xcb_disconnect(connection);
    return nullptr;
}

XConnection::~XConnection() { xcb_disconnect(connection_); }

bool XConnection::announceExtensions() {
    for (auto* const extension : {&xcb_xfixes_id, &xcb_render_id, &xcb_input_id})
        xcb_prefetch_extension_data(connection_, extension);
    for (auto* const extension : {&xcb_xfixes_id, &xcb_render_id, &xcb_input_id}) {
        const auto* const data = xcb_get_extension_data(connection_, extension);
        if (!data || !data->present) return false;
        if (extension == &xcb_xfixes_id) firstFixesEvent_ = data->first_event;
    }
    const auto fixes = xcb_xfixes_query_version(connection_, 5, 0);
    const auto render = xcb_render_query_version(connection_, 0, 11);
    const auto input = xcb_input_xi_query_version(connection_, 2, 0);
    const Reply<xcb_xfixes_query_version_reply_t> fixesVersion(
        xcb_xfixes_query_version_reply(connection_, fixes, nullptr));
    const Reply<xcb_render_query_version_reply_t> renderVersion(
        xcb_render_query_version_reply(connection_, render, nullptr));
    const Reply<xcb_input_xi_query_version_reply_t> inputVersion(
        xcb_input_xi_query_version_reply(connection_, input, nullptr));
    if (!fixesVersion || !renderVersion || !inputVersion) return false;
    return atLeast(fixesVersion->major_version, fixesVersion->minor_version, 5, 0) &&
           atLeast(renderVersion->major_version, renderVersion->minor_version, 0, 8) &&
           inputVersion->major_version >= 2;
}

bool XConnection::synchronize() {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply != nullptr;
}

int XConnection::firstError(const std::vector<xcb_void_cookie_t>& requests) {
    // The last one first: after its answer those of all others are here and need no waiting.
    constexpr int kConnectionGone = 1;
    int code = 0;
    for (auto request = requests.rbegin(); request != requests.rend(); ++request) {
        const Reply<xcb_generic_error_t> error(xcb_request_check(connection_, *request));
        if (error) code = error->error_code;
    }
    return code != 0 ? code : isBroken() ? kConnectionGone : 0;
}

xcb_atom_t XConnection::atom(std::string_view name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t XConnection::windowProperty(xcb_window_t window, xcb_atom_t property) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, property, XCB_ATOM_WINDOW, 0, 1), nullptr));
    if (!reply || reply->type != XCB_ATOM_WINDOW || reply->format != 32 || reply->value_len != 1) return 0;
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

std::vector<std::uint8_t> XConnection::property(xcb_window_t window, xcb_atom_t property) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestProperty),
        nullptr));
    if (!reply || reply->format != 8) return {};
    const auto* const bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    return {bytes, bytes + xcb_get_property_value_length(reply.get())};
}

std::vector<std::uint16_t> XConnection::masterPointers() {
    const Reply<xcb_input_xi_query_device_reply_t> reply(xcb_input_xi_query_device_reply(
        connection_, xcb_input_xi_query_device(connection_, XCB_INPUT_DEVICE_ALL_MASTER), nullptr));
    std::vector<std::uint16_t> pointers;
    if (!reply) return pointers;
    for (auto device = xcb_input_xi_query_device_infos_iterator(reply.get()); device.rem > 0;
         xcb_input_xi_device_info_next(&device))
        if (device.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER)
            pointers.push_back(device.data->deviceid);
    return pointers;
}

}  // namespace pintle::x11
