#include "platform/mac/private_functions.h"

#include <dlfcn.h>

#include <array>

namespace pintle {
namespace {

// Immediate binding. The files themselves are absent on the disk: the linker keeps them in its own cache.
constexpr int kBindNow = 2;
static_assert(kBindNow == RTLD_NOW);

}  // namespace

void* findPrivateFunction(const char* name) {
    static const std::array<void*, 2> libraries = {
        ::dlopen("/System/Library/Frameworks/CoreGraphics.framework/CoreGraphics", kBindNow),
        ::dlopen("/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices", kBindNow),
    };
    for (void* const library : libraries) {
        if (!library) continue;
        if (void* const function = ::dlsym(library, name)) return function;
    }
    return nullptr;
}

}  // namespace pintle
