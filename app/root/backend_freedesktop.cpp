#include <QApplication>
#include <QIcon>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "app/quick/translated.h"
#include "app/root/desktop_backend.h"
#include "app/root/session_kinds.h"
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
#include "platform/qt/shell/qt_application.h"
#include "platform/x11/cursors/x11_hardware_cursor.h"
#include "platform/x11/windows/x11_shell.h"

namespace pintle {

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

EarlyBackend makeEarlyBackend() {
    EarlyBackend early;
    const auto environment = processEnvironment();
    early.bundle = makeBundle(environment);
    early.directories = makeUserDirectories(environment);
    early.log = makeSystemLog();
    early.queue = makeQtMainQueue();
    early.hints = makeGlibcProcessHints();
    early.background = makeQtBackgroundTasks();
    early.propertyLists = makePlistCoder();
    const auto preferences = makePreferencePath(environment, early.bundle);
    std::error_code missing;
    early.isFirstStart = !std::filesystem::exists(std::filesystem::symlink_status(preferences, missing));
    early.preferences = makePlistKeyValueStore(preferences, *early.propertyLists, *early.log, *early.queue,
                                               *early.background);
    early.instances = makeDbusInstanceBus(early.bundle.identifier, *early.queue, *early.background);
    early.loginItems = makeAbsentLoginItemService();
    early.loginAgent = makeAutostartEntry(preferences.parent_path());
    early.loginAgentRole = LoginAgentRole::standsInForService;
    early.programLocation = early.bundle.executable.string();
    early.placement = PlacementPolicy::insideWorkArea;
    early.application = makeQtApplication({[notifications = std::make_shared<DesktopNotifications>()](
                                               const std::string& title, const std::string& text) {
        notifications->show(translated(title).toStdString(), translated(text).toStdString());
    }});
    // The server draws a hidden pointer again by itself when the connection that hid it goes.
    early.installSignalRecovery = [] { installSignalRecovery(nullptr); };
    return early;
}

DesktopBackend makeDesktopBackend(EarlyBackend& early) {
    const auto environment = processEnvironment();
    DesktopBackend backend;
    backend.http = makeQtHttpClient(*early.queue);
    backend.processes = makeQtProcessRunner(*early.queue, limitedArchiver());
    backend.images = makeQtImageService();
    backend.hardwareCursor = makeHardwareCursor();
    backend.names = makeFreedesktopNames();
    backend.session = detectSession(environment)
                          .make({*early.queue, *early.background, *early.log, environment, early.directories,
                                 [] { QCoreApplication::exit(1); }});
    return backend;
}

}  // namespace pintle
