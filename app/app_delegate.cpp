#include "app/app_delegate.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "app/about_window_model.h"
#include "app/context_menu.h"
#include "app/popover_model.h"
#include "app/settings_window_model.h"
#include "settings/notification_names.h"
#include "settings/typed_defaults.h"

namespace pintle {
namespace {

/// Panels start together with this program at login; one that takes longer than this is not coming.
constexpr auto kTrayPatience = std::chrono::seconds(10);

WindowSpec windowSpec(WindowContent content, Size size, std::string_view title) {
    constexpr unsigned kTitled = 1;
    constexpr unsigned kClosable = 2;
    constexpr unsigned kFullSizeContentView = 32768;
    WindowSpec spec;
    spec.content = content;
    spec.contentSize = size;
    spec.title = title;
    spec.styleMask = kTitled | kClosable | kFullSizeContentView;
    spec.titleHidden = true;
    spec.titlebarTransparent = true;
    spec.hasShadow = true;
    // All but clear, so that the view's own material shows through.
    spec.backgroundAlpha = 0.001;
    spec.showsMiniaturizeAndZoom = false;
    return spec;
}

WindowSpec settingsSpec() {
    return windowSpec(WindowContent::settings, SettingsWindowModel::contentSize, settings_text::windowTitle);
}
WindowSpec aboutSpec() {
    return windowSpec(WindowContent::about, AboutWindowModel::contentSize, about_text::windowTitle);
}

}  // namespace

AppDelegate::AppDelegate(Dependencies dependencies) : deps_(std::move(dependencies)) {
    deps_.application.setWillTerminate(lifetime_.weakly([this] { applicationWillTerminate(); }));
}

AppDelegate::~AppDelegate() {
    stopOverlay();
    eventMonitor_.end();
    localEventMonitor_.end();
}

void AppDelegate::applicationDidFinishLaunching() {
    if (deps_.bundle.identifier.empty()) std::abort();
    auto& log = deps_.early.log;
    auto& instances = deps_.early.instances;
    if (instances.anotherCopyRuns()) {
        isRedundant_ = true;
        instances.post(kShowPopoverNotification);
        deps_.application.terminate();
        return;
    }
    showPopoverRequest_ = instances.observe(kShowPopoverNotification, lifetime_.weakly([this] {
        if (popover_ && !popover_->isShown()) togglePopover();
    }));
    olderCopy_ = instances.observeOlderCopy(lifetime_.weakly([this] {
        if (std::exchange(isRedundant_, true)) return;
        deps_.early.log.system("[PINTLEAPP] A copy that started earlier runs - ending");
        deps_.application.terminate();
    }));
    deps_.composition.refreshLoginItem(deps_.login);
    deps_.installSignalRecovery();
    desktop_.emplace(deps_.makeDesktop());

    // A pointer hidden by a copy that crashed comes back.
    log.system("[PINTLEAPP] Calling showSystemCursorGuaranteed()");
    deps_.composition.overlay().showSystemCursorGuaranteed();
    log.system("[PINTLEAPP] showSystemCursorGuaranteed() DONE");
    deps_.application.setActivationPolicy(ActivationPolicy::accessory);
    log.system("[PINTLEAPP] setupMenuBar()");
    setupMenuBar();
    log.system("[PINTLEAPP] setupEventMonitor()");
    setupEventMonitor();
    log.system("[PINTLEAPP] setupNotificationObservers()");
    setupNotificationObservers();
    log.system("[PINTLEAPP] Calling applyLastCursor() SYNCHRONOUSLY");
    applyLastCursor();
    // Logged twice on purpose: once by applyLastCursor(), once here.
    log.system("[PINTLEAPP] applyLastCursor() DONE");
    deps_.composition.updateChecker().start();
    welcomePending_ = deps_.welcomes;
    if (desktop_->statusBar.isAvailable()) welcome();
}

void AppDelegate::setupMenuBar() {
    if (!desktop_) return;
    auto& log = deps_.early.log;
    log.system("[MENUBAR] setupMenuBar() START");
    statusItem_ = desktop_->statusBar.makeStatusItem(kSquareStatusItemLength);
    log.system("[MENUBAR] Status item created: " + statusItem_->description());
    if (statusItem_->hasButton()) {
        log.system("[MENUBAR] Setting up button...");
        statusItem_->setImage({"cursorarrow.motionlines", "Pintle", true});
        statusItem_->setAction(lifetime_.weakly([this](const auto& event) { statusBarClicked(event); }));
        statusItem_->setActivation(lifetime_.weakly([this] { togglePopover(); }));
        statusItem_->setHostMenu([this] { return makeMenu(); });
        log.system("[MENUBAR] Button configured with action: statusBarClicked");
    } else {
        log.system("[MENUBAR] ERROR: No button in status item!");
    }
    log.system("[MENUBAR] Creating popover...");
    // What the popover's view is built on exists before the view.
    deps_.composition.viewModel();
    deps_.composition.updateChecker();
    popover_ = desktop_->popovers.makePopover(
        {.contentSize = PopoverModel::contentSize, .transient = true, .animates = true});
    log.system("[MENUBAR] Popover created with PopoverView");
    log.system("[MENUBAR] setupMenuBar() DONE");

    if (!desktop_->statusBar.isAvailable())
        trayDeadline_ = deps_.mainQueue.after(kTrayPatience, lifetime_.weakly([this] {
            notifyIfThereIsNoTray();
            if (desktop_->statusBar.isAvailable()) welcome();
        }));
}

void AppDelegate::setupEventMonitor() {
    if (!desktop_) return;
    eventMonitor_ = desktop_->eventMonitors.addGlobalMonitor(
        kLeftMouseDownMask | kRightMouseDownMask,
        lifetime_.weakly([this](const GlobalMouseDown& press) { pressedElsewhere(press); }));
    localEventMonitor_ = desktop_->eventMonitors.addLocalMonitor(
        kKeyDownMask, [this](const LocalKeyDown& key) { return swallowsKey(key); });
}

void AppDelegate::setupNotificationObservers() {
    auto& centre = deps_.composition.notifications();
    openSettingsRequest_ = centre.observe(std::string(notification::openSettingsRequest),
                                          [this](const std::any&) { openSettings(); });
    openAboutRequest_ =
        centre.observe(std::string(notification::openAboutRequest), [this](const std::any&) { showAbout(); });
    quitAppRequest_ =
        centre.observe(std::string(notification::quitAppRequest), [this](const std::any&) { quitApp(); });
}

void AppDelegate::applyLastCursor() {
    auto& log = deps_.early.log;
    log.system("[PINTLEAPP] applyLastCursor() START");
    cursorViewModel_ = &deps_.composition.viewModel();
    log.system("[PINTLEAPP] CursorViewModel created");
    cursorViewModel_->applyLastUsedTheme();
    log.system("[PINTLEAPP] applyLastCursor() DONE");
}

void AppDelegate::statusBarClicked(std::optional<StatusItemEvent> event) {
    auto& log = deps_.early.log;
    log.system("[MENUBAR] STATUS BAR CLICKED!!!");
    if (!event) {
        log.system("[MENUBAR] No current event");
        return;
    }
    if (desktop_) lastClick_ = desktop_->windows.mouseLocation();
    if (event->type == StatusItemEventType::rightMouseUp) {
        log.system("[MENUBAR] Right click - showing context menu");
        showContextMenu();
        return;
    }
    log.system("[MENUBAR] Left click - toggling popover");
    if (!dismissal_.drops(*event, deps_.mainQueue.now())) togglePopover();
}

void AppDelegate::togglePopover() {
    auto& log = deps_.early.log;
    if (!statusItem_ || !statusItem_->hasButton() || !popover_) {
        log.system("[MENUBAR] togglePopover: no button");
        return;
    }
    if (popover_->isShown()) {
        log.system("[MENUBAR] Popover already shown, closing");
        popover_->close();
        return;
    }
    log.system("[MENUBAR] Showing popover...");
    popover_->show(*statusItem_, placeUnderStatusItem(PopoverModel::contentSize, placement()));
    log.system("[MENUBAR] Popover shown, activating app");
    deps_.application.activateIgnoringOtherApps();
    notifyIfThereIsNoTray();
}

void AppDelegate::showContextMenu() {
    if (!statusItem_) return;
    statusItem_->attachMenu(makeMenu());
    statusItem_->performClick();
    // Otherwise the next left click would open the menu as well.
    statusItem_->detachMenu();
}

Menu AppDelegate::makeMenu() {
    // A user who chooses from the menu has the pointer near the item.
    const auto chosen = [this](void (AppDelegate::*command)()) {
        return [this, command] {
            if (desktop_ && !lastClick_) lastClick_ = desktop_->windows.mouseLocation();
            (this->*command)();
        };
    };
    return makeContextMenu({
        lifetime_.weakly(chosen(&AppDelegate::openSettings)),
        lifetime_.weakly(chosen(&AppDelegate::showAbout)),
        lifetime_.weakly(chosen(&AppDelegate::checkForUpdates)),
        lifetime_.weakly(chosen(&AppDelegate::quitApp)),
    });
}

void AppDelegate::openSettings() { show(settingsWindow_, settingsSpec()); }
void AppDelegate::showAbout() { show(aboutWindow_, aboutSpec()); }

void AppDelegate::show(std::unique_ptr<ShellWindow>& window, const WindowSpec& spec) {
    if (!desktop_) return;
    if (popover_) popover_->close();
    if (!window) window = desktop_->windows.makeWindow(spec);
    if (!window) return;
    positionWindowUnderStatusItem(*window);
    window->makeKeyAndOrderFront();
    deps_.application.activateIgnoringOtherApps();
}

void AppDelegate::positionWindowUnderStatusItem(ShellWindow& window) {
    // A window that had to shrink the last time asks for its whole size again.
    Size size = window.frame().size;
    Size content;
    if (&window == settingsWindow_.get()) content = settingsSpec().contentSize;
    if (&window == aboutWindow_.get()) content = aboutSpec().contentSize;
    size = {std::max(size.width, content.width), std::max(size.height, content.height)};
    window.setFrame(placeUnderStatusItem(size, placement()));
}

Placement AppDelegate::placement() const {
    Placement known;
    known.policy = deps_.placement;
    known.hasButton = statusItem_ && statusItem_->hasButton();
    if (known.hasButton) known.button = statusItem_->buttonFrame();
    known.lastClick = lastClick_;
    if (desktop_) {
        known.hasBar = desktop_->statusBar.isAvailable();
        known.screens = desktop_->windows.screens();
    }
    return known;
}

void AppDelegate::checkForUpdates() {
    deps_.mainQueue.post(
        lifetime_.weakly([this] { deps_.composition.updateChecker().checkInteractively(); }));
}

void AppDelegate::quitApp() {
    stopOverlay();
    deps_.application.terminate();
}

void AppDelegate::applicationWillTerminate() {
    if (std::exchange(hasTerminated_, true) || !desktop_) return;
    stopOverlay();
    // A redundant copy restores nothing: the cursors are the other copy's.
    if (isRedundant_) return;
    if (boolValue(deps_.early.preferences, CursorSettings::restoreOnQuitKey)) {
        auto& changer = deps_.composition.changer();
        auto& applier = deps_.composition.applier();
        changer.restoreSystemState();
        changer.forgetApplied();
        applier.resetToSystemDefaults();
        applier.customCursors().clear();
    }
    deps_.composition.flush();
}

void AppDelegate::stopOverlay() {
    if (!desktop_) return;
    auto& overlay = deps_.composition.overlay();
    overlay.deactivate();
    overlay.showSystemCursorGuaranteed();
    overlay.destroyWindows();
    overlay.showSystemCursorGuaranteed();
    deps_.early.log.standardOutput("[AppDelegate] System cursor restored");
}

void AppDelegate::pressedElsewhere(const GlobalMouseDown& press) {
    const bool closes = popover_ && popover_->isShown();
    dismissal_.pressed(press, closes, deps_.mainQueue.now());
    if (closes) popover_->close();
}

bool AppDelegate::swallowsKey(const LocalKeyDown& key) {
    if (!key.commandModifier || key.charactersIgnoringModifiers != "w") return false;
    for (auto* window : {settingsWindow_.get(), aboutWindow_.get()}) {
        if (!window || !window->isKey()) continue;
        window->close();
        return true;
    }
    return false;
}

void AppDelegate::welcome() {
    if (!std::exchange(welcomePending_, false)) return;
    deps_.application.notify(std::string(translatable("Pintle", "Pintle lives in the tray")),
                             std::string(translatable("Pintle", "Click its icon to choose a cursor theme.")));
}

void AppDelegate::notifyIfThereIsNoTray() {
    if (hasNotifiedOfNoTray_ || !desktop_ || desktop_->statusBar.isAvailable()) return;
    hasNotifiedOfNoTray_ = true;
    deps_.application.notify(
        std::string(translatable("Pintle", "Pintle found no tray")),
        std::string(
            translatable("Pintle", "It goes on running without an icon. Start Pintle again to open it.")));
}

}  // namespace pintle
