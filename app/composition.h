// Builds the core from the platform's interfaces and owns it: the settings first, and everything else once
// it is known that no other copy of the program runs. Used by main and by the tests' driver.
// Main thread only.
#pragma once

#include <memory>
#include <optional>

#include "app/cursor_view_model.h"
#include "apply/application_pipeline.h"
#include "apply/cursor_applier.h"
#include "apply/cursor_overlay.h"
#include "apply/cursor_snapshots.h"
#include "apply/system_cursor_changer.h"
#include "base/notification_center.h"
#include "base/subscription.h"
#include "platform/background_tasks.h"
#include "platform/bundle.h"
#include "platform/hardware_cursor.h"
#include "platform/image_service.h"
#include "platform/instance_bus.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/process_hints.h"
#include "platform/property_list_coder.h"
#include "platform/window_server.h"
#include "settings/cursor_settings.h"
#include "themes/theme_list.h"
#include "themes/theme_store.h"

namespace pintle {

/// What is needed to find out whether another copy runs.
struct EarlyPlatform {
    Log& log;
    KeyValueStore& preferences;
    InstanceBus& instances;
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
    UserDirectories directories;
    Bundle bundle;
};

class Composition {
  public:
    explicit Composition(const EarlyPlatform& early);
    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;
    /// Restores nothing: what is registered stays in force. Sends what the window server has not been sent.
    ~Composition();

    bool anotherCopyRuns() { return early_.instances.anotherCopyRuns(); }

    /// Builds the rest; once, and only when no other copy runs. From here on the window server is flushed at
    /// the end of each turn of the main queue.
    void build(const Platform& platform, std::unique_ptr<CursorOverlay> overlay);

    /// Shows the hardware cursor, makes the view model and applies the last theme, or restores the desktop's
    /// cursors. Once, after build().
    void startCursors();

    CursorSettings& settings() { return settings_; }
    NotificationCenter& notifications() { return notifications_; }
    /// Only after build().
    SystemCursorChanger& changer() { return core_->changer; }
    CursorApplier& applier() { return core_->applier; }
    CursorOverlay& overlay() { return *core_->overlay; }
    /// Only after startCursors().
    CursorViewModel& viewModel() { return *viewModel_; }

  private:
    /// In the order in which each needs the ones before it.
    struct Core {
        Core(const EarlyPlatform& early, const Platform& given, CursorSettings& settings,
             NotificationCenter& notifications, std::unique_ptr<CursorOverlay> givenOverlay);
        Platform platform;
        std::unique_ptr<CursorOverlay> overlay;
        CursorSnapshots snapshots;
        SystemCursorChanger changer;
        CursorApplier applier;
        ThemeStore store;
        ThemeList themes;
        ApplicationPipeline pipeline;
        Subscription flushing;
    };
    void applyLastCursor();

    EarlyPlatform early_;
    NotificationCenter notifications_;
    CursorSettings settings_;
    std::unique_ptr<Core> core_;
    std::unique_ptr<CursorViewModel> viewModel_;
};

}  // namespace pintle
