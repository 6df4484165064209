#include "apply/alpha_signature.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/instruction_sets.h"

namespace pintle {
namespace {

Bitmap noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    return *Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        for (auto& byte : out) byte = static_cast<std::uint8_t>(random());
    });
}

TEST(AlphaSignature, AnEmptyImageGivesZeros) {
    const auto empty = Bitmap::create(32, 32, [](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size(); ++i) out[i] = i % 4 == 3 ? 0 : 90;
    });
    EXPECT_EQ(AlphaSignatureMaker().of(*empty), AlphaSignature{});
}

TEST(AlphaSignature, AnOpaqueImageGives255Everywhere) {
    for (const int side : {1, 7, 16, 24, 33, 64}) {
        const auto full = Bitmap::create(side, side, [](std::span<std::uint8_t> out) {
            for (auto& byte : out) byte = 255;
        });
        AlphaSignature all;
        all.fill(255);
        EXPECT_EQ(AlphaSignatureMaker().of(*full), all) << side;
    }
}

TEST(AlphaSignature, AnImageOf16By16IsItsOwnMask) {
    const Bitmap image = noise(16, 16, 3);
    const AlphaSignature signature = AlphaSignatureMaker().of(image);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            ASSERT_EQ(signature[static_cast<std::size_t>(y * 16 + x)], image.pixel(x, y)[3]) << x << "," << y;
}

TEST(AlphaSignature, TheTopOfTheImageIsTheTopOfTheMask) {
    const auto top = Bitmap::create(32, 32, [](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size(); ++i) out[i] = i < out.size() / 2 ? 255 : 0;
    });
    const AlphaSignature signature = AlphaSignatureMaker().of(*top);
    EXPECT_EQ(signature[5], 255);
    EXPECT_EQ(signature[250], 0);
}

TEST(AlphaSignature, EveryByteEqualsTheDoublePrecisionResult) {
    AlphaSignatureMaker maker;
    for (unsigned seed = 0; seed < 200; ++seed) {
        const Bitmap image =
            noise(1 + static_cast<int>(seed * 7 % 96), 1 + static_cast<int>(seed * 13 % 96), seed);
        ASSERT_EQ(maker.of(image), alphaSignatureReference(image)) << image.width() << "x" << image.height();
    }
}

TEST(AlphaSignature, MasksFullOfHalvesAndLargeOnesEqualItToo) {
    AlphaSignatureMaker maker;
    for (const int side : {8, 17, 32, 48, 1000, 1024}) {
        std::mt19937 random(static_cast<unsigned>(side));
        const auto image = Bitmap::create(side, side, [&](std::span<std::uint8_t> out) {
            for (auto& byte : out) byte = random() % 2 == 0 ? 255 : 0;
        });
        ASSERT_EQ(maker.of(*image), alphaSignatureReference(*image)) << side;
    }
}

/// Clear outside, opaque inside, and soft at the edge, as cursors are.
Bitmap softDisc(int width, int height, int softness) {
    return *Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size(); ++i) {
            const int dx = 2 * (static_cast<int>(i / 4) % width) - width;
            const int dy = 2 * (static_cast<int>(i / 4) / width) - height;
            const int reach = width * height / 3 - dx * dx - dy * dy;
            out[i] = static_cast<std::uint8_t>(std::clamp(reach * softness / 8, 0, 255));
        }
    });
}

TEST(AlphaSignature, EveryByteEqualsItWithEveryInstructionSet) {
    withEachInstructionSet([] {
        AlphaSignatureMaker maker;
        for (int side = 1; side <= 100; side += side < 50 ? 1 : 7)
            for (const auto& image : {noise(side, 101 - side, static_cast<unsigned>(side)),
                                      softDisc(side, side, 4), softDisc(side, side + 5, 40)})
                ASSERT_EQ(maker.of(image), alphaSignatureReference(image))
                    << image.width() << "x" << image.height();
    });
}

TEST(AlphaSignature, AnAbsurdlyLargeImageGivesZerosInsteadOfWork) {
    EXPECT_EQ(AlphaSignatureMaker().of(noise(1025, 1, 1)), AlphaSignature{});
}

}  // namespace
}  // namespace pintle
