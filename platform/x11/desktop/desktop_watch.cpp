#include "platform/x11/desktop/desktop_watch.h"

#include <xcb/dpms.h>
#include <xcb/randr.h>
#include <xcb/screensaver.h>
#include <xcb/xfixes.h>

#include <fstream>
#include <utility>
#include <vector>

namespace pintle {
namespace {

using x11::Reply;

constexpr std::uint8_t kEventMask = 0x7f;

std::string textOf(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

bool isSameApplication(const RunningApplication& a, const RunningApplication& b) {
    // One process gives its windows different classes (dialogs of some toolkits); a window without a process
    // is known by its class alone.
    return a.pid != 0 && b.pid != 0 ? a.pid == b.pid : a == b;
}

// The number of the extension's first event; 0 when the server lacks it.
std::uint8_t firstEvent(xcb_connection_t* connection, xcb_extension_t* extension) {
    const auto* found = xcb_get_extension_data(connection, extension);
    return found && found->present ? found->first_event : 0;
}

}  // namespace

std::optional<std::string> applicationName(std::string_view windowClass, std::int32_t pid) {
    // Two texts with a NUL after each: the instance and the class.
    if (const auto instanceEnd = windowClass.find('\0'); instanceEnd != std::string_view::npos) {
        const auto name = windowClass.substr(instanceEnd + 1);
        if (const auto className = name.substr(0, name.find('\0')); !className.empty())
            return std::string(className);
    }
    if (pid <= 0) return std::nullopt;
    std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    if (!std::getline(file, name) || name.empty()) return std::nullopt;
    return name;
}

DesktopWatch::DesktopWatch(X11WorkspaceOptions options, Listener listener)
    : options_(std::move(options)), listener_(std::move(listener)) {
    if (!open()) return;
    themeSettings_ = readThemeSettings();
    readActiveWindow(false);
}

DesktopWatch::~DesktopWatch() {
    // Before the connection whose descriptor it watches.
    watch_.end();
}

bool DesktopWatch::open() {
    connection_ = x11::XConnection::open(options_.display.value_or(""));
    if (!connection_) return false;
    selectEvents();
    watch_ = options_.watchReadable(connection_->descriptor(), lifetime_.weakly([this] { readable(); }));
    // Reading the answers may have queued events in the library, which the descriptor does not announce.
    options_.queue.post(lifetime_.weakly([this] { readable(); }));
    return true;
}

void DesktopWatch::selectEvents() {
    auto* const x = connection_->get();
    const auto root = connection_->root();
    atoms_ = {connection_->atom("_NET_ACTIVE_WINDOW"),
              connection_->atom("_NET_SUPPORTING_WM_CHECK"),
              connection_->atom("WM_S0"),
              connection_->atom("_NET_WM_PID"),
              connection_->atom("_XSETTINGS_S0"),
              connection_->atom("_XSETTINGS_SETTINGS")};

    // Monitors that are made by hand announce themselves by a ConfigureNotify on the root window alone.
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(x, root, XCB_CW_EVENT_MASK, &mask);

    if ((firstRandrEvent_ = firstEvent(x, &xcb_randr_id)) != 0) {
        xcb_discard_reply(x, xcb_randr_query_version(x, 1, 5).sequence);
        xcb_randr_select_input(x, root,
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    if ((firstFixesEvent_ = firstEvent(x, &xcb_xfixes_id)) != 0) {
        xcb_discard_reply(x, xcb_xfixes_query_version(x, 4, 0).sequence);
        for (const auto selection : {atoms_.settingsManager, atoms_.windowManager})
            xcb_xfixes_select_selection_input(x, root, selection,
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    if ((firstSaverEvent_ = firstEvent(x, &xcb_screensaver_id)) != 0)
        xcb_screensaver_select_input(x, root, XCB_SCREENSAVER_EVENT_NOTIFY_MASK);

    const auto* power = xcb_get_extension_data(x, &xcb_dpms_id);
    if (power && power->present) {
        const Reply<xcb_dpms_capable_reply_t> capable{
            xcb_dpms_capable_reply(x, xcb_dpms_capable(x), nullptr)};
        // The server sends no event when it powers the screens down.
        if (capable && capable->capable)
            powerTimer_ = options_.queue.every(std::chrono::seconds(1),
                                               lifetime_.weakly([this] { askForPowerLevel(); }));
    }
    followSettingsManager();
    xcb_flush(x);
}

void DesktopWatch::followSettingsManager() {
    auto* const x = connection_->get();
    const Reply<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, atoms_.settingsManager), nullptr)};
    settingsManager_ = owner ? owner->owner : 0;
    if (settingsManager_ == 0) return;
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(x, settingsManager_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(x);
}

void DesktopWatch::readable() {
    if (!connection_) return;
    // Answers that are read while reporting may bring further events.
    while (true) {
        News news;
        bool any = false;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
            any = true;
            take(*event, news);
        }
        if (connection_->isBroken()) return reopen();
        if (!any) return;
        report(news);
        if (!connection_) return;
    }
}

void DesktopWatch::reopen() {
    // The handle of the watch may be the one that called.
    options_.queue.post(
        [watch = std::make_shared<Subscription>(std::move(watch_)),
         connection = std::shared_ptr<x11::XConnection>(std::move(connection_))] { watch->end(); });
    powerTimer_.end();
    // A server that is gone refuses, and then there is nothing left to observe.
    if (!open()) return;
    takeThemeSettings();
    readActiveWindow(true);
    listener_.displaysChanged();
}

void DesktopWatch::take(const xcb_generic_event_t& event, News& news) {
    const std::uint8_t type = event.response_type & kEventMask;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == connection_->root()) {
            news.activeWindow |= change.atom == atoms_.activeWindow;
            news.windowManager |= change.atom == atoms_.windowManagerCheck;
            news.themeSettings |= change.atom == XCB_ATOM_RESOURCE_MANAGER;
        } else if (change.window == settingsManager_) {
            news.themeSettings |= change.atom == atoms_.settings;
        }
    } else if (type == XCB_CONFIGURE_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        news.displays |= change.window == connection_->root();
    } else if (firstRandrEvent_ != 0 && (type == firstRandrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                         type == firstRandrEvent_ + XCB_RANDR_NOTIFY)) {
        news.displays = true;
    } else if (firstFixesEvent_ != 0 && type == firstFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        news.settingsManager |= change.selection == atoms_.settingsManager;
        news.windowManager |= change.selection == atoms_.windowManager;
    } else if (firstSaverEvent_ != 0 && type == firstSaverEvent_ + XCB_SCREENSAVER_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_screensaver_notify_event_t&>(event);
        saverOn_ = change.state == XCB_SCREENSAVER_STATE_ON || change.state == XCB_SCREENSAVER_STATE_CYCLE;
        setScreensAsleep();
    }
}

void DesktopWatch::report(const News& news) {
    if (news.displays) listener_.displaysChanged();
    if (news.settingsManager) followSettingsManager();
    bool disturbed = news.windowManager;
    if (news.settingsManager || news.themeSettings) {
        disturbed |= takeThemeSettings();
    }
    if (disturbed) listener_.pointerDisturbed();
    if (news.activeWindow) readActiveWindow(true);
}

void DesktopWatch::readActiveWindow(bool announce) {
    const auto window = connection_->windowProperty(connection_->root(), atoms_.activeWindow);
    frontmost_ = window == 0 ? std::nullopt : applicationOf(window);
    // On the way from one window to the next there is none for a moment.
    if (!frontmost_) return;
    const bool isOther = !lastInFront_ || !isSameApplication(*lastInFront_, *frontmost_);
    lastInFront_ = frontmost_;
    if (announce && isOther) listener_.activated(*frontmost_);
}

std::optional<RunningApplication> DesktopWatch::applicationOf(xcb_window_t window) {
    auto* const x = connection_->get();
    const auto asked = xcb_get_property(x, 0, window, atoms_.windowProcess, XCB_ATOM_CARDINAL, 0, 1);
    const auto windowClass = textOf(connection_->property(window, XCB_ATOM_WM_CLASS));
    const Reply<xcb_get_property_reply_t> process{xcb_get_property_reply(x, asked, nullptr)};
    // An error: the window is gone by now.
    if (!process) return std::nullopt;
    RunningApplication application;
    if (process->format == 32 && process->value_len == 1)
        application.pid = *static_cast<const std::int32_t*>(xcb_get_property_value(process.get()));
    application.name = applicationName(windowClass, application.pid);
    return application;
}

DesktopWatch::ThemeSettings DesktopWatch::readThemeSettings() {
    ThemeSettings settings;
    std::optional<CursorXSettings> published;
    if (settingsManager_ != 0)
        published = parseXSettings(connection_->property(settingsManager_, atoms_.settings));
    settings.published = published.value_or(CursorXSettings{});
    const auto resources = textOf(connection_->property(connection_->root(), XCB_ATOM_RESOURCE_MANAGER));
    settings.theme = x11::resourceValue(resources, "Xcursor", "theme");
    settings.size = x11::resourceValue(resources, "Xcursor", "size");
    settings.pixelsPerPoint = x11::pixelsPerPoint(published, resources);
    return settings;
}

bool DesktopWatch::takeThemeSettings() {
    auto now = readThemeSettings();
    const bool isOther = now != themeSettings_;
    const bool hasOtherDensity = now.pixelsPerPoint != themeSettings_.pixelsPerPoint;
    themeSettings_ = std::move(now);
    if (hasOtherDensity) listener_.densityChanged();
    return isOther;
}

void DesktopWatch::askForPowerLevel() {
    if (!connection_) return;
    auto* const x = connection_->get();
    const Reply<xcb_dpms_info_reply_t> info{xcb_dpms_info_reply(x, xcb_dpms_info(x), nullptr)};
    if (info) {
        poweredDown_ = info->state != 0 && info->power_level != XCB_DPMS_DPMS_MODE_ON;
        setScreensAsleep();
    }
    readable();
}

void DesktopWatch::setScreensAsleep() {
    const bool asleep = saverOn_ || poweredDown_;
    if (std::exchange(screensAsleep_, asleep) != asleep) listener_.screensSleep(asleep);
}

}  // namespace pintle
