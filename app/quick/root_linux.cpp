#include <QApplication>
#include <QIcon>
#include <QWindow>
#include <cstdlib>
#include <utility>

#include "app/popover_model.h"
#include "app/quick/root.h"
#include "app/quick/shell_desktop_x11.h"
#include "app/quick/shell_views_quick.h"
#include "app/quick/translated.h"
#include "app/quick/window_views.h"
#include "app/update_answers.h"
#include "apply/cursor_overlay_manager.h"
#include "apply/null_overlay.h"
#include "platform/freedesktop/autostart_entry.h"
#include "platform/freedesktop/dbus_instance_bus.h"
#include "platform/freedesktop/desktop_notifications.h"
#include "platform/freedesktop/freedesktop_names.h"
#include "platform/freedesktop/system_log.h"
#include "platform/freedesktop/user_directories.h"
#include "platform/plist/plist_coder.h"
#include "platform/plist/plist_key_value_store.h"
#include "platform/posix/archiver.h"
#include "platform/posix/glibc_process_hints.h"
#include "platform/posix/signal_recovery.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_http_client.h"
#include "platform/qt/qt_image_service.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_process_runner.h"
#include "platform/qt/qt_socket_watch.h"
#include "platform/qt/shell/qt_alerts.h"
#include "platform/qt/shell/qt_application.h"
#include "platform/qt/shell/qt_event_monitors.h"
#include "platform/qt/shell/qt_popovers.h"
#include "platform/qt/shell/qt_status_bar.h"
#include "platform/qt/shell/qt_windows.h"
#include "platform/x11/cursors/x11_hardware_cursor.h"
#include "platform/x11/cursors/x11_window_server.h"
#include "platform/x11/desktop/x11_appearance.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "platform/x11/overlay/overlay_desktop.h"
#include "platform/x11/overlay/screen_watch.h"
#include "platform/x11/windows/x11_shell.h"

namespace pintle {

struct Root::Early {
    Environment environment = processEnvironment();
    Bundle bundle = makeBundle(environment);
    std::unique_ptr<Log> log = makeSystemLog();
    std::unique_ptr<MainQueue> queue = makeQtMainQueue();
    std::unique_ptr<BackgroundTasks> background = makeQtBackgroundTasks();
    std::unique_ptr<PropertyListCoder> propertyLists = makePlistCoder();
    std::unique_ptr<KeyValueStore> preferences = makePlistKeyValueStore(
        makePreferencePath(environment, bundle), *propertyLists, *log, *queue, *background);
    std::unique_ptr<InstanceBus> instances = makeDbusInstanceBus(bundle.identifier);
    std::unique_ptr<LoginItemService> loginItems = makeAbsentLoginItemService();
    std::unique_ptr<LoginAgent> autostart =
        makeAutostartEntry(makePreferencePath(environment, bundle).parent_path());
    std::unique_ptr<Application> application =
        makeQtApplication({[](const std::string& title, const std::string& text) {
            showDesktopNotification(translated(title).toStdString(), translated(text).toStdString());
        }});
};

struct Root::Desktop {
    Desktop(Early& early, Composition& composition)
        : x11Shell({std::nullopt, *early.queue, watcherOn(*early.queue), ownWindows}),
          shellDesktop(makeShellDesktop(x11Shell)),
          http(makeQtHttpClient(*early.queue)),
          processes(makeQtProcessRunner(*early.queue, limitedArchiver())),
          windowServer(makeX11WindowServer(X11WindowServerOptions{
              .display = std::nullopt,
              .queue = *early.queue,
              .log = *early.log,
              .watchReadable = watcherOn(*early.queue),
              .serverDied = [] { QCoreApplication::exit(1); },
              .environment = {},
              .nameSent = {},
          })),
          workspace(makeX11Workspace({std::nullopt, *early.queue, watcherOn(*early.queue)})),
          overlay(makeOverlayDesktop({std::nullopt, *early.queue, *workspace, watcherOn(*early.queue),
                                      overlay::makeScreenWatch(*early.queue, *early.background)})),
          appearance(makeX11Appearance({std::nullopt, *early.queue, watcherOn(*early.queue)})),
          windowViews({[this, &early, &composition]() -> SettingsWindowModel& {
                           return settingsModel.emplace(SettingsWindowModel::Neighbours{
                               composition.settings(), *early.preferences, composition.launchAtLogin(),
                               composition.notifications(), composition.viewModel(), *alerts,
                               *early.application});
                       },
                       [this, &early]() -> AboutWindowModel& {
                           return aboutModel.emplace(early.bundle, *early.application, [this] {
                               if (auto* const view = views->window(WindowContent::about)) view->close();
                           });
                       }}),
          views(std::make_unique<ShellViewsQuick>(ShellViewsQuick::Neighbours{
              [this, &early, &composition]() -> PopoverModel& {
                  return popoverModel.emplace(
                      PopoverModel::Neighbours{composition.viewModel(), composition.updateChecker(),
                                               composition.settings(), composition.notifications(),
                                               *early.queue, *early.application, *early.log},
                      canChangeThePointer() ? PopoverModel::Session::pointerCanChange
                                            : PopoverModel::Session::pointerCannotChange);
              },
              *appearance, composition.settings(),
              [this](QQmlEngine& engine, WindowContent content) {
                  return windowViews.makeWindow(engine, content);
              },
              [this](QQmlEngine& engine, const Alert& alert, std::function<void(int)> chosen) {
                  return windowViews.alert(engine, alert, std::move(chosen));
              }})),
          alerts(makeQtAlerts(*views, *early.queue, shellDesktop)),
          updateAnswers(*early.application, *alerts),
          statusBar(makeQtStatusBar(*appearance, shellDesktop)),
          popovers(makeQtPopovers(*views, *appearance, shellDesktop)),
          windows(makeQtWindows(*views, shellDesktop)),
          eventMonitors(makeQtEventMonitors(shellDesktop)) {}

    ~Desktop() { windowViews.forgetAlert(); }

    static std::function<Subscription(int, std::function<void()>)> watcherOn(MainQueue& queue) {
        return [&queue](int descriptor, std::function<void()> readable) {
            return watchReadable(queue, descriptor, std::move(readable));
        };
    }

    std::unique_ptr<CursorOverlay> makeOverlay(Early& early, const CursorSettings& settings) {
        if (!overlay) return std::make_unique<NullOverlay>(*early.log);
        return std::make_unique<CursorOverlayManager>(CursorOverlayManager::Desktop{
            *early.queue, *early.log, overlay->displays(), overlay->surfaces(), overlay->windowList(),
            *workspace, overlay->pointer(), *hardwareCursor, overlay->accessibility(), settings, names});
    }

    /// In a Wayland session, and on a server without the extensions, nothing can.
    bool canChangeThePointer() const {
        return overlay || windowServer->provides(WindowServerFunction::registerCursorWithImages);
    }

    ShellPlatform shell() { return {*statusBar, *popovers, *windows, *eventMonitors}; }

    X11Shell x11Shell;
    const ShellDesktop shellDesktop;
    std::unique_ptr<HttpClient> http;
    std::unique_ptr<ProcessRunner> processes;
    std::unique_ptr<WindowServer> windowServer;
    std::unique_ptr<HardwareCursor> hardwareCursor = makeHardwareCursor();
    std::unique_ptr<ImageService> images = makeQtImageService();
    std::unique_ptr<ProcessHints> hints = makeGlibcProcessHints();
    DesktopNames names = makeFreedesktopNames();
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<OverlayDesktop> overlay;
    std::unique_ptr<Appearance> appearance;
    std::optional<PopoverModel> popoverModel;
    std::optional<SettingsWindowModel> settingsModel;
    std::optional<AboutWindowModel> aboutModel;
    WindowViews windowViews;
    std::unique_ptr<ShellViews> views;
    std::unique_ptr<Alerts> alerts;
    UpdateAnswers updateAnswers;
    std::unique_ptr<StatusBar> statusBar;
    std::unique_ptr<Popovers> popovers;
    std::unique_ptr<Windows> windows;
    std::unique_ptr<EventMonitors> eventMonitors;
};

namespace {

// The toolkit ends the process by exit() when the X server goes away, past every object of this program.
KeyValueStore* preferencesAtExit = nullptr;

void writePreferences() {
    if (preferencesAtExit) preferencesAtExit->synchronize();
}

}  // namespace

std::optional<std::string> prepareToolkit() {
    // On a Wayland desktop too: nobody there may place a window or see where the pointer is.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        if (!displayAnswers(std::nullopt))
            return "Pintle needs a desktop: no X server answers at the display \"" +
                   qEnvironmentVariable("DISPLAY").toStdString() + "\".";
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QCoreApplication::setApplicationName(QStringLiteral("pintle"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.pintle.app"));
    // Built in; the menu needs no other, and one would be looked for in a file of its own.
    QApplication::setStyle(QStringLiteral("fusion"));
    return std::nullopt;
}

Root::Root()
    : early_(std::make_unique<Early>()),
      composition_(std::make_unique<Composition>(
          EarlyPlatform{*early_->log, *early_->preferences, *early_->instances})) {
    const auto program = early_->bundle.executable.string();
    delegate_ = std::make_unique<AppDelegate>(AppDelegate::Neighbours{
        .composition = *composition_,
        .early = {*early_->log, *early_->preferences, *early_->instances},
        .application = *early_->application,
        .mainQueue = *early_->queue,
        .bundle = early_->bundle,
        .login = {*early_->loginItems,
                  *early_->autostart,
                  LoginAgentRole::standsInForService,
                  {program, program.empty() ? std::nullopt : std::optional(program)}},
        .placement = PlacementPolicy::insideWorkArea,
        // The server draws a hidden pointer again by itself when the connection that hid it goes.
        .installSignalRecovery = [] { installSignalRecovery(nullptr); },
        .makeDesktop = [this] { return makeDesktop(); },
    });
    preferencesAtExit = early_->preferences.get();
    static const int registered = std::atexit(writePreferences);
    (void)registered;
}

Root::~Root() {
    preferencesAtExit = nullptr;
    delegate_.reset();
    early_->preferences->synchronize();
}

bool Root::start() {
    delegate_->applicationDidFinishLaunching();
    return !delegate_->isRedundant();
}

ShellPlatform Root::makeDesktop() {
    desktop_ = std::make_unique<Desktop>(*early_, *composition_);
    composition_->build(
        Platform{
            .mainQueue = *early_->queue,
            .background = *early_->background,
            .windowServer = *desktop_->windowServer,
            .hardwareCursor = *desktop_->hardwareCursor,
            .images = *desktop_->images,
            .propertyLists = *early_->propertyLists,
            .hints = *desktop_->hints,
            .workspace = *desktop_->workspace,
            .names = desktop_->names,
            .http = *desktop_->http,
            .processes = *desktop_->processes,
            .directories = makeUserDirectories(early_->environment),
            .bundle = early_->bundle,
            .updateAnswers = desktop_->updateAnswers,
            .mirror = early_->environment("PINTLE_MIRROR"),
        },
        desktop_->makeOverlay(*early_, composition_->settings()));
    return desktop_->shell();
}

MainQueue& Root::mainQueue() { return *early_->queue; }
Composition& Root::composition() { return *composition_; }

}  // namespace pintle
