#include "app/root/session_kinds.h"

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <utility>

#include "app/root/shell_desktop_x11.h"
#include "platform/absent_window_server.h"
#include "platform/qt/qt_socket_watch.h"
#include "platform/qt/shell/qt_alerts.h"
#include "platform/qt/shell/qt_event_monitors.h"
#include "platform/qt/shell/qt_popovers.h"
#include "platform/qt/shell/qt_status_bar.h"
#include "platform/qt/shell/qt_windows.h"
#include "platform/x11/cursors/x11_window_server.h"
#include "platform/x11/desktop/x11_appearance.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "platform/x11/overlay/overlay_desktop.h"
#include "platform/x11/overlay/screen_watch.h"
#include "platform/x11/windows/x11_shell.h"

namespace pintle {
namespace {

std::function<Subscription(int, std::function<void()>)> watcherOn(MainQueue& queue) {
    return [&queue](int descriptor, std::function<void()> readable) {
        return watchReadable(queue, descriptor, std::move(readable));
    };
}

/// What an X server gives whoever draws the windows: also the one that Wayland's compositors start for old
/// programs.
struct XShell {
    explicit XShell(MainQueue& givenQueue)
        : queue(givenQueue),
          x11({std::nullopt, queue, watcherOn(queue), ownWindows}),
          desktop(makeShellDesktop(x11)) {}

    ShellBackend make(ShellViews& views, Appearance& appearance) const {
        ShellBackend shell;
        shell.alerts = makeQtAlerts(views, queue, desktop);
        shell.statusBar = makeQtStatusBar(appearance, desktop);
        shell.popovers = makeQtPopovers(views, appearance, desktop);
        shell.windows = makeQtWindows(views, desktop);
        shell.eventMonitors = makeQtEventMonitors(desktop);
        return shell;
    }

    MainQueue& queue;
    X11Shell x11;
    const ShellDesktop desktop;
};

DesktopSession withXShell(const SessionContext& context) {
    DesktopSession session;
    const auto shell = std::make_shared<XShell>(context.queue);
    session.connection = shell;
    session.makeShell = [&shell = *shell](ShellViews& views, Appearance& appearance) {
        return shell.make(views, appearance);
    };
    return session;
}

void addXDesktop(DesktopSession& session, const SessionContext& context) {
    session.workspace = makeX11Workspace({std::nullopt, context.queue, watcherOn(context.queue)});
    session.appearance = makeX11Appearance({std::nullopt, context.queue, watcherOn(context.queue)});
}

bool isWayland(const Environment& environment) {
    return !environment("WAYLAND_DISPLAY").value_or("").empty() ||
           environment("XDG_SESSION_TYPE") == "wayland";
}

DesktopSession makeX11Session(const SessionContext& context) {
    auto session = withXShell(context);
    session.windowServer = makeX11WindowServer({
        .display = std::nullopt,
        .queue = context.queue,
        .log = context.log,
        .watchReadable = watcherOn(context.queue),
        .serverDied = context.serverDied,
        .environment = {},
        .nameSent = {},
    });
    addXDesktop(session, context);
    session.overlay = makeOverlayDesktop({std::nullopt, context.queue, context.log, *session.workspace,
                                          watcherOn(context.queue),
                                          overlay::makeScreenWatch(context.queue, context.background)});
    return session;
}

/// Nobody else may set the pointer of another program here, or draw above its windows.
DesktopSession makeSessionWithoutCursors(const SessionContext& context) {
    auto session = withXShell(context);
    context.log.system("[X11] Wayland session - cursor registration unavailable");
    session.windowServer = std::make_unique<AbsentWindowServer>();
    addXDesktop(session, context);
    return session;
}

constexpr std::array kKinds{
    SessionKind{"x11", [](const Environment& environment) { return !isWayland(environment); },
                makeX11Session},
    SessionKind{"none", [](const Environment&) { return true; }, makeSessionWithoutCursors},
};

}  // namespace

std::span<const SessionKind> sessionKinds() { return kKinds; }

const SessionKind& detectSession(const Environment& environment) {
    for (const auto& kind : kKinds)
        if (kind.detect(environment)) return kind;
    return kKinds.back();
}

}  // namespace pintle
