// Repeats the registration after the events that disturb it, and withdraws it while an excluded application
// is in front. Made by the root beside the changer; main thread only.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "apply/system_cursor_changer.h"
#include "base/lifetime.h"
#include "platform/desktop_names.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/workspace.h"

namespace pintle {

class ReapplyTriggers {
  public:
    /// The user's list of excluded applications; asked afresh at every activation.
    using ExcludedApps = std::function<std::vector<std::string>()>;

    /// Observes from now on. Everything passed by reference must outlive the triggers.
    ReapplyTriggers(SystemCursorChanger& changer, Workspace& workspace, MainQueue& queue, Log& log,
                    const DesktopNames& names, ExcludedApps excludedApps);

    /// Asks for a re-apply one second from now; a later request replaces an earlier one that has not yet run.
    void scheduleReapply(const std::string& reason);
    /// Whether a request was ever made: a task that has run stays where it is until the next replaces it.
    bool hasReapplyWork() const { return static_cast<bool>(reapplyWork_); }

  private:
    void reapply(const std::string& reason);
    void applicationActivated(const WorkspaceNotification& notification);

    SystemCursorChanger& changer_;
    MainQueue& queue_;
    Log& log_;
    std::vector<std::string> builtInExclusions_;
    ExcludedApps excludedApps_;
    Timer reapplyWork_;
    std::vector<Subscription> observers_;
    Lifetime lifetime_;
};

}  // namespace pintle
