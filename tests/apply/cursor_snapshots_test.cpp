#include "apply/cursor_snapshots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apply/cursor_identifiers.h"
#include "tests/support/cursor_sets.h"
#include "tests/support/test_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Function = WindowServerFunction;

constexpr const char* kArrow = "com.apple.coregraphics.Arrow";
constexpr const char* kWait = "com.apple.coregraphics.Wait";
constexpr const char* kThemed = "[SystemCursorChanger] Snapshot looks already themed - not persisting";

struct SnapshotsTest : testing::Test {
    TestWorld world;
    const std::filesystem::path file =
        world.directories.applicationSupport / "Pintle" / "system_cursor_backup.plist";

    CursorSnapshots make() {
        return {world.windowServer, world.images, world.propertyLists, world.log, world.directories};
    }
    void giveDesktop(const std::string& identifier, Size size, std::vector<Bitmap> images) {
        world.windowServer.desktopCursors[identifier] = {identifier, std::move(images), size, {3, 4}, 2,
                                                         0.125};
    }
    void giveDesktopArrow(double side = 24) { giveDesktop(kArrow, {side, side}, {plainBitmap(24, 48, 9)}); }
    void writeBackup(const PropertyValue& value) {
        writeFile(file, *world.propertyLists.encode(value, PropertyListFormat::binary));
    }
    std::optional<PropertyValue> readBackup() {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<std::uint8_t> bytes(std::istreambuf_iterator<char>(stream), {});
        return world.propertyLists.decode(bytes);
    }
    std::size_t copies() { return world.windowServer.count(Function::copyRegisteredCursorImages); }
};

TEST_F(SnapshotsTest, CapturesTheTenBasicCursorsInOrder) {
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    std::vector<std::string> asked;
    for (const auto& call : world.windowServer.calls)
        if (call.function == Function::copyRegisteredCursorImages) asked.push_back(call.identifier);
    std::vector<std::string> expected;
    for (const auto& row : backedUpIdentifiers()) expected.emplace_back(row.identifier);
    EXPECT_EQ(asked, expected);
    EXPECT_EQ(world.windowServer.count(Function::mainConnectionID), 1u);
}

TEST_F(SnapshotsTest, KeepsWhatTheWindowServerReported) {
    giveDesktop(kWait, {16, 20}, {plainBitmap(16, 20, 1), plainBitmap(16, 20, 2)});
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    ASSERT_EQ(snapshots.snapshots().size(), 1u);
    const auto& snapshot = snapshots.snapshots().at(kWait);
    EXPECT_EQ(snapshot.size, (Size{16, 20}));
    EXPECT_EQ(snapshot.hotspot, (Point{3, 4}));
    EXPECT_EQ(snapshot.frameCount, 2u);
    EXPECT_EQ(snapshot.frameDuration, 0.125);
    ASSERT_EQ(snapshot.pngReps.size(), 2u);
    EXPECT_EQ(world.images.decodePng(snapshot.pngReps[1]), plainBitmap(16, 20, 2));
}

TEST_F(SnapshotsTest, WritesABinaryPropertyListWithTheFiveKeysAndTheirTypes) {
    giveDesktopArrow();
    make().snapshotOriginalsIfNeeded(Size{32, 32});
    EXPECT_EQ(world.propertyLists.lastFormat, PropertyListFormat::binary);
    const auto root = readBackup();
    ASSERT_TRUE(root);
    const PropertyDictionary expected = {
        {kArrow, PropertyDictionary{
                     {"size", PropertyArray{24.0, 24.0}},
                     {"hotspot", PropertyArray{3.0, 4.0}},
                     {"frameCount", std::int64_t{2}},
                     {"frameDuration", 0.125},
                     {"pngReps", PropertyArray{*world.images.encodePng(plainBitmap(24, 48, 9))}},
                 }}};
    EXPECT_EQ(*root, PropertyValue(expected));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Saved original cursor backup (1 entries)"));
}

TEST_F(SnapshotsTest, LeavesNoOtherFileBesideTheBackup) {
    giveDesktopArrow();
    make().snapshotOriginalsIfNeeded(std::nullopt);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
        EXPECT_EQ(entry.path(), file);
        ++files;
    }
    EXPECT_EQ(files, 1u);
}

TEST_F(SnapshotsTest, ReadsBackExactlyWhatWasWritten) {
    giveDesktopArrow();
    auto first = make();
    first.snapshotOriginalsIfNeeded(std::nullopt);
    auto second = make();
    const auto asked = copies();
    second.snapshotOriginalsIfNeeded(Size{24, 24});
    EXPECT_EQ(second.snapshots(), first.snapshots());
    EXPECT_EQ(copies(), asked);
    EXPECT_FALSE(world.log.has(kThemed));
}

TEST_F(SnapshotsTest, ASecondCallInOneProcessReturnsAtOnce) {
    giveDesktopArrow();
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(Size{32, 32});
    const auto calls = world.windowServer.calls.size();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_EQ(world.windowServer.calls.size(), calls);
    EXPECT_EQ(world.log.systemLines.size(), 1u);
}

TEST_F(SnapshotsTest, ASecondCallReturnsAtOnceAlsoAfterAThemedCapture) {
    giveDesktopArrow(32);
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(Size{32, 32});
    const auto calls = world.windowServer.calls.size();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_EQ(world.windowServer.calls.size(), calls);
    EXPECT_THAT(world.log.systemLines, ElementsAre(kThemed));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(SnapshotsTest, AThemeArrowOfExactlyTheDesktopsSizeIsJudgedThemedAndNotPersisted) {
    giveDesktopArrow(32);
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(Size{32, 32});
    EXPECT_TRUE(world.log.has(kThemed));
    EXPECT_EQ(snapshots.snapshots().size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(SnapshotsTest, TheThemedCheckHasNoToleranceAndNeedsBothSides) {
    for (const Size size : {Size{32.000001, 32}, Size{32, 31}, Size{31, 32}}) {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
        world.log.systemLines.clear();
        giveDesktopArrow(32);
        make().snapshotOriginalsIfNeeded(size);
        EXPECT_FALSE(world.log.has(kThemed));
        EXPECT_TRUE(std::filesystem::exists(file));
    }
}

TEST_F(SnapshotsTest, TheThemedCheckIsSkippedWithoutACapturedArrow) {
    giveDesktop(kWait, {32, 32}, {plainBitmap(32, 32, 1)});
    make().snapshotOriginalsIfNeeded(Size{32, 32});
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(SnapshotsTest, WithoutAThemeSizeAFreshCaptureIsAlwaysPersisted) {
    giveDesktopArrow(32);
    make().snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(SnapshotsTest, AnEmptyCaptureWritesAndLogsNothing) {
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_TRUE(snapshots.snapshots().empty());
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(SnapshotsTest, SkipsIdentifiersWithAnErrorOrWithoutImages) {
    giveDesktopArrow();
    giveDesktop(kWait, {16, 16}, {});
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_EQ(snapshots.snapshots().size(), 1u);
    EXPECT_TRUE(snapshots.snapshots().contains(kArrow));
}

TEST_F(SnapshotsTest, ImagesThatDoNotEncodeAreLeftOut) {
    giveDesktopArrow();
    world.images.encodingFails = true;
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_TRUE(snapshots.snapshots().empty());
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(SnapshotsTest, WithoutTheFunctionsNothingIsCapturedSilently) {
    giveDesktopArrow();
    for (const auto function : {Function::mainConnectionID, Function::copyRegisteredCursorImages}) {
        world.windowServer.missing = {function};
        auto snapshots = make();
        snapshots.snapshotOriginalsIfNeeded(std::nullopt);
        EXPECT_TRUE(snapshots.snapshots().empty());
    }
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(SnapshotsTest, ABackupOfAnEmptyDictionaryCountsAsAbsentAndIsOverwritten) {
    writeBackup(PropertyDictionary{});
    giveDesktopArrow();
    make().snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_EQ(readBackup()->as<PropertyDictionary>()->size(), 1u);
}

TEST_F(SnapshotsTest, ACorruptBackupIsReplacedByAFreshCapture) {
    writeFile(file, "no property list");
    giveDesktopArrow();
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_EQ(snapshots.snapshots().size(), 1u);
    EXPECT_EQ(readBackup()->as<PropertyDictionary>()->size(), 1u);
}

TEST_F(SnapshotsTest, ACorruptBackupStaysWhenTheCaptureLooksThemed) {
    writeFile(file, "no property list");
    giveDesktopArrow(32);
    make().snapshotOriginalsIfNeeded(Size{32, 32});
    EXPECT_EQ(std::filesystem::file_size(file), 16u);
}

TEST_F(SnapshotsTest, AFolderInTheBackupsPlaceIsNoBackup) {
    std::filesystem::create_directories(file);
    giveDesktopArrow();
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_EQ(snapshots.snapshots().size(), 1u);
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Saved original cursor backup (1 entries)"));
}

TEST_F(SnapshotsTest, AFailedWriteIsSwallowed) {
    writeFile(world.directories.applicationSupport, "a file where the folder should be");
    giveDesktopArrow();
    make().snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Saved original cursor backup (1 entries)"));
}

TEST_F(SnapshotsTest, AFailedEncodingWritesAndLogsNothing) {
    giveDesktopArrow();
    world.propertyLists.encodingFails = true;
    make().snapshotOriginalsIfNeeded(std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST_F(SnapshotsTest, RestoreRegistersEachEntryAsAnOriginalWithAllItsImages) {
    giveDesktop(kWait, {16, 20}, {plainBitmap(16, 20, 1), plainBitmap(16, 20, 2)});
    giveDesktopArrow();
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    snapshots.restoreOriginals();
    ASSERT_EQ(world.windowServer.registrations.size(), 2u);
    const auto& wait = world.windowServer.registered.at(kWait);
    EXPECT_EQ(wait,
              (RegisteredCursor{
                  kWait, {plainBitmap(16, 20, 1), plainBitmap(16, 20, 2)}, {16, 20}, {3, 4}, 2, 0.125}));
    EXPECT_EQ(world.windowServer.purposes.at(kWait), RegistrationPurpose::original);
    EXPECT_EQ(world.windowServer.purposes.at(kArrow), RegistrationPurpose::original);
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Restored 2 original coregraphics cursors"));
}

TEST_F(SnapshotsTest, RestoreDropsBlobsThatDoNotDecodeAndCountsEntries) {
    const auto entry = [&](PropertyArray files) {
        return PropertyDictionary{{"size", PropertyArray{24.0, 24.0}},
                                  {"hotspot", PropertyArray{0.0, 0.0}},
                                  {"frameCount", std::int64_t{1}},
                                  {"frameDuration", 0.0},
                                  {"pngReps", std::move(files)}};
    };
    const PropertyData broken = {1, 2, 3};
    writeBackup(PropertyDictionary{{kArrow, entry({broken, *world.images.encodePng(plainBitmap(24, 24, 8))})},
                                   {kWait, entry({broken})}});
    world.windowServer.registerErrors[kArrow] = 44;
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    snapshots.restoreOriginals();
    EXPECT_THAT(world.windowServer.registeredIdentifiers(), ElementsAre(kArrow));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Restored 2 original coregraphics cursors"));
}

TEST_F(SnapshotsTest, RestorePassesOverAnEntryWhoseImagesThePlatformSkipsAndCountsIt) {
    giveDesktop(kWait, {16, 20}, {plainBitmap(16, 20, 1)});
    giveDesktopArrow();
    auto snapshots = make();
    snapshots.snapshotOriginalsIfNeeded(std::nullopt);
    world.log.systemLines.clear();
    world.windowServer.unusable = {kWait};
    snapshots.restoreOriginals();
    EXPECT_TRUE(world.windowServer.registered.contains(kArrow));
    EXPECT_FALSE(world.windowServer.registered.contains(kWait));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Restored 2 original coregraphics cursors"));
}

TEST_F(SnapshotsTest, RestoreWithAnEmptyMapLogsZero) {
    make().restoreOriginals();
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Restored 0 original coregraphics cursors"));
}

TEST_F(SnapshotsTest, RestoreWithoutTheFunctionsIsSilent) {
    for (const auto function : {Function::mainConnectionID, Function::registerCursorWithImages}) {
        world.windowServer.missing = {function};
        make().restoreOriginals();
    }
    EXPECT_THAT(world.log.systemLines, IsEmpty());
}

TEST(SnapshotDecoding, RejectsTheWholeFileForAnyMissingOrIllTypedField) {
    const PropertyDictionary good = {{"size", PropertyArray{24.0, 24.0}},
                                     {"hotspot", PropertyArray{1.0, 2.0}},
                                     {"frameCount", std::int64_t{1}},
                                     {"frameDuration", 0.5},
                                     {"pngReps", PropertyArray{PropertyData{1}}}};
    ASSERT_TRUE(decodeSnapshots(PropertyDictionary{{"a", good}}));
    for (const auto& [key, value] : good) {
        auto missing = good;
        missing.erase(key);
        EXPECT_FALSE(decodeSnapshots(PropertyDictionary{{"a", good}, {"b", missing}})) << key;
        auto illTyped = good;
        illTyped.insert_or_assign(key, "text");
        EXPECT_FALSE(decodeSnapshots(PropertyDictionary{{"a", good}, {"b", illTyped}})) << key;
    }
    auto bad = good;
    bad.insert_or_assign("size", PropertyArray{24.0});
    EXPECT_FALSE(decodeSnapshots(PropertyDictionary{{"a", bad}}));
    bad = good;
    bad.insert_or_assign("frameCount", std::int64_t{-1});
    EXPECT_FALSE(decodeSnapshots(PropertyDictionary{{"a", bad}}));
    bad = good;
    bad.insert_or_assign("pngReps", PropertyArray{PropertyData{1}, 2});
    EXPECT_FALSE(decodeSnapshots(PropertyDictionary{{"a", bad}}));
    EXPECT_FALSE(decodeSnapshots(PropertyDictionary{{"a", 1}}));
    EXPECT_FALSE(decodeSnapshots(PropertyArray{}));
}

TEST(SnapshotDecoding, AcceptsWholeNumbersForReals) {
    const auto snapshots =
        decodeSnapshots(PropertyDictionary{{"a", PropertyDictionary{{"size", PropertyArray{24, 25.0}},
                                                                    {"hotspot", PropertyArray{1, 2}},
                                                                    {"frameCount", 3.0},
                                                                    {"frameDuration", 0},
                                                                    {"pngReps", PropertyArray{}}}}});
    ASSERT_TRUE(snapshots);
    EXPECT_EQ(snapshots->at("a"), (CursorSnapshot{{24, 25}, {1, 2}, 3, 0, {}}));
}

TEST(SnapshotEncoding, RefusesAFrameCountThatNoPropertyListHolds) {
    EXPECT_FALSE(encodeSnapshots({{"a", {{}, {}, ~std::uint64_t{0}, 0, {}}}}));
}

}  // namespace
}  // namespace pintle
