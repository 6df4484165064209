#include "base/resample.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace pintle {
namespace {

constexpr double kLobes = 3;
constexpr double kPi = 3.14159265358979323846;

double lanczos(double x) {
    if (x == 0) return 1;
    if (std::abs(x) >= kLobes) return 0;
    return kLobes * std::sin(kPi * x) * std::sin(kPi * x / kLobes) / (kPi * kPi * x * x);
}

struct Taps {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Taps> tapsFor(int from, int to) {
    std::vector<Taps> all(static_cast<std::size_t>(to));
    const double ratio = static_cast<double>(from) / to;
    const double stretch = std::max(ratio, 1.0);
    for (int i = 0; i < to; ++i) {
        const double centre = (i + 0.5) * ratio - 0.5;
        const int first = std::max(0, static_cast<int>(std::ceil(centre - kLobes * stretch)));
        const int last = std::min(from - 1, static_cast<int>(std::floor(centre + kLobes * stretch)));
        Taps& taps = all[static_cast<std::size_t>(i)];
        taps.first = first;
        double sum = 0;
        for (int j = first; j <= last; ++j) sum += lanczos((j - centre) / stretch);
        for (int j = first; j <= last; ++j)
            taps.weights.push_back(static_cast<float>(lanczos((j - centre) / stretch) / sum));
    }
    return all;
}

}  // namespace

void resample(std::span<const std::uint8_t> source, int sourceWidth, int sourceHeight,
              std::span<std::uint8_t> target, int targetWidth, int targetHeight) {
    const auto across = tapsFor(sourceWidth, targetWidth);
    const auto down = tapsFor(sourceHeight, targetHeight);
    const auto sourceRow = static_cast<std::size_t>(sourceWidth) * 4;
    const auto targetRow = static_cast<std::size_t>(targetWidth) * 4;
    std::vector<float> middle(targetRow * static_cast<std::size_t>(sourceHeight));
    for (std::size_t y = 0; y < static_cast<std::size_t>(sourceHeight); ++y)
        for (std::size_t x = 0; x < static_cast<std::size_t>(targetWidth); ++x)
            for (std::size_t channel = 0; channel < 4; ++channel) {
                float sum = 0;
                for (std::size_t tap = 0; tap < across[x].weights.size(); ++tap)
                    sum += across[x].weights[tap] *
                           source[y * sourceRow + (static_cast<std::size_t>(across[x].first) + tap) * 4 +
                                  channel];
                middle[y * targetRow + x * 4 + channel] = sum;
            }
    for (std::size_t y = 0; y < static_cast<std::size_t>(targetHeight); ++y)
        for (std::size_t x = 0; x < static_cast<std::size_t>(targetWidth); ++x) {
            float limit = 255;
            for (std::size_t channel = 4; channel-- > 0;) {
                float sum = 0;
                for (std::size_t tap = 0; tap < down[y].weights.size(); ++tap)
                    sum +=
                        down[y].weights[tap] *
                        middle[(static_cast<std::size_t>(down[y].first) + tap) * targetRow + x * 4 + channel];
                const float value = std::clamp(std::round(sum), 0.0F, limit);
                if (channel == 3) limit = value;
                target[y * targetRow + x * 4 + channel] = static_cast<std::uint8_t>(value);
            }
        }
}

}  // namespace pintle
