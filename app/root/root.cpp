#include "app/root/root.h"

#include <QWindow>
#include <cstdlib>
#include <optional>
#include <utility>

#include "app/popover_model.h"
#include "app/quick/shell_views_quick.h"
#include "app/quick/window_views.h"
#include "app/update_answers.h"
#include "apply/cursor_overlay_manager.h"
#include "apply/null_overlay.h"

namespace pintle {

struct Root::Desktop {
    Desktop(EarlyBackend& early, Composition& composition)
        : backend(makeDesktopBackend(early)),
          windowViews({[this, &early, &composition]() -> SettingsWindowModel& {
                           return settingsModel.emplace(SettingsWindowModel::Dependencies{
                               composition.settings(), *early.preferences, composition.launchAtLogin(),
                               composition.notifications(), composition.viewModel(), *shell.alerts,
                               *early.application, backend.session.seesApplications});
                       },
                       [this, &early]() -> AboutWindowModel& {
                           return aboutModel.emplace(early.bundle, *early.application, [this] {
                               if (auto* const view = views.window(WindowContent::about)) view->close();
                           });
                       }}),
          views(ShellViewsQuick::Dependencies{
              [this, &early, &composition]() -> PopoverModel& {
                  return popoverModel.emplace(
                      PopoverModel::Dependencies{composition.viewModel(), composition.updateChecker(),
                                                 composition.settings(), composition.notifications(),
                                                 *early.queue, *early.application, *early.log},
                      pointerSession());
              },
              *backend.session.appearance, composition.settings(),
              [this](QQmlEngine& engine, WindowContent content) {
                  return windowViews.makeWindow(engine, content);
              },
              [this](QQmlEngine& engine, const Alert& alert, std::function<void(int)> chosen) {
                  return windowViews.alert(engine, alert, std::move(chosen));
              }}),
          shell(backend.session.makeShell(views, *backend.session.appearance)),
          updateAnswers(*early.application, *shell.alerts) {}

    ~Desktop() { windowViews.forgetAlert(); }

    std::unique_ptr<CursorOverlay> makeOverlay(EarlyBackend& early, const CursorSettings& settings) {
        auto* const overlay = backend.session.overlay.get();
        if (!overlay) return std::make_unique<NullOverlay>(*early.log);
        return std::make_unique<CursorOverlayManager>(CursorOverlayManager::Desktop{
            *early.queue, *early.log, overlay->displays(), overlay->surfaces(), overlay->windowList(),
            *backend.session.workspace, overlay->pointer(), *backend.hardwareCursor, overlay->accessibility(),
            settings, backend.names});
    }

    PopoverModel::Session pointerSession() const {
        if (backend.session.overlay) return PopoverModel::Session::pointerCanChange;
        if (!backend.session.windowServer->provides(WindowServerFunction::registerCursorWithImages))
            return PopoverModel::Session::pointerCannotChange;
        return backend.session.seesApplications ? PopoverModel::Session::pointerCanChange
                                                : PopoverModel::Session::pointerFollowsSetting;
    }

    DesktopBackend backend;
    std::optional<PopoverModel> popoverModel;
    std::optional<SettingsWindowModel> settingsModel;
    std::optional<AboutWindowModel> aboutModel;
    WindowViews windowViews;
    ShellViewsQuick views;
    ShellBackend shell;
    UpdateAnswers updateAnswers;
};

namespace {

// The toolkit may end the process by exit(), past every object of this program: when the X server goes away,
// for one.
KeyValueStore* preferencesAtExit = nullptr;

void writePreferences() {
    if (preferencesAtExit) preferencesAtExit->synchronize();
}

std::optional<std::string> mirrorOfTheEnvironment() {
    const char* const mirror = std::getenv("PINTLE_MIRROR");
    if (!mirror) return std::nullopt;
    return mirror;
}

}  // namespace

Root::Root()
    : early_(makeEarlyBackend()),
      composition_(EarlyPlatform{*early_.log, *early_.preferences, *early_.instances}) {
    const auto program = early_.bundle.executable.string();
    delegate_ = std::make_unique<AppDelegate>(AppDelegate::Dependencies{
        .composition = composition_,
        .early = {*early_.log, *early_.preferences, *early_.instances},
        .application = *early_.application,
        .mainQueue = *early_.queue,
        .bundle = early_.bundle,
        .login = {*early_.loginItems,
                  *early_.loginAgent,
                  early_.loginAgentRole,
                  {early_.programLocation, program.empty() ? std::nullopt : std::optional(program)}},
        .placement = early_.placement,
        .welcomes = early_.isFirstStart,
        .installSignalRecovery = early_.installSignalRecovery,
        .makeDesktop = [this] { return makeDesktop(); },
    });
    preferencesAtExit = early_.preferences.get();
    static const int registered = std::atexit(writePreferences);
    (void)registered;
}

Root::~Root() {
    preferencesAtExit = nullptr;
    delegate_.reset();
    early_.preferences->synchronize();
}

bool Root::start() {
    delegate_->applicationDidFinishLaunching();
    return !delegate_->isRedundant();
}

ShellPlatform Root::makeDesktop() {
    desktop_ = std::make_unique<Desktop>(early_, composition_);
    const auto& backend = desktop_->backend;
    const auto& shell = desktop_->shell;
    composition_.build(
        Platform{
            .mainQueue = *early_.queue,
            .background = *early_.background,
            .windowServer = *backend.session.windowServer,
            .hardwareCursor = *backend.hardwareCursor,
            .images = *backend.images,
            .propertyLists = *early_.propertyLists,
            .hints = *early_.hints,
            .workspace = *backend.session.workspace,
            .names = backend.names,
            .http = *backend.http,
            .processes = *backend.processes,
            .directories = early_.directories,
            .bundle = early_.bundle,
            .updateAnswers = desktop_->updateAnswers,
            .mirror = mirrorOfTheEnvironment(),
        },
        desktop_->makeOverlay(early_, composition_.settings()));
    return {*shell.statusBar, *shell.popovers, *shell.windows, *shell.eventMonitors};
}

}  // namespace pintle
