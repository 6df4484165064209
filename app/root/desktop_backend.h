// Everything that the root needs from the operating system, in the two stages in which it is made. Each
// desktop implements the functions in a file of its own, and one of them is compiled. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/root/desktop_session.h"
#include "app/window_placement.h"
#include "platform/application.h"
#include "platform/background_tasks.h"
#include "platform/bundle.h"
#include "platform/desktop_names.h"
#include "platform/hardware_cursor.h"
#include "platform/http_client.h"
#include "platform/image_service.h"
#include "platform/instance_bus.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/login_agent.h"
#include "platform/login_item_service.h"
#include "platform/main_queue.h"
#include "platform/process_hints.h"
#include "platform/process_runner.h"
#include "platform/property_list_coder.h"
#include "settings/launch_at_login.h"

namespace pintle {

/// Before it is known whether another copy runs. No pointer is null.
struct EarlyBackend {
    Bundle bundle;
    UserDirectories directories;
    std::unique_ptr<Log> log;
    std::unique_ptr<MainQueue> queue;
    /// Used by background work, so it outlives the threads.
    std::unique_ptr<ProcessHints> hints;
    std::unique_ptr<BackgroundTasks> background;
    std::unique_ptr<PropertyListCoder> propertyLists;
    std::unique_ptr<KeyValueStore> preferences;
    /// No preferences were there, not even damaged ones, and a notification asks for no permission.
    bool isFirstStart = false;
    std::unique_ptr<InstanceBus> instances;
    std::unique_ptr<LoginItemService> loginItems;
    std::unique_ptr<LoginAgent> loginAgent;
    LoginAgentRole loginAgentRole = LoginAgentRole::fallback;
    /// What a login item names as the program.
    std::string programLocation;
    PlacementPolicy placement = PlacementPolicy::asComputed;
    std::unique_ptr<Application> application;
    /// For SIGABRT, SIGSEGV and SIGTERM.
    std::function<void()> installSignalRecovery;
};

/// Everything else. No pointer is null.
struct DesktopBackend {
    std::unique_ptr<HttpClient> http;
    std::unique_ptr<ProcessRunner> processes;
    std::unique_ptr<ImageService> images;
    std::unique_ptr<HardwareCursor> hardwareCursor;
    DesktopNames names;
    DesktopSession session;
};

/// Before the toolkit's application object: how it draws and what the program is called. A sentence for the
/// user when there is no desktop here to run on; then that object must not be made.
[[nodiscard]] std::optional<std::string> prepareToolkit();

/// After the toolkit's application object.
EarlyBackend makeEarlyBackend();
/// Once, and only when no other copy runs. `early` outlives the result.
DesktopBackend makeDesktopBackend(EarlyBackend& early);

}  // namespace pintle
