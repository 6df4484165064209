#include "base/resample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

#include "base/rgba.h"
#include "tests/support/instruction_sets.h"

namespace pintle {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Sides {
    int width;
    int height;
};

double kernel(double x) {
    constexpr double pi = 3.14159265358979323846;
    if (x == 0) return 1;
    if (std::abs(x) >= 3) return 0;
    return std::sin(pi * x) / (pi * x) * std::sin(pi * x / 3) / (pi * x / 3);
}

/// Weights of every source position for one target position, in double precision.
std::vector<double> weightsOf(int position, int from, int to) {
    const double ratio = static_cast<double>(from) / to;
    const double stretch = std::max(1.0, ratio);
    const double centre = (position + 0.5) * ratio - 0.5;
    std::vector<double> weights(static_cast<std::size_t>(from));
    double sum = 0;
    for (int i = 0; i < from; ++i)
        sum += weights[static_cast<std::size_t>(i)] = kernel((i - centre) / stretch);
    for (auto& weight : weights) weight /= sum;
    return weights;
}

Bytes exact(const Bytes& source, Sides from, Sides to) {
    std::vector<double> middle(static_cast<std::size_t>(to.width * from.height * 4));
    for (int x = 0; x < to.width; ++x) {
        const auto weights = weightsOf(x, from.width, to.width);
        for (int y = 0; y < from.height; ++y)
            for (int i = 0; i < from.width; ++i)
                for (int channel = 0; channel < 4; ++channel)
                    middle[static_cast<std::size_t>((y * to.width + x) * 4 + channel)] +=
                        weights[static_cast<std::size_t>(i)] *
                        source[static_cast<std::size_t>((y * from.width + i) * 4 + channel)];
    }
    Bytes target(static_cast<std::size_t>(to.width * to.height * 4));
    for (int y = 0; y < to.height; ++y) {
        const auto weights = weightsOf(y, from.height, to.height);
        for (int x = 0; x < to.width; ++x) {
            double most = 255;
            for (int channel = 3; channel >= 0; --channel) {
                double sum = 0;
                for (int i = 0; i < from.height; ++i)
                    sum += weights[static_cast<std::size_t>(i)] *
                           middle[static_cast<std::size_t>((i * to.width + x) * 4 + channel)];
                sum = std::clamp(std::round(sum), 0.0, channel == 3 ? 255.0 : most);
                if (channel == 3) most = sum;
                target[static_cast<std::size_t>((y * to.width + x) * 4 + channel)] =
                    static_cast<std::uint8_t>(sum);
            }
        }
    }
    return target;
}

/// Premultiplied noise: clear, half clear and opaque pixels side by side.
Bytes noise(Sides sides, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes bytes;
    for (int i = 0; i < sides.width * sides.height; ++i) {
        const auto kind = random() % 3;
        const auto alpha = kind == 0 ? 0 : kind == 1 ? 255 : random() % 256;
        for (int channel = 0; channel < 3; ++channel)
            bytes.push_back(static_cast<std::uint8_t>(random() % (alpha + 1)));
        bytes.push_back(static_cast<std::uint8_t>(alpha));
    }
    return bytes;
}

Bytes drawn(Resampler& resampler, const Bytes& source, Sides from, Sides to) {
    Bytes target(static_cast<std::size_t>(to.width * to.height * 4), 0xAA);
    resampler.draw(source, from.width, from.height, target, to.width, to.height);
    return target;
}

int worstDifference(const Bytes& a, const Bytes& b) {
    int worst = 0;
    for (std::size_t i = 0; i < a.size(); ++i) worst = std::max(worst, std::abs(a[i] - b[i]));
    return worst;
}

const std::vector<std::pair<Sides, Sides>>& shapes() {
    static const std::vector<std::pair<Sides, Sides>> all = {
        {{32, 32}, {48, 48}}, {{32, 32}, {41, 41}}, {{32, 32}, {24, 24}},   {{24, 24}, {30, 30}},
        {{48, 48}, {72, 72}}, {{48, 30}, {36, 22}}, {{1, 1}, {5, 7}},       {{2, 3}, {3, 2}},
        {{5, 1}, {7, 1}},     {{1, 9}, {1, 13}},    {{33, 17}, {1, 1}},     {{200, 100}, {13, 7}},
        {{7, 7}, {7, 7}},     {{3, 40}, {90, 4}},   {{1500, 3}, {2250, 4}}, {{3, 1500}, {4, 1100}},
    };
    return all;
}

TEST(ResamplerTest, IsWithinOneLevelOfExactArithmetic) {
    Resampler resampler;
    std::uint32_t seed = 0;
    for (const auto& [from, to] : shapes()) {
        const auto source = noise(from, ++seed);
        EXPECT_LE(worstDifference(drawn(resampler, source, from, to), exact(source, from, to)), 1)
            << from.width << "x" << from.height << " to " << to.width << "x" << to.height;
    }
}

TEST(ResamplerTest, IsWithinOneLevelOfExactArithmeticWithEveryInstructionSet) {
    std::uint32_t seed = 50;
    for (const auto& [from, to] :
         {std::pair<Sides, Sides>{{32, 32}, {48, 48}}, {{24, 31}, {17, 40}}, {{50, 1}, {3, 2}}}) {
        const auto source = noise(from, ++seed);
        const auto expected = exact(source, from, to);
        withEachInstructionSet([&, shape = std::pair(from, to)] {
            Resampler resampler;
            const auto target = drawn(resampler, source, shape.first, shape.second);
            EXPECT_LE(worstDifference(target, expected), 1);
            for (std::size_t i = 0; i < target.size(); ++i) ASSERT_LE(target[i], target[i | 3]);
        });
    }
}

/// Every value as far from its neighbours as it can be, which the kernel's overshoot exaggerates most.
Bytes extremes(Sides sides, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes bytes;
    for (int i = 0; i < sides.width * sides.height; ++i) {
        const std::uint32_t alpha = random() % 2 * 255;
        for (int channel = 0; channel < 3; ++channel)
            bytes.push_back(static_cast<std::uint8_t>(random() % 2 * alpha));
        bytes.push_back(static_cast<std::uint8_t>(alpha));
    }
    return bytes;
}

TEST(ResamplerTest, IsWithinOneLevelOfExactArithmeticAtEveryScaleOffered) {
    Resampler resampler;
    std::uint32_t seed = 300;
    for (int percent = 75; percent <= 150; percent += 5)
        for (const Sides from : {Sides{1, 1},
                                 {1, 12},
                                 {31, 1},
                                 {2, 3},
                                 {5, 6},
                                 {22, 22},
                                 {24, 24},
                                 {32, 32},
                                 {43, 29},
                                 {48, 48}}) {
            const Sides to = {std::max(1, from.width * percent / 100),
                              std::max(1, from.height * percent / 100)};
            for (const auto& source : {noise(from, ++seed), extremes(from, ++seed)}) {
                const auto target = drawn(resampler, source, from, to);
                ASSERT_LE(worstDifference(target, exact(source, from, to)), 1)
                    << from.width << "x" << from.height << " at " << percent;
                for (std::size_t i = 0; i < target.size(); ++i) ASSERT_LE(target[i], target[i | 3]);
            }
        }
}

TEST(ResamplerTest, GivesTheSameBytesWithEveryInstructionSet) {
    std::uint32_t seed = 400;
    for (const auto& [from, to] : {std::pair<Sides, Sides>{{32, 32}, {48, 48}},
                                   {{24, 31}, {17, 40}},
                                   {{48, 48}, {24, 25}},
                                   {{40, 37}, {16, 15}},
                                   {{1, 7}, {1, 9}},
                                   {{13, 1}, {18, 1}},
                                   {{300, 270}, {290, 310}}}) {
        const auto source = extremes(from, ++seed);
        Resampler best;
        const auto expected = drawn(best, source, from, to);
        withEachInstructionSet([&, shape = std::pair(from, to)] {
            Resampler resampler;
            EXPECT_EQ(drawn(resampler, source, shape.first, shape.second), expected)
                << shape.first.width << "x" << shape.first.height;
        });
    }
}

TEST(ResamplerTest, LeavesEvenAreasAsTheyAre) {
    Resampler resampler;
    for (const Sides to : {Sides{48, 48}, {33, 41}, {24, 24}, {16, 13}})
        for (const int value : {1, 127, 254, 255})
            for (const auto drawnValue :
                 drawn(resampler, Bytes(32 * 32 * 4, static_cast<std::uint8_t>(value)), {32, 32}, to))
                ASSERT_EQ(drawnValue, value) << to.width;
}

TEST(RgbaTest, WritesRedGreenBlueAlphaWithEveryInstructionSet) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t i = 0; i < 77; ++i) pixels.push_back(i * 0x9E3779B9U);
    withEachInstructionSet([&] {
        for (std::size_t count = 0; count <= pixels.size(); ++count) {
            Bytes bytes(count * 4 + 1, 0xCC);
            writeRgba(std::span(pixels).first(count), bytes.data());
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(
                    Bytes({bytes[i * 4 + 3], bytes[i * 4], bytes[i * 4 + 1], bytes[i * 4 + 2]}),
                    Bytes({static_cast<std::uint8_t>(pixels[i] >> 24),
                           static_cast<std::uint8_t>(pixels[i] >> 16),
                           static_cast<std::uint8_t>(pixels[i] >> 8), static_cast<std::uint8_t>(pixels[i])}));
            ASSERT_EQ(bytes.back(), 0xCC);
        }
    });
}

TEST(ResamplerTest, NeverLetsAColourExceedItsAlpha) {
    Resampler resampler;
    std::uint32_t seed = 100;
    for (const auto& [from, to] : shapes()) {
        const auto target = drawn(resampler, noise(from, ++seed), from, to);
        for (std::size_t i = 0; i < target.size(); i += 4)
            for (std::size_t channel = 0; channel < 3; ++channel)
                ASSERT_LE(target[i + channel], target[i + 3]);
    }
}

TEST(ResamplerTest, HoldsColoursDownEvenWhenTheSourceDoesNot) {
    Resampler resampler;
    const Bytes source(16 * 16 * 4, 200);
    auto bright = source;
    for (std::size_t i = 3; i < bright.size(); i += 4) bright[i] = 90;
    for (const auto value : drawn(resampler, bright, {16, 16}, {24, 24})) ASSERT_EQ(value, 90);
}

TEST(ResamplerTest, KeepsEachPixelAtTheSameSize) {
    Resampler resampler;
    const auto source = noise({13, 9}, 7);
    EXPECT_EQ(drawn(resampler, source, {13, 9}, {13, 9}), source);
}

TEST(ResamplerTest, KeepsAnOpaqueEdgeOpaque) {
    Resampler resampler;
    for (const auto value : drawn(resampler, Bytes(10 * 10 * 4, 255), {10, 10}, {15, 15}))
        ASSERT_EQ(value, 255);
}

TEST(ResamplerTest, GivesTheSameAfterDrawingOtherShapes) {
    const auto source = noise({32, 32}, 5);
    Resampler fresh;
    const auto expected = drawn(fresh, source, {32, 32}, {48, 48});
    Resampler used;
    for (int side = 1; side < 60; ++side)
        drawn(used, noise({side, side}, 9), {side, side}, {side + 3, side + 1});
    EXPECT_EQ(drawn(used, source, {32, 32}, {48, 48}), expected);
}

TEST(ResamplerTest, ComputesTheWeightsOnceForPositionsThatSeeTheSame) {
    for (const int to : {300'000, 250'000, 150'000}) {
        Resampler resampler;
        const Bytes source(std::size_t{4} * 200'000, 255);
        Bytes target(static_cast<std::size_t>(4 * to), 0);
        resampler.draw(source, 1, 200'000, target, 1, to);
        EXPECT_LT(resampler.windowsComputed(), 100u) << to;
    }
}

TEST(ResamplerTest, ComputesFewWeightsForAVeryLongSideWhateverItsRatio) {
    constexpr int kFrom = 1'000'003;
    const Bytes source = noise({1, kFrom}, 5);
    for (const int to : {1'500'007, 1'000'033}) {
        Resampler resampler;
        Bytes target(static_cast<std::size_t>(4 * to), 0);
        resampler.draw(source, 1, kFrom, target, 1, to);
        EXPECT_LT(resampler.windowsComputed(), 66'000u) << to;
        // The windows at the ends are exact; those in between are compared with exact ones.
        for (const int i : {100, to / 3, to / 2 + 11, to - 100}) {
            const double ratio = static_cast<double>(kFrom) / to;
            const double centre = (i + 0.5) * ratio - 0.5;
            const double reach = 3 * std::max(ratio, 1.0);
            double sum = 0;
            std::array<double, 4> exact{};
            for (auto j = static_cast<int>(std::floor(centre - reach)) + 1; j < centre + reach; ++j) {
                const double x = (j - centre) / std::max(ratio, 1.0) * 3.14159265358979323846;
                const double weight = x == 0 ? 1 : 3 * std::sin(x) * std::sin(x / 3) / (x * x);
                sum += weight;
                for (std::size_t c = 0; c < 4; ++c)
                    exact[c] += weight * source[static_cast<std::size_t>(j) * 4 + c];
            }
            const double alpha = std::clamp(exact[3] / sum, 0.0, 255.0);
            for (std::size_t c = 0; c < 4; ++c)
                EXPECT_NEAR(target[static_cast<std::size_t>(i) * 4 + c],
                            std::clamp(exact[c] / sum, 0.0, alpha), 1.0)
                    << i;
        }
    }
}

TEST(ResamplerTest, KeepsNoWindowsThatTogetherHoldTooManyWeights) {
    Resampler resampler;
    constexpr std::size_t kFrom = std::size_t{2} * 100'003;
    constexpr std::size_t kTo = std::size_t{2} * 1000;
    const Bytes source(4 * kFrom, 255);
    Bytes target(4 * kTo, 0);
    resampler.draw(source, 1, kFrom, target, 1, kTo);
    EXPECT_GE(resampler.windowsComputed(), kTo);
}

TEST(ResamplerTest, IsWithinOneLevelOfExactArithmeticFarFromTheEdges) {
    Resampler resampler;
    for (const Sides to : {Sides{5, 1500}, Sides{5, 750}, Sides{5, 1250}}) {
        const Sides from{5, 1000};
        const auto source = noise(from, 3);
        const auto scaled = drawn(resampler, source, from, to);
        const auto wanted = exact(source, from, to);
        for (std::size_t i = 0; i < scaled.size(); ++i)
            ASSERT_LE(std::abs(scaled[i] - wanted[i]), 1) << to.height << " " << i;
    }
}

TEST(ResamplerTest, DrawsImagesOfExtremeShapeWithLittleMemory) {
    Resampler resampler;
    const Bytes source(std::size_t{4} * 200'000, 255);
    Bytes target(std::size_t{4} * 300'000, 0);
    resampler.draw(source, 200'000, 1, target, 300'000, 1);
    EXPECT_EQ(std::count(target.begin(), target.end(), 255), static_cast<std::ptrdiff_t>(target.size()));
    std::fill(target.begin(), target.end(), 0);
    resampler.draw(source, 1, 200'000, target, 1, 300'000);
    EXPECT_EQ(std::count(target.begin(), target.end(), 255), static_cast<std::ptrdiff_t>(target.size()));
}

}  // namespace
}  // namespace pintle
