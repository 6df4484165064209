// The life of the program: one copy, the status item with its popover and menu, the two windows, the last
// theme at the start and the desktop's own pointer at the end. Made by the root, which calls
// applicationDidFinishLaunching() once; everything after that comes from the desktop. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/composition.h"
#include "app/popover_dismissal.h"
#include "app/window_placement.h"
#include "base/geometry.h"
#include "base/lifetime.h"
#include "base/subscription.h"
#include "platform/application.h"
#include "platform/event_monitors.h"
#include "platform/main_queue.h"
#include "platform/menu.h"
#include "platform/popover.h"
#include "platform/status_item.h"
#include "platform/windows.h"

namespace pintle {

/// A message between copies of the program: show the popover.
inline constexpr const char* kShowPopoverNotification = "com.pintle.app.showPopover";

/// What the desktop gives to a copy that stays. Each must outlive the delegate.
struct ShellPlatform {
    StatusBar& statusBar;
    Popovers& popovers;
    Windows& windows;
    EventMonitors& eventMonitors;
};

class AppDelegate {
  public:
    /// Everything passed by reference must outlive the delegate.
    struct Dependencies {
        Composition& composition;
        EarlyPlatform early;
        Application& application;
        MainQueue& mainQueue;
        /// Its identifier must not be empty.
        Bundle bundle;
        LoginPlatform login;
        PlacementPolicy placement = PlacementPolicy::asComputed;
        /// True at the first start for this user, where a notification needs no permission: one then says
        /// where the program lives.
        bool welcomes = false;
        /// For SIGABRT, SIGSEGV and SIGTERM; called before the desktop is made.
        std::function<void()> installSignalRecovery;
        /// Makes the rest of the platform and gives it to Composition::build(). Called once, and only when
        /// this copy stays.
        std::function<ShellPlatform()> makeDesktop;
    };

    /// From here on the delegate handles the end of the program.
    explicit AppDelegate(Dependencies dependencies);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    /// Stops the overlay, then the monitors.
    ~AppDelegate();

    /// Start-up. Ends the process when the bundle has no identifier.
    void applicationDidFinishLaunching();
    /// Shut-down; everything pending is written and sent on return. Only its first call does anything.
    void applicationWillTerminate();

    /// Another copy runs and this one has been asked to end: at the start, where it has made nothing, or
    /// later, where it leaves everything as it stands.
    bool isRedundant() const { return isRedundant_; }

    void setupMenuBar();
    void setupEventMonitor();
    void setupNotificationObservers();
    void applyLastCursor();

    /// `event`: the one that is current; absent when there is none.
    void statusBarClicked(std::optional<StatusItemEvent> event);
    void togglePopover();
    void showContextMenu();
    void openSettings();
    void showAbout();
    void checkForUpdates();
    void quitApp();

    void positionWindowUnderStatusItem(ShellWindow& window);

    /// Null until each is made.
    StatusItem* statusItem() const { return statusItem_.get(); }
    Popover* popover() const { return popover_.get(); }
    CursorViewModel* cursorViewModel() const { return cursorViewModel_; }
    ShellWindow* settingsWindow() const { return settingsWindow_.get(); }
    ShellWindow* aboutWindow() const { return aboutWindow_.get(); }

  private:
    void show(std::unique_ptr<ShellWindow>& window, const WindowSpec& spec);
    bool swallowsKey(const LocalKeyDown& key);
    void pressedElsewhere(const GlobalMouseDown& press);
    Menu makeMenu();
    Placement placement() const;
    void notifyIfThereIsNoTray();
    void welcome();
    void stopOverlay();

    const Dependencies deps_;
    std::optional<ShellPlatform> desktop_;
    bool isRedundant_ = false;
    bool hasTerminated_ = false;
    bool hasNotifiedOfNoTray_ = false;
    PopoverDismissal dismissal_;
    /// Where the pointer was at the last click on the item, for hosts that do not report where the item is.
    std::optional<Point> lastClick_;

    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<Popover> popover_;
    Subscription eventMonitor_;
    Subscription localEventMonitor_;
    CursorViewModel* cursorViewModel_ = nullptr;
    std::unique_ptr<ShellWindow> settingsWindow_;
    std::unique_ptr<ShellWindow> aboutWindow_;

    Subscription showPopoverRequest_;
    Subscription olderCopy_;
    Subscription openSettingsRequest_;
    Subscription openAboutRequest_;
    Subscription quitAppRequest_;
    bool welcomePending_ = false;
    Timer trayDeadline_;
    Lifetime lifetime_;
};

}  // namespace pintle
