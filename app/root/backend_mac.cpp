#include "app/root/desktop_backend.h"

#include <QApplication>
#include <utility>

#include "app/root/native_views_qt.h"
#include "app/root/prepare_toolkit_mac.h"
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

class MacOverlayDesktop : public OverlayDesktop {
  public:
    Displays& displays() override { return *displays_; }
    OverlaySurfaces& surfaces() override { return *surfaces_; }
    Pointer& pointer() override { return *pointer_; }
    WindowList& windowList() override { return *windowList_; }
    Accessibility& accessibility() override { return *accessibility_; }

  private:
    std::unique_ptr<Displays> displays_ = makeMacDisplays();
    std::unique_ptr<OverlaySurfaces> surfaces_ = makeMacOverlaySurfaces();
    std::unique_ptr<WindowList> windowList_ = makeMacWindowList();
    std::unique_ptr<Pointer> pointer_ = makeMacPointer();
    std::unique_ptr<Accessibility> accessibility_ = makeMacAccessibility();
};

ShellBackend makeShell(ShellViews& views, MainQueue& queue) {
    const std::shared_ptr<NativeViews> nativeViews = makeNativeViews(views);
    ShellBackend shell;
    shell.views = nativeViews;
    shell.alerts = makeMacAlerts(queue);
    shell.statusBar = makeMacStatusBar();
    shell.popovers = makeMacPopovers(*nativeViews);
    shell.windows = makeMacWindows(*nativeViews);
    shell.eventMonitors = makeMacEventMonitors();
    return shell;
}

DesktopSession makeSession(MainQueue& queue) {
    DesktopSession session;
    session.windowServer = makeMacWindowServer();
    session.workspace = makeMacWorkspace();
    session.overlay = std::make_unique<MacOverlayDesktop>();
    session.appearance = makeMacAppearance(queue);
    session.makeShell = [&queue](ShellViews& views, Appearance&) { return makeShell(views, queue); };
    return session;
}

}  // namespace

EarlyBackend makeEarlyBackend() {
    EarlyBackend early;
    early.bundle = readMacBundle();
    early.directories = readUserDirectories();
    early.log = makeMacLog();
    early.queue = makeMacMainQueue();
    early.hints = makeMacProcessHints();
    early.background = makeQtBackgroundTasks();
    early.propertyLists = makeMacPropertyListCoder();
    early.preferences = makeMacKeyValueStore(early.bundle.identifier);
    early.instances = makeMacInstanceBus(early.bundle.identifier, *early.queue);
    early.loginItems = makeMacLoginItemService();
    early.loginAgent = makeLaunchAgentFile(early.directories.home, *early.propertyLists);
    early.loginAgentRole = LoginAgentRole::fallback;
    early.programLocation = readMacBundlePath().string();
    early.placement = PlacementPolicy::asComputed;
    early.application = makeMacApplication(observeToolkitQuit);
    early.installSignalRecovery = [] { installSignalRecovery(showPointerOnMainDisplay); };
    return early;
}

DesktopBackend makeDesktopBackend(EarlyBackend& early) {
    return {
        .http = makeQtHttpClient(*early.queue),
        .processes = makeRunnerForForeignPrograms(*early.queue),
        .images = makeMacImageService(),
        .hardwareCursor = makeMacHardwareCursor(),
        .names = {},
        .session = makeSession(*early.queue),
    };
}

}  // namespace pintle
