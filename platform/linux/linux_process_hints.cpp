#include "platform/linux/linux_process_hints.h"

#include <malloc.h>

namespace pintle {
namespace {

class LinuxProcessHints : public ProcessHints {
  public:
    Subscription beginActivity(const std::string&) override { return {}; }
    void releaseFreeMemory() override { ::malloc_trim(0); }
};

}  // namespace

std::unique_ptr<ProcessHints> makeLinuxProcessHints() { return std::make_unique<LinuxProcessHints>(); }

}  // namespace pintle
