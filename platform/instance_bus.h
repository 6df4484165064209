// Other copies of this program of the same user. Main thread only.
#pragma once

namespace pintle {

class InstanceBus {
  public:
    virtual ~InstanceBus() = default;
    /// Whether another copy runs. Where that cannot be told, the answer is no.
    virtual bool anotherCopyRuns() = 0;
};

}  // namespace pintle
