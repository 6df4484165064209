#include "platform/x11/overlay/x11_displays.h"

#include <xcb/randr.h>

#include <algorithm>

namespace pintle::overlay {
namespace {

// With the window list, twice a second, still less than one tick in twelve.
constexpr int kQuestionsAtRest = 16;

struct Monitor {
    DisplayId id = 0;
    bool primary = false;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

std::vector<Monitor> monitorsOf(x11::XConnection& x) {
    auto* const c = x.get();
    std::vector<Monitor> monitors;
    const auto* const randr = xcb_get_extension_data(c, &xcb_randr_id);
    if (randr && randr->present) {
        const x11::Reply<xcb_randr_query_version_reply_t> version(
            xcb_randr_query_version_reply(c, xcb_randr_query_version(c, 1, 5), nullptr));
        const x11::Reply<xcb_randr_get_monitors_reply_t> reply(
            xcb_randr_get_monitors_reply(c, xcb_randr_get_monitors(c, x.root(), 1), nullptr));
        if (version && reply)
            for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
                 xcb_randr_monitor_info_next(&it))
                if (it.data->width > 0 && it.data->height > 0)
                    monitors.push_back({it.data->name, it.data->primary != 0, it.data->x, it.data->y,
                                        it.data->width, it.data->height});
    }
    if (monitors.empty()) {
        const x11::Reply<xcb_get_geometry_reply_t> root(
            xcb_get_geometry_reply(c, xcb_get_geometry(c, x.root()), nullptr));
        if (root) monitors.push_back({1, true, 0, 0, root->width, root->height});
    }
    // The primary monitor carries the origin.
    std::stable_partition(monitors.begin(), monitors.end(), [](const Monitor& each) { return each.primary; });
    return monitors;
}

}  // namespace

void X11Displays::refresh() {
    const auto monitors = monitorsOf(connection_.x());
    screens_.clear();
    main_ = 0;
    originTop_ = 0;
    if (monitors.empty()) return;
    const Monitor& first = monitors.front();
    main_ = first.id;
    originX_ = first.x;
    originTop_ = first.y;
    originBottom_ = first.y + first.height;
    for (const Monitor& each : monitors) {
        Screen screen;
        screen.frame.origin = {(each.x - originX_) / density_,
                               (originBottom_ - each.y - each.height) / density_};
        screen.frame.size = {each.width / density_, each.height / density_};
        screen.id = each.id;
        screens_.push_back(screen);
    }
}

const std::vector<Screen>& X11Displays::screens() {
    const double density = askDensity_ ? askDensity_() : 1;
    if (known_ != connection_.displayChanges() || density_ != density) {
        known_ = connection_.displayChanges();
        density_ = density;
        refresh();
        motionsSeen_ = 0;
    }
    return screens_;
}

DisplayId X11Displays::mainDisplayID() {
    screens();
    return main_;
}

Point X11Displays::mouseLocation() {
    connection_.follow();
    connection_.drain();
    screens();
    if (motionsSeen_ == connection_.motions() && ++questionsSince_ < kQuestionsAtRest) return mouse_;
    motionsSeen_ = connection_.motions();
    questionsSince_ = 0;
    auto* const c = connection_.get();
    const x11::Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(c, xcb_query_pointer(c, connection_.x().root()), nullptr));
    if (reply) mouse_ = pointAt(reply->root_x, reply->root_y);
    return mouse_;
}

}  // namespace pintle::overlay
