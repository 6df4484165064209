#include "apply/system_cursor_changer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apply/cursor_identifiers.h"
#include "tests/support/cursor_sets.h"
#include "tests/support/test_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using Function = WindowServerFunction;

constexpr const char* kArrow = "com.apple.coregraphics.Arrow";

struct ChangerTest : testing::Test {
    TestWorld world;
    CursorSnapshots snapshots{world.windowServer, world.images, world.propertyLists, world.log,
                              world.directories};
    SystemCursorChanger changer{world.windowServer, snapshots, world.log};

    std::vector<PreloadedCursor> wholeTheme() {
        std::vector<PreloadedCursor> cursors;
        for (const auto& row : cursorIdentifiers())
            cursors.push_back(stillCursor(std::string(row.candidates().front())));
        return cursors;
    }
    /// Names the calls, registrations by their identifier.
    std::vector<std::string> transcript() {
        std::vector<std::string> names;
        for (const auto& call : world.windowServer.calls) switch (call.function) {
                case Function::mainConnectionID:
                    names.emplace_back("connection");
                    break;
                case Function::coreCursorUnregisterAll:
                    names.emplace_back("unregisterAll");
                    break;
                case Function::copyRegisteredCursorImages:
                    names.push_back("copy " + call.identifier);
                    break;
                case Function::registerCursorWithImages:
                    names.push_back((call.purpose == RegistrationPurpose::original ? "original " : "theme ") +
                                    call.identifier);
                    break;
            }
        return names;
    }
    void giveDesktopArrow(double side) {
        world.windowServer.desktopCursors[kArrow] = {
            kArrow, {plainBitmap(static_cast<int>(side), static_cast<int>(side), 200)}, {side, side}, {}, 1,
            0};
    }
};

TEST_F(ChangerTest, StartsInactiveWithNothingApplied) {
    EXPECT_FALSE(changer.isActive());
    EXPECT_TRUE(changer.lastApplied().empty());
    EXPECT_FALSE(changer.suspendedForExcludedApp());
    EXPECT_TRUE(changer.snapshots().empty());
}

TEST_F(ChangerTest, WithoutTheFunctionsReturnsFalseAndChangesNothing) {
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr")}));
    const auto before = changer.lastApplied();
    for (const auto function : {Function::mainConnectionID, Function::registerCursorWithImages}) {
        world.windowServer.missing = {function};
        world.windowServer.calls.clear();
        world.log.systemLines.clear();
        EXPECT_FALSE(changer.applyPreloaded({stillCursor("arrow")}));
        EXPECT_TRUE(world.windowServer.calls.empty());
        EXPECT_THAT(world.log.systemLines, ElementsAre("[SystemCursorChanger] CGS symbols unavailable"));
        EXPECT_TRUE(changer.isActive());
        EXPECT_EQ(changer.lastApplied(), before);
    }
}

TEST_F(ChangerTest, RefusesAThemeWithoutAnArrowAndChangesNothing) {
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr")}));
    const auto before = changer.lastApplied();
    const auto registered = world.windowServer.registered;
    world.windowServer.calls.clear();
    world.log.systemLines.clear();
    const std::vector<std::vector<PreloadedCursor>> themes = {{}, {stillCursor("xterm")}};
    for (const auto& theme : themes) {
        EXPECT_FALSE(changer.applyPreloaded(theme));
        EXPECT_EQ(world.log.systemLines.back(),
                  "[SystemCursorChanger] No arrow cursor in theme - refusing partial apply");
    }
    EXPECT_THAT(transcript(), ElementsAre("connection", "connection"));
    EXPECT_TRUE(changer.isActive());
    EXPECT_EQ(changer.lastApplied(), before);
    EXPECT_EQ(world.windowServer.registered, registered);
}

TEST_F(ChangerTest, CapturesThenUnregistersThenWalksAllRowsInOrder) {
    giveDesktopArrow(30);
    EXPECT_TRUE(changer.applyPreloaded(wholeTheme()));
    std::vector<std::string> expected = {"connection", "connection"};
    for (const auto& row : backedUpIdentifiers()) expected.push_back("copy " + std::string(row.identifier));
    expected.emplace_back("unregisterAll");
    for (const auto& row : cursorIdentifiers()) expected.push_back("theme " + std::string(row.identifier));
    EXPECT_EQ(transcript(), expected);
    EXPECT_THAT(world.windowServer.connectionsUsed, ElementsAre(world.windowServer.connection));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Saved original cursor backup (1 entries)",
                            "[SystemCursorChanger] Registered 46 system cursor identifiers"));
    EXPECT_TRUE(changer.isActive());
    EXPECT_EQ(changer.lastApplied().size(), 46u);
}

TEST_F(ChangerTest, RegistersPictureSizeHotspotFrameCountAndDuration) {
    auto cursor = animatedCursor("left_ptr", 3, 0.25, 6);
    cursor.hotspot = {4.5, 7.5};
    ASSERT_TRUE(changer.applyPreloaded({cursor}));
    const auto& arrow = world.windowServer.registered.at(kArrow);
    ASSERT_EQ(arrow.images.size(), 1u);
    EXPECT_EQ(arrow.images[0].height(), 18);
    EXPECT_EQ(arrow.size, (Size{6, 6}));
    EXPECT_EQ(arrow.hotspot, (Point{4.5, 7.5}));
    EXPECT_EQ(arrow.frameCount, 3u);
    EXPECT_EQ(arrow.frameDuration, 0.25);
}

TEST_F(ChangerTest, SkipsAnIdentifierThatFailsAndAcceptsTheRest) {
    world.windowServer.registerErrors["com.apple.coregraphics.ArrowS"] = 1001;
    EXPECT_TRUE(changer.applyPreloaded({stillCursor("left_ptr"), stillCursor("xterm")}));
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] register com.apple.coregraphics.ArrowS failed: 1001"));
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Registered 4 system cursor identifiers"));
    EXPECT_EQ(changer.lastApplied().size(), 4u);
    EXPECT_EQ(changer.lastApplied()[1].identifier, "com.apple.coregraphics.IBeam");
}

TEST_F(ChangerTest, AnIdentifierThatThePlatformSkipsIsNeitherCountedNorKeptNorLogged) {
    world.windowServer.unusable = {"com.apple.coregraphics.ArrowS"};
    EXPECT_TRUE(changer.applyPreloaded({stillCursor("left_ptr"), stillCursor("xterm")}));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Registered 4 system cursor identifiers"));
    std::vector<std::string> kept;
    for (const auto& image : changer.lastApplied()) kept.push_back(image.identifier);
    EXPECT_THAT(kept, ElementsAre(kArrow, "com.apple.coregraphics.IBeam", "com.apple.coregraphics.IBeamS",
                                  "com.apple.coregraphics.IBeamXOR"));
}

TEST_F(ChangerTest, ASkippedArrowRollsBackWithoutALineOfItsOwn) {
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr", 10)}));
    const auto before = changer.lastApplied();
    world.windowServer.unusable = {kArrow};
    world.log.systemLines.clear();
    EXPECT_FALSE(changer.applyPreloaded({stillCursor("left_ptr", 20), stillCursor("xterm")}));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Arrow registration failed - rolled back"));
    EXPECT_THAT(world.windowServer.registered, testing::IsEmpty());
    EXPECT_FALSE(changer.isActive());
    EXPECT_EQ(changer.lastApplied(), before);
}

TEST_F(ChangerTest, AReapplyPassesOverWhatThePlatformSkips) {
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr")}));
    world.windowServer.unusable = {kArrow};
    world.log.systemLines.clear();
    changer.applyRegistered(changer.lastApplied());
    EXPECT_FALSE(world.windowServer.registered.contains(kArrow));
    EXPECT_TRUE(world.windowServer.registered.contains("com.apple.coregraphics.ArrowS"));
    EXPECT_TRUE(changer.isActive());
    EXPECT_THAT(world.log.systemLines, testing::IsEmpty());
}

TEST_F(ChangerTest, RollsBackWhenTheArrowFailsWhileOthersSucceed) {
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr", 10)}));
    const auto before = changer.lastApplied();
    world.windowServer.registerErrors[kArrow] = -5;
    world.windowServer.calls.clear();
    world.log.systemLines.clear();

    EXPECT_FALSE(changer.applyPreloaded({stillCursor("left_ptr", 11), stillCursor("wait")}));

    EXPECT_THAT(
        transcript(),
        ElementsAre("connection", "connection", testing::StartsWith("copy"), testing::StartsWith("copy"),
                    testing::StartsWith("copy"), testing::StartsWith("copy"), testing::StartsWith("copy"),
                    testing::StartsWith("copy"), testing::StartsWith("copy"), testing::StartsWith("copy"),
                    testing::StartsWith("copy"), testing::StartsWith("copy"), "unregisterAll",
                    "theme com.apple.coregraphics.Arrow", "theme com.apple.coregraphics.ArrowS",
                    "theme com.apple.coregraphics.Wait", "unregisterAll"));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] register com.apple.coregraphics.Arrow failed: -5",
                            "[SystemCursorChanger] Arrow registration failed - rolled back"));
    EXPECT_FALSE(changer.isActive());
    EXPECT_EQ(changer.lastApplied(), before);
    EXPECT_TRUE(world.windowServer.registered.empty());
}

TEST_F(ChangerTest, RollsBackAThemeOfWhichNothingCanBeRegistered) {
    for (const auto& row : cursorIdentifiers())
        world.windowServer.registerErrors[std::string(row.identifier)] = 1;
    EXPECT_FALSE(changer.applyPreloaded({stillCursor("left_ptr"), stillCursor("of-no-row")}));
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Arrow registration failed - rolled back"));
    EXPECT_TRUE(changer.lastApplied().empty());
}

TEST_F(ChangerTest, GoesOnWithoutTheUnregisterFunction) {
    world.windowServer.missing = {Function::coreCursorUnregisterAll};
    EXPECT_TRUE(changer.applyPreloaded({stillCursor("left_ptr")}));
    EXPECT_EQ(world.windowServer.count(Function::coreCursorUnregisterAll), 0u);
    world.windowServer.registerErrors[kArrow] = 1;
    EXPECT_FALSE(changer.applyPreloaded({stillCursor("left_ptr")}));
    EXPECT_FALSE(changer.isActive());
}

TEST_F(ChangerTest, IgnoresTheAnswerOfTheUnregisterFunctionWhileApplying) {
    world.windowServer.unregisterError = 9;
    EXPECT_TRUE(changer.applyPreloaded({stillCursor("left_ptr")}));
}

TEST_F(ChangerTest, RegistersKeptRecordsAgainIgnoringErrorsWithoutALogLine) {
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr"), stillCursor("wait")}));
    const auto kept = changer.lastApplied();
    changer.forgetApplied();
    world.windowServer.registerErrors[kArrow] = 3;
    world.windowServer.calls.clear();
    world.log.systemLines.clear();

    changer.applyRegistered(kept);

    EXPECT_THAT(transcript(),
                ElementsAre("connection", "unregisterAll", "theme com.apple.coregraphics.Arrow",
                            "theme com.apple.coregraphics.ArrowS", "theme com.apple.coregraphics.Wait"));
    EXPECT_TRUE(changer.isActive());
    EXPECT_TRUE(changer.lastApplied().empty());
    EXPECT_TRUE(world.log.systemLines.empty());
    EXPECT_EQ(world.windowServer.registered.at("com.apple.coregraphics.Wait"), kept[2].toRegisteredCursor());
}

TEST_F(ChangerTest, DoesNotRegisterKeptRecordsWithoutTheFunctions) {
    world.windowServer.missing = {Function::registerCursorWithImages};
    changer.applyRegistered({});
    EXPECT_FALSE(changer.isActive());
    EXPECT_TRUE(world.windowServer.calls.empty());
}

TEST_F(ChangerTest, RestoresByUnregisteringCapturingAndRegisteringTheOriginals) {
    giveDesktopArrow(30);
    ASSERT_TRUE(changer.applyPreloaded({stillCursor("left_ptr")}));
    world.windowServer.calls.clear();
    world.log.systemLines.clear();
    world.windowServer.unregisterError = 12;

    changer.restoreSystemState();

    EXPECT_THAT(transcript(), ElementsAre("connection", "unregisterAll", "connection",
                                          "original com.apple.coregraphics.Arrow"));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Restored 1 original coregraphics cursors",
                            "[SystemCursorChanger] Unregistered all custom cursors (err=12)"));
    EXPECT_TRUE(changer.isActive());
    EXPECT_FALSE(changer.lastApplied().empty());

    changer.forgetApplied();
    EXPECT_FALSE(changer.isActive());
    EXPECT_TRUE(changer.lastApplied().empty());
    EXPECT_FALSE(changer.suspendedForExcludedApp());
}

TEST_F(ChangerTest, RestoresWithoutASnapshotByCapturingFirst) {
    giveDesktopArrow(24);
    changer.restoreSystemState();
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Saved original cursor backup (1 entries)",
                            "[SystemCursorChanger] Restored 1 original coregraphics cursors",
                            "[SystemCursorChanger] Unregistered all custom cursors (err=0)"));
}

TEST_F(ChangerTest, DoesNotRestoreWithoutTheFunctions) {
    for (const auto function : {Function::mainConnectionID, Function::coreCursorUnregisterAll}) {
        world.windowServer.missing = {function};
        changer.restoreSystemState();
    }
    EXPECT_TRUE(world.windowServer.calls.empty());
    EXPECT_TRUE(world.log.systemLines.empty());
}

}  // namespace
}  // namespace pintle
