#include "apply/reapply_triggers.h"

#include <fmt/format.h>

#include <chrono>
#include <utility>

#include "apply/exclusion_rules.h"

namespace pintle {
namespace {

constexpr std::chrono::seconds kReapplyDelay{1};

}  // namespace

ReapplyTriggers::ReapplyTriggers(SystemCursorChanger& changer, Workspace& workspace, MainQueue& queue,
                                 Log& log, const DesktopNames& names, ExcludedApps excludedApps)
    : changer_(changer),
      queue_(queue),
      log_(log),
      builtInExclusions_(names.remoteDesktops),
      excludedApps_(std::move(excludedApps)) {
    observers_.push_back(
        workspace.observeDisplayReconfiguration(lifetime_.weakly([this](DisplayId, DisplayChangeFlags flags) {
            if (flags & kDisplayBeginConfiguration) return;
            queue_.post(lifetime_.weakly([this] { scheduleReapply("display change"); }));
        })));
    for (const auto event : {WorkspaceEvent::didWake, WorkspaceEvent::screensDidWake,
                             WorkspaceEvent::sessionDidBecomeActive, WorkspaceEvent::pointerDidChange})
        observers_.push_back(
            workspace.observe(event, lifetime_.weakly([this](const WorkspaceNotification& notification) {
                scheduleReapply(notification.name);
            })));
    observers_.push_back(
        workspace.observe(WorkspaceEvent::didActivateApplication,
                          lifetime_.weakly([this](const WorkspaceNotification& notification) {
                              applicationActivated(notification);
                          })));
}

void ReapplyTriggers::scheduleReapply(const std::string& reason) {
    reapplyWork_.end();
    reapplyWork_ = queue_.after(kReapplyDelay, lifetime_.weakly([this, reason] { reapply(reason); }));
}

void ReapplyTriggers::reapply(const std::string& reason) {
    if (!changer_.isActive() || changer_.suspendedForExcludedApp() || changer_.lastApplied().empty()) return;
    changer_.applyRegistered(changer_.lastApplied());
    log_.system(fmt::format("[SystemCursorChanger] Re-applied after {}", reason));
}

void ReapplyTriggers::applicationActivated(const WorkspaceNotification& notification) {
    const auto name =
        notification.application ? notification.application->name.value_or(std::string()) : std::string();
    if (isExcludedApplication(name, builtInExclusions_, excludedApps_())) {
        if (!changer_.isActive() || changer_.suspendedForExcludedApp()) return;
        changer_.setSuspendedForExcludedApp(true);
        changer_.restoreSystemState();
        log_.system(fmt::format("[SystemCursorChanger] Suspended for excluded app: {}", name));
        return;
    }
    if (!changer_.suspendedForExcludedApp()) return;
    changer_.setSuspendedForExcludedApp(false);
    if (changer_.lastApplied().empty()) return;
    changer_.applyRegistered(changer_.lastApplied());
    log_.system("[SystemCursorChanger] Resumed after excluded app");
}

}  // namespace pintle
