#include <QApplication>
#include <QWindow>
#include <cstdlib>
#include <utility>

#include "app/popover_model.h"
#include "app/quick/native_views_qt.h"
#include "app/quick/prepare_toolkit_mac.h"
#include "app/quick/root.h"
#include "app/quick/shell_views_quick.h"
#include "app/quick/window_views.h"
#include "app/update_answers.h"
#include "apply/cursor_overlay_manager.h"
#include "platform/mac/foundation_process.h"
#include "platform/mac/mac_accessibility.h"
#include "platform/mac/mac_alerts.h"
#include "platform/mac/mac_appearance.h"
#include "platform/mac/mac_application.h"
#include "platform/mac/mac_bundle.h"
#include "platform/mac/mac_displays.h"
#include "platform/mac/mac_event_monitors.h"
#include "platform/mac/mac_hardware_cursor.h"
#include "platform/mac/mac_image_service.h"
#include "platform/mac/mac_instance_bus.h"
#include "platform/mac/mac_key_value_store.h"
#include "platform/mac/mac_log.h"
#include "platform/mac/mac_login_item_service.h"
#include "platform/mac/mac_main_queue.h"
#include "platform/mac/mac_overlay_surfaces.h"
#include "platform/mac/mac_pointer.h"
#include "platform/mac/mac_popovers.h"
#include "platform/mac/mac_process_hints.h"
#include "platform/mac/mac_property_list_coder.h"
#include "platform/mac/mac_status_bar.h"
#include "platform/mac/mac_window_list.h"
#include "platform/mac/mac_window_server.h"
#include "platform/mac/mac_windows.h"
#include "platform/mac/mac_workspace.h"
#include "platform/posix/signal_recovery.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_http_client.h"
#include "settings/launch_agent_file.h"

namespace pintle {
namespace {

/// The toolkit ends its loop at the end of the session instead of letting the desktop end the process.
Subscription observeToolkitQuit(std::function<void()> quits) {
    const auto connection = QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, std::move(quits));
    return Subscription([connection] { QObject::disconnect(connection); });
}

}  // namespace

struct Root::Early {
    Bundle bundle = readMacBundle();
    UserDirectories directories = readUserDirectories();
    std::unique_ptr<Log> log = makeMacLog();
    std::unique_ptr<MainQueue> queue = makeMacMainQueue();
    std::unique_ptr<BackgroundTasks> background = makeQtBackgroundTasks();
    std::unique_ptr<PropertyListCoder> propertyLists = makeMacPropertyListCoder();
    std::unique_ptr<KeyValueStore> preferences = makeMacKeyValueStore(bundle.identifier);
    std::unique_ptr<InstanceBus> instances = makeMacInstanceBus(bundle.identifier, *queue);
    std::unique_ptr<LoginItemService> loginItems = makeMacLoginItemService();
    std::unique_ptr<LoginAgent> launchAgent = makeLaunchAgentFile(directories.home, *propertyLists);
    std::unique_ptr<Application> application = makeMacApplication(observeToolkitQuit);
};

struct Root::Desktop {
    Desktop(Early& early, Composition& composition)
        : http(makeQtHttpClient(*early.queue)),
          processes(makeRunnerForForeignPrograms(*early.queue)),
          appearance(makeMacAppearance(*early.queue)),
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
                  return popoverModel.emplace(PopoverModel::Neighbours{
                      composition.viewModel(), composition.updateChecker(), composition.settings(),
                      composition.notifications(), *early.queue, *early.application, *early.log});
              },
              *appearance, composition.settings(),
              [this](QQmlEngine& engine, WindowContent content) {
                  return windowViews.makeWindow(engine, content);
              },
              // Alerts are the desktop's own here.
              [](QQmlEngine&, const Alert&, const std::function<void(int)>&) -> QWindow* {
                  return nullptr;
              }})),
          nativeViews(makeNativeViews(*views)),
          alerts(makeMacAlerts(*early.queue)),
          updateAnswers(*early.application, *alerts),
          popovers(makeMacPopovers(*nativeViews)),
          windows(makeMacWindows(*nativeViews)) {}

    std::unique_ptr<CursorOverlay> makeOverlay(Early& early, const CursorSettings& settings) {
        return std::make_unique<CursorOverlayManager>(CursorOverlayManager::Desktop{
            *early.queue, *early.log, *displays, *surfaces, *windowList, *workspace, *pointer,
            *hardwareCursor, *accessibility, settings, names});
    }

    ShellPlatform shell() { return {*statusBar, *popovers, *windows, *eventMonitors}; }

    std::unique_ptr<HttpClient> http;
    std::unique_ptr<ProcessRunner> processes;
    std::unique_ptr<WindowServer> windowServer = makeMacWindowServer();
    std::unique_ptr<HardwareCursor> hardwareCursor = makeMacHardwareCursor();
    std::unique_ptr<ImageService> images = makeMacImageService();
    std::unique_ptr<ProcessHints> hints = makeMacProcessHints();
    DesktopNames names;
    std::unique_ptr<Workspace> workspace = makeMacWorkspace();
    std::unique_ptr<Displays> displays = makeMacDisplays();
    std::unique_ptr<OverlaySurfaces> surfaces = makeMacOverlaySurfaces();
    std::unique_ptr<WindowList> windowList = makeMacWindowList();
    std::unique_ptr<Pointer> pointer = makeMacPointer();
    std::unique_ptr<Accessibility> accessibility = makeMacAccessibility();
    std::unique_ptr<Appearance> appearance;
    std::optional<PopoverModel> popoverModel;
    std::optional<SettingsWindowModel> settingsModel;
    std::optional<AboutWindowModel> aboutModel;
    WindowViews windowViews;
    std::unique_ptr<ShellViews> views;
    std::unique_ptr<NativeViews> nativeViews;
    std::unique_ptr<Alerts> alerts;
    UpdateAnswers updateAnswers;
    std::unique_ptr<StatusBar> statusBar = makeMacStatusBar();
    std::unique_ptr<Popovers> popovers;
    std::unique_ptr<Windows> windows;
    std::unique_ptr<EventMonitors> eventMonitors = makeMacEventMonitors();
};

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
                  *early_->launchAgent,
                  LoginAgentRole::fallback,
                  {readMacBundlePath().string(), program.empty() ? std::nullopt : std::optional(program)}},
        .placement = PlacementPolicy::asComputed,
        .installSignalRecovery = [] { installSignalRecovery(showPointerOnMainDisplay); },
        .makeDesktop = [this] { return makeDesktop(); },
    });
}

Root::~Root() {
    delegate_.reset();
    early_->preferences->synchronize();
}

bool Root::start() {
    delegate_->applicationDidFinishLaunching();
    return !delegate_->isRedundant();
}

ShellPlatform Root::makeDesktop() {
    desktop_ = std::make_unique<Desktop>(*early_, *composition_);
    const char* const mirror = std::getenv("PINTLE_MIRROR");
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
            .directories = early_->directories,
            .bundle = early_->bundle,
            .updateAnswers = desktop_->updateAnswers,
            .mirror = mirror ? std::optional<std::string>(mirror) : std::nullopt,
        },
        desktop_->makeOverlay(*early_, composition_->settings()));
    return desktop_->shell();
}

MainQueue& Root::mainQueue() { return *early_->queue; }
Composition& Root::composition() { return *composition_; }

}  // namespace pintle
