#include "platform/mac/mac_log.h"

#include <os/log.h>

#include <cstdio>
#include <mutex>
#include <string>

namespace pintle {
namespace {

class MacLog : public Log {
  public:
    void system(std::string_view line) override {
        // Public: what is not said to be so is hidden from whoever reads the log.
        const std::string text(line);
        os_log_with_type(OS_LOG_DEFAULT, OS_LOG_TYPE_DEFAULT, "%{public}s", text.c_str());
    }
    void standardOutput(std::string_view line) override {
        const std::string text = std::string(line) + "\n";
        const std::lock_guard lock(mutex_);
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
    }

  private:
    std::mutex mutex_;
};

}  // namespace

std::unique_ptr<Log> makeMacLog() { return std::make_unique<MacLog>(); }

}  // namespace pintle
