#include "platform/posix/glibc_process_hints.h"

#include <malloc.h>

namespace pintle {
namespace {

class GlibcProcessHints : public ProcessHints {
  public:
    Subscription beginActivity(const std::string&) override { return {}; }
    void releaseFreeMemory() override { ::malloc_trim(0); }
};

}  // namespace

std::unique_ptr<ProcessHints> makeGlibcProcessHints() { return std::make_unique<GlibcProcessHints>(); }

}  // namespace pintle
