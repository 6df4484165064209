#include "apply/density_follower.h"

#include <utility>

namespace pintle {

DensityFollower::DensityFollower(Workspace& workspace, SystemCursorChanger& changer,
                                 ApplicationPipeline& pipeline)
    : changer_(changer),
      pipeline_(pipeline),
      change_(workspace.observe(WorkspaceEvent::pixelDensityDidChange,
                                [this](const WorkspaceNotification&) { densityChanged(); })),
      resume_(changer.suspensionEnded.observe([this] { suspensionEnded(); })) {}

void DensityFollower::densityChanged() {
    // A rebuild would put the theme in front of the excluded application.
    isDue_ = changer_.suspendedForExcludedApp();
    if (!isDue_) pipeline_.rebuildForDensity();
}

void DensityFollower::suspensionEnded() {
    if (std::exchange(isDue_, false)) pipeline_.rebuildForDensity();
}

}  // namespace pintle
