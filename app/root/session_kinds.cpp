#include "app/root/session_kinds.h"

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <utility>

#include "app/root/shell_desktop_x11.h"
#include "platform/qt/qt_socket_watch.h"
#include "platform/qt/shell/qt_alerts.h"
#include "platform/qt/shell/qt_event_monitors.h"
#include "platform/qt/shell/qt_popovers.h"
#include "platform/qt/shell/qt_status_bar.h"
#include "platform/qt/shell/qt_windows.h"
#include "platform/wayland/gsettings_provider.h"
#include "platform/wayland/hyprland_provider.h"
#include "platform/wayland/kde_provider.h"
#include "platform/wayland/output_scales.h"
#include "platform/wayland/sway_events.h"
#include "platform/wayland/sway_provider.h"
#include "platform/wayland/theme_engine.h"
#include "platform/wayland/wayland_window_server.h"
#include "platform/x11/cursors/x11_window_server.h"
#include "platform/x11/desktop/x11_appearance.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "platform/x11/overlay/overlay_desktop.h"
#include "platform/x11/overlay/screen_watch.h"
#include "platform/x11/windows/x11_shell.h"
#include "settings/cursor_settings.h"

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

std::vector<std::unique_ptr<wayland::SettingsProvider>> settingsProviders(
    const wayland::Environment& environment) {
    std::vector<std::unique_ptr<wayland::SettingsProvider>> providers;
    const auto add = [&](std::unique_ptr<wayland::SettingsProvider> provider) {
        if (provider) providers.push_back(std::move(provider));
    };
    add(wayland::makeKdeProvider(environment));
    add(wayland::makeSwayProvider(environment));
    add(wayland::makeHyprlandProvider(environment));
    // Last, because on those desktops only some programs follow it.
    add(wayland::makeGSettingsProvider({}));
    return providers;
}

wayland::IconFolders iconFolders(const UserDirectories& directories) {
    return {directories.applicationSupport / "icons", directories.home / ".icons"};
}

std::filesystem::path pointerSettingFile(const UserDirectories& directories) {
    return directories.applicationSupport / "Pintle" / "pointer_setting.json";
}

wayland::Environment byText(const Environment& environment) {
    return [environment](const std::string& name) { return environment(name.c_str()); };
}

DesktopSession makeX11Session(const SessionContext& context) {
    context.background.run(
        Priority::utility,
        [icons = iconFolders(context.directories), file = pointerSettingFile(context.directories),
         environment = byText(context.environment), &log = context.log] {
            wayland::putBackLeftTheme(
                icons, file, [&] { return settingsProviders(environment); }, log);
        });
    auto session = withXShell(context);
    addXDesktop(session, context);
    session.windowServer = makeX11WindowServer({
        .display = std::nullopt,
        .queue = context.queue,
        .log = context.log,
        .watchReadable = watcherOn(context.queue),
        .serverDied = context.serverDied,
        .environment = {},
        .nameSent = {},
        .pixelsPerPoint = [&workspace = *session.workspace] { return workspace.pixelsPerPoint(); },
    });
    session.overlay = makeOverlayDesktop({std::nullopt, context.queue, context.log, *session.workspace,
                                          watcherOn(context.queue),
                                          overlay::makeScreenWatch(context.queue, context.background)});
    return session;
}

/// Wayland's own windows hide from the X server which application is in front, so that no rule can be about
/// it.
class WorkspaceWithoutApplications : public Workspace {
  public:
    explicit WorkspaceWithoutApplications(std::unique_ptr<Workspace> workspace)
        : workspace_(std::move(workspace)) {}
    std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
    /// The X server's: theme folders have pictures for each output's scale beside it.
    double pixelsPerPoint() override { return workspace_->pixelsPerPoint(); }
    Subscription observe(WorkspaceEvent event, Handler handler) override {
        if (event == WorkspaceEvent::didActivateApplication) return {};
        return workspace_->observe(event, std::move(handler));
    }
    Subscription observeDisplayReconfiguration(DisplayHandler handler) override {
        return workspace_->observeDisplayReconfiguration(std::move(handler));
    }

  private:
    const std::unique_ptr<Workspace> workspace_;
};

/// Also from the X server, whose screen changes with the scale of outputs: not every compositor reports them.
std::function<Subscription(std::function<void(CompositorNews)>)> compositorNews(const SessionContext& context,
                                                                                Workspace& workspace) {
    return [environment = byText(context.environment), &queue = context.queue,
            &workspace](const std::function<void(CompositorNews)>& handler) {
        auto handles = std::make_shared<std::array<Subscription, 2>>();
        (*handles)[0] = wayland::observeSway(environment, watcherOn(queue), handler);
        (*handles)[1] =
            workspace.observeDisplayReconfiguration([handler](DisplayId, DisplayChangeFlags flags) {
                if ((flags & kDisplayBeginConfiguration) == 0) handler(CompositorNews::changedOutputs);
            });
        return Subscription([handles]() mutable { handles.reset(); });
    };
}

/// The pointer is the compositor's here, and follows the desktop's setting; nobody may draw above other
/// windows.
DesktopSession makeWaylandSession(const SessionContext& context) {
    auto session = withXShell(context);
    session.seesApplications = false;
    const auto environment = byText(context.environment);
    addXDesktop(session, context);
    session.windowServer = makeWaylandWindowServer({
        .queue = context.queue,
        .background = context.background,
        .log = context.log,
        .environment = environment,
        .icons = iconFolders(context.directories),
        .stateFile = pointerSettingFile(context.directories),
        .providers = settingsProviders(environment),
        .outputScales =
            [environment] {
                // Exact where the compositor says fractions.
                auto scales = wayland::swayOutputScales(environment);
                return scales.empty() ? wayland::outputScales(std::nullopt) : scales;
            },
        .observeCompositor = compositorNews(context, *session.workspace),
        .cursorScale = [] { return CursorSettings::shared().cursorScale(); },
        .xPixelsPerPoint = [&workspace = *session.workspace] { return workspace.pixelsPerPoint(); },
        .makeXServer =
            [&queue = context.queue, &log = context.log, environment](
                std::function<std::pair<std::string, int>()> desktopTheme) -> std::unique_ptr<WindowServer> {
            const auto display = environment("DISPLAY");
            if (!display || display->empty()) return nullptr;
            return makeX11WindowServer({
                .display = display,
                .queue = queue,
                .log = log,
                .watchReadable = watcherOn(queue),
                .serverDied = {},
                .environment = environment,
                .nameSent = {},
                .desktopTheme = std::move(desktopTheme),
            });
        },
    });
    session.workspace = std::make_unique<WorkspaceWithoutApplications>(std::move(session.workspace));
    return session;
}

constexpr std::array kKinds{
    SessionKind{"x11", [](const Environment& environment) { return !isWayland(environment); },
                makeX11Session},
    SessionKind{"wayland", [](const Environment&) { return true; }, makeWaylandSession},
};

}  // namespace

std::span<const SessionKind> sessionKinds() { return kKinds; }

const SessionKind& detectSession(const Environment& environment) {
    for (const auto& kind : kKinds)
        if (kind.detect(environment)) return kind;
    return kKinds.back();
}

}  // namespace pintle
