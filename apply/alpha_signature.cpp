#include "apply/alpha_signature.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace pintle {
namespace {

constexpr int kSide = static_cast<int>(kMaskSide);
constexpr int kMaxLength = 1024;
/// Bounds what one term adds to the error of a single-precision sum: 255 times the filter's largest
/// gain, 1.6, times half a unit in the last place.
constexpr float kDoubtOfTerm = 4e-5F;

double catmullRom(double x) {
    x = std::abs(x);
    if (x < 1) return (1.5 * x - 2.5) * x * x + 1;
    if (x < 2) return ((-0.5 * x + 2.5) * x - 4) * x + 2;
    return 0;
}

struct Taps {
    int first = 0;
    std::vector<double> weights;
};

/// For each of the 16 output positions the source samples it is made of; the weights add up to 1.
std::vector<Taps> makeTaps(int length) {
    const double scale = static_cast<double>(length) / kSide;
    const double stretch = std::max(scale, 1.0);
    std::vector<Taps> taps(kSide);
    for (int i = 0; i < kSide; ++i) {
        const double center = (i + 0.5) * scale - 0.5;
        const int first = std::max(0, static_cast<int>(std::ceil(center - 2 * stretch)));
        const int last = std::min(length - 1, static_cast<int>(std::floor(center + 2 * stretch)));
        Taps& each = taps[static_cast<std::size_t>(i)];
        each.first = first;
        double sum = 0;
        for (int s = first; s <= last; ++s) {
            each.weights.push_back(catmullRom((s - center) / stretch));
            sum += each.weights.back();
        }
        for (double& weight : each.weights) weight /= sum;
    }
    return taps;
}

double sampleInDouble(const Bitmap& image, const Taps& across, const Taps& down) {
    double sum = 0;
    for (std::size_t k = 0; k < down.weights.size(); ++k) {
        double row = 0;
        for (std::size_t j = 0; j < across.weights.size(); ++j)
            row += across.weights[j] *
                   image.pixel(across.first + static_cast<int>(j), down.first + static_cast<int>(k))[3];
        sum += down.weights[k] * row;
    }
    return sum;
}

std::uint8_t toByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(std::floor(value + 0.5), 0.0, 255.0));
}

bool isTooLarge(const Bitmap& image) { return image.width() > kMaxLength || image.height() > kMaxLength; }

}  // namespace

struct AlphaSignatureMaker::Weights {
    std::vector<Taps> taps;
    MaskWeights single;
    /// The most terms that one output has.
    std::size_t most = 0;
};

const AlphaSignatureMaker::Weights& AlphaSignatureMaker::weightsFor(int length) {
    auto& known = known_[length];
    if (known) return *known;
    auto made = std::make_shared<Weights>();
    made->taps = makeTaps(length);
    for (std::size_t i = 0; i < kMaskSide; ++i) {
        const Taps& each = made->taps[i];
        made->single.positions[i] = {static_cast<std::size_t>(each.first),
                                     {each.weights.begin(), each.weights.end()}};
        made->most = std::max(made->most, each.weights.size());
    }
    for (std::size_t part = 0; part < made->single.spread.size(); ++part) {
        const auto positions = std::span(made->single.positions).subspan(part * kMaskLanes, kMaskLanes);
        auto& spread = made->single.spread[part];
        spread.first = positions.front().first;
        const std::size_t end = positions.back().first + positions.back().weights.size();
        spread.weights.resize((end - spread.first) * kMaskLanes);
        for (std::size_t i = 0; i < kMaskLanes; ++i)
            for (std::size_t k = 0; k < positions[i].weights.size(); ++k)
                spread.weights[(positions[i].first + k - spread.first) * kMaskLanes + i] =
                    positions[i].weights[k];
    }
    known = std::move(made);
    return *known;
}

AlphaSignature AlphaSignatureMaker::of(const Bitmap& image) {
    AlphaSignature signature{};
    if (isTooLarge(image)) return signature;
    const Weights& across = weightsFor(image.width());
    const Weights& down = weightsFor(image.height());
    const float doubt = kDoubtOfTerm * static_cast<float>(across.most + down.most);
    const MaskImage source{image.bytes(), static_cast<std::size_t>(image.width()),
                           static_cast<std::size_t>(image.height())};
    sumMask(source, across.single, down.single, doubt, scratch_, signature);
    for (const std::size_t place : scratch_.doubtful)
        signature[place] =
            toByte(sampleInDouble(image, across.taps[place % kMaskSide], down.taps[place / kMaskSide]));
    return signature;
}

AlphaSignature alphaSignatureReference(const Bitmap& image) {
    AlphaSignature signature{};
    if (isTooLarge(image)) return signature;
    const auto across = makeTaps(image.width());
    const auto down = makeTaps(image.height());
    for (std::size_t y = 0; y < kSide; ++y)
        for (std::size_t x = 0; x < kSide; ++x)
            signature[y * kSide + x] = toByte(sampleInDouble(image, across[x], down[y]));
    return signature;
}

}  // namespace pintle
