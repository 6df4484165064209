#include "platform/wayland/cursor_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/Xcursor/Xcursor.h>

#include <array>
#include <cstdio>
#include <limits>
#include <memory>

#include "cursor/xcursor_parser.h"
#include "tests/support/temporary_folder.h"

namespace pintle::wayland {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

/// `frames` frames one below the other, each pixel unlike those beside it.
RegisteredCursor picture(int width, int height, std::uint64_t frames, double duration = 0) {
    RegisteredCursor cursor;
    cursor.identifier = "com.apple.coregraphics.Arrow";
    cursor.size = {static_cast<double>(width), static_cast<double>(height)};
    cursor.hotspot = {3, 5};
    cursor.frameCount = frames;
    cursor.frameDuration = duration;
    cursor.images = {*Bitmap::create(width, height * static_cast<int>(frames), [](auto bytes) {
        for (std::size_t i = 0; i < bytes.size(); i += 4) {
            bytes[i] = static_cast<std::uint8_t>(i / 4 % 101);
            bytes[i + 1] = static_cast<std::uint8_t>(i / 4 % 53);
            bytes[i + 2] = static_cast<std::uint8_t>(i / 4 % 7);
            bytes[i + 3] = 200;
        }
    })};
    return cursor;
}

std::vector<FileImage> images(const RegisteredCursor& cursor, int base, std::vector<int> nominals) {
    const auto made = imagesOf(cursor, base, nominals);
    return made ? *made : std::vector<FileImage>();
}

struct DestroyImages {
    void operator()(XcursorImages* list) const { XcursorImagesDestroy(list); }
};

/// What the cursor library reads, at one nominal size.
std::vector<FileImage> readByLibrary(const std::filesystem::path& file, int nominal) {
    const std::unique_ptr<XcursorImages, DestroyImages> list(
        XcursorFilenameLoadImages(file.c_str(), nominal));
    std::vector<FileImage> read;
    for (int i = 0; list && i < list->nimage; ++i) {
        const auto& image = *list->images[i];
        read.push_back({image.size,
                        image.width,
                        image.height,
                        image.xhot,
                        image.yhot,
                        image.delay,
                        {image.pixels, image.pixels + std::size_t{image.width} * image.height}});
    }
    return read;
}

TEST(CursorFile, TheCursorLibraryAndOurReaderReadEveryImageBackAtEverySize) {
    const TemporaryFolder folder;
    const std::array<int, 4> nominals = {32, 40, 64, 96};
    for (const std::uint64_t frames : {1, 5}) {
        const auto made = images(picture(31, 33, frames, 0.05), 32, {nominals.begin(), nominals.end()});
        ASSERT_EQ(made.size(), nominals.size() * frames);
        const auto bytes = cursorFile(made);
        ASSERT_TRUE(bytes);
        const auto file = folder.path() / "arrow";
        writeFile(file, *bytes);

        for (std::size_t i = 0; i < nominals.size(); ++i) {
            const auto first = made.begin() + static_cast<std::ptrdiff_t>(i * frames);
            const std::vector<FileImage> expected(first, first + static_cast<std::ptrdiff_t>(frames));
            EXPECT_EQ(readByLibrary(file, nominals[i]), expected) << nominals[i];
        }
        const auto read = XCursorParser::parse(*bytes, std::nullopt);
        ASSERT_TRUE(read);
        ASSERT_EQ(read->size(), made.size());
        for (std::size_t i = 0; i < made.size(); ++i) {
            const auto& image = (*read)[i];
            EXPECT_EQ(image.size, made[i].nominal);
            EXPECT_EQ(image.width, made[i].width);
            EXPECT_EQ(image.height, made[i].height);
            EXPECT_EQ(image.xhot, made[i].hotspotX);
            EXPECT_EQ(image.yhot, made[i].hotspotY);
            EXPECT_EQ(image.delay, made[i].delay);
            EXPECT_THAT(image.pixels.values(), ElementsAreArray(made[i].argb));
        }
    }
}

TEST(CursorFile, ThePictureItselfIsKeptToTheByteAndFilledUpWithTransparentPixels) {
    const auto cursor = picture(31, 33, 2, 0.1);
    const auto made = images(cursor, 32, {32});
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(made[0].width, 32U);
    EXPECT_EQ(made[0].height, 34U);
    EXPECT_EQ(made[0].hotspotX, 3U);
    EXPECT_EQ(made[0].hotspotY, 5U);
    EXPECT_EQ(made[0].delay, 100U);
    for (unsigned frame = 0; frame < 2; ++frame)
        for (unsigned y = 0; y < 34; ++y)
            for (unsigned x = 0; x < 32; ++x) {
                std::uint32_t expected = 0;
                if (x < 31 && y < 33) {
                    const auto at =
                        cursor.images[0].pixel(static_cast<int>(x), static_cast<int>(frame * 33 + y));
                    expected = std::uint32_t{at[3]} << 24 | std::uint32_t{at[0]} << 16 |
                               std::uint32_t{at[1]} << 8 | at[2];
                }
                ASSERT_EQ(made[frame].argb[y * 32 + x], expected) << frame << " " << x << " " << y;
            }
}

TEST(CursorFile, SidesAreMultiplesOfTwoAndFromThreefoldOnOfTwelve) {
    const auto made = images(picture(21, 21, 1), 32, {32, 40, 64, 96, 128});
    ASSERT_EQ(made.size(), 5U);
    EXPECT_EQ(made[0].width, 22U);
    EXPECT_EQ(made[1].width, 26U);  // 26.25
    EXPECT_EQ(made[2].width, 42U);
    EXPECT_EQ(made[3].width, 72U);  // 63
    EXPECT_EQ(made[4].width, 84U);
    EXPECT_EQ(made[3].hotspotX, 9U);
    EXPECT_EQ(made[3].hotspotY, 15U);
}

TEST(CursorFile, APictureOfMorePixelsAPointIsKeptAtThatSizeAndDrawnAnewAtTheOthers) {
    auto dense = picture(62, 80, 2, 0.1);
    dense.size = {31, 40};
    dense.pixelsPerPoint = 2;
    const auto made = images(dense, 32, {32, 40, 64});
    ASSERT_EQ(made.size(), 6U);
    EXPECT_THAT((std::array{made[0].width, made[0].height, made[0].hotspotX, made[0].hotspotY}),
                ElementsAre(32, 40, 3, 5));
    EXPECT_THAT((std::array{made[2].width, made[2].height}), ElementsAre(40, 50));
    EXPECT_THAT((std::array{made[4].width, made[4].height, made[4].hotspotX, made[4].hotspotY}),
                ElementsAre(62, 80, 6, 10));
    auto same = dense;
    same.size = {62, 80};
    same.hotspot = {6, 10};
    same.pixelsPerPoint = 1;
    const auto asItIs = images(same, 64, {64});
    EXPECT_EQ((std::vector{made[4], made[5]}), asItIs);
}

TEST(CursorFile, AnAnimationHasTimeForEachFrameAndAStillPictureHasNone) {
    EXPECT_EQ(images(picture(8, 8, 1, 0.5), 32, {32}).front().delay, 0U);
    EXPECT_EQ(images(picture(8, 8, 2, 0), 32, {32}).front().delay, 10U);
    EXPECT_EQ(images(picture(8, 8, 2, std::numeric_limits<double>::quiet_NaN()), 32, {32}).front().delay,
              10U);
    EXPECT_EQ(images(picture(8, 8, 2, 1e300), 32, {32}).front().delay, 3600000U);
}

TEST(CursorFile, FramesMayComeAsImagesOfTheirOwn) {
    auto strip = picture(8, 8, 3, 0.1);
    auto list = strip;
    list.images.clear();
    for (int i = 0; i < 3; ++i)
        list.images.push_back(*Bitmap::create(8, 8, [&](auto bytes) {
            const auto all = strip.images[0].bytes();
            std::copy_n(all.begin() + i * 8 * 8 * 4, bytes.size(), bytes.begin());
        }));
    EXPECT_EQ(images(list, 32, {32}), images(strip, 32, {32}));
}

TEST(CursorFile, RecordsThatDoNotHoldTheirFramesAreRefused) {
    auto dense = picture(31, 40, 1);
    dense.pixelsPerPoint = 2;
    EXPECT_FALSE(holdsItsFrames(dense));
    auto cursor = picture(8, 8, 2);
    cursor.frameCount = 3;
    EXPECT_FALSE(imagesOf(cursor, 32, std::array{32}));
    cursor.frameCount = 0;
    EXPECT_FALSE(imagesOf(cursor, 32, std::array{32}));
    cursor = picture(8, 8, 1);
    cursor.size.width = 9;
    EXPECT_FALSE(imagesOf(cursor, 32, std::array{32}));
    cursor.size.width = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(imagesOf(cursor, 32, std::array{32}));
    cursor = picture(8, 8, 1);
    cursor.images.clear();
    EXPECT_FALSE(imagesOf(cursor, 32, std::array{32}));
    EXPECT_FALSE(imagesOf(picture(8, 8, 1), 32, {}));
    EXPECT_FALSE(imagesOf(picture(8, 8, 1), 0, std::array{32}));
    EXPECT_FALSE(imagesOf(picture(2000, 8, 1), 32, std::array{64}));
}

TEST(CursorFile, HotspotsStayInsideThePicture) {
    auto cursor = picture(8, 8, 1);
    cursor.hotspot = {-4, 100};
    const auto made = images(cursor, 32, {32, 64});
    EXPECT_EQ(made[0].hotspotX, 0U);
    EXPECT_EQ(made[0].hotspotY, 7U);
    EXPECT_EQ(made[1].hotspotY, 15U);
}

TEST(CursorFile, NothingIsWrittenThatNoReaderWouldTake) {
    EXPECT_FALSE(cursorFile({}));
    FileImage image{32, 2, 2, 0, 0, 0, {1, 2, 3}};
    EXPECT_FALSE(cursorFile(std::array{image}));
    image.argb.push_back(4);
    EXPECT_TRUE(cursorFile(std::array{image}));
    FileImage large{32, 2048, 2048, 0, 0, 0, std::vector<std::uint32_t>(2048 * 2048)};
    EXPECT_FALSE(cursorFile(std::vector<FileImage>(5, large)));
}

TEST(CursorFile, OutputScalesAskForWhatCompositorsAndTheirClientsAskFor) {
    EXPECT_THAT(nominalsFor(32, {}), ElementsAre(32));
    EXPECT_THAT(nominalsFor(32, std::array{1.0}), ElementsAre(32));
    EXPECT_THAT(nominalsFor(32, std::array{2.0, 1.0}), ElementsAre(32, 64));
    EXPECT_THAT(nominalsFor(32, std::array{1.25}), ElementsAre(32, 40, 64));
    EXPECT_THAT(nominalsFor(41, std::array{1.5, 3.0}), ElementsAre(41, 62, 82, 123));
    EXPECT_THAT(nominalsFor(32, std::array{0.0, -1.0, 9.0, std::numeric_limits<double>::quiet_NaN()}),
                ElementsAre(32));
}

}  // namespace
}  // namespace pintle::wayland
