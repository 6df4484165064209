#include "cursor/xcursor_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/plain_xcursor_reader.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::SizeIs;
using Bytes = std::vector<std::uint8_t>;

/// Bytes of which only the first `shorter` are left after `reads` reads, as when a file shrinks meanwhile.
class ShrinkingSource : public ByteSource {
  public:
    ShrinkingSource(Bytes bytes, std::size_t reads, std::size_t shorter)
        : ByteSource(bytes.size()), bytes_(std::move(bytes)), readsLeft_(reads), shorter_(shorter) {}

  private:
    std::size_t readInside(std::uint64_t offset, std::span<std::uint8_t> out) override {
        if (readsLeft_ == 0) bytes_.resize(std::min(bytes_.size(), shorter_));
        if (readsLeft_ > 0) --readsLeft_;
        if (offset >= bytes_.size()) return 0;
        const auto count =
            std::min<std::size_t>(out.size(), bytes_.size() - static_cast<std::size_t>(offset));
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, out.begin());
        return count;
    }

    Bytes bytes_;
    std::size_t readsLeft_;
    std::size_t shorter_;
};

/// Of the sizes of animatedFile, the third is above it.
constexpr std::int64_t kLimit = 12;

Bytes animatedFile() {
    XCursorBuilder builder;
    for (std::uint32_t frame = 0; frame < 6; ++frame)
        for (const std::uint32_t size : {4U, 6U, 20U})
            builder.image({.size = size, .delay = frame, .colour = 0xFF000000 | frame << 8 | size});
    return builder.bytes();
}

TEST(XCursorReader, TakesTheImagesThatAreLeftWhenAFileShrinksWhileItIsRead) {
    const auto bytes = animatedFile();
    for (std::size_t reads = 0; reads < 12; ++reads) {
        for (std::size_t left = 0; left <= bytes.size(); left += 97) {
            ShrinkingSource source(bytes, reads, left);
            PixelPool pool;
            const auto images = readImages(source, kLimit, pool);
            if (!images) continue;
            EXPECT_LE(images->size(), 12U);
            for (const auto& image : *images) {
                ASSERT_EQ(image.width, image.size);
                const auto pixels = image.pixels.values();
                ASSERT_EQ(pixels.size(), static_cast<std::size_t>(image.size * image.size));
                const auto colour = 0xFF000000 | image.delay << 8 | static_cast<std::uint32_t>(image.size);
                ASSERT_TRUE(
                    std::all_of(pixels.begin(), pixels.end(), [&](auto pixel) { return pixel == colour; }));
            }
        }
    }
}

/// Counts what is read.
class CountingSource : public ByteSource {
  public:
    explicit CountingSource(Bytes bytes) : ByteSource(bytes.size()), bytes_(std::move(bytes)) {}
    std::size_t bytesRead = 0;

  private:
    std::size_t readInside(std::uint64_t offset, std::span<std::uint8_t> out) override {
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
        bytesRead += out.size();
        return out.size();
    }

    Bytes bytes_;
};

TEST(XCursorReader, TheNearestImageIsTheOneThatAllOfThemWouldGive) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        XCursorBuilder builder;
        const auto images = 1 + random() % 6;
        for (unsigned i = 0; i < images; ++i)
            builder.image({.size = static_cast<std::uint32_t>(1 + random() % 64),
                           .delay = i,
                           .colour = 0xFF000000 | i});
        auto bytes = builder.bytes();
        for (auto damage = random() % 4; damage > 0; --damage)
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        if (random() % 4 == 0) bytes.resize(random() % bytes.size());
        MemorySource source(bytes);
        PixelPool pool;
        const auto all = readImages(source, 48, pool);
        MemorySource again(bytes);
        const auto nearest = readNearestImage(again, 32, 48, pool);
        ASSERT_EQ(all.has_value(), nearest.has_value()) << round;
        if (!all) continue;
        const auto wanted = std::min_element(all->begin(), all->end(), [](const auto& a, const auto& b) {
            return std::abs(a.size - 32) < std::abs(b.size - 32);
        });
        ASSERT_EQ(wanted->size, nearest->size) << round;
        ASSERT_EQ(wanted->delay, nearest->delay) << round;
        const auto want = wanted->pixels.values();
        const auto have = nearest->pixels.values();
        ASSERT_TRUE(std::equal(want.begin(), want.end(), have.begin(), have.end())) << round;
    }
}

TEST(XCursorReader, ForTheNearestImageTheTableAndThatImageAreReadAlone) {
    XCursorBuilder builder;
    for (std::uint32_t size = 8; size <= 48; ++size) builder.image({.size = size});
    CountingSource source(builder.bytes());
    PixelPool pool;
    const auto nearest = readNearestImage(source, 32, 48, pool);
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->size, 32);
    EXPECT_LT(source.bytesRead, 16u + 41 * 12 + 2 * 36 + nearest->pixels.values().size() * 4 + 100);
}

TEST(XCursorReader, SkipsTheChunksThatAShorterFileNoLongerHolds) {
    const auto bytes = animatedFile();
    // Header, table, then six runs of two wanted chunks; from the fourth run on there is nothing.
    ShrinkingSource source(bytes, 5, 100);
    PixelPool pool;
    const auto images = readImages(source, kLimit, pool);
    ASSERT_TRUE(images);
    EXPECT_LT(images->size(), 12U);
    EXPECT_GT(images->size(), 0U);
}

TEST(XCursorReader, HeadersOfAShrinkingFileAreThoseStillThere) {
    const auto bytes = animatedFile();
    const auto all = PlainXCursorReader(bytes).headers();
    ASSERT_TRUE(all);
    for (std::size_t reads = 0; reads < 25; ++reads)
        for (std::size_t left = 0; left <= bytes.size(); left += 101) {
            ShrinkingSource source(bytes, reads, left);
            const auto headers = readHeaders(source);
            if (!headers) continue;
            // What is returned is true and in order; the rest is left out.
            auto next = all->begin();
            for (const auto& header : *headers) {
                next = std::find(next, all->end(), header);
                ASSERT_NE(next, all->end());
                ++next;
            }
        }
}

TEST(XCursorReader, AnswersNothingWhenThePixelsAreMoreThanThePoolMayHold) {
    const auto bytes = animatedFile();
    MemorySource source(bytes);
    PixelPool small(100);
    EXPECT_FALSE(readImages(source, kLimit, small));
}

TEST(XCursorReader, GivesWhatThePlainRulesGiveForDamagedFiles) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "damaged";
    std::mt19937 random(20);
    const auto below = [&](std::size_t n) { return random() % n; };
    const auto sound = animatedFile();
    constexpr std::size_t kTableBytes = 16 + 12 * 18;
    std::size_t answered = 0;
    for (int round = 0; round < 1500; ++round) {
        auto bytes = sound;
        for (std::size_t change = below(6) + 1; change > 0; --change) {
            const auto at = below(3) == 0 ? below(bytes.size()) : below(kTableBytes);
            switch (below(4)) {
                case 0:
                    bytes[at] = static_cast<std::uint8_t>(random());
                    break;
                case 1:
                    bytes[at] = static_cast<std::uint8_t>(bytes[at] + 1);
                    break;
                case 2:
                    std::copy_n(bytes.begin() + 24, 4, bytes.begin() + 24 + 12 * static_cast<int>(below(18)));
                    break;
                default:
                    bytes[24 + 12 * below(18)] = static_cast<std::uint8_t>(random());
                    break;
            }
        }
        if (below(4) == 0) bytes.resize(below(bytes.size()) + 1);
        writeFile(file, bytes);
        const std::optional<std::int64_t> limit =
            below(3) == 0 ? std::nullopt : std::optional<std::int64_t>(below(30));
        const PlainXCursorReader plain(bytes);
        const auto images = XCursorParser::parse(bytes, limit);
        answered += images ? 1 : 0;
        ASSERT_TRUE(plain.agreesWith(images, limit)) << "round " << round;
        ASSERT_TRUE(plain.agreesWith(XCursorParser::parseFile(file, limit), limit)) << "round " << round;
        ASSERT_EQ(XCursorParser::parseTOC(bytes), plain.toc());
        ASSERT_EQ(XCursorParser::parseHeaders(file), plain.headers());
    }
    EXPECT_GT(answered, 500U);
}

}  // namespace
}  // namespace pintle
