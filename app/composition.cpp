#include "app/composition.h"

#include <utility>

namespace pintle {

Composition::Core::Core(const EarlyPlatform& early, const Platform& given, CursorSettings& settings,
                        NotificationCenter& notifications, std::unique_ptr<CursorOverlay> givenOverlay)
    : platform(given),
      overlay(std::move(givenOverlay)),
      snapshots(platform.windowServer, platform.images, platform.propertyLists, early.log,
                platform.directories),
      changer(platform.windowServer, snapshots, early.log),
      applier(platform.hardwareCursor, changer, *overlay, early.log),
      store(platform.directories, early.log),
      themes(store, settings, early.log),
      pipeline({settings, early.preferences, notifications, themes, store, applier, *overlay,
                platform.mainQueue, platform.background, platform.hints, early.log}),
      flushing(platform.mainQueue.atEndOfTurn([&server = platform.windowServer] { server.flush(); })) {}

Composition::Composition(const EarlyPlatform& early)
    : early_(early), settings_(early_.preferences, notifications_) {
    CursorSettings::install(settings_);
}

Composition::~Composition() {
    if (core_) core_->platform.windowServer.flush();
}

void Composition::build(const Platform& platform, std::unique_ptr<CursorOverlay> overlay) {
    core_ = std::make_unique<Core>(early_, platform, settings_, notifications_, std::move(overlay));
    SystemCursorChanger::install(core_->changer);
    CursorApplier::install(core_->applier);
}

void Composition::startCursors() {
    auto& log = early_.log;
    log.system("[PINTLEAPP] Calling showSystemCursorGuaranteed()");
    core_->overlay->showSystemCursorGuaranteed();
    log.system("[PINTLEAPP] showSystemCursorGuaranteed() DONE");

    log.system("[PINTLEAPP] Calling applyLastCursor() SYNCHRONOUSLY");
    applyLastCursor();
    // The second of two lines, as the first step of start-up after the call.
    log.system("[PINTLEAPP] applyLastCursor() DONE");
}

void Composition::applyLastCursor() {
    auto& log = early_.log;
    log.system("[PINTLEAPP] applyLastCursor() START");
    viewModel_ = std::make_unique<CursorViewModel>(CursorViewModel::Neighbours{
        core_->themes, core_->store, core_->pipeline, early_.preferences, core_->platform.mainQueue,
        core_->platform.background, core_->platform.hints, log});
    CursorViewModel::install(*viewModel_);
    log.system("[PINTLEAPP] CursorViewModel created");
    viewModel_->applyLastUsedTheme();
    log.system("[PINTLEAPP] applyLastCursor() DONE");
}

}  // namespace pintle
