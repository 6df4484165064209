// Observes over D-Bus what the desktop portal says about the look of programs. The portal may be missing, may
// come later and may go. Waits for no answer. Main thread.
#pragma once

#include <functional>
#include <memory>

#include "platform/freedesktop/look_rules.h"

namespace pintle {

/// Ends with the handle, which must end before the toolkit's application object.
class PortalWatch {
  public:
    /// `changed` runs with everything known each time the portal reports a change.
    explicit PortalWatch(std::function<void(const PortalLook&)> changed);
    ~PortalWatch();

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace pintle
