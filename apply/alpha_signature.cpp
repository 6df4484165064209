#include "apply/alpha_signature.h"

#include <algorithm>
#include <cmath>

namespace pintle {
namespace {

constexpr int kSide = 16;
constexpr int kMaxLength = 1024;
/// Bounds the error of the single-precision sums by far.
constexpr double kDoubt = 0.01;

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
    std::vector<std::vector<float>> single;
};

const AlphaSignatureMaker::Weights& AlphaSignatureMaker::weightsFor(int length) {
    auto& known = known_[length];
    if (!known) {
        auto made = std::make_shared<Weights>();
        made->taps = makeTaps(length);
        for (const Taps& each : made->taps)
            made->single.emplace_back(each.weights.begin(), each.weights.end());
        known = std::move(made);
    }
    return *known;
}

AlphaSignature AlphaSignatureMaker::of(const Bitmap& image) {
    AlphaSignature signature{};
    if (isTooLarge(image)) return signature;
    const Weights& across = weightsFor(image.width());
    const Weights& down = weightsFor(image.height());
    const auto width = static_cast<std::size_t>(image.width());
    const auto height = static_cast<std::size_t>(image.height());
    // Rows padded to whole groups of 16, so that the inner loops have a constant length.
    const std::size_t padded = (width + kSide - 1) / kSide * kSide;
    alpha_.assign(padded * height, 0.0F);
    const std::uint8_t* bytes = image.bytes().data();
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) alpha_[y * padded + x] = bytes[(y * width + x) * 4 + 3];

    // Column x of the image squeezed to 16 rows, at columns_[x * 16].
    columns_.resize(padded * kSide);
    for (std::size_t y = 0; y < kSide; ++y) {
        const float* weights = down.single[y].data();
        const std::size_t count = down.single[y].size();
        const auto first = static_cast<std::size_t>(down.taps[y].first);
        for (std::size_t group = 0; group < padded; group += kSide) {
            float sum[kSide] = {};
            for (std::size_t k = 0; k < count; ++k) {
                const float* row = &alpha_[(first + k) * padded + group];
                const float weight = weights[k];
                for (std::size_t x = 0; x < kSide; ++x) sum[x] += weight * row[x];
            }
            for (std::size_t x = 0; x < kSide; ++x) columns_[(group + x) * kSide + y] = sum[x];
        }
    }
    for (std::size_t x = 0; x < kSide; ++x) {
        float sum[kSide] = {};
        const auto first = static_cast<std::size_t>(across.taps[x].first);
        for (std::size_t k = 0; k < across.single[x].size(); ++k) {
            const float* column = &columns_[(first + k) * kSide];
            const float weight = across.single[x][k];
            for (std::size_t y = 0; y < kSide; ++y) sum[y] += weight * column[y];
        }
        for (std::size_t y = 0; y < kSide; ++y) {
            double value = static_cast<double>(sum[y]);
            const double fraction = value - std::floor(value);
            if (std::abs(fraction - 0.5) < kDoubt)
                value = sampleInDouble(image, across.taps[x], down.taps[y]);
            signature[y * kSide + x] = toByte(value);
        }
    }
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
