// The 16 × 16 alpha mask of identification: the packaged resampler's redraw of the whole image against the
// product's mask, which must equal the one computed in double precision.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <vector>

#include "apply/alpha_signature.h"
#include "bench/library_anchor.h"

namespace pintle::bench {
namespace {

Bitmap softDisc(int side) {
    return *Bitmap::create(side, side, [side](auto out) {
        for (std::size_t i = 0; i < out.size(); i += 4) {
            const int dx = 2 * (static_cast<int>(i / 4) % side) - side;
            const int dy = 2 * (static_cast<int>(i / 4) / side) - side;
            const int alpha =
                std::clamp(255 - 510 * (dx * dx + dy * dy - side * side / 4) / (side * side), 0, 255);
            for (std::size_t k = 0; k < 4; ++k) out[i + k] = static_cast<std::uint8_t>(alpha);
        }
    });
}

void signatureLibrary(benchmark::State& state) {
    const Bitmap image = softDisc(static_cast<int>(state.range(0)));
    std::array<std::uint8_t, 16 * 16 * 4> drawn{};
    for (auto _ : state) {
        scaleWithLibrary(image.bytes().data(), image.width(), image.height(), drawn.data(), 16, 16);
        benchmark::ClobberMemory();
    }
}

void signaturePintle(benchmark::State& state) {
    const Bitmap image = softDisc(static_cast<int>(state.range(0)));
    AlphaSignatureMaker maker;
    if (maker.of(image) != alphaSignatureReference(image))
        state.SkipWithError("differs from the double-precision mask");
    for (auto _ : state) benchmark::DoNotOptimize(maker.of(image));
}

BENCHMARK(signatureLibrary)->Name("signature/library")->Arg(24)->Arg(32)->Arg(48)->Arg(72);
BENCHMARK(signaturePintle)->Name("signature/pintle")->Arg(24)->Arg(32)->Arg(48)->Arg(72);

}  // namespace
}  // namespace pintle::bench
