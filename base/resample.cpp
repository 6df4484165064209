#include "base/resample.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace pintle {
namespace {

constexpr double kLobes = 3;
constexpr double kPi = 3.14159265358979323846;
/// Bound tables and scratch memory whatever the shape of the image: an image may be millions of pixels wide.
constexpr std::int64_t kBlockSide = 256;
constexpr std::size_t kTablesKept = 32;
/// Windows kept, each counted as often as it is stretched: a few megabytes of weights at most.
constexpr double kMostResidues = 1 << 16;
/// From this length on, and where there are too many different windows to keep, centres are taken as one of
/// kMostResidues places between two positions. What that changes is far below one level, and no cursor is as
/// long.
constexpr std::int64_t kLong = 1 << 18;

double lanczos(double x) {
    if (x == 0) return 1;
    if (std::abs(x) >= kLobes) return 0;
    return kLobes * std::sin(kPi * x) * std::sin(kPi * x / kLobes) / (kPi * kPi * x * x);
}

constexpr auto kAny = std::numeric_limits<std::int64_t>::max();

double centreOf(std::int64_t i, double ratio) { return (static_cast<double>(i) + 0.5) * ratio - 0.5; }

/// The source positions inside the kernel around `centre`, between `least` and `greatest`. The others are
/// left out and the rest weighted up, so that an opaque edge stays opaque.
Resampler::Window windowOf(double centre, double ratio, std::int64_t least, std::int64_t greatest) {
    const double stretch = std::max(ratio, 1.0);
    const double reach = kLobes * stretch;
    const auto first = std::max(least, static_cast<std::int64_t>(std::floor(centre - reach)) + 1);
    const auto last = std::min(greatest, static_cast<std::int64_t>(std::ceil(centre + reach)) - 1);
    Resampler::Window window{first, {}};
    double sum = 0;
    for (auto j = first; j <= last; ++j) {
        window.weights.push_back(lanczos((static_cast<double>(j) - centre) / stretch));
        sum += window.weights.back();
    }
    for (auto& weight : window.weights) weight /= sum;
    return window;
}

/// The weights in units of 1 / kFixedOne that add up to exactly that, so that even areas stay as they are:
/// rounded down, and those with the largest remainders up.
void toFixed(const std::vector<double>& weights, std::int16_t* fixed) {
    std::array<std::pair<double, std::size_t>, kMostFixedTaps> remainders;
    int missing = kFixedOne;
    for (std::size_t tap = 0; tap < weights.size(); ++tap) {
        const double whole = std::floor(weights[tap] * kFixedOne);
        fixed[tap] = static_cast<std::int16_t>(whole);
        missing -= fixed[tap];
        remainders[tap] = {whole - weights[tap] * kFixedOne, tap};
    }
    std::sort(remainders.begin(), remainders.begin() + static_cast<std::ptrdiff_t>(weights.size()));
    for (std::size_t i = 0; missing > 0 && i < weights.size(); ++i, --missing) ++fixed[remainders[i].second];
}

std::size_t fixedTapsFor(std::size_t taps) {
    for (const std::size_t known : {6, 8, 12})
        if (taps <= known) return known;
    return kMostFixedTaps;
}

}  // namespace

std::vector<std::optional<Resampler::Window>>& Resampler::windowsFor(std::int64_t from, std::int64_t to,
                                                                     std::int64_t count) {
    auto* known = &windows_[newerWindows_];
    if (known->from != from || known->to != to) {
        newerWindows_ = 1 - newerWindows_;
        known = &windows_[newerWindows_];
        if (known->from != from || known->to != to)
            *known = {from, to, std::vector<std::optional<Window>>(static_cast<std::size_t>(count))};
    }
    return known->byResidue;
}

Resampler::Window Resampler::windowAt(std::int64_t i, std::int64_t from, std::int64_t to) {
    const double ratio = static_cast<double>(from) / static_cast<double>(to);
    const auto common = std::gcd(from, to);
    const auto period = to / common;
    if (period < to && static_cast<double>(period) * std::max(ratio, 1.0) <= kMostResidues) {
        auto& same = windowsFor(from, to, period)[static_cast<std::size_t>(i % period)];
        if (!same) {
            ++windowsComputed_;
            same = windowOf(centreOf(i % period, ratio), ratio, -kAny, kAny);
        }
        const auto first = same->first + i / period * (from / common);
        if (first >= 0 && first + static_cast<std::int64_t>(same->weights.size()) <= from)
            return {first, same->weights};
    } else if (std::max(from, to) >= kLong) {
        const auto places =
            std::max<std::int64_t>(1, static_cast<std::int64_t>(kMostResidues / std::max(ratio, 1.0)));
        const double centre = centreOf(i, ratio);
        const double whole = std::floor(centre);
        const auto place = static_cast<std::int64_t>((centre - whole) * static_cast<double>(places));
        auto& same = windowsFor(from, to, places)[static_cast<std::size_t>(std::min(place, places - 1))];
        if (!same) {
            ++windowsComputed_;
            same = windowOf((static_cast<double>(place) + 0.5) / static_cast<double>(places), ratio, -kAny,
                            kAny);
        }
        const auto first = same->first + static_cast<std::int64_t>(whole);
        if (first >= 0 && first + static_cast<std::int64_t>(same->weights.size()) <= from)
            return {first, same->weights};
    }
    ++windowsComputed_;
    return windowOf(centreOf(i, ratio), ratio, 0, from - 1);
}

ResampleAxis Resampler::makeAxis(std::int64_t from, std::int64_t to, std::int64_t begin, std::int64_t end) {
    std::vector<Window> windows;
    ResampleAxis axis;
    axis.begin = begin;
    axis.end = end;
    axis.sourceBegin = from;
    for (auto i = begin; i < end; ++i) {
        windows.push_back(windowAt(i, from, to));
        const auto& window = windows.back();
        axis.taps = std::max(axis.taps, window.weights.size());
        axis.sourceBegin = std::min(axis.sourceBegin, window.first);
        axis.sourceEnd =
            std::max(axis.sourceEnd, window.first + static_cast<std::int64_t>(window.weights.size()));
    }
    const auto isFixed = [](const Window& window) {
        double gain = 0;
        for (const double weight : window.weights) gain += std::abs(weight);
        return window.weights.size() <= kMostFixedTaps && gain <= kMostFixedGain;
    };
    if (std::all_of(windows.begin(), windows.end(), isFixed)) {
        axis.fixedTaps = fixedTapsFor(axis.taps);
        axis.fixed.resize(windows.size() * axis.fixedTaps);
        for (std::size_t i = 0; i < windows.size(); ++i)
            toFixed(windows[i].weights, axis.fixed.data() + i * axis.fixedTaps);
    }
    axis.taps += axis.taps % 2;
    axis.weights.resize(windows.size() * axis.taps);
    axis.weightsByChannel.resize(axis.weights.size() * 4);
    for (std::size_t i = 0; i < windows.size(); ++i) {
        axis.first.push_back(static_cast<std::uint32_t>(windows[i].first - axis.sourceBegin));
        for (std::size_t tap = 0; tap < windows[i].weights.size(); ++tap) {
            const auto weight = static_cast<float>(windows[i].weights[tap]);
            axis.weights[i * axis.taps + tap] = weight;
            std::fill_n(
                axis.weightsByChannel.begin() + static_cast<std::ptrdiff_t>((i * axis.taps + tap) * 4), 4,
                weight);
        }
    }
    return axis;
}

const ResampleAxis& Resampler::axis(std::int64_t from, std::int64_t to, std::int64_t begin,
                                    std::int64_t end) {
    const auto [found, isNew] = axes_.try_emplace({from, to, begin});
    if (isNew) found->second = makeAxis(from, to, begin, end);
    return found->second;
}

void Resampler::draw(std::span<const std::uint8_t> source, std::int64_t sourceWidth,
                     std::int64_t sourceHeight, std::span<std::uint8_t> target, std::int64_t targetWidth,
                     std::int64_t targetHeight) {
    // A block takes at most kBlockSide positions of the longer side, source or target.
    const auto step = [](std::int64_t from, std::int64_t to) {
        const double ratio = static_cast<double>(from) / static_cast<double>(to);
        return std::max<std::int64_t>(1, static_cast<std::int64_t>(kBlockSide / std::max(ratio, 1.0)));
    };
    const auto stepAcross = step(sourceWidth, targetWidth);
    const auto stepDown = step(sourceHeight, targetHeight);
    ResampleBlock block;
    block.source = source.data();
    block.sourceBytesPerRow = static_cast<std::size_t>(sourceWidth) * 4;
    block.target = target.data();
    block.targetBytesPerRow = static_cast<std::size_t>(targetWidth) * 4;
    for (std::int64_t y = 0; y < targetHeight; y += stepDown)
        for (std::int64_t x = 0; x < targetWidth; x += stepAcross) {
            if (axes_.size() + 2 > kTablesKept) axes_.clear();
            block.across = &axis(sourceWidth, targetWidth, x, std::min(x + stepAcross, targetWidth));
            block.down = &axis(sourceHeight, targetHeight, y, std::min(y + stepDown, targetHeight));
            if (block.across->fixedTaps > 0 && block.down->fixedTaps > 0)
                resampleBlockFixed(block, fixedScratch_);
            else
                resampleBlock(block, scratch_);
        }
}

}  // namespace pintle
