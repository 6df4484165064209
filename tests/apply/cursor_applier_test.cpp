#include "apply/cursor_applier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apply/null_overlay.h"
#include "tests/support/cursor_sets.h"
#include "tests/support/fake_overlay.h"
#include "tests/support/test_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ApplierTest : testing::Test {
    TestWorld world;
    CursorSnapshots snapshots{world.windowServer, world.images, world.propertyLists, world.log,
                              world.directories};
    SystemCursorChanger changer{world.windowServer, snapshots, world.log};
    FakeOverlay overlay;
    CursorApplier applier{world.hardwareCursor, changer, overlay, world.log};
    CursorApplier inProcess{world.hardwareCursor, changer, overlay, world.log,
                            CursorApplier::Fallback::inProcess};

    void refuseRegistration() {
        world.windowServer.missing = {WindowServerFunction::registerCursorWithImages};
    }
    DesktopCursor standard(StandardCursor which) { return world.hardwareCursor.standardCursor(which); }
    const FakeHardwareCursor::FakeObject& objectOf(const DesktopCursor& cursor) {
        return static_cast<const FakeHardwareCursor::FakeObject&>(cursor.object());
    }
};

TEST_F(ApplierTest, KeepsTheLaterOfTwoEntriesWithOneNameAndCountsOne) {
    applier.applyCursorsFromPreloaded({stillCursor("left_ptr", 8, 1), stillCursor("left_ptr", 9, 2)}, 1.0);
    ASSERT_EQ(applier.appliedCursors().size(), 1u);
    EXPECT_EQ(objectOf(*applier.cursor("left_ptr")).image, plainBitmap(9, 9, 2));
    EXPECT_TRUE(world.log.has("[CursorApplier] Applied 1 pre-loaded cursors at scale 1.0"));
}

TEST_F(ApplierTest, MakesCursorObjectsFromImageAndHotspot) {
    applier.applyCursorsFromPreloaded({stillCursor("wait")}, 1.5);
    EXPECT_EQ(objectOf(*applier.cursor("wait")).hotspot, (Point{1.5, 2.5}));
    EXPECT_EQ(applier.currentScale(), 1.5);
    EXPECT_FALSE(applier.cursor("xterm"));
}

TEST_F(ApplierTest, AnotherSetReplacesTheFirstWhole) {
    applier.applyCursorsFromPreloaded({stillCursor("left_ptr"), stillCursor("wait")}, 1.0);
    applier.applyCursorsFromPreloaded({stillCursor("left_ptr")}, 0.75);
    EXPECT_EQ(applier.appliedCursors().size(), 1u);
    EXPECT_TRUE(world.log.has("[CursorApplier] Applied 1 pre-loaded cursors at scale 0.75"));
}

TEST_F(ApplierTest, RegistrationStopsARunningOverlayAndIsLoggedAfterTheAppliedLine) {
    overlay.active = true;
    EXPECT_TRUE(applier.applyCursorsFromPreloaded({stillCursor("left_ptr")}, 1.5));
    EXPECT_THAT(overlay.calls, ElementsAre("deactivate", "showSystemCursorGuaranteed", "destroyWindows"));
    EXPECT_FALSE(overlay.active);
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[CursorApplier] Applied 1 pre-loaded cursors at scale 1.5",
                            "[SystemCursorChanger] Registered 2 system cursor identifiers",
                            "[CursorApplier] System-wide registration active"));
}

TEST_F(ApplierTest, FailedRegistrationStartsTheOverlayAndSucceedsEvenForAnEmptyList) {
    EXPECT_TRUE(applier.applyCursorsFromPreloaded({}, 1.0));
    EXPECT_THAT(overlay.calls, ElementsAre("loadCursorsFromPreloaded", "start"));
    EXPECT_FALSE(world.log.has("[CursorApplier] System-wide registration active"));
}

TEST_F(ApplierTest, FailedRegistrationRefreshesAnOverlayThatRuns) {
    refuseRegistration();
    applier.applyCursorsFromPreloaded({stillCursor("left_ptr")}, 1.0);
    overlay.calls.clear();
    EXPECT_TRUE(applier.applyCursorsFromPreloaded({stillCursor("wait")}, 1.25));
    EXPECT_THAT(overlay.calls, ElementsAre("loadCursorsFromPreloaded", "updateOverlayWindows"));
    ASSERT_EQ(overlay.loaded.size(), 1u);
    EXPECT_EQ(overlay.loaded[0].name, "wait");
    EXPECT_EQ(overlay.scale, 1.25);
    EXPECT_FALSE(applier.isSwizzled());
}

TEST_F(ApplierTest, ResetRestoresTheDesktopStopsTheOverlayAndEmptiesTheMaps) {
    ASSERT_TRUE(applier.applyCursorsFromPreloaded({stillCursor("left_ptr")}, 1.5));
    applier.mapCursorsToSystemTypes();
    ASSERT_FALSE(applier.customCursors().empty());
    overlay.calls.clear();

    applier.resetToSystemDefaults();

    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_FALSE(changer.isActive());
    EXPECT_THAT(changer.lastApplied(), IsEmpty());
    EXPECT_THAT(overlay.calls, ElementsAre("deactivate", "showSystemCursorGuaranteed", "destroyWindows",
                                           "showSystemCursorGuaranteed"));
    EXPECT_THAT(applier.appliedCursors(), IsEmpty());
    EXPECT_THAT(applier.customCursors(), IsEmpty());
    EXPECT_EQ(world.hardwareCursor.current()->standard, StandardCursor::arrow);
    EXPECT_EQ(applier.currentScale(), 1.0);
}

TEST_F(ApplierTest, ResetClearsTheChangersFieldsAlsoWithoutTheFunctions) {
    ASSERT_TRUE(applier.applyCursorsFromPreloaded({stillCursor("left_ptr")}, 1.0));
    world.windowServer.missing = {WindowServerFunction::coreCursorUnregisterAll};
    applier.resetToSystemDefaults();
    EXPECT_FALSE(changer.isActive());
    EXPECT_THAT(changer.lastApplied(), IsEmpty());
}

TEST_F(ApplierTest, InProcessExchangesSetOnceAndMakesTheArrowCurrent) {
    refuseRegistration();
    EXPECT_TRUE(
        inProcess.applyCursorsFromPreloaded({stillCursor("arrow", 5), stillCursor("default", 6)}, 1.0));
    EXPECT_TRUE(inProcess.isSwizzled());
    EXPECT_EQ(world.hardwareCursor.current()->image, plainBitmap(6, 6, 1));
    EXPECT_TRUE(
        inProcess.applyCursorsFromPreloaded({stillCursor("left_ptr", 7), stillCursor("arrow", 5)}, 1.0));
    EXPECT_EQ(world.hardwareCursor.current()->image, plainBitmap(7, 7, 1));
    EXPECT_TRUE(inProcess.applyCursorsFromPreloaded({stillCursor("arrow", 5)}, 1.0));
    EXPECT_EQ(world.hardwareCursor.current()->image, plainBitmap(5, 5, 1));
    EXPECT_EQ(world.hardwareCursor.exchangeRequests, 1);
    EXPECT_EQ(world.log.count("[NSCursor] Swizzling enabled"), 1u);
    EXPECT_THAT(overlay.calls, IsEmpty());
}

TEST_F(ApplierTest, InProcessMakesNothingCurrentWithoutAnArrow) {
    refuseRegistration();
    EXPECT_TRUE(inProcess.applyCursorsFromPreloaded({stillCursor("xterm")}, 1.0));
    EXPECT_THAT(world.hardwareCursor.shown, IsEmpty());
}

TEST_F(ApplierTest, InProcessAnswersFalseForAnEmptySet) {
    refuseRegistration();
    EXPECT_FALSE(inProcess.applyCursorsFromPreloaded({}, 1.0));
}

TEST_F(ApplierTest, InProcessFillsTheRoleMapAlsoWhereSetCannotBeExchanged) {
    refuseRegistration();
    world.hardwareCursor.operationsMissing = true;
    EXPECT_TRUE(inProcess.applyCursorsFromPreloaded({stillCursor("xterm")}, 1.0));
    EXPECT_FALSE(inProcess.isSwizzled());
    EXPECT_FALSE(world.log.has("[NSCursor] Swizzling enabled"));
    EXPECT_TRUE(inProcess.customCursors().contains("iBeam"));
}

TEST_F(ApplierTest, InProcessShowsTheThemedIBeamAndTheDesktopsArrowWhenOnlyTheIBeamIsThemed) {
    refuseRegistration();
    inProcess.applyCursorsFromPreloaded({stillCursor("xterm", 5)}, 1.0);
    world.hardwareCursor.set(standard(StandardCursor::arrow));
    EXPECT_EQ(world.hardwareCursor.current()->standard, StandardCursor::arrow);
    world.hardwareCursor.set(standard(StandardCursor::iBeam));
    EXPECT_EQ(world.hardwareCursor.current()->image, plainBitmap(5, 5, 1));
}

TEST_F(ApplierTest, InProcessMapsEveryStandardCursorToItsRole) {
    refuseRegistration();
    inProcess.applyCursorsFromPreloaded({stillCursor("xterm")}, 1.0);
    const std::vector<std::string> roles = {
        "arrow",      "iBeam",           "pointingHand",        "crosshair",      "openHand",
        "closedHand", "resizeLeftRight", "resizeUpDown",        "resizeLeft",     "resizeRight",
        "resizeUp",   "resizeDown",      "operationNotAllowed", "contextualMenu", "dragCopy",
        "dragLink",   "disappearingItem"};
    for (std::size_t i = 0; i < roles.size(); ++i) {
        inProcess.customCursors().clear();
        const auto themed = world.hardwareCursor.makeCursor(plainBitmap(3, 3, 3), {});
        inProcess.customCursors().emplace(roles[i], themed);
        world.hardwareCursor.set(standard(kStandardCursors[i]));
        EXPECT_EQ(world.hardwareCursor.shown.back(), themed) << roles[i];
    }
}

TEST_F(ApplierTest, InProcessShowsACursorThatIsNotStandardUnchanged) {
    refuseRegistration();
    inProcess.applyCursorsFromPreloaded({stillCursor("left_ptr"), stillCursor("xterm")}, 1.0);
    const auto own = world.hardwareCursor.makeCursor(plainBitmap(3, 3, 3), {});
    world.hardwareCursor.set(own);
    EXPECT_EQ(world.hardwareCursor.shown.back(), own);
}

TEST_F(ApplierTest, AResetAfterAnInProcessApplyLeavesTheExchangeAndShowsTheDesktopsIBeam) {
    refuseRegistration();
    inProcess.applyCursorsFromPreloaded({stillCursor("xterm")}, 1.0);
    inProcess.resetToSystemDefaults();
    EXPECT_TRUE(inProcess.isSwizzled());
    world.hardwareCursor.set(standard(StandardCursor::iBeam));
    EXPECT_EQ(world.hardwareCursor.current()->standard, StandardCursor::iBeam);
}

TEST_F(ApplierTest, TheExchangePassesCursorsThroughOnceItsApplierIsGone) {
    refuseRegistration();
    {
        CursorApplier shortLived{world.hardwareCursor, changer, overlay, world.log,
                                 CursorApplier::Fallback::inProcess};
        shortLived.applyCursorsFromPreloaded({stillCursor("xterm")}, 1.0);
    }
    world.hardwareCursor.set(standard(StandardCursor::iBeam));
    EXPECT_EQ(world.hardwareCursor.current()->standard, StandardCursor::iBeam);
}

TEST(NullOverlay, SaysAtItsStartThatNothingIsDrawnAndKeepsTheActiveMark) {
    FakeLog log;
    NullOverlay overlay(log);
    ASSERT_EQ(log.systemLines.size(), 1u);
    EXPECT_TRUE(log.systemLines[0].starts_with("[CursorOverlay] Overlay drawing is not available"));
    EXPECT_FALSE(overlay.isActive());
    overlay.start();
    EXPECT_TRUE(overlay.isActive());
    overlay.showSystemCursorGuaranteed();
    EXPECT_FALSE(overlay.isActive());
    overlay.start();
    overlay.deactivate();
    EXPECT_FALSE(overlay.isActive());
}

}  // namespace
}  // namespace pintle
