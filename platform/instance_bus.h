// Other copies of this program of the same user, and the short messages between them. Main thread only.
#pragma once

#include <functional>
#include <string>

#include "base/subscription.h"

namespace pintle {

class InstanceBus {
  public:
    virtual ~InstanceBus() = default;
    /// Whether another copy runs: one with another process id that has not ended. False where that cannot be
    /// known.
    virtual bool anotherCopyRuns() = 0;
    /// Sends `name`, with no object and no user info, to every copy of the program, delivered at once: on
    /// return the message is on its way even when this process ends right after.
    virtual void post(const std::string& name) = 0;
    /// Calls `received` on the main queue for each such message of another copy until the handle ends.
    virtual Subscription observe(const std::string& name, std::function<void()> received) = 0;
    /// Calls `found` on the main queue when a copy that started before this one turns out to run after all,
    /// as it can once copies reach each other again. This copy is then the second one.
    virtual Subscription observeOlderCopy(std::function<void()> found) = 0;
};

}  // namespace pintle
