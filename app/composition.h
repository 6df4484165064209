// Builds the core from the platform's interfaces and owns it: the settings first, and everything else once
// it is known that no other copy of the program runs. Used by main and by the tests' driver.
// Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/cursor_view_model.h"
#include "app/full_reset.h"
#include "apply/application_pipeline.h"
#include "apply/cursor_applier.h"
#include "apply/cursor_overlay.h"
#include "apply/cursor_snapshots.h"
#include "apply/density_follower.h"
#include "apply/reapply_triggers.h"
#include "apply/system_cursor_changer.h"
#include "base/notification_center.h"
#include "base/subscription.h"
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
#include "platform/window_server.h"
#include "platform/workspace.h"
#include "settings/cursor_settings.h"
#include "settings/launch_at_login.h"
#include "settings/update_checker.h"
#include "themes/download.h"
#include "themes/theme_extractor.h"
#include "themes/theme_list.h"
#include "themes/theme_removal.h"
#include "themes/theme_store.h"
#include "themes/theme_work.h"

namespace pintle {

/// What is needed to find out whether another copy runs.
struct EarlyPlatform {
    Log& log;
    KeyValueStore& preferences;
    InstanceBus& instances;
};

/// How this desktop starts programs at login.
struct LoginPlatform {
    LoginItemService& service;
    LoginAgent& agent;
    LoginAgentRole role;
    ProgramLocation program;
};

/// Everything else. Each must outlive the composition.
struct Platform {
    MainQueue& mainQueue;
    BackgroundTasks& background;
    WindowServer& windowServer;
    HardwareCursor& hardwareCursor;
    ImageService& images;
    PropertyListCoder& propertyLists;
    ProcessHints& hints;
    Workspace& workspace;
    DesktopNames names;
    HttpClient& http;
    ProcessRunner& processes;
    UserDirectories directories;
    Bundle bundle;
    UpdateChecker::Mediator& updateAnswers;
    /// Takes the place of scheme and host of the catalog's addresses; absent: they are used as they are.
    std::optional<std::string> mirror;
};

class Composition {
  public:
    explicit Composition(const EarlyPlatform& early);
    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;
    /// Restores nothing: what is registered stays in force. Sends what the window server has not been sent.
    ~Composition();

    bool anotherCopyRuns() { return early_.instances.anotherCopyRuns(); }

    /// Points the login item to where the program lies now. Once, before build() and only when no other copy
    /// runs.
    void refreshLoginItem(const LoginPlatform& login);

    /// Builds the rest; once, and only when no other copy runs. From here on the window server is flushed at
    /// the end of each turn of the main queue.
    void build(const Platform& platform, std::unique_ptr<CursorOverlay> overlay);

    /// Sends what the window server has not been sent and brings the preferences onto the disk. After
    /// build().
    void flush();

    CursorSettings& settings() { return settings_; }
    NotificationCenter& notifications() { return notifications_; }
    /// Only after refreshLoginItem().
    LaunchAtLogin& launchAtLogin() { return *launchAtLogin_; }
    /// Only after build().
    SystemCursorChanger& changer() { return core_->changer; }
    CursorApplier& applier() { return core_->applier; }
    CursorOverlay& overlay() { return *core_->overlay; }
    /// These two are made by the first call.
    CursorViewModel& viewModel();
    UpdateChecker& updateChecker();

  private:
    /// In the order in which each needs the ones before it.
    struct Core {
        Core(const EarlyPlatform& early, const Platform& given, CursorSettings& settings,
             NotificationCenter& notifications, std::unique_ptr<CursorOverlay> givenOverlay);
        Platform platform;
        std::unique_ptr<CursorOverlay> overlay;
        CursorSnapshots snapshots;
        SystemCursorChanger changer;
        ReapplyTriggers triggers;
        CursorApplier applier;
        ThemeStore store;
        ThemeList themes;
        ApplicationPipeline pipeline;
        DensityFollower densityFollower;
        ThemeWork work;
        ThemeExtractor extractor;
        ThemeDownloads downloads;
        ThemeRemoval removal;
        FullReset fullReset;
        Subscription flushing;
    };

    EarlyPlatform early_;
    NotificationCenter notifications_;
    CursorSettings settings_;
    std::unique_ptr<LaunchAtLogin> launchAtLogin_;
    std::unique_ptr<Core> core_;
    std::unique_ptr<CursorViewModel> viewModel_;
    std::unique_ptr<UpdateChecker> updateChecker_;
};

}  // namespace pintle
