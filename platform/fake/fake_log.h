#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "platform/log.h"

namespace pintle {

class FakeLog : public Log {
  public:
    void system(std::string_view line) override {
        const std::lock_guard lock(mutex_);
        systemLines.emplace_back(line);
    }
    void standardOutput(std::string_view line) override {
        const std::lock_guard lock(mutex_);
        outputLines.emplace_back(line);
    }
    /// How often exactly this line stands in the system log.
    std::size_t count(std::string_view line) const {
        std::size_t found = 0;
        for (const auto& each : systemLines)
            if (each == line) ++found;
        return found;
    }
    bool has(std::string_view line) const { return count(line) > 0; }

    std::vector<std::string> systemLines;
    std::vector<std::string> outputLines;

  private:
    std::mutex mutex_;
};

}  // namespace pintle
