#include "app/composition.h"

#include <utility>

#include "themes/scratch.h"

namespace pintle {

Composition::Core::Core(const EarlyPlatform& early, const Platform& given, CursorSettings& settings,
                        NotificationCenter& notifications, std::unique_ptr<CursorOverlay> givenOverlay)
    : platform(given),
      overlay(std::move(givenOverlay)),
      snapshots(platform.windowServer, platform.images, platform.propertyLists, early.log,
                platform.directories),
      changer(platform.windowServer, snapshots, early.log),
      triggers(changer, platform.workspace, platform.mainQueue, early.log, platform.names,
               [&settings] { return settings.excludedApps(); }),
      applier(platform.hardwareCursor, changer, *overlay, early.log),
      store(platform.directories, early.log),
      themes(store, settings, early.log),
      pipeline({settings, early.preferences, notifications, themes, store, applier, *overlay,
                platform.mainQueue, platform.background, platform.hints, early.log, platform.workspace}),
      densityFollower(platform.workspace, changer, pipeline),
      extractor({platform.processes, work, platform.mainQueue, platform.background}),
      downloads({settings, early.preferences, themes, store, extractor, work, platform.http,
                 platform.mainQueue, platform.background, early.log},
                platform.directories.temporary, platform.mirror),
      removal({settings, early.preferences, themes, store, work, platform.mainQueue, platform.background,
               early.log}),
      fullReset({settings, early.preferences, store, work, pipeline, applier, changer, early.log}),
      flushing(platform.mainQueue.atEndOfTurn([&server = platform.windowServer] { server.flush(); })) {}

Composition::Composition(const EarlyPlatform& early)
    : early_(early), settings_(early_.preferences, notifications_) {
    CursorSettings::install(settings_);
}

Composition::~Composition() {
    if (core_) core_->platform.windowServer.flush();
}

void Composition::refreshLoginItem(const LoginPlatform& login) {
    launchAtLogin_ = std::make_unique<LaunchAtLogin>(login.service, login.agent, early_.preferences,
                                                     early_.log, login.program, login.role);
    launchAtLogin_->refreshLoginItemLocation();
}

void Composition::build(const Platform& platform, std::unique_ptr<CursorOverlay> overlay) {
    core_ = std::make_unique<Core>(early_, platform, settings_, notifications_, std::move(overlay));
    SystemCursorChanger::install(core_->changer);
    CursorApplier::install(core_->applier);
    platform.background.run(Priority::utility, [themes = core_->store.themesDirectory(),
                                                temporary = platform.directories.temporary] {
        removeLeftovers(themes, temporary);
    });
}

void Composition::flush() {
    core_->platform.windowServer.flush();
    early_.preferences.synchronize();
}

CursorViewModel& Composition::viewModel() {
    if (!viewModel_) {
        viewModel_ = std::make_unique<CursorViewModel>(CursorViewModel::Dependencies{
            core_->themes, core_->store, core_->pipeline, core_->downloads, core_->removal, core_->fullReset,
            early_.preferences, core_->platform.mainQueue, core_->platform.background, core_->platform.hints,
            early_.log});
        CursorViewModel::install(*viewModel_);
    }
    return *viewModel_;
}

UpdateChecker& Composition::updateChecker() {
    if (!updateChecker_) {
        updateChecker_ = std::make_unique<UpdateChecker>(core_->platform.http, core_->platform.mainQueue,
                                                         core_->platform.updateAnswers,
                                                         core_->platform.bundle, builtInUpdateEndpoint());
        UpdateChecker::install(*updateChecker_);
    }
    return *updateChecker_;
}

}  // namespace pintle
