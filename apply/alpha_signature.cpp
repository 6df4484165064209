#include "apply/alpha_signature.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace pintle {
namespace {

constexpr int kSide = 16;
constexpr int kMaxLength = 1024;
/// Bounds what one term adds to the error of a single-precision sum: 255 times the filter's largest
/// gain, 1.6, times half a unit in the last place.
constexpr float kDoubtOfTerm = 4e-5F;

/// Four numbers in one register; both compilers lower this to what the machine has.
using Four = float __attribute__((vector_size(16)));
using FourInts = std::int32_t __attribute__((vector_size(16)));
constexpr std::size_t kFour = 4;
/// Columns worked on at once.
constexpr std::size_t kGroup = 8;

Four fourAt(const float* from) {
    Four four;
    std::memcpy(&four, from, sizeof four);
    return four;
}

void putFour(float* to, Four four) { std::memcpy(to, &four, sizeof four); }

/// Four sums as bytes, and which of them lie so near the middle between two bytes that only a more exact sum
/// decides.
struct Rounded {
    FourInts bytes;
    FourInts doubtful;
    bool anyDoubtful;
};

inline Rounded roundToBytes(Four sums, float doubt) {
    const Four zero{};
    sums = sums < zero ? zero : sums;
    const Four most = zero + 255.0F;
    sums = (sums > most ? most : sums) + 0.5F;
    Rounded rounded{__builtin_convertvector(sums, FourInts), {}, false};
    const Four over = sums - __builtin_convertvector(rounded.bytes, Four);
    rounded.doubtful = (over < doubt) | (over > 1 - doubt);
    std::int64_t halves[2];
    std::memcpy(halves, &rounded.doubtful, sizeof halves);
    rounded.anyDoubtful = (halves[0] | halves[1]) != 0;
    return rounded;
}

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
    /// The most terms that one output has.
    std::size_t most = 0;
};

const AlphaSignatureMaker::Weights& AlphaSignatureMaker::weightsFor(int length) {
    auto& known = known_[length];
    if (!known) {
        auto made = std::make_shared<Weights>();
        made->taps = makeTaps(length);
        for (const Taps& each : made->taps) {
            made->single.emplace_back(each.weights.begin(), each.weights.end());
            made->most = std::max(made->most, each.weights.size());
        }
        known = std::move(made);
    }
    return *known;
}

/// The alpha bytes as numbers, rows padded to whole groups.
void AlphaSignatureMaker::takeAlpha(const Bitmap& image, std::size_t padded) {
    const auto width = static_cast<std::size_t>(image.width());
    const auto height = static_cast<std::size_t>(image.height());
    alpha_.resize(padded * height);
    constexpr int kAlphaShift = std::endian::native == std::endian::little ? 24 : 0;
    const std::uint8_t* bytes = image.bytes().data();
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < padded; x += kFour) {
            FourInts pixels{};
            if (x + kFour <= width)
                std::memcpy(&pixels, bytes + (y * width + x) * 4, sizeof pixels);
            else if (x < width)
                std::memcpy(&pixels, bytes + (y * width + x) * 4, (width - x) * 4);
            putFour(&alpha_[y * padded + x], __builtin_convertvector((pixels >> kAlphaShift) & 0xFF, Four));
        }
}

AlphaSignature AlphaSignatureMaker::of(const Bitmap& image) {
    AlphaSignature signature{};
    if (isTooLarge(image)) return signature;
    const Weights& across = weightsFor(image.width());
    const Weights& down = weightsFor(image.height());
    const std::size_t padded = (static_cast<std::size_t>(image.width()) + kGroup - 1) / kGroup * kGroup;
    takeAlpha(image, padded);

    // Column x of the image squeezed to 16 rows, at columns_[x * 16].
    columns_.resize(padded * kSide);
    for (std::size_t y = 0; y < kSide; ++y) {
        const float* const weights = down.single[y].data();
        const std::size_t count = down.single[y].size();
        const float* const first = &alpha_[static_cast<std::size_t>(down.taps[y].first) * padded];
        for (std::size_t group = 0; group < padded; group += kGroup) {
            Four left{};
            Four right{};
            const float* row = first + group;
            for (std::size_t k = 0; k < count; ++k, row += padded) {
                left += weights[k] * fourAt(row);
                right += weights[k] * fourAt(row + kFour);
            }
            for (std::size_t i = 0; i < kFour; ++i) {
                columns_[(group + i) * kSide + y] = left[i];
                columns_[(group + kFour + i) * kSide + y] = right[i];
            }
        }
    }

    const float doubt = kDoubtOfTerm * static_cast<float>(across.most + down.most);
    for (std::size_t x = 0; x < kSide; ++x) {
        Four a{};
        Four b{};
        Four c{};
        Four d{};
        const float* column = &columns_[static_cast<std::size_t>(across.taps[x].first) * kSide];
        for (const float weight : across.single[x]) {
            a += weight * fourAt(column);
            b += weight * fourAt(column + kFour);
            c += weight * fourAt(column + 2 * kFour);
            d += weight * fourAt(column + 3 * kFour);
            column += kSide;
        }
        const Four sums[] = {a, b, c, d};
        for (std::size_t y = 0; y < kSide; y += kFour) {
            const Rounded rounded = roundToBytes(sums[y / kFour], doubt);
            for (std::size_t i = 0; i < kFour; ++i)
                signature[(y + i) * kSide + x] = static_cast<std::uint8_t>(rounded.bytes[i]);
            if (!rounded.anyDoubtful) continue;
            for (std::size_t i = 0; i < kFour; ++i)
                if (rounded.doubtful[i] != 0)
                    signature[(y + i) * kSide + x] =
                        toByte(sampleInDouble(image, across.taps[x], down.taps[y + i]));
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
