#include "cursor/xcursor_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

#include "tests/support/as_nobody.h"
#include "tests/support/plain_xcursor_reader.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::SizeIs;
using Bytes = std::vector<std::uint8_t>;
using Images = std::optional<std::vector<XCursorImage>>;
using Toc = std::vector<XCursorParser::TocEntry>;

/// Reads from memory and from a file and insists that both agree with each other and with the plain rules.
class XCursorParserTest : public testing::Test {
  protected:
    Images parse(const Bytes& bytes, std::optional<std::int64_t> limit = std::nullopt) {
        writeFile(file, bytes);
        auto fromMemory = XCursorParser::parse(bytes, limit);
        const auto fromFile = XCursorParser::parseFile(file, limit);
        const PlainXCursorReader plain(bytes);
        EXPECT_TRUE(plain.agreesWith(fromMemory, limit));
        EXPECT_TRUE(plain.agreesWith(fromFile, limit));
        EXPECT_EQ(XCursorParser::parseTOC(bytes), plain.toc());
        EXPECT_EQ(XCursorParser::parseHeaders(file), plain.headers());
        return fromMemory;
    }
    std::optional<std::vector<XCursorParser::Header>> parseHeaders(const Bytes& bytes) {
        writeFile(file, bytes);
        return XCursorParser::parseHeaders(file);
    }

    static std::vector<std::int64_t> sizes(const Images& images) {
        std::vector<std::int64_t> all;
        if (images)
            for (const auto& image : *images) all.push_back(image.size);
        return all;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "left_ptr";
};

XCursorBuilder sound() { return XCursorBuilder().image({.size = 4}); }
XCursorBuilder fourSizes() {
    return XCursorBuilder().image({.size = 24}).image({.size = 32}).image({.size = 48}).image({.size = 64});
}

TEST_F(XCursorParserTest, ReadsEveryFieldOfAnImage) {
    const auto images = parse(XCursorBuilder()
                                  .image({.size = 24,
                                          .width = 2,
                                          .height = 3,
                                          .xhot = 1,
                                          .yhot = 2,
                                          .delay = 70,
                                          .pixels = {1, 2, 3, 4, 5, 0x80402010}})
                                  .bytes());
    ASSERT_TRUE(images);
    ASSERT_THAT(*images, SizeIs(1));
    const auto& image = images->front();
    EXPECT_EQ(image.size, 24);
    EXPECT_EQ(image.width, 2);
    EXPECT_EQ(image.height, 3);
    EXPECT_EQ(image.xhot, 1);
    EXPECT_EQ(image.yhot, 2);
    EXPECT_EQ(image.delay, 70U);
    EXPECT_THAT(image.pixels.values(), ElementsAre(1, 2, 3, 4, 5, 0x80402010));
}

TEST_F(XCursorParserTest, AnswersNothingForFifteenBytes) {
    auto bytes = sound().bytes();
    bytes.resize(15);
    EXPECT_FALSE(XCursorParser::parseTOC(bytes));
    EXPECT_FALSE(parse(bytes));
    EXPECT_FALSE(parseHeaders(bytes));
}

TEST_F(XCursorParserTest, AnswersNothingForNoBytesAtAll) {
    EXPECT_FALSE(XCursorParser::parseTOC({}));
    EXPECT_FALSE(parse({}));
    EXPECT_FALSE(parseHeaders({}));
}

TEST_F(XCursorParserTest, AnswersNothingWhenTheFirstBytesAreNotXcur) {
    const auto bytes = sound().magic(0x72756359).bytes();
    EXPECT_FALSE(XCursorParser::parseTOC(bytes));
    EXPECT_FALSE(parse(bytes));
    EXPECT_FALSE(parseHeaders(bytes));
}

TEST_F(XCursorParserTest, AnswersNothingForAHeaderSizeBelowSixteen) {
    for (const std::uint32_t size : {0U, 12U, 15U}) {
        const auto bytes = sound().headerSize(size).bytes();
        EXPECT_FALSE(XCursorParser::parseTOC(bytes));
        EXPECT_FALSE(parse(bytes));
        EXPECT_FALSE(parseHeaders(bytes));
    }
}

TEST_F(XCursorParserTest, ReadsTheTableAtOffsetSixteenWhateverLargerHeaderSizeIsGiven) {
    for (const std::uint32_t size : {16U, 20U, 0xFFFFFFFFU})
        EXPECT_THAT(sizes(parse(sound().headerSize(size).bytes())), ElementsAre(4));
}

TEST_F(XCursorParserTest, AnswersNothingForAnEntryCountOfZero) {
    const auto bytes = sound().entryCount(0).bytes();
    EXPECT_FALSE(XCursorParser::parseTOC(bytes));
    EXPECT_FALSE(parse(bytes));
}

TEST_F(XCursorParserTest, IgnoresTheVersion) {
    for (const std::uint32_t version : {0U, 1U, 0xFFFFFFFFU})
        EXPECT_THAT(sizes(parse(sound().version(version).bytes())), ElementsAre(4));
}

TEST_F(XCursorParserTest, TakesTheEntriesThatFitWhenTheCountIsLarger) {
    auto bytes = XCursorBuilder()
                     .entryCount(0xFFFFFFFF)
                     .image({.size = 4, .position = 16, .written = false})
                     .image({.size = 5, .position = 28, .written = false})
                     .bytes();
    EXPECT_EQ(XCursorParser::parseTOC(bytes), (Toc{{4, 16}, {5, 28}}));
    bytes.resize(bytes.size() - 1);
    EXPECT_EQ(XCursorParser::parseTOC(bytes), (Toc{{4, 16}}));
    parse(bytes);
}

TEST_F(XCursorParserTest, ReadsPixelsAsEntriesWhenTheCountIsLargerAndStillKeepsTheImage) {
    EXPECT_THAT(sizes(parse(sound().entryCount(0xFFFFFFFF).bytes())), ElementsAre(4));
}

TEST_F(XCursorParserTest, ReadsNoEntryBeyondTheCount) {
    const auto bytes = fourSizes().entryCount(2).bytes();
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(24, 32));
}

TEST_F(XCursorParserTest, AnswersAnEmptyTableButNoImagesForAFileOfOtherEntries) {
    const auto bytes = XCursorBuilder().image({.size = 4, .type = 0xFFFE0001}).bytes();
    EXPECT_EQ(XCursorParser::parseTOC(bytes), Toc{});
    EXPECT_FALSE(parse(bytes));
    EXPECT_FALSE(parseHeaders(bytes));
}

TEST_F(XCursorParserTest, AnswersAnEmptyTableForAHeaderAlone) {
    auto bytes = sound().bytes();
    bytes.resize(16);
    EXPECT_EQ(XCursorParser::parseTOC(bytes), Toc{});
    EXPECT_FALSE(parse(bytes));
}

TEST_F(XCursorParserTest, SkipsEntriesOfOtherTypes) {
    const auto bytes = XCursorBuilder()
                           .image({.size = 2, .type = 0xFFFE0001})
                           .image({.size = 4})
                           .image({.size = 3, .type = 7})
                           .bytes();
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(4));
    // A skipped entry is not the smallest size either.
    EXPECT_THAT(sizes(parse(bytes, 1)), ElementsAre(4));
}

TEST_F(XCursorParserTest, KeepsSizesUpToTheLimit) {
    EXPECT_THAT(sizes(parse(fourSizes().bytes(), 48)), ElementsAre(24, 32, 48));
}

TEST_F(XCursorParserTest, KeepsTheSmallestSizeEvenAboveTheLimit) {
    EXPECT_THAT(sizes(parse(fourSizes().image({.size = 24}).bytes(), 16)), ElementsAre(24, 24));
    EXPECT_THAT(sizes(parse(fourSizes().bytes(), -1)), ElementsAre(24));
}

TEST_F(XCursorParserTest, KeepsEverySizeWithoutALimit) {
    EXPECT_THAT(sizes(parse(fourSizes().bytes())), ElementsAre(24, 32, 48, 64));
}

TEST_F(XCursorParserTest, TakesTheSmallestSizeFromEntriesWhoseImageIsUnusableToo) {
    const auto bytes = XCursorBuilder().image({.size = 24, .width = 0}).image({.size = 64}).bytes();
    EXPECT_FALSE(parse(bytes, 48));
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(64));
}

TEST_F(XCursorParserTest, KeepsTheOrderOfTheTableWithSizesMixed) {
    const auto bytes = XCursorBuilder()
                           .image({.size = 32, .delay = 1})
                           .image({.size = 24, .delay = 2})
                           .image({.size = 32, .delay = 3})
                           .image({.size = 24, .delay = 4})
                           .bytes();
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(32, 24, 32, 24));
}

TEST_F(XCursorParserTest, TakesTheNominalSizeFromTheTable) {
    auto bytes = XCursorBuilder().image({.size = 24, .width = 1, .height = 1}).bytes();
    bytes[20] = 25;
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(25));
}

TEST_F(XCursorParserTest, ReadsNominalSizesOfThirtyTwoBitsAsPositiveNumbers) {
    const auto bytes = XCursorBuilder().image({.size = 0xFFFFFFFF, .width = 1, .height = 1}).bytes();
    EXPECT_THAT(sizes(parse(bytes, 48)), ElementsAre(0xFFFFFFFFLL));
}

TEST_F(XCursorParserTest, SkipsAnImageOfWidthOrHeightZeroAndKeepsTheOthers) {
    const auto bytes = XCursorBuilder()
                           .image({.size = 24, .width = 0})
                           .image({.size = 32, .height = 0})
                           .image({.size = 48})
                           .bytes();
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(48));
}

TEST_F(XCursorParserTest, SkipsAnImageOfFiveThousandSquaredAndKeepsTheOthers) {
    const auto bytes =
        XCursorBuilder().image({.size = 24, .width = 5000, .height = 5000}).image({.size = 32}).bytes();
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(32));
}

TEST_F(XCursorParserTest, KeepsAnImageOfTheLargestPixelCount) {
    auto bytes = XCursorBuilder()
                     .image({.size = 24, .width = 16777216, .height = 1, .writePixels = false})
                     .image({.size = 32, .width = 16777217, .height = 1, .writePixels = false})
                     .bytes();
    bytes.resize(bytes.size() + std::size_t{4} * 16777220);
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(24));
}

TEST_F(XCursorParserTest, SkipsSidesWhoseProductOverflowsThirtyTwoBits) {
    for (const auto& [width, height] : {std::pair{0x80000000U, 2U}, std::pair{65536U, 65536U},
                                        std::pair{0xFFFFFFFFU, 0xFFFFFFFFU}, std::pair{0x40000001U, 4U}}) {
        const auto bytes = XCursorBuilder()
                               .image({.size = 24, .width = width, .height = height, .pixels = {1, 2, 3, 4}})
                               .image({.size = 32})
                               .bytes();
        EXPECT_THAT(sizes(parse(bytes)), ElementsAre(32));
    }
}

TEST_F(XCursorParserTest, SkipsAnImageWhosePixelsAreOneByteShort) {
    const auto builder = XCursorBuilder().image({.size = 32}).image({.size = 24});
    EXPECT_THAT(sizes(parse(builder.bytesCutBy(0))), ElementsAre(32, 24));
    EXPECT_THAT(sizes(parse(builder.bytesCutBy(1))), ElementsAre(32));
}

TEST_F(XCursorParserTest, AnswersNothingWhenTheOnlyImageIsCutShort) {
    EXPECT_FALSE(parse(sound().bytesCutBy(1)));
}

TEST_F(XCursorParserTest, SkipsAChunkThatStartsTooCloseToTheEnd) {
    const auto length = static_cast<std::uint32_t>(XCursorBuilder()
                                                       .image({.size = 2, .position = 0, .written = false})
                                                       .image({.size = 4})
                                                       .bytes()
                                                       .size());
    for (const std::uint32_t position : {length - 35, length, length + 1, 0xFFFFFFFFU, 0xFFFFFFDCU}) {
        const auto bytes = XCursorBuilder()
                               .image({.size = 2, .position = position, .written = false})
                               .image({.size = 4})
                               .bytes();
        EXPECT_THAT(sizes(parse(bytes)), ElementsAre(4));
        EXPECT_THAT(parseHeaders(bytes).value(), SizeIs(1));
    }
}

TEST_F(XCursorParserTest, CopiesAHotspotOutsideTheImage) {
    const auto images = parse(XCursorBuilder().image({.size = 4, .xhot = 0xFFFFFFFF, .yhot = 77}).bytes());
    ASSERT_TRUE(images);
    EXPECT_EQ(images->front().xhot, 0xFFFFFFFFLL);
    EXPECT_EQ(images->front().yhot, 77);
}

TEST_F(XCursorParserTest, CopiesADelayOfThirtyTwoBits) {
    const auto images = parse(XCursorBuilder().image({.size = 4, .delay = 0xFFFFFFFF}).bytes());
    ASSERT_TRUE(images);
    EXPECT_EQ(images->front().delay, 0xFFFFFFFFU);
}

TEST_F(XCursorParserTest, ReadsChunksThatStandAtOddPositions) {
    XCursorBuilder builder;
    for (std::uint32_t gap = 0; gap < 4; ++gap)
        builder.image({.size = 4, .delay = gap, .colour = 0xFF000000 | gap, .gapBefore = gap});
    EXPECT_THAT(sizes(parse(builder.bytes())), ElementsAre(4, 4, 4, 4));
}

TEST_F(XCursorParserTest, ReadsChunksThatOverlap) {
    // Each chunk begins inside the pixels of the one before, which is filled with a small number, so that the
    // numbers read as sides are small too.
    XCursorBuilder builder;
    builder.image({.size = 16, .colour = 2});
    const std::uint32_t first = 16 + 12 * 5;
    for (const std::uint32_t shift : {36U, 40U, 100U, 4U})
        builder.image({.size = 8, .position = first + shift, .written = false});
    const auto images = parse(builder.bytes());
    EXPECT_THAT(sizes(images), ElementsAre(16, 8, 8, 8));
}

TEST_F(XCursorParserTest, ReadsAChunkThatReachesBeyondTheNextPosition) {
    XCursorBuilder builder;
    builder.image({.size = 32, .colour = 1});
    const std::uint32_t first = 16 + 12 * 3;
    builder.image({.size = 24, .position = first + 1000, .written = false});
    builder.image({.size = 48, .delay = 9});
    EXPECT_THAT(sizes(parse(builder.bytes())), ElementsAre(32, 24, 48));
}

TEST_F(XCursorParserTest, ReadsChunksStoredInAnotherOrderThanTheTable) {
    const auto probe = XCursorBuilder().image({.size = 4}).image({.size = 5}).image({.size = 6}).bytes();
    const auto toc = XCursorParser::parseTOC(probe).value();
    const auto bytes = XCursorBuilder()
                           .image({.size = 4, .colour = 1, .position = toc[2].position})
                           .image({.size = 5, .colour = 2, .position = toc[0].position})
                           .image({.size = 6, .colour = 3, .position = toc[1].position})
                           .bytes();
    const auto images = parse(bytes);
    ASSERT_EQ(sizes(images), (std::vector<std::int64_t>{4, 5, 6}));
    EXPECT_EQ((*images)[0].width, 6);
    EXPECT_EQ((*images)[1].width, 4);
    EXPECT_EQ((*images)[2].width, 5);
}

TEST_F(XCursorParserTest, ReadsAnImageFarLargerThanItsNominalSize) {
    EXPECT_THAT(
        sizes(parse(
            XCursorBuilder().image({.size = 4, .width = 300, .height = 200}).image({.size = 5}).bytes())),
        ElementsAre(4, 5));
}

TEST_F(XCursorParserTest, ReadsAHeaderThatLiesInTheTableItself) {
    // The chunk is the file header: width and height are the first entry's type and subtype.
    const auto bytes =
        XCursorBuilder().image({.size = 0, .position = 0, .written = false}).image({.size = 4}).bytes();
    EXPECT_THAT(sizes(parse(bytes)), ElementsAre(4));
}

TEST_F(XCursorParserTest, SharesThePixelsOfManyEntriesThatReferToTheSameChunk) {
    XCursorBuilder builder;
    builder.image({.size = 64});
    const std::uint32_t position = 16 + 12 * 1000;
    for (int i = 1; i < 1000; ++i) builder.image({.size = 64, .position = position, .written = false});
    const auto images = parse(builder.bytes());
    ASSERT_TRUE(images);
    ASSERT_THAT(*images, SizeIs(1000));
    for (const auto& image : *images)
        EXPECT_EQ(image.pixels.values().data(), images->front().pixels.values().data());
}

TEST_F(XCursorParserTest, ReadsAFileWithThousandsOfOverlappingLargeChunksWithinItsOwnMemory) {
    // Read apart, these images would take 20,000 × 256 KB = 5 GB.
    constexpr std::uint32_t kChunks = 20'000;
    constexpr std::uint32_t kSide = 256;
    const std::uint32_t body = 16 + 12 * (kChunks + 1);
    XCursorBuilder builder;
    builder.image({.size = kSide,
                   .width = 1,
                   .height = 1,
                   .pixels = std::vector<std::uint32_t>(kChunks + 10 + kSide * kSide, kSide)});
    for (std::uint32_t i = 0; i < kChunks; ++i)
        builder.image({.size = kSide, .position = body + 36 + 4 * i, .written = false});
    const auto bytes = builder.bytes();
    const auto images = XCursorParser::parse(bytes, std::nullopt);
    ASSERT_TRUE(images);
    ASSERT_THAT(*images, SizeIs(kChunks + 1));
    const std::uint32_t* first = images->front().pixels.values().data();
    const std::uint32_t* end = first;
    for (const auto& image : *images) {
        const auto pixels = image.pixels.values();
        ASSERT_EQ(image.width * image.height, static_cast<std::int64_t>(pixels.size()));
        ASSERT_EQ(pixels.size(), &image == &images->front() ? 1 : std::size_t{kSide} * kSide);
        first = std::min(first, pixels.data());
        end = std::max(end, pixels.data() + pixels.size());
    }
    EXPECT_LE(static_cast<std::size_t>(end - first), bytes.size());
}

TEST_F(XCursorParserTest, ImagesOutliveTheBytesTheyWereReadFrom) {
    auto bytes = std::make_unique<Bytes>(XCursorBuilder().image({.size = 2, .colour = 5}).bytes());
    const auto images = XCursorParser::parse(*bytes, std::nullopt);
    bytes.reset();
    ASSERT_TRUE(images);
    EXPECT_THAT(images->front().pixels.values(), ElementsAre(5, 5, 5, 5));
}

TEST_F(XCursorParserTest, AnswersNothingForAFileThatIsNotThere) {
    EXPECT_FALSE(XCursorParser::parseFile(folder.path() / "nothing", std::nullopt));
    EXPECT_FALSE(XCursorParser::parseHeaders(folder.path() / "nothing"));
}

TEST_F(XCursorParserTest, AnswersNothingForAFolder) {
    EXPECT_FALSE(XCursorParser::parseFile(folder.path(), std::nullopt));
    EXPECT_FALSE(XCursorParser::parseHeaders(folder.path()));
}

TEST_F(XCursorParserTest, AnswersNothingForANamedPipeWithoutWaiting) {
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(XCursorParser::parseFile(pipe, std::nullopt));
    EXPECT_FALSE(XCursorParser::parseHeaders(pipe));
}

TEST_F(XCursorParserTest, AnswersNothingForAFileThatMayNotBeRead) {
    writeFile(file, sound().bytes());
    std::filesystem::permissions(file, std::filesystem::perms::none);
    const AsNobody rights(folder.path());
    EXPECT_FALSE(XCursorParser::parseFile(file, std::nullopt));
}

TEST_F(XCursorParserTest, FollowsALinkToAFile) {
    writeFile(file, sound().bytes());
    std::filesystem::create_symlink("left_ptr", folder.path() / "arrow");
    EXPECT_THAT(sizes(XCursorParser::parseFile(folder.path() / "arrow", std::nullopt)), ElementsAre(4));
}

TEST_F(XCursorParserTest, ReadsATableLongerThanTheBlocksItIsReadIn) {
    XCursorBuilder builder;
    std::vector<std::int64_t> expected;
    for (std::uint32_t i = 0; i < 3000; ++i) {
        builder.image({.size = i % 7 + 1, .width = 1, .height = 1, .delay = i, .colour = i});
        expected.push_back(i % 7 + 1);
    }
    EXPECT_THAT(sizes(parse(builder.bytes())), ElementsAreArray(expected));
}

TEST_F(XCursorParserTest, HeadersGiveSizeAndDelayOfEveryImageInOrder) {
    const auto headers = parseHeaders(XCursorBuilder()
                                          .image({.size = 32, .delay = 50})
                                          .image({.size = 24})
                                          .image({.size = 32, .delay = 70})
                                          .bytes());
    EXPECT_EQ(headers, (std::vector<XCursorParser::Header>{{32, 50}, {24, 0}, {32, 70}}));
}

TEST_F(XCursorParserTest, HeadersReportAChunkWhosePixelsAreMissing) {
    const auto builder = XCursorBuilder().image({.size = 32, .delay = 50, .writePixels = false});
    EXPECT_EQ(parseHeaders(builder.bytes()), (std::vector<XCursorParser::Header>{{32, 50}}));
    EXPECT_FALSE(parse(builder.bytes()));
    EXPECT_FALSE(parseHeaders(builder.bytesCutBy(1)));
}

TEST_F(XCursorParserTest, HeadersReportImagesOfAnyPixelCountAndSize) {
    const auto headers =
        parseHeaders(XCursorBuilder()
                         .image({.size = 4, .width = 0, .delay = 1})
                         .image({.size = 200, .width = 9999, .height = 9999, .delay = 2, .pixels = {1}})
                         .bytes());
    EXPECT_EQ(headers, (std::vector<XCursorParser::Header>{{4, 1}, {200, 2}}));
}

}  // namespace
}  // namespace pintle
