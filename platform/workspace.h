// What the desktop reports of applications, sessions, sleep and displays. Every event arrives on the main
// queue and carries the name under which the rules know it, on every desktop. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/subscription.h"
#include "platform/displays.h"

namespace pintle {

struct RunningApplication {
    /// The name that users know, the same that WindowList gives. Absent when the application has none.
    std::optional<std::string> name;
    /// Process id; 0 when the desktop does not report it.
    std::int32_t pid = 0;
    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

enum class WorkspaceEvent {
    willSleep,
    didWake,
    screensDidSleep,
    screensDidWake,
    sessionDidBecomeActive,
    didActivateApplication,
    screenIsLocked,
    screenIsUnlocked,
    screenParametersDidChange,
    /// Something outside this program has changed the pointers: another theme was chosen for the desktop, or
    /// its window manager came back. Never sent on a desktop where that disturbs no registration.
    pointerDidChange,
    /// pixelsPerPoint() answers another number than before.
    pixelDensityDidChange,
};

/// The platform's own name of the event.
constexpr std::string_view notificationName(WorkspaceEvent event) {
    switch (event) {
        case WorkspaceEvent::willSleep:
            return "NSWorkspaceWillSleepNotification";
        case WorkspaceEvent::didWake:
            return "NSWorkspaceDidWakeNotification";
        case WorkspaceEvent::screensDidSleep:
            return "NSWorkspaceScreensDidSleepNotification";
        case WorkspaceEvent::screensDidWake:
            return "NSWorkspaceScreensDidWakeNotification";
        case WorkspaceEvent::sessionDidBecomeActive:
            return "NSWorkspaceSessionDidBecomeActiveNotification";
        case WorkspaceEvent::didActivateApplication:
            return "NSWorkspaceDidActivateApplicationNotification";
        case WorkspaceEvent::screenIsLocked:
            return "com.apple.screenIsLocked";
        case WorkspaceEvent::screenIsUnlocked:
            return "com.apple.screenIsUnlocked";
        case WorkspaceEvent::screenParametersDidChange:
            return "NSApplicationDidChangeScreenParametersNotification";
        case WorkspaceEvent::pointerDidChange:
            return "pointer change";
        case WorkspaceEvent::pixelDensityDidChange:
            return "pixel density change";
    }
    return "";
}

struct WorkspaceNotification {
    std::string name;
    /// The application that was activated; absent for every other event.
    std::optional<RunningApplication> application;
    friend bool operator==(const WorkspaceNotification&, const WorkspaceNotification&) = default;
};

/// Bits of a display reconfiguration. Callbacks with the first bit come before the change.
using DisplayChangeFlags = std::uint32_t;
inline constexpr DisplayChangeFlags kDisplayBeginConfiguration = 1;

class Workspace {
  public:
    using Handler = std::function<void(const WorkspaceNotification&)>;
    using DisplayHandler = std::function<void(DisplayId display, DisplayChangeFlags flags)>;
    virtual ~Workspace() = default;

    /// Absent while no application is in front.
    virtual std::optional<RunningApplication> frontmostApplication() = 0;
    /// How many pixels of pointers and overlay windows a point has each way, 1 to 4 in quarters. 1 where the
    /// desktop itself draws points as pixels of the screen, whatever they are.
    virtual double pixelsPerPoint() = 0;
    /// Calls `handler` at each such event until the handle ends.
    virtual Subscription observe(WorkspaceEvent event, Handler handler) = 0;
    /// Calls `handler` once per display before and after a change where the desktop says both. Where it only
    /// says that something has changed: once after the change, with display 0 and no flags.
    virtual Subscription observeDisplayReconfiguration(DisplayHandler handler) = 0;
};

}  // namespace pintle
