// Builds the theme anew when the screen's density changes. Made by the root beside the pipeline; main thread
// only.
#pragma once

#include "apply/application_pipeline.h"
#include "apply/system_cursor_changer.h"
#include "base/subscription.h"
#include "platform/workspace.h"

namespace pintle {

class DensityFollower {
  public:
    /// Observes from now on. Everything must outlive the follower.
    DensityFollower(Workspace& workspace, SystemCursorChanger& changer, ApplicationPipeline& pipeline);

  private:
    void densityChanged();
    void suspensionEnded();

    SystemCursorChanger& changer_;
    ApplicationPipeline& pipeline_;
    /// The density changed while an excluded application was in front.
    bool isDue_ = false;
    Subscription change_;
    Subscription resume_;
};

}  // namespace pintle
