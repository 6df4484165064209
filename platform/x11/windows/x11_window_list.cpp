#include "platform/x11/windows/x11_window_list.h"

#include <algorithm>
#include <string_view>

#include "platform/x11/desktop/desktop_watch.h"

namespace pintle::overlay {
namespace {

constexpr int kManagedLayer = 0;
constexpr int kDockLayer = 1;
constexpr int kUnmanagedLayer = 2;
constexpr std::uint32_t kLongestList = 4096;

template <typename T>
std::vector<T> wordsOf(const x11::Reply<xcb_get_property_reply_t>& reply) {
    if (!reply || reply->format != 32) return {};
    const auto* const first = static_cast<const T*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

struct Asked {
    xcb_window_t window;
    bool managed;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t place;
    xcb_get_property_cookie_t windowClass;
    xcb_get_property_cookie_t process;
    xcb_get_property_cookie_t type;
};

}  // namespace

X11WindowList::X11WindowList(OverlayConnection& connection, X11Displays& displays)
    : connection_(connection), displays_(displays) {
    auto& x = connection.x();
    atoms_ = {x.atom("_NET_CLIENT_LIST_STACKING"), x.atom("_NET_WM_WINDOW_TYPE"),
              x.atom("_NET_WM_WINDOW_TYPE_DESKTOP"), x.atom("_NET_WM_WINDOW_TYPE_DOCK"),
              x.atom("_NET_WM_PID")};
}

std::vector<xcb_window_t> X11WindowList::managedWindows() {
    auto* const c = connection_.get();
    return wordsOf<xcb_window_t>(x11::Reply<xcb_get_property_reply_t>(
        xcb_get_property_reply(c,
                               xcb_get_property(c, 0, connection_.x().root(), atoms_.clientsStacking,
                                                XCB_ATOM_WINDOW, 0, kLongestList),
                               nullptr)));
}

std::vector<WindowInfo> X11WindowList::onScreenWindows() {
    auto* const c = connection_.get();
    const auto root = connection_.x().root();
    std::vector<std::pair<xcb_window_t, bool>> windows;
    for (const xcb_window_t window : managedWindows()) windows.emplace_back(window, true);
    const bool hasManager = !windows.empty();
    const x11::Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, root), nullptr));
    if (tree) {
        const auto* const children = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
            windows.emplace_back(children[i], false);
    }

    std::vector<Asked> asked;
    asked.reserve(windows.size());
    for (const auto& [window, managed] : windows)
        asked.push_back({window, managed, xcb_get_window_attributes(c, window), xcb_get_geometry(c, window),
                         xcb_translate_coordinates(c, window, root, 0, 0),
                         xcb_get_property(c, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256),
                         xcb_get_property(c, 0, window, atoms_.windowProcess, XCB_ATOM_CARDINAL, 0, 1),
                         xcb_get_property(c, 0, window, atoms_.windowType, XCB_ATOM_ATOM, 0, 16)});

    std::vector<WindowInfo> list;
    for (const Asked& each : asked) {
        const x11::Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(c, each.attributes, nullptr));
        const x11::Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(c, each.geometry, nullptr));
        const x11::Reply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(c, each.place, nullptr));
        const x11::Reply<xcb_get_property_reply_t> windowClass(
            xcb_get_property_reply(c, each.windowClass, nullptr));
        const x11::Reply<xcb_get_property_reply_t> process(xcb_get_property_reply(c, each.process, nullptr));
        const x11::Reply<xcb_get_property_reply_t> type(xcb_get_property_reply(c, each.type, nullptr));
        if (!attributes || !geometry || !place) continue;
        if (attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY)
            continue;
        // Without a window manager's list every child of the root is a window of its own.
        if (!each.managed && hasManager && !attributes->override_redirect) continue;
        if (connection_.isOwn(each.window)) continue;
        const auto types = wordsOf<xcb_atom_t>(type);
        const auto isOfType = [&](xcb_atom_t atom) {
            return std::find(types.begin(), types.end(), atom) != types.end();
        };
        if (isOfType(atoms_.typeDesktop)) continue;

        WindowInfo info;
        const auto processes = wordsOf<std::uint32_t>(process);
        std::string_view rawClass;
        if (windowClass)
            rawClass = {static_cast<const char*>(xcb_get_property_value(windowClass.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(windowClass.get()))};
        info.ownerName =
            applicationName(rawClass, processes.empty() ? 0 : static_cast<std::int32_t>(processes.front()))
                .value_or("");
        info.layer = isOfType(atoms_.typeDock)            ? kDockLayer
                     : attributes->override_redirect != 0 ? kUnmanagedLayer
                                                          : kManagedLayer;
        const double density = displays_.pixelsPerPoint();
        info.bounds = {displays_.pointAt(place->dst_x, place->dst_y + geometry->height),
                       {geometry->width / density, geometry->height / density}};
        list.push_back(std::move(info));
    }
    std::reverse(list.begin(), list.end());
    return list;
}

}  // namespace pintle::overlay
