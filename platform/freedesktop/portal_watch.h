// Hears from the desktop portal, over D-Bus, how programs are to look. The portal may be missing, may come
// later and may go. Waits for no answer. Main thread.
#pragma once

#include <functional>
#include <memory>

#include "platform/freedesktop/look_rules.h"

namespace pintle {

/// Ends with the handle, which must end before the toolkit's application object.
class PortalWatch {
  public:
    /// `told` runs with everything known each time the portal tells something.
    explicit PortalWatch(std::function<void(const PortalLook&)> told);
    ~PortalWatch();

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace pintle
