#include "platform/x11/windows/panels.h"

#include <xcb/randr.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

namespace pintle::panels {
namespace {

using x11::Reply;
using x11::XConnection;

/// Of the panel to both sides of an icon, in pixels.
constexpr int kLookAround = 120;
constexpr int kLargestSample = 400;
constexpr std::uint32_t kLongestProperty = 1u << 14;

std::vector<std::uint32_t> numbers(XConnection& x, xcb_window_t window, xcb_atom_t property) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x.get(),
        xcb_get_property(x.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestProperty),
        nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

std::optional<Place> geometryOf(XConnection& x, xcb_window_t window) {
    const Reply<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(x.get(), xcb_get_geometry(x.get(), window), nullptr));
    if (!reply) return std::nullopt;
    return Place{reply->x, reply->y, reply->width, reply->height};
}

/// The panel around an icon: the icon's outermost window, and where in it the icon is.
std::optional<std::pair<xcb_window_t, Place>> panelAround(XConnection& x, xcb_window_t icon) {
    auto place = geometryOf(x, icon);
    if (!place) return std::nullopt;
    place->x = place->y = 0;
    for (xcb_window_t window = icon;;) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(x.get(), xcb_query_tree(x.get(), window), nullptr));
        if (!tree) return std::nullopt;
        if (tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE) {
            if (window == icon) return std::nullopt;
            return std::pair{window, *place};
        }
        const auto within = geometryOf(x, window);
        if (!within) return std::nullopt;
        place->x += within->x;
        place->y += within->y;
        window = tree->parent;
    }
}

/// The largest window that is a dock, by its own word.
std::optional<std::pair<xcb_window_t, Place>> largestPanel(XConnection& x) {
    const auto type = x.atom("_NET_WM_WINDOW_TYPE");
    const auto dock = x.atom("_NET_WM_WINDOW_TYPE_DOCK");
    std::optional<std::pair<xcb_window_t, Place>> largest;
    for (const auto window : numbers(x, x.root(), x.atom("_NET_CLIENT_LIST"))) {
        const auto types = numbers(x, window, type);
        if (std::find(types.begin(), types.end(), dock) == types.end()) continue;
        auto place = geometryOf(x, window);
        if (!place) continue;
        place->x = place->y = 0;
        if (!largest || place->width * place->height > largest->second.width * largest->second.height)
            largest.emplace(window, *place);
    }
    return largest;
}

/// Whether most of the pixels are dark; absent when most of them are translucent.
std::optional<bool> mostlyDark(std::span<const std::uint8_t> pixels, bool hasAlpha) {
    std::vector<int> shades;
    std::size_t translucent = 0;
    for (std::size_t i = 0; i + 4 <= pixels.size(); i += 4) {
        if (hasAlpha && pixels[i + 3] < 128) ++translucent;
        shades.push_back((pixels[i + 2] * 299 + pixels[i + 1] * 587 + pixels[i] * 114) / 1000);
    }
    if (shades.empty() || translucent * 2 > shades.size()) return std::nullopt;
    const auto middle = shades.begin() + static_cast<std::ptrdiff_t>(shades.size() / 2);
    std::nth_element(shades.begin(), middle, shades.end());
    return *middle < 140;
}

std::optional<bool> isDark(XConnection& x, xcb_window_t panel, Place sample) {
    const auto whole = geometryOf(x, panel);
    if (!whole) return std::nullopt;
    const int left = std::clamp(sample.x, 0, std::max(whole->width - 1, 0));
    const int top = std::clamp(sample.y, 0, std::max(whole->height - 1, 0));
    const int width = std::min({sample.width, whole->width - left, kLargestSample});
    const int height = std::min({sample.height, whole->height - top, kLargestSample});
    if (width <= 0 || height <= 0) return std::nullopt;
    // An error when a part of it lies outside of the screen.
    const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        x.get(),
        xcb_get_image(x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, panel, static_cast<std::int16_t>(left),
                      static_cast<std::int16_t>(top), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), ~0u),
        nullptr));
    if (!image || image->depth < 24) return std::nullopt;
    const auto length = static_cast<std::size_t>(xcb_get_image_data_length(image.get()));
    return mostlyDark({xcb_get_image_data(image.get()), length}, image->depth == 32);
}

/// Whether two stretches, each with its last pixel, touch.
bool overlap(int first, int last, int otherFirst, int otherLast) {
    return first <= otherLast && otherFirst <= last;
}

}  // namespace

std::optional<Colours> coloursOf(XConnection& connection, xcb_window_t icon, xcb_window_t trayOwner) {
    if (icon != 0 && trayOwner != 0) {
        // Red, green and blue of the foreground come first, in 16 bits each.
        const auto colours = numbers(connection, trayOwner, connection.atom("_NET_SYSTEM_TRAY_COLORS"));
        if (colours.size() >= 3) {
            const auto red = colours[0] >> 8 & 0xff;
            const auto green = colours[1] >> 8 & 0xff;
            const auto blue = colours[2] >> 8 & 0xff;
            return Colours{red * 299 + green * 587 + blue * 114 > 127'500, red << 16 | green << 8 | blue};
        }
    }
    auto panel = icon != 0 ? panelAround(connection, icon) : largestPanel(connection);
    if (!panel) return std::nullopt;
    auto& [window, sample] = *panel;
    if (icon != 0) {
        sample = {sample.x - kLookAround, sample.y - kLookAround, sample.width + 2 * kLookAround,
                  sample.height + 2 * kLookAround};
        if (sample.x < 0) sample.width += std::exchange(sample.x, 0);
        if (sample.y < 0) sample.height += std::exchange(sample.y, 0);
    }
    const auto dark = isDark(connection, window, sample);
    if (!dark) return std::nullopt;
    return Colours{*dark, std::nullopt};
}

std::optional<Insets> insetsOf(XConnection& x, const std::string& name) {
    const auto screen = geometryOf(x, x.root());
    const Reply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(x.get(), xcb_randr_get_monitors(x.get(), x.root(), 1), nullptr));
    if (!screen || !monitors) return std::nullopt;
    const auto wanted = x.atom(name);
    std::optional<Place> monitor;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it))
        if (it.data->name == wanted) monitor = Place{it.data->x, it.data->y, it.data->width, it.data->height};
    if (!monitor) return std::nullopt;
    const int right = monitor->x + monitor->width;
    const int bottom = monitor->y + monitor->height;

    Insets insets;
    const auto partial = x.atom("_NET_WM_STRUT_PARTIAL");
    const auto simple = x.atom("_NET_WM_STRUT");
    for (const auto window : numbers(x, x.root(), x.atom("_NET_CLIENT_LIST"))) {
        auto values = numbers(x, window, partial);
        if (values.size() < 12) {
            values = numbers(x, window, simple);
            if (values.size() < 4) continue;
            const auto width = static_cast<std::uint32_t>(screen->width);
            const auto height = static_cast<std::uint32_t>(screen->height);
            values.resize(4);
            values.insert(values.end(), {0, height, 0, height, 0, width, 0, width});
        }
        std::array<int, 12> strut{};
        std::transform(values.begin(), values.begin() + 12, strut.begin(),
                       [](std::uint32_t value) { return static_cast<int>(std::min(value, 1u << 20)); });
        // Counted from the edges of the whole screen, which need not be this monitor's.
        const auto take = [](int& inset, int reserved, int limit) {
            if (reserved > 0 && reserved < limit) inset = std::max(inset, reserved);
        };
        const bool besideRows = overlap(strut[4], strut[5], monitor->y, bottom - 1);
        if (strut[0] > 0 && besideRows) take(insets.left, strut[0] - monitor->x, monitor->width);
        if (strut[1] > 0 && overlap(strut[6], strut[7], monitor->y, bottom - 1))
            take(insets.right, strut[1] - (screen->width - right), monitor->width);
        if (strut[2] > 0 && overlap(strut[8], strut[9], monitor->x, right - 1))
            take(insets.top, strut[2] - monitor->y, monitor->height);
        if (strut[3] > 0 && overlap(strut[10], strut[11], monitor->x, right - 1))
            take(insets.bottom, strut[3] - (screen->height - bottom), monitor->height);
    }
    return insets;
}

}  // namespace pintle::panels
