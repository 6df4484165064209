// Reading a whole theme, building its set at a scale, and scanning for animation: the library's way and the
// product's.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <utility>

#include "apply/theme_loading.h"
#include "bench/theme_bench.h"
#include "cursor/cursor_folder.h"
#include "cursor/preloaded_cursor.h"
#include "cursor/xcursor_parser.h"

namespace pintle::bench {
namespace {

using NamedImages = std::vector<std::pair<std::string, XCursorImages>>;

/// Reused heap memory would hide what fresh pages cost, from either side.
void forgetFreeMemory(benchmark::State& state) {
    state.PauseTiming();
    malloc_trim(0);
    state.ResumeTiming();
}

NamedImages readTheme(const Theme& theme) {
    CursorFolder folder(theme.cursors);
    NamedImages cursors;
    for (auto& name : folder.names())
        if (auto images = folder.read(name, kLimit)) cursors.emplace_back(std::move(name), std::move(images));
    return cursors;
}

std::vector<LoadedFile> readThemeWithLibrary(const Theme& theme) {
    std::vector<LoadedFile> loaded;
    for (const auto& file : theme.files) loaded.push_back(loadWithLibrary(file));
    return loaded;
}

void parseLibrary(benchmark::State& state, const Theme* theme) {
    for (auto _ : state) {
        forgetFreeMemory(state);
        benchmark::DoNotOptimize(readThemeWithLibrary(*theme));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(theme->pixelBytes) * state.iterations());
}

void parsePintle(benchmark::State& state, const Theme* theme) {
    for (auto _ : state) {
        forgetFreeMemory(state);
        benchmark::DoNotOptimize(readTheme(*theme));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(theme->pixelBytes) * state.iterations());
}

void setLibrary(benchmark::State& state, const Theme* theme, double scale) {
    for (auto _ : state) {
        forgetFreeMemory(state);
        std::vector<std::optional<LibraryCursor>> set;
        const auto loaded = readThemeWithLibrary(*theme);
        for (const auto& file : loaded) set.push_back(buildWithLibrary(file, scale));
        benchmark::DoNotOptimize(set);
    }
}

void setPintle(benchmark::State& state, const Theme* theme, double scale) {
    for (auto _ : state) {
        forgetFreeMemory(state);
        const auto essential = loadEssentialSet(theme->cursors, scale, 1);
        const auto shown = loadRemainingImages(essential);
        benchmark::DoNotOptimize(completeSet(essential, shown, scale, 1));
    }
}

/// The set, and then what a change of scale is drawn from.
void cachePintle(benchmark::State& state, const Theme* theme, double scale) {
    for (auto _ : state) {
        forgetFreeMemory(state);
        const auto essential = loadEssentialSet(theme->cursors, scale, 1);
        const auto shown = loadRemainingImages(essential);
        benchmark::DoNotOptimize(completeSet(essential, shown, scale, 1));
        benchmark::DoNotOptimize(loadAllImages(shown));
    }
}

void rebuildLibrary(benchmark::State& state, const Theme* theme, double scale) {
    const auto loaded = readThemeWithLibrary(*theme);
    for (auto _ : state) {
        forgetFreeMemory(state);
        std::vector<std::optional<LibraryCursor>> set;
        for (const auto& file : loaded) set.push_back(buildWithLibrary(file, scale));
        benchmark::DoNotOptimize(set);
    }
}

void rebuildPintle(benchmark::State& state, const Theme* theme, double scale) {
    const auto cursors = readTheme(*theme);
    for (auto _ : state) {
        forgetFreeMemory(state);
        benchmark::DoNotOptimize(makePreloadedSet(cursors, scale));
    }
}

constexpr const char* kAnimationCandidates[] = {"left_ptr", "default", "arrow"};

void headersLibrary(benchmark::State& state, const Theme* theme) {
    for (auto _ : state)
        for (const auto* name : kAnimationCandidates)
            benchmark::DoNotOptimize(loadAllWithLibrary(theme->cursors / name));
}

void headersPintle(benchmark::State& state, const Theme* theme) {
    for (auto _ : state)
        for (const auto* name : kAnimationCandidates)
            benchmark::DoNotOptimize(XCursorParser::parseHeaders(theme->cursors / name));
}

template <typename Function, typename... Arguments>
void add(const std::string& name, Function function, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), function, arguments...)->Unit(benchmark::kMillisecond);
}

}  // namespace

void addThemeBenches(const Theme& theme) {
    add("parse/" + theme.name + "/library", parseLibrary, &theme);
    add("parse/" + theme.name + "/pintle", parsePintle, &theme);
    for (const auto& [label, scale] : {std::pair{"1.0", 1.0}, std::pair{"1.5", 1.5}}) {
        add("set-" + std::string(label) + "/" + theme.name + "/library", setLibrary, &theme, scale);
        add("set-" + std::string(label) + "/" + theme.name + "/pintle", setPintle, &theme, scale);
        add("cache-" + std::string(label) + "/" + theme.name + "/library", setLibrary, &theme, scale);
        add("cache-" + std::string(label) + "/" + theme.name + "/pintle", cachePintle, &theme, scale);
        add("rebuild-" + std::string(label) + "/" + theme.name + "/library", rebuildLibrary, &theme, scale);
        add("rebuild-" + std::string(label) + "/" + theme.name + "/pintle", rebuildPintle, &theme, scale);
    }
    add("headers/" + theme.name + "/library", headersLibrary, &theme);
    add("headers/" + theme.name + "/pintle", headersPintle, &theme);
}

}  // namespace pintle::bench
