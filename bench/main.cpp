// Checks that both sides read the same, measures the memory that stays after a theme's release, then runs the
// benches.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "bench/theme_bench.h"
#include "cursor/cursor_folder.h"

namespace {

/// Kilobytes of this process in memory.
long residentKilobytes() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * 4;
}

void reportMemory(const pintle::bench::Theme& theme) {
    malloc_trim(0);
    const long before = residentKilobytes();
    long loaded = 0;
    {
        pintle::CursorFolder folder(theme.cursors);
        std::vector<pintle::XCursorImages> kept;
        for (const auto& name : folder.names()) kept.push_back(folder.read(name, pintle::bench::kLimit));
        loaded = residentKilobytes();
    }
    const long released = residentKilobytes();
    malloc_trim(0);
    std::fprintf(stderr, "memory: %s loaded +%ld KB, released +%ld KB, trimmed +%ld KB\n", theme.name.c_str(),
                 loaded - before, released - before, residentKilobytes() - before);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // Before the library's heap use, so that only the product's own pages count.
    for (const auto& theme : pintle::bench::installedThemes()) reportMemory(theme);
    for (const auto& theme : pintle::bench::installedThemes()) {
        pintle::bench::verifySameImages(theme);
        pintle::bench::addThemeBenches(theme);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
