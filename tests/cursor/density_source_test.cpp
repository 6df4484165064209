#include "cursor/density_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/resample.h"
#include "cursor/cursor_folder.h"
#include "cursor/preloaded_cursor.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr std::int64_t kLimit = 48;

/// A chunk whose pixels all tell its size, so that a picture tells what it was drawn from.
XCursorChunk sized(std::uint32_t size, std::uint32_t delay = 0) {
    return {.size = size, .xhot = size / 8, .yhot = size / 4, .delay = delay, .colour = 0xFF000000u | size};
}

class DensitySourceTest : public testing::Test {
  protected:
    XCursorImages read(const std::vector<std::uint8_t>& bytes, double density) {
        writeFile(temporary.path() / "left_ptr", bytes);
        return CursorFolder(temporary.path(), density).read("left_ptr", kLimit);
    }
    XCursorImages read(std::initializer_list<std::uint32_t> sizes, double density) {
        XCursorBuilder builder;
        for (const auto size : sizes) builder.image(sized(size));
        return read(builder.bytes(), density);
    }
    /// Each nominal size and the one that its pictures are drawn from.
    static std::vector<std::pair<std::int64_t, std::int64_t>> chosen(const XCursorImages& file) {
        std::vector<std::pair<std::int64_t, std::int64_t>> pairs;
        for (const auto& source : file->sources) pairs.emplace_back(source.of, source.frames.front().size);
        return pairs;
    }
    static PreloadedCursor cursor(const XCursorImages& file, double scale, double density) {
        return makePreloadedSet({{"left_ptr", file}}, scale, density).at(0);
    }
    static int drawnFrom(const Bitmap& image) { return image.pixel(image.width() / 2, 0)[2]; }

    TemporaryFolder temporary;
};

TEST_F(DensitySourceTest, TheSourceIsTheNominalSizeNearestToTheDensityTimesItsOwn) {
    EXPECT_THAT(chosen(read({24, 32, 48, 64, 96}, 2)), ElementsAre(Pair(24, 48), Pair(32, 64), Pair(48, 96)));
    EXPECT_THAT(chosen(read({24, 32, 48, 64, 96}, 1.5)),
                ElementsAre(Pair(24, 32), Pair(32, 48), Pair(48, 64)));
    EXPECT_THAT(chosen(read({32, 256}, 2)), IsEmpty());
}

TEST_F(DensitySourceTest, OfTwoEquallyNearSizesTheLargerIsTheSource) {
    EXPECT_THAT(chosen(read({32, 60, 68}, 2)), ElementsAre(Pair(32, 68)));
    EXPECT_THAT(chosen(read({32, 68, 60}, 2)), ElementsAre(Pair(32, 68)));
}

TEST_F(DensitySourceTest, AtDensityOneNothingBeyondTheLimitIsReadAndNothingChanges) {
    const auto file = read({32, 48, 64}, 1);
    EXPECT_THAT(file->sources, IsEmpty());
    EXPECT_THAT(file->images, SizeIs(2));
    const auto plain = makePreloaded("left_ptr", file->images, 1.25);
    EXPECT_EQ(cursor(file, 1.25, 1), plain);
    EXPECT_EQ(cursor(read({32, 48, 64}, 2), 1.25, 1), plain);
}

TEST_F(DensitySourceTest, OnlyTheSourcesAreKeptOfWhatLiesBeyondTheLimit) {
    const auto file = read({32, 64, 128, 256}, 2);
    EXPECT_THAT(file->images, SizeIs(1));
    EXPECT_THAT(chosen(file), ElementsAre(Pair(32, 64)));
}

TEST_F(DensitySourceTest, APictureHasTheRoundedPixelsOfItsPointsAndKeepsPointsHotspotAndDelays) {
    const auto file = read(XCursorBuilder().image(sized(24)).image(sized(40)).image(sized(64)).bytes(), 1.5);
    const auto sharp = cursor(file, 1.1, 1.5);
    const auto plain = makePreloaded("left_ptr", file->images, 1.1);
    // 40 × 1.1 = 44 points, × 1.5 = 66 pixels.
    EXPECT_EQ(sharp.size(), plain->image.size());
    EXPECT_EQ(sharp.size(), (Size{44, 44}));
    EXPECT_EQ(sharp.image.width(), 66);
    EXPECT_EQ(sharp.image.height(), 66);
    EXPECT_EQ(sharp.hotspot, plain->hotspot);
    EXPECT_EQ(sharp.pixelsPerPoint, 1.5);
    EXPECT_EQ(drawnFrom(sharp.image), 64);
}

TEST_F(DensitySourceTest, ASideThatFallsBetweenTwoPixelsIsRounded) {
    const auto file = read(XCursorBuilder().image({.size = 32, .width = 33, .height = 30}).bytes(), 1.25);
    const auto picture = cursor(file, 1, 1.25);
    // 41.25 and 37.5.
    EXPECT_EQ(picture.image.width(), 41);
    EXPECT_EQ(picture.image.height(), 38);
}

TEST_F(DensitySourceTest, ASourceOfTheWantedSizeIsTakenPixelByPixel) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t i = 0; i < 64 * 64; ++i) pixels.push_back(0xFF000000u | i);
    const auto file =
        read(XCursorBuilder().image(sized(32)).image({.size = 64, .pixels = pixels}).bytes(), 2);
    EXPECT_EQ(cursor(file, 1, 2).image, file->sources.at(0).frames.at(0).nsImage());
}

TEST_F(DensitySourceTest, PixelsAreResampledOnceFromTheSource) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t i = 0; i < 64 * 64; ++i) pixels.push_back(0xFF000000u | i * 2654435761u >> 8);
    const auto file =
        read(XCursorBuilder().image(sized(32)).image({.size = 64, .pixels = pixels}).bytes(), 2);
    const auto source = file->sources.at(0).frames.at(0).nsImage();
    const auto expected = Bitmap::create(
        80, 80, [&](std::span<std::uint8_t> out) { Resampler().draw(source->bytes(), 64, 64, out, 80, 80); });
    EXPECT_EQ(cursor(file, 1.25, 2).image, expected);
}

TEST_F(DensitySourceTest, ASizeWithAnotherNumberOfFramesIsNoSource) {
    XCursorBuilder builder;
    for (const auto size : {32u, 32u, 48u, 48u, 64u}) builder.image(sized(size, 50));
    EXPECT_THAT(chosen(read(builder.bytes(), 2)), ElementsAre(Pair(32, 48)));
}

TEST_F(DensitySourceTest, ASizeOfOtherProportionsIsNoSource) {
    const auto with = [this](std::uint32_t width, std::uint32_t height) {
        return chosen(read(XCursorBuilder()
                               .image({.size = 32, .width = 20, .height = 30})
                               .image({.size = 64, .width = width, .height = height})
                               .bytes(),
                           2));
    };
    EXPECT_THAT(with(40, 60), ElementsAre(Pair(32, 64)));
    EXPECT_THAT(with(41, 59), ElementsAre(Pair(32, 64)));
    EXPECT_THAT(with(40, 64), IsEmpty());
    EXPECT_THAT(with(64, 64), IsEmpty());
}

TEST_F(DensitySourceTest, EachFrameIsDrawnFromTheFrameInItsPlace) {
    XCursorBuilder builder;
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        builder.image({.size = 32, .delay = 40, .colour = 0xFF000000u | frame});
        builder.image({.size = 64, .delay = 70, .colour = 0xFF000000u | (frame + 100)});
    }
    const auto picture = cursor(read(builder.bytes(), 2), 1, 2);
    ASSERT_THAT(picture.frames, SizeIs(3));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(drawnFrom(picture.frames[static_cast<std::size_t>(i)]), 101 + i);
        EXPECT_EQ(picture.frames[static_cast<std::size_t>(i)].width(), 64);
    }
    EXPECT_DOUBLE_EQ(picture.frameDuration, 0.04);
}

TEST_F(DensitySourceTest, ADamagedSourceIsReplacedByTheNominalSizeItself) {
    const auto damaged = [this](XCursorChunk chunk) {
        chunk.size = 64;
        const auto file = read(XCursorBuilder().image(std::move(chunk)).image(sized(32)).bytes(), 2);
        EXPECT_THAT(file->sources, IsEmpty());
        const auto picture = cursor(file, 1, 2);
        EXPECT_EQ(picture.image.width(), 64);
        EXPECT_EQ(drawnFrom(picture.image), 32);
    };
    damaged({.width = 0});
    damaged({.position = 0xFFFFFFF0u});
    damaged({.width = 64, .height = 4000, .writePixels = false});
    damaged({.width = 0xFFFFFFFFu, .height = 0xFFFFFFFFu, .writePixels = false});
}

TEST_F(DensitySourceTest, ASourceThatIsCutShortIsReplacedByTheNominalSizeItself) {
    const auto file = read(XCursorBuilder().image(sized(32)).image(sized(64)).bytesCutBy(1), 2);
    EXPECT_THAT(file->sources, IsEmpty());
    EXPECT_THAT(file->images, SizeIs(1));
}

TEST_F(DensitySourceTest, AHugeSourceIsReplacedByTheNominalSizeItself) {
    const auto file =
        read(XCursorBuilder().image(sized(32)).image({.size = 64, .width = 1025, .height = 1024}).bytes(), 2);
    EXPECT_THAT(file->sources, IsEmpty());
}

TEST_F(DensitySourceTest, FramesThatAreHugeTogetherAreReplacedByTheNominalSizeItself) {
    // All 17 entries stand for one chunk of a million pixels, so that the file stays small.
    constexpr std::uint32_t kFrame = 36 + 4 * 32 * 32;
    XCursorBuilder all;
    for (int i = 0; i < 17; ++i) all.image(sized(32));
    all.image({.size = 64, .width = 1024, .height = 1024});
    const auto shared = static_cast<std::uint32_t>(16 + 12 * 34 + 17 * kFrame);
    for (int i = 0; i < 16; ++i) all.image({.size = 64, .position = shared, .written = false});
    const auto file = read(all.bytes(), 2);
    EXPECT_THAT(file->images, SizeIs(17));
    EXPECT_THAT(file->sources, IsEmpty());
}

TEST_F(DensitySourceTest, ATableOfManySizesIsSearchedInAMoment) {
    XCursorBuilder builder;
    for (std::uint32_t i = 0; i < 100; ++i) builder.image(sized(48));
    for (std::uint32_t i = 0; i < 60000; ++i)
        builder.image({.size = 49 + i % 600, .position = 16, .written = false});
    EXPECT_THAT(read(builder.bytes(), 2)->sources, IsEmpty());
}

TEST_F(DensitySourceTest, NamesOfOneFileShareSourcesAndPixels) {
    const auto file = read({32, 64}, 2);
    const auto set = makePreloadedSet({{"left_ptr", file}, {"arrow", file}}, 1, 2);
    ASSERT_THAT(set, SizeIs(2));
    EXPECT_EQ(set[0].image.bytes().data(), set[1].image.bytes().data());
}

}  // namespace
}  // namespace pintle
