#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/shell_world.h"

namespace pintle {
namespace {

using testing::IsEmpty;

const std::vector<std::string> kOverlayStopped = {
    "overlay deactivate", "overlay showSystemCursorGuaranteed", "overlay destroyWindows",
    "overlay showSystemCursorGuaranteed", "out: [AppDelegate] System cursor restored"};

struct EndTest : testing::Test, ShellWorld {
    std::size_t restores() const {
        return shell.log.count("[SystemCursorChanger] Unregistered all custom cursors (err=0)");
    }
};

TEST_F(EndTest, QuitStopsTheOverlayAndThenTerminates) {
    start().quitApp();
    auto expected = kOverlayStopped;
    expected.emplace_back("application terminate");
    EXPECT_EQ(shell.transcript, expected);
}

TEST_F(EndTest, TheOverlayIsStoppedAgainAtTheEnd) {
    start().quitApp();
    forget();
    shell.application.end();
    EXPECT_EQ(shell.transcript, kOverlayStopped);
    EXPECT_EQ(shell.log.outputLines.size(), 2u);
}

TEST_F(EndTest, QuittingWithoutRestoreOnQuitLeavesTheThemeRegistered) {
    startWithTheme();
    ASSERT_TRUE(isThemed());
    const auto before = restores();
    delegate->quitApp();
    shell.application.end();
    delegate.reset();
    composition.reset();
    EXPECT_TRUE(isThemed());
    EXPECT_EQ(restores(), before);
}

TEST_F(EndTest, QuittingWithRestoreOnQuitBringsTheDesktopsCursorsBackBeforeTheEnd) {
    startWithTheme();
    world.store.set("restoreOnQuit", true);
    ASSERT_TRUE(isThemed());
    delegate->quitApp();
    EXPECT_TRUE(isThemed()) << "not before the end";
    const auto before = restores();
    shell.application.end();
    EXPECT_FALSE(isThemed());
    EXPECT_EQ(restores(), before + 2) << "by the changer, and by the applier's reset again";
    EXPECT_FALSE(composition->changer().isActive());
    EXPECT_FALSE(composition->changer().suspendedForExcludedApp());
    EXPECT_THAT(composition->changer().lastApplied(), IsEmpty());
    EXPECT_THAT(composition->applier().customCursors(), IsEmpty());
    EXPECT_EQ(*world.store.object("currentThemeId"), PropertyValue(kIce)) << "the next start applies it";
}

TEST_F(EndTest, RestoreOnQuitIsReadFromTheStoreAtTheEnd) {
    startWithTheme();
    world.store.set("restoreOnQuit", true);
    delegate->quitApp();
    world.store.set("restoreOnQuit", false);
    shell.application.end();
    EXPECT_TRUE(isThemed());
}

TEST_F(EndTest, RestoreOnQuitIsConvertedAsEveryStoredBoolIs) {
    startWithTheme();
    world.store.set("restoreOnQuit", "YES");
    shell.application.end();
    EXPECT_FALSE(isThemed());
}

TEST_F(EndTest, AnEndOfTheSessionIsAnEndLikeAnyOther) {
    startWithTheme();
    world.store.set("restoreOnQuit", true);
    shell.application.end();
    EXPECT_FALSE(isThemed());
    EXPECT_EQ(shell.log.outputLines.size(), 1u);
}

TEST_F(EndTest, TheEndComesOnce) {
    start().applicationWillTerminate();
    forget();
    delegate->applicationWillTerminate();
    shell.application.end();
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(EndTest, EverythingPendingIsSentAndWrittenBeforeTheEnd) {
    startWithTheme();
    world.store.set("restoreOnQuit", true);
    const auto flushes = world.windowServer.flushes;
    const auto calls = world.windowServer.calls.size();
    shell.application.end();
    EXPECT_GT(world.windowServer.calls.size(), calls);
    EXPECT_EQ(world.windowServer.flushes, flushes + 1);
    EXPECT_EQ(world.store.synchronizations, 1);
}

TEST_F(EndTest, ALoadThatIsUnderWayAtTheEndRegistersNothingAfterIt) {
    for (int steps = 0; steps < 8; ++steps) {
        writeTheme();
        world.store.set("currentThemeId", kIce);
        world.store.set("restoreOnQuit", true);
        make().applicationDidFinishLaunching();
        for (int i = 0; i < steps; ++i) world.scheduler.step();
        shell.application.end();
        delegate.reset();
        composition.reset();
        world.scheduler.runUntilIdle();
        EXPECT_FALSE(isThemed()) << steps;
    }
}

TEST_F(EndTest, TheTeardownStopsTheOverlayAndThenTheMonitors) {
    start();
    delegate.reset();
    auto expected = kOverlayStopped;
    expected.emplace_back("eventMonitors remove global");
    expected.emplace_back("eventMonitors remove local");
    EXPECT_EQ(shell.transcript, expected);
}

TEST_F(EndTest, ADelegateThatNeverStartedTearsNothingDown) {
    make();
    delegate.reset();
    EXPECT_THAT(shell.transcript, IsEmpty());
}

TEST_F(EndTest, ACopyThatFindsAnOlderOneEndsAndPutsNothingBack) {
    startWithTheme();
    world.store.set("restoreOnQuit", true);
    const auto before = restores();
    forget();
    bus.olderCopies.emit();
    bus.olderCopies.emit();
    EXPECT_EQ(startingWith("application"), std::vector<std::string>{"application terminate"});
    EXPECT_TRUE(startingWith("bus post").empty()) << "nobody asked for the other one's popover";
    EXPECT_TRUE(delegate->isRedundant());
    shell.application.end();
    EXPECT_TRUE(isThemed());
    EXPECT_EQ(restores(), before);
    delegate.reset();
    composition.reset();
    EXPECT_TRUE(isThemed());
}

TEST_F(EndTest, AQuitThatIsAskedForTwiceEndsOnce) {
    start().quitApp();
    delegate->quitApp();
    forget();
    shell.application.end();
    shell.application.end();
    EXPECT_EQ(shell.transcript, kOverlayStopped);
}

}  // namespace
}  // namespace pintle
