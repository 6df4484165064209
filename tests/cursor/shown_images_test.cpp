// What is read of a cursor file before it is shown, compared with reading all of it.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <thread>

#include "cursor/cursor_folder.h"
#include "cursor/preloaded_cursor.h"
#include "cursor/scaled_size.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using Bytes = std::vector<std::uint8_t>;

constexpr std::int64_t kLimit = 48;

std::size_t openDescriptors() {
    std::size_t open = 0;
    for (int descriptor = 0; descriptor < 2048; ++descriptor) open += ::fcntl(descriptor, F_GETFD) >= 0;
    return open;
}

bool sameImages(const XCursorImages& a, const XCursorImages& b) {
    if (!a || !b) return a == b;
    return std::ranges::equal(a->images, b->images, [](const XCursorImage& x, const XCursorImage& y) {
        return x.size == y.size && x.width == y.width && x.height == y.height && x.xhot == y.xhot &&
               x.yhot == y.yhot && x.delay == y.delay &&
               std::ranges::equal(x.pixels.values(), y.pixels.values());
    });
}

/// Frames of three nominal sizes in turn, each of a colour of its own.
Bytes animation(std::uint32_t frames) {
    XCursorBuilder builder;
    for (std::uint32_t frame = 0; frame < frames; ++frame)
        for (const std::uint32_t size : {3U, 5U, 32U})
            builder.image({.size = size,
                           .width = size % 7 + 1,
                           .height = size % 6 + 1,
                           .xhot = frame % 3,
                           .delay = frame % 4 * 10,
                           .colour = 0xFF000000 | frame << 8 | size});
    return builder.bytes();
}

TEST(SentFrames, AreAllOfAShortAnimationAndTwentyFourOfALongOne) {
    EXPECT_THAT(sentFrames(0), IsEmpty());
    EXPECT_THAT(sentFrames(3), ElementsAre(0, 1, 2));
    EXPECT_THAT(sentFrames(24), SizeIs(24));
    EXPECT_THAT(sentFrames(25), SizeIs(24));
    EXPECT_THAT(sentFrames(50), ElementsAre(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 25, 27, 29, 31, 33, 35,
                                            37, 39, 41, 43, 45, 47));
}

struct ShownImagesTest : testing::Test {
    TemporaryFolder temporary;

    XCursorImages readShown(CursorFolder& folder, double scale) {
        return folder.readShown("watch", nominalSizeAt(scale), kLimit);
    }
    void write(const Bytes& bytes) { writeFile(temporary.path() / "watch", bytes); }
};

TEST_F(ShownImagesTest, AreThoseOfTheNearestSizeWithThePixelsThatAreSent) {
    write(animation(50));
    CursorFolder folder(temporary.path());
    const auto shown = readShown(folder, 1);
    ASSERT_TRUE(shown);
    ASSERT_TRUE(shown->file);
    ASSERT_THAT(shown->images, SizeIs(50));
    std::size_t read = 0;
    for (const auto& image : shown->images) {
        EXPECT_EQ(image.size, 32);
        read += image.pixels.values().empty() ? 0 : 1;
    }
    EXPECT_EQ(read, 24U);
    const auto set = makePreloadedSet({{"watch", shown}}, 1);
    ASSERT_THAT(set, SizeIs(1));
    ASSERT_THAT(set[0].frames, SizeIs(50));
    const auto sent = sentFrames(50);
    for (std::size_t i = 0; i < 50; ++i)
        EXPECT_EQ(set[0].frames.isDrawn(i), std::ranges::find(sent, i) != sent.end()) << i;
}

TEST_F(ShownImagesTest, FramesThatAreNotSentAreReadWhereSomebodyAsksForThem) {
    write(animation(50));
    CursorFolder folder(temporary.path());
    CursorFolder other(temporary.path());
    for (const double scale : {1.0, 1.5}) {
        const auto shown = makePreloadedSet({{"watch", readShown(folder, 1)}}, scale);
        const auto whole = makePreloadedSet({{"watch", other.read("watch", kLimit)}}, scale);
        EXPECT_EQ(shown, whole);
    }
}

TEST_F(ShownImagesTest, TheRestComesFromTheSameFileWhateverStandsThereNow) {
    write(animation(30));
    const auto expected = CursorFolder(temporary.path()).read("watch", kLimit);
    const auto before = openDescriptors();
    XCursorImages shown;
    {
        CursorFolder folder(temporary.path());
        shown = readShown(folder, 1);
    }
    EXPECT_EQ(openDescriptors(), before + 1);
    std::filesystem::remove(temporary.path() / "watch");
    write(animation(2));
    EXPECT_TRUE(sameImages(allImagesOf(shown), expected));
    EXPECT_EQ(openDescriptors(), before) << "all is read and the file closed";
    EXPECT_EQ(allImagesOf(shown), allImagesOf(shown));
}

TEST_F(ShownImagesTest, AFileThatIsWrittenOverMeanwhileHasNoRest) {
    write(animation(30));
    CursorFolder folder(temporary.path());
    const auto shown = readShown(folder, 1);
    ASSERT_TRUE(shown);
    ASSERT_TRUE(shown->file);
    write(animation(29));
    EXPECT_FALSE(allImagesOf(shown));
}

TEST_F(ShownImagesTest, ThousandsOfEntriesOfOneImageAreDrawnOnce) {
    XCursorBuilder builder;
    constexpr std::uint32_t kEntries = 2000;
    builder.image({.size = 32, .width = 258, .height = 258});
    for (std::uint32_t i = 1; i < kEntries; ++i)
        builder.image({.size = 32, .position = 16 + 12 * kEntries, .written = false});
    write(builder.bytes());
    CursorFolder folder(temporary.path());
    const auto set = makePreloadedSet({{"watch", readShown(folder, 1.5)}}, 1.5);
    ASSERT_THAT(set, SizeIs(1));
    EXPECT_THAT(set[0].frames, SizeIs(kEntries));
}

TEST_F(ShownImagesTest, MoreThanMayBeDrawnKeepsTheFramesThatFit) {
    // Each header is also a part of the pictures before it.
    constexpr std::uint32_t kChunks = 2000;
    constexpr std::uint32_t kSide = 258;
    constexpr std::uint32_t kHeaderBytes = 36;
    constexpr std::uint32_t kBodyAt = 16 + 12 * kChunks;
    Bytes bytes;
    const auto words = [&](std::initializer_list<std::uint32_t> values) {
        for (const auto value : values)
            for (int shift = 0; shift < 32; shift += 8)
                bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    };
    words({0x72756358, 16, 0x10000, kChunks});
    for (std::uint32_t i = 0; i < kChunks; ++i) words({0xFFFD0002, 32, kBodyAt + kHeaderBytes * i});
    for (std::uint32_t i = 0; i < kChunks + kSide * kSide / 9 + 1; ++i)
        words({kHeaderBytes, 0xFFFD0002, 32, 1, kSide, kSide, 0, 0, 50});
    write(bytes);
    CursorFolder folder(temporary.path());
    CursorFolder other(temporary.path());
    const auto set = makePreloadedSet({{"watch", readShown(folder, 1.5)}}, 1.5);
    const auto whole = makePreloadedSet({{"watch", other.read("watch", kLimit)}}, 1.5);
    ASSERT_THAT(whole, SizeIs(1));
    EXPECT_LT(whole[0].frames.size(), kChunks);
    ASSERT_THAT(set, SizeIs(1));
    EXPECT_GE(set[0].frames.size() + 1, whole[0].frames.size());
}

TEST_F(ShownImagesTest, NamesOfOneFileShareBothAnswers) {
    write(animation(3));
    std::filesystem::create_symlink("watch", temporary.path() / "wait");
    CursorFolder folder(temporary.path());
    const auto shown = readShown(folder, 1);
    ASSERT_TRUE(shown);
    EXPECT_EQ(folder.readShown("wait", 32, kLimit), shown);
    EXPECT_EQ(folder.readShown("watch", 32, kLimit), shown);
}

TEST_F(ShownImagesTest, OnADenseScreenTheWholeFileIsReadAtOnce) {
    write(animation(30));
    CursorFolder folder(temporary.path(), 2);
    const auto shown = readShown(folder, 1);
    ASSERT_TRUE(shown);
    EXPECT_FALSE(shown->file);
    EXPECT_THAT(shown->images, SizeIs(90));
}

TEST_F(ShownImagesTest, FilesBeyondTheMostThatMayBeOpenAreReadWhole) {
    for (int i = 0; i < 300; ++i)
        writeFile(temporary.path() / ("cursor" + std::to_string(i)),
                  XCursorBuilder().image({.size = 1}).image({.size = 2}).bytes());
    const auto before = openDescriptors();
    CursorFolder folder(temporary.path());
    std::vector<XCursorImages> shown;
    for (const auto& name : folder.names()) shown.push_back(folder.readShown(name, 32, kLimit));
    EXPECT_THAT(shown, SizeIs(300));
    EXPECT_LE(openDescriptors(), before + OpenFileShare::kMost + 1);
    EXPECT_GT(openDescriptors(), before + 1);
    for (const auto& images : shown) {
        ASSERT_TRUE(images);
        EXPECT_THAT(images->images, SizeIs(images->file ? 1 : 2));
        const auto all = allImagesOf(images);
        ASSERT_TRUE(all);
        EXPECT_THAT(all->images, SizeIs(2));
    }
    EXPECT_EQ(openDescriptors(), before + 1);
}

TEST_F(ShownImagesTest, ADamagedImageOfTheNearestSizeMakesTheOthersCount) {
    writeFile(temporary.path() / "watch", XCursorBuilder()
                                              .image({.size = 24})
                                              .image({.size = 32, .width = 0})
                                              .image({.size = 33, .writePixels = false})
                                              .bytes());
    CursorFolder folder(temporary.path());
    const auto shown = readShown(folder, 1);
    ASSERT_TRUE(shown);
    ASSERT_THAT(shown->images, SizeIs(1));
    EXPECT_EQ(shown->images[0].size, 24);
}

TEST_F(ShownImagesTest, FramesThatVanishAtASmallScaleMakeOthersSent) {
    XCursorBuilder builder;
    for (std::uint32_t i = 0; i < 60; ++i)
        builder.image({.size = 24, .width = i % 5 == 2 ? 1U : 4U, .height = 4, .colour = 0xFF000000 | i});
    write(builder.bytes());
    CursorFolder folder(temporary.path());
    CursorFolder other(temporary.path());
    const auto shown = makePreloadedSet({{"watch", readShown(folder, 0.75)}}, 0.75);
    ASSERT_THAT(shown, SizeIs(1));
    EXPECT_THAT(shown[0].frames, SizeIs(48));
    EXPECT_EQ(shown, makePreloadedSet({{"watch", other.read("watch", kLimit)}}, 0.75));
}

TEST_F(ShownImagesTest, GiveTheSameCursorsAndTheSameRestForDamagedFiles) {
    std::mt19937 random(16);
    const auto below = [&](std::size_t n) { return random() % n; };
    std::size_t partly = 0;
    std::size_t cursors = 0;
    for (int round = 0; round < 1500; ++round) {
        const auto frames = static_cast<std::uint32_t>(1 + below(below(3) == 0 ? 40 : 4));
        auto bytes = animation(frames);
        const std::size_t entries = std::size_t{3} * frames;
        for (std::size_t change = below(5); change > 0; --change) {
            const auto entry = 16 + 12 * below(entries);
            switch (below(5)) {
                case 0:
                    bytes[below(bytes.size())] = static_cast<std::uint8_t>(random());
                    break;
                case 1:
                    bytes[entry + 4] = static_cast<std::uint8_t>(below(60));
                    break;
                case 2:
                    std::copy_n(bytes.begin() + 24, 4, bytes.begin() + static_cast<int>(entry) + 8);
                    break;
                case 3:
                    bytes[entry + 8] = static_cast<std::uint8_t>(random());
                    break;
                default:
                    bytes[16 + 12 * entries + below(bytes.size() - 16 - 12 * entries)] =
                        static_cast<std::uint8_t>(below(9));
                    break;
            }
        }
        if (below(4) == 0) bytes.resize(bytes.size() - below(std::min<std::size_t>(bytes.size(), 400)));
        write(bytes);
        const double scale = std::vector{0.75, 1.0, 1.15, 1.5}[below(4)];
        CursorFolder folder(temporary.path());
        CursorFolder other(temporary.path());
        const auto shown = readShown(folder, scale);
        const auto whole = other.read("watch", kLimit);
        const auto set = makePreloadedSet({{"watch", shown}}, scale);
        ASSERT_EQ(set, makePreloadedSet({{"watch", whole}}, scale)) << "round " << round;
        ASSERT_TRUE(sameImages(allImagesOf(shown), whole)) << "round " << round;
        partly += shown && shown->file ? 1 : 0;
        cursors += set.size();
    }
    EXPECT_GT(partly, 300U);
    EXPECT_GT(cursors, partly + 100U) << "some are read whole";
}

TEST_F(ShownImagesTest, MayBeAskedForWhileTheRestIsRead) {
    write(animation(40));
    CursorFolder folder(temporary.path());
    const auto shown = readShown(folder, 1);
    const auto set = makePreloadedSet({{"watch", shown}}, 1);
    std::thread rest([&] { EXPECT_TRUE(allImagesOf(shown)); });
    for (const auto& frame : set.at(0).frames) EXPECT_THAT(frame.bytes(), Not(IsEmpty()));
    rest.join();
}

}  // namespace
}  // namespace pintle
