#include <QCoreApplication>

#include "app/qt/root.h"
#include "apply/cursor_overlay_manager.h"
#include "apply/null_overlay.h"
#include "platform/linux/archiver.h"
#include "platform/linux/dbus_instance_bus.h"
#include "platform/linux/hardware_cursor.h"
#include "platform/linux/linux_desktop_names.h"
#include "platform/linux/linux_log.h"
#include "platform/linux/linux_process_hints.h"
#include "platform/linux/login_item_service.h"
#include "platform/linux/overlay/overlay_desktop.h"
#include "platform/linux/overlay/screen_watch.h"
#include "platform/linux/plist_coder.h"
#include "platform/linux/plist_key_value_store.h"
#include "platform/linux/signal_recovery.h"
#include "platform/linux/user_directories.h"
#include "platform/linux/workspace/linux_workspace.h"
#include "platform/linux/x11/x11_window_server.h"
#include "platform/qt/qt_background_tasks.h"
#include "platform/qt/qt_http_client.h"
#include "platform/qt/qt_image_service.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_process_runner.h"
#include "platform/qt/qt_socket_watch.h"

namespace pintle {

struct Root::Early {
    Environment environment = processEnvironment();
    Bundle bundle = makeBundle(environment);
    std::unique_ptr<Log> log = makeLinuxLog();
    std::unique_ptr<MainQueue> queue = makeQtMainQueue();
    std::unique_ptr<BackgroundTasks> background = makeQtBackgroundTasks();
    std::unique_ptr<PropertyListCoder> propertyLists = makePlistCoder();
    std::unique_ptr<KeyValueStore> preferences = makePlistKeyValueStore(
        makePreferencePath(environment, bundle), *propertyLists, *log, *queue, *background);
    std::unique_ptr<InstanceBus> instances = makeDbusInstanceBus(bundle.identifier);
    std::unique_ptr<LoginItemService> loginItems = makeAbsentLoginItemService();
    std::unique_ptr<LoginAgent> autostart =
        makeAutostartEntry(makePreferencePath(environment, bundle).parent_path());
};

namespace {

// Until there is a menu nobody asks for an answer; one that came all the same is told in the log.
class AnswersInLog : public UpdateChecker::Mediator {
  public:
    explicit AnswersInLog(Log& log) : log_(log) {}
    void activateIgnoringOtherApps() override {}
    void runAlert(const UpdateAlert& alert, std::function<void(int)>) override {
        log_.system("[UI] " + alert.message + ". " + alert.informativeText);
    }
    void openUrl(const std::string& url) override { log_.system("[UI] " + url); }

  private:
    Log& log_;
};

}  // namespace

struct Root::Desktop {
    explicit Desktop(Early& early)
        : updateAnswers(*early.log),
          http(makeQtHttpClient(*early.queue)),
          processes(makeQtProcessRunner(*early.queue, linuxArchiver())),
          windowServer(makeX11WindowServer(X11WindowServerOptions{
              .display = std::nullopt,
              .queue = *early.queue,
              .log = *early.log,
              .watchReadable = watcherOn(*early.queue),
              .serverDied = [] { QCoreApplication::exit(1); },
              .environment = {},
              .nameSent = {},
          })),
          workspace(makeLinuxWorkspace({std::nullopt, *early.queue, watcherOn(*early.queue)})),
          overlay(makeOverlayDesktop({std::nullopt, *early.queue, *workspace, watcherOn(*early.queue),
                                      overlay::makeScreenWatch(*early.queue, *early.background)})) {}

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

    AnswersInLog updateAnswers;
    std::unique_ptr<HttpClient> http;
    std::unique_ptr<ProcessRunner> processes;
    std::unique_ptr<WindowServer> windowServer;
    std::unique_ptr<HardwareCursor> hardwareCursor = makeHardwareCursor();
    std::unique_ptr<ImageService> images = makeQtImageService();
    std::unique_ptr<ProcessHints> hints = makeLinuxProcessHints();
    DesktopNames names = makeLinuxDesktopNames();
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<OverlayDesktop> overlay;
};

Root::Root()
    : early_(std::make_unique<Early>()),
      composition_(std::make_unique<Composition>(
          EarlyPlatform{*early_->log, *early_->preferences, *early_->instances})) {}

Root::~Root() { early_->preferences->synchronize(); }

bool Root::start() {
    if (composition_->anotherCopyRuns()) return false;
    const auto program = early_->bundle.executable.string();
    composition_->refreshLoginItem({*early_->loginItems,
                                    *early_->autostart,
                                    LoginAgentRole::standsInForService,
                                    {program, program.empty() ? std::nullopt : std::optional(program)}});
    // The server draws a hidden pointer again by itself when the connection that hid it goes.
    installSignalRecovery(nullptr);
    desktop_ = std::make_unique<Desktop>(*early_);
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
    composition_->overlay().showSystemCursorGuaranteed();
    composition_->viewModel().applyLastUsedTheme();
    early_->log->system("[PINTLEAPP] applyLastCursor() DONE");
    early_->log->system("[PINTLEAPP] applyLastCursor() DONE");
    composition_->updateChecker().start();
    return true;
}

MainQueue& Root::mainQueue() { return *early_->queue; }
Composition& Root::composition() { return *composition_; }

}  // namespace pintle
