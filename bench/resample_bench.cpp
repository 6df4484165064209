// Resampling alone: the packaged resampler's Catmull-Rom against the product's Lanczos, and the byte order
// change against a copy.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include "base/resample.h"
#include "base/rgba.h"
#include "bench/library_anchor.h"

namespace pintle::bench {
namespace {

/// A disc with a soft edge and a hole, as cursors are: mostly clear or opaque, little between.
std::vector<std::uint8_t> picture(int side) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * 4);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int dx = 2 * x - side;
            const int dy = 2 * y - side;
            const int distance = dx * dx + dy * dy;
            const int alpha = distance < side * side / 2 ? 255 : distance < side * side ? 90 : 0;
            auto* pixel = &bytes[(static_cast<std::size_t>(y) * static_cast<std::size_t>(side) +
                                  static_cast<std::size_t>(x)) *
                                 4];
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>(alpha * (x + channel * 7) / (side + 21));
            pixel[3] = static_cast<std::uint8_t>(alpha);
        }
    return bytes;
}

void countPixels(benchmark::State& state, int side) {
    state.SetItemsProcessed(state.iterations() * side * side);
}

void resampleLibrary(benchmark::State& state) {
    const auto from = static_cast<int>(state.range(0));
    const auto to = static_cast<int>(state.range(1));
    const auto source = picture(from);
    auto target = picture(to);
    for (auto _ : state) {
        scaleWithLibrary(source.data(), from, from, target.data(), to, to);
        benchmark::ClobberMemory();
    }
    countPixels(state, to);
}

void resamplePintle(benchmark::State& state) {
    const auto from = static_cast<int>(state.range(0));
    const auto to = static_cast<int>(state.range(1));
    const auto source = picture(from);
    auto target = picture(to);
    Resampler resampler;
    for (auto _ : state) {
        resampler.draw(source, from, from, target, to, to);
        benchmark::ClobberMemory();
    }
    countPixels(state, to);
}

void swizzleCopy(benchmark::State& state) {
    const auto source = picture(32);
    auto target = picture(32);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), source.size());
        benchmark::ClobberMemory();
    }
}

void swizzlePintle(benchmark::State& state) {
    const auto bytes = picture(32);
    std::vector<std::uint32_t> source(bytes.size() / 4);
    std::memcpy(source.data(), bytes.data(), bytes.size());
    auto target = bytes;
    for (auto _ : state) {
        writeRgba(source, target.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(resampleLibrary)
    ->Name("resample/library")
    ->Args({32, 24})
    ->Args({32, 40})
    ->Args({32, 48})
    ->Args({48, 72});
BENCHMARK(resamplePintle)
    ->Name("resample/pintle")
    ->Args({32, 24})
    ->Args({32, 40})
    ->Args({32, 48})
    ->Args({48, 72});
BENCHMARK(swizzleCopy)->Name("swizzle/copy");
BENCHMARK(swizzlePintle)->Name("swizzle/pintle");

}  // namespace
}  // namespace pintle::bench
