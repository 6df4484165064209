// The number of the newest request that may change what is on screen. Work compares the number it was given
// with the latest, so that the last request wins. Any thread.
#pragma once

#include <cstdint>
#include <mutex>

namespace pintle {

class GenerationCounter {
  public:
    /// A new number, greater than all before; the first is 1.
    std::int64_t take() {
        const std::lock_guard lock(generationLock_);
        return ++latestGeneration_;
    }
    std::int64_t latest() const {
        const std::lock_guard lock(generationLock_);
        return latestGeneration_;
    }
    bool isLatest(std::int64_t generation) const { return latest() == generation; }

  private:
    mutable std::mutex generationLock_;
    std::int64_t latestGeneration_ = 0;
};

}  // namespace pintle
