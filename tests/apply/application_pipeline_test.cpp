#include "apply/application_pipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/cursor_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kArrow = "com.apple.coregraphics.Arrow";
constexpr auto kHelp = "com.apple.cursor.40";
constexpr auto kIce = "bibata-modern-ice";
constexpr auto kBanana = "banana";
constexpr std::uint32_t kIceColour = 0x102030;
constexpr std::uint32_t kBananaColour = 0xC0B000;
constexpr auto kReleased = "[VIEWMODEL] Theme pixel cache released (idle)";

struct PipelineTest : testing::Test {
    CursorWorld world;

    PipelineTest() {
        world.writeTheme(kIce, kIceColour);
        world.writeTheme(kBanana, kBananaColour);
        world.themes.loadThemes();
        world.pipeline.observeScale();
        world.log.systemLines.clear();
    }
    void apply(const char* id) {
        world.pipeline.applyTheme(world.theme(id));
        world.scheduler.runUntilIdle();
    }
    Size arrowSize() { return world.windowServer.registered.at(kArrow).size; }
};

TEST_F(PipelineTest, ApplyingAThemeRegistersItAndRecordsItInTheSettings) {
    apply(kIce);
    EXPECT_EQ(world.colourOf(kArrow), kIceColour);
    EXPECT_EQ(world.colourOf(kHelp), kIceColour);
    EXPECT_EQ(world.settings.currentThemeId(), kIce);
    EXPECT_EQ(world.store.object("currentThemeId"), PropertyValue(kIce));
    EXPECT_EQ(world.pipeline.currentTheme()->id, kIce);
    EXPECT_FALSE(world.theme(kIce).isApplying);
}

TEST_F(PipelineTest, ApplyingLogsBeforeTheThemeIsRecorded) {
    world.pipeline.applyTheme(world.theme(kIce));
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[APPLY] Applying theme: Bibata Modern Ice at scale: 1.0"));
    EXPECT_FALSE(world.settings.currentThemeId());
    EXPECT_FALSE(world.pipeline.currentTheme());
    ASSERT_TRUE(world.scheduler.step());
    EXPECT_EQ(world.settings.currentThemeId(), kIce);
    EXPECT_TRUE(world.theme(kIce).isApplying);
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.theme(kIce).isApplying);
}

TEST_F(PipelineTest, ShowsTheCommonShapesFirstAndThenTheWholeTheme) {
    apply(kIce);
    EXPECT_THAT(
        world.linesOf({"[APPLY]", "[CursorApplier]"}),
        ElementsAre("[APPLY] Applying theme: Bibata Modern Ice at scale: 1.0",
                    "[CursorApplier] Applied 2 pre-loaded cursors at scale 1.0",
                    "[CursorApplier] System-wide registration active", "[APPLY] Theme applied: SUCCESS",
                    "[CursorApplier] Applied 3 pre-loaded cursors at scale 1.0",
                    "[CursorApplier] System-wide registration active"));
}

TEST_F(PipelineTest, DoesNothingForAThemeThatIsNotDownloaded) {
    auto theme = world.theme(kIce);
    theme.isDownloaded = false;
    world.pipeline.applyTheme(theme);
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_FALSE(world.settings.currentThemeId());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(PipelineTest, ReadsAndBuildsInTheBackgroundOnly) {
    world.scheduler.holdBackground(true);
    apply(kIce);
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_EQ(world.scheduler.pendingBackground(), 1u);
    world.removeFiles(kIce);
    world.writeTheme(kIce, 0x445566);
    world.scheduler.holdBackground(false);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.colourOf(kArrow), 0x445566u);
}

TEST_F(PipelineTest, TheFullPassRunsInsideAnActivityThatEndsWithIt) {
    apply(kIce);
    EXPECT_THAT(world.hints.begun, ElementsAre("Loading full cursor set"));
    EXPECT_THAT(*world.hints.active, IsEmpty());
}

TEST_F(PipelineTest, OfTwoAppliesInQuickSuccessionOnlyTheSecondReachesTheScreen) {
    world.pipeline.applyTheme(world.theme(kIce));
    world.pipeline.applyTheme(world.theme(kBanana));
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.linesOf({"[APPLY]"}),
                ElementsAre("[APPLY] Applying theme: Bibata Modern Ice at scale: 1.0",
                            "[APPLY] Applying theme: Banana at scale: 1.0", "[APPLY] Theme applied: FAILED",
                            "[APPLY] Theme applied: SUCCESS"));
    EXPECT_THAT(world.linesOf({"[FIND_CURSORS] ━━━"}),
                ElementsAre("[FIND_CURSORS] ━━━ findCursorsDirectory START for: " +
                            (world.themesDirectory() / kBanana).string()));
    for (const auto& registered : world.windowServer.registrations)
        EXPECT_EQ(CursorWorld::colour(registered), kBananaColour);
    EXPECT_EQ(world.settings.currentThemeId(), kBanana);
    EXPECT_FALSE(world.theme(kIce).isApplying);
}

TEST_F(PipelineTest, AnApplyThatIsOvertakenWhileItReadsAppliesNothing) {
    world.scheduler.holdBackground(true);
    apply(kIce);
    world.pipeline.applyTheme(world.theme(kBanana));
    world.scheduler.holdBackground(false);
    world.scheduler.runUntilIdle();
    for (const auto& registered : world.windowServer.registrations)
        EXPECT_EQ(CursorWorld::colour(registered), kBananaColour);
}

TEST_F(PipelineTest, TheApplyingMarkEndsWithTheLastOfTwoAppliesOfOneTheme) {
    world.scheduler.holdBackground(true);
    apply(kIce);
    apply(kIce);
    world.scheduler.holdBackground(false);
    while (!world.log.has("[APPLY] Theme applied: FAILED")) ASSERT_TRUE(world.scheduler.step());
    EXPECT_TRUE(world.theme(kIce).isApplying);
    EXPECT_FALSE(world.log.has("[APPLY] Theme applied: SUCCESS"));
    while (!world.log.has("[APPLY] Theme applied: SUCCESS")) ASSERT_TRUE(world.scheduler.step());
    EXPECT_FALSE(world.theme(kIce).isApplying);
}

TEST_F(PipelineTest, AnApplyOfAnotherThemeDoesNotKeepTheApplyingMarkOfTheFirst) {
    world.scheduler.holdBackground(true);
    apply(kIce);
    world.pipeline.applyTheme(world.theme(kBanana));
    world.scheduler.holdBackground(false);
    while (!world.log.has("[APPLY] Theme applied: FAILED")) ASSERT_TRUE(world.scheduler.step());
    EXPECT_FALSE(world.theme(kIce).isApplying);
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.theme(kBanana).isApplying);
}

TEST_F(PipelineTest, AResetWhileAThemeLoadsLetsTheLoadApplyNothing) {
    world.scheduler.holdBackground(true);
    apply(kIce);
    world.pipeline.resetToDefault();
    world.scheduler.holdBackground(false);
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.windowServer.registrations, IsEmpty());
    EXPECT_TRUE(world.log.has("[APPLY] Theme applied: FAILED"));
    EXPECT_FALSE(world.pipeline.currentTheme());
    EXPECT_FALSE(world.store.object("currentThemeId"));
    EXPECT_FALSE(world.theme(kIce).isApplying);
}

TEST_F(PipelineTest, AResetRightAfterAnApplyIsNotUndoneByItsRecord) {
    world.pipeline.applyTheme(world.theme(kIce));
    world.pipeline.resetToDefault();
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.pipeline.currentTheme());
    EXPECT_FALSE(world.store.object("currentThemeId"));
    EXPECT_FALSE(world.theme(kIce).isApplying);
}

TEST_F(PipelineTest, AResetDuringTheFullPassKeepsTheDesktopsCursors) {
    world.pipeline.applyTheme(world.theme(kIce));
    while (!world.log.has("[APPLY] Theme applied: SUCCESS")) ASSERT_TRUE(world.scheduler.step());
    world.pipeline.resetToDefault();
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_EQ(world.log.count("[CursorApplier] Applied 3 pre-loaded cursors at scale 1.0"), 0u);
}

TEST_F(PipelineTest, AResetShowsTheCursorForgetsTheThemeAndRestoresTheDesktop) {
    apply(kIce);
    world.applier.mapCursorsToSystemTypes();
    world.overlay.calls.clear();
    world.log.systemLines.clear();
    world.pipeline.resetToDefault();
    EXPECT_THAT(world.overlay.calls,
                ElementsAre("showSystemCursorGuaranteed", "deactivate", "showSystemCursorGuaranteed",
                            "destroyWindows", "showSystemCursorGuaranteed"));
    EXPECT_FALSE(world.pipeline.currentTheme());
    EXPECT_THAT(world.store.removals, testing::Contains("currentThemeId"));
    EXPECT_THAT(world.applier.customCursors(), IsEmpty());
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_FALSE(world.changer.isActive());
    // The key goes behind the back of the settings, whose own copy stays.
    EXPECT_EQ(world.settings.currentThemeId(), kIce);
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[SystemCursorChanger] Restored 0 original coregraphics cursors",
                            "[SystemCursorChanger] Unregistered all custom cursors (err=0)"));
}

TEST_F(PipelineTest, AScaleChangeAppliesTheCurrentThemeAgain) {
    apply(kIce);
    world.log.systemLines.clear();
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(arrowSize(), (Size{72, 72}));
    EXPECT_EQ(world.windowServer.registered.at(kArrow).hotspot, (Point{3, 6}));
    EXPECT_THAT(world.linesOf({"[CursorViewModel]", "[CursorApplier] Applied"}),
                ElementsAre("[CursorViewModel] Applying scale: 1.5 for theme: Bibata Modern Ice",
                            "[CursorApplier] Applied 3 pre-loaded cursors at scale 1.5",
                            "[CursorViewModel] Scale applied: OK at 1.5"));
}

TEST_F(PipelineTest, AScaleChangeWithoutACurrentThemeDoesNothing) {
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
}

TEST_F(PipelineTest, OfScaleChangesInOneTurnOnlyTheLastIsRequested) {
    apply(kIce);
    world.log.systemLines.clear();
    world.settings.setCursorScale(1.1);
    world.settings.setCursorScale(1.3);
    world.settings.setCursorScale(1.25);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.linesOf({"[CursorViewModel] Applying scale"}).size(), 1u);
    EXPECT_TRUE(world.log.has("[CursorViewModel] Scale applied: OK at 1.25"));
    EXPECT_EQ(world.applier.currentScale(), 1.25);
}

TEST_F(PipelineTest, AScaleRequestThatIsOvertakenFailsWithoutATraceOnScreen) {
    apply(kIce);
    world.scheduler.holdBackground(true);
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    world.settings.setCursorScale(0.75);
    world.scheduler.runUntilIdle();
    world.scheduler.holdBackground(false);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.log.has("[CursorViewModel] Scale applied: FAIL at 1.5"));
    EXPECT_TRUE(world.log.has("[CursorViewModel] Scale applied: OK at 0.75"));
    EXPECT_FALSE(world.log.has("[CursorApplier] Applied 3 pre-loaded cursors at scale 1.5"));
}

TEST_F(PipelineTest, AScaleChangeRightBeforeAnApplyDoesNotOvertakeIt) {
    apply(kIce);
    world.settings.setCursorScale(1.5);
    world.pipeline.applyTheme(world.theme(kBanana));
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.colourOf(kArrow), kBananaColour);
    EXPECT_EQ(world.applier.currentScale(), 1.5);
}

TEST_F(PipelineTest, AScaleChangeRightAfterAnApplyIsAppliedToThatTheme) {
    world.pipeline.applyTheme(world.theme(kIce));
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.colourOf(kArrow), kIceColour);
    EXPECT_EQ(arrowSize(), (Size{72, 72}));
}

TEST_F(PipelineTest, AScaleChangeWithinSixtySecondsReadsNoFile) {
    apply(kIce);
    world.removeFiles(kIce);
    world.scheduler.advance(59s);
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.log.has("[CursorViewModel] Scale applied: OK at 1.5"));
    EXPECT_EQ(arrowSize(), (Size{72, 72}));
    EXPECT_EQ(world.colourOf(kHelp), kIceColour);
    EXPECT_FALSE(world.log.has(kReleased));
}

TEST_F(PipelineTest, EveryLoadPushesTheReleaseBackBySixtySeconds) {
    apply(kIce);
    world.scheduler.advance(59s);
    world.settings.setCursorScale(1.5);
    world.scheduler.advance(59s);
    EXPECT_FALSE(world.log.has(kReleased));
    EXPECT_EQ(world.hints.releases, 0);
    world.scheduler.advance(1s);
    EXPECT_EQ(world.log.count(kReleased), 1u);
    EXPECT_EQ(world.hints.releases, 1);
    world.scheduler.advance(300s);
    EXPECT_EQ(world.log.count(kReleased), 1u);
}

TEST_F(PipelineTest, AfterSixtyIdleSecondsTheFilesAreReadAgain) {
    apply(kIce);
    world.scheduler.advance(60s);
    EXPECT_EQ(world.log.count(kReleased), 1u);
    world.removeFiles(kIce);
    world.writeTheme(kIce, 0x778899);
    world.settings.setCursorScale(1.25);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.colourOf(kArrow), 0x778899u);
}

TEST_F(PipelineTest, AnotherThemeIsNotTakenFromTheCache) {
    apply(kIce);
    apply(kBanana);
    EXPECT_EQ(world.colourOf(kArrow), kBananaColour);
    EXPECT_EQ(world.colourOf(kHelp), kBananaColour);
}

TEST_F(PipelineTest, TheFolderIsLookedUpBeforeTheCache) {
    apply(kIce);
    std::filesystem::remove_all(world.cursorsOf(kIce));
    world.settings.setCursorScale(1.5);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.log.has("[CursorViewModel] Scale applied: FAIL at 1.5"));
    EXPECT_EQ(arrowSize(), (Size{32, 32}));
}

TEST(PipelineCache, KeepsTheImagesOfTheNewerLoadInWhateverOrderTheFullPassesEnd) {
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        CursorWorld world;
        world.writeTheme(kIce, kIceColour);
        world.writeTheme(kBanana, kBananaColour);
        world.themes.loadThemes();
        world.pipeline.observeScale();
        world.pipeline.applyTheme(world.theme(kIce));
        while (!world.log.has("[APPLY] Theme applied: SUCCESS")) ASSERT_TRUE(world.scheduler.step());
        world.scheduler.shuffle(seed);
        world.pipeline.applyTheme(world.theme(kBanana));
        world.scheduler.runUntilIdle();
        world.removeFiles(kBanana);
        world.settings.setCursorScale(1.5);
        world.scheduler.runUntilIdle();
        EXPECT_TRUE(world.log.has("[CursorViewModel] Scale applied: OK at 1.5")) << seed;
        EXPECT_EQ(world.colourOf(kHelp), kBananaColour) << seed;
    }
}

TEST_F(PipelineTest, AThemeWithoutACursorsFolderFails) {
    const auto theme = world.theme(kIce);
    std::filesystem::remove_all(world.themesDirectory() / kIce);
    world.pipeline.applyTheme(theme);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.log.has("[APPLY] Theme applied: FAILED"));
    EXPECT_THAT(world.windowServer.calls, IsEmpty());
    EXPECT_THAT(world.overlay.calls, IsEmpty());
}

TEST_F(PipelineTest, AFolderThatVanishesBeforeItIsReadFails) {
    world.scheduler.holdBackground(true);
    apply(kIce);
    std::filesystem::remove_all(world.themesDirectory() / kIce);
    world.scheduler.holdBackground(false);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.log.has("[APPLY] Theme applied: FAILED"));
    EXPECT_THAT(world.overlay.calls, IsEmpty());
}

TEST_F(PipelineTest, AFolderThatVanishesBetweenThePassesKeepsTheCommonShapes) {
    world.pipeline.applyTheme(world.theme(kIce));
    while (!world.log.has("[APPLY] Theme applied: SUCCESS")) ASSERT_TRUE(world.scheduler.step());
    std::filesystem::remove_all(world.themesDirectory() / kIce);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.log.count("[CursorApplier] Applied 2 pre-loaded cursors at scale 1.0"), 2u);
    EXPECT_EQ(world.colourOf(kArrow), kIceColour);
}

TEST_F(PipelineTest, UnreadableAndMalformedFilesAreSkipped) {
    std::filesystem::create_directories(world.cursorsOf(kIce) / "text");
    writeFile(world.cursorsOf(kIce) / "default", "no cursor");
    writeFile(world.cursorsOf(kIce) / "arrow", "");
    writeFile(world.cursorsOf(kIce) / "cell", "no cursor");
    std::filesystem::create_symlink("nowhere", world.cursorsOf(kIce) / "wait");
    apply(kIce);
    EXPECT_TRUE(world.log.has("[CursorApplier] Applied 2 pre-loaded cursors at scale 1.0"));
    EXPECT_TRUE(world.log.has("[CursorApplier] Applied 3 pre-loaded cursors at scale 1.0"));
    EXPECT_TRUE(world.log.has("[APPLY] Theme applied: SUCCESS"));
}

TEST_F(PipelineTest, AThemeWithoutAnArrowGoesToTheOverlay) {
    world.removeFiles(kIce);
    world.writeCursor(kIce, "xterm", kIceColour);
    apply(kIce);
    EXPECT_TRUE(world.log.has("[APPLY] Theme applied: SUCCESS"));
    EXPECT_THAT(world.overlay.calls, ElementsAre("loadCursorsFromPreloaded", "start",
                                                 "loadCursorsFromPreloaded", "updateOverlayWindows"));
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
}

TEST_F(PipelineTest, ANestedCursorsFolderIsTheOneThatIsRead) {
    const auto folder = world.themesDirectory() / kIce;
    std::filesystem::create_directories(folder / "inner");
    std::filesystem::rename(folder / "cursors", folder / "inner" / "cursors");
    apply(kIce);
    EXPECT_EQ(world.colourOf(kArrow), kIceColour);
}

TEST_F(PipelineTest, NamesThatAreLinksToOneFileShareTheirPixelsAcrossBothPasses) {
    std::filesystem::create_symlink("left_ptr", world.cursorsOf(kIce) / "default");
    std::filesystem::create_symlink("left_ptr", world.cursorsOf(kIce) / "of-the-second-pass");
    world.settings.setCursorScale(1.5);
    apply(kIce);
    const auto pixels = [&](const char* name) {
        const auto cursor = world.applier.cursor(name);
        return static_cast<const FakeHardwareCursor::FakeObject&>(cursor->object()).image->bytes().data();
    };
    EXPECT_EQ(pixels("left_ptr"), pixels("default"));
    EXPECT_EQ(pixels("left_ptr"), pixels("of-the-second-pass"));
    EXPECT_EQ(world.applier.cursor("of-the-second-pass") == world.applier.cursor("left_ptr"), false);
}

TEST_F(PipelineTest, SizesAboveFortyEightAreNotUsedUnlessTheyAreTheSmallest) {
    XCursorBuilder both;
    both.image({.size = 32}).image({.size = 64});
    XCursorBuilder large;
    large.image({.size = 64}).image({.size = 96});
    writeFile(world.cursorsOf(kIce) / "left_ptr", both.bytes());
    writeFile(world.cursorsOf(kIce) / "xterm", large.bytes());
    world.settings.setCursorScale(2.0);
    apply(kIce);
    EXPECT_EQ(arrowSize(), (Size{64, 64}));
    EXPECT_EQ(world.windowServer.registered.at("com.apple.coregraphics.IBeam").size, (Size{128, 128}));
}

TEST_F(PipelineTest, AtStartTheStoredThemeIsApplied) {
    world.settings.setCurrentThemeId(kIce);
    world.pipeline.applyLastUsedTheme();
    EXPECT_THAT(world.log.systemLines, ElementsAre("[APPLY] Applying theme: Bibata Modern Ice at scale: 1.0",
                                                   "Auto-applied last theme: Bibata Modern Ice"));
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.colourOf(kArrow), kIceColour);
}

TEST_F(PipelineTest, AtStartAStoredThemeThatIsNoLongerDownloadedRestoresTheDesktop) {
    world.settings.setCurrentThemeId("fuchsia");
    world.pipeline.applyLastUsedTheme();
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.log.systemLines.back(), "No theme to apply - using system default");
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Unregistered all custom cursors (err=0)"));
    EXPECT_FALSE(world.store.object("currentThemeId"));
}

TEST_F(PipelineTest, AtStartAStoredThemeThatIsRefusedBringsBackWhatADeadRunReplaced) {
    for (const bool isReadable : {true, false}) {
        CursorWorld next;
        next.writeTheme(kIce, kIceColour);
        next.themes.loadThemes();
        std::filesystem::remove(next.themesDirectory() / kIce / "cursors" / "left_ptr");
        if (!isReadable) next.removeFiles(kIce);
        next.store.set("currentThemeId", kIce);
        RegisteredCursor leftBehind;
        leftBehind.identifier = kArrow;
        next.windowServer.registered.emplace(kArrow, leftBehind);
        next.pipeline.applyLastUsedTheme();
        next.scheduler.runUntilIdle();
        EXPECT_FALSE(next.windowServer.registered.contains(kArrow)) << isReadable;
        EXPECT_EQ(next.windowServer.count(WindowServerFunction::coreCursorUnregisterAll), 1u);
        // Later in the same run a theme that is refused leaves what is in force alone.
        next.windowServer.calls.clear();
        next.pipeline.applyTheme(next.theme(kIce));
        next.scheduler.runUntilIdle();
        EXPECT_EQ(next.windowServer.count(WindowServerFunction::coreCursorUnregisterAll), 0u);
    }
}

TEST_F(PipelineTest, AtStartAStoredThemeThatIsRegisteredIsNotTakenAwayAgain) {
    world.store.set("currentThemeId", kIce);
    world.pipeline.applyLastUsedTheme();
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.windowServer.registered.contains(kArrow));
}

TEST_F(PipelineTest, AtStartWithoutAStoredThemeTheDesktopIsRestored) {
    world.pipeline.applyLastUsedTheme();
    EXPECT_EQ(world.log.systemLines.back(), "No theme to apply - using system default");
    EXPECT_EQ(world.windowServer.count(WindowServerFunction::coreCursorUnregisterAll), 1u);
}

TEST_F(PipelineTest, AtStartWithApplyOnLaunchOffTheThemeIsForgottenWithoutALogLineOfItsOwn) {
    world.settings.setCurrentThemeId(kIce);
    world.settings.setApplyOnLaunch(false);
    world.pipeline.applyLastUsedTheme();
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.store.object("currentThemeId"));
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_FALSE(world.log.has("No theme to apply - using system default"));
}

}  // namespace
}  // namespace pintle
