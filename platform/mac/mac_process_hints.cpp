#include "platform/mac/mac_process_hints.h"

#include <malloc/malloc.h>

#include "platform/mac/foundation_process.h"

namespace pintle {
namespace {

class MacProcessHints : public ProcessHints {
  public:
    Subscription beginActivity(const std::string& reason) override { return beginProcessActivity(reason); }
    // Every zone, as much as there is.
    void releaseFreeMemory() override { malloc_zone_pressure_relief(nullptr, 0); }
};

}  // namespace

std::unique_ptr<ProcessHints> makeMacProcessHints() { return std::make_unique<MacProcessHints>(); }

}  // namespace pintle
