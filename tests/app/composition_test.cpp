#include "app/composition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apply/null_overlay.h"
#include "platform/fake/fake_login_item_service.h"
#include "platform/fake/fake_workspace.h"
#include "settings/launch_agent_file.h"
#include "tests/support/fake_overlay.h"
#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kIce = "bibata-modern-ice";
constexpr auto kArrow = "com.apple.coregraphics.Arrow";

struct Silence : UpdateChecker::Mediator {
    void activateIgnoringOtherApps() override {}
    void runAlert(const UpdateAlert&, std::function<void(int)>) override {}
    void openUrl(const std::string&) override {}
};

struct CompositionTest : testing::Test {
    Silence silence;
    TestWorld world;
    FakeInstanceBus bus;
    FakeWorkspace workspace;
    FakeOverlay* overlay = nullptr;

    EarlyPlatform early() { return {world.log, world.store, bus}; }
    Platform platform() {
        return {world.scheduler.mainQueue(),
                world.scheduler.backgroundTasks(),
                world.windowServer,
                world.hardwareCursor,
                world.images,
                world.propertyLists,
                world.hints,
                workspace,
                {},
                world.http,
                world.processes,
                world.directories,
                {},
                silence,
                {}};
    }
    std::unique_ptr<Composition> start() {
        auto composition = std::make_unique<Composition>(early());
        auto made = std::make_unique<FakeOverlay>();
        overlay = made.get();
        composition->build(platform(), std::move(made));
        composition->viewModel().applyLastUsedTheme();
        return composition;
    }
    void writeTheme() {
        writeFile(world.themesDirectory() / kIce / "cursors" / "left_ptr",
                  XCursorBuilder().image({.size = 32}).bytes());
    }
};

TEST_F(CompositionTest, BeforeTheSingleInstanceCheckOnlyTheSettingsAreMade) {
    Composition composition(early());
    EXPECT_EQ(world.store.registerDefaultsCalls, 1);
    EXPECT_EQ(&CursorSettings::shared(), &composition.settings());
    EXPECT_THAT(world.log.systemLines, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(world.themesDirectory()));
    EXPECT_FALSE(composition.anotherCopyRuns());
    bus.another = true;
    EXPECT_TRUE(composition.anotherCopyRuns());
}

TEST_F(CompositionTest, MakesTheViewModelAndTheUpdateCheckerWhenTheyAreFirstAskedFor) {
    Composition composition(early());
    composition.build(platform(), std::make_unique<FakeOverlay>());
    EXPECT_FALSE(world.log.has("[VIEWMODEL] INIT START"));
    auto& model = composition.viewModel();
    EXPECT_EQ(&composition.viewModel(), &model);
    EXPECT_EQ(world.log.count("[VIEWMODEL] INIT START"), 1u);
    EXPECT_EQ(&composition.updateChecker(), &composition.updateChecker());
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.http.requests, IsEmpty()) << "being made is not being started";
}

TEST_F(CompositionTest, AFlushBringsEverythingToTheScreenAndTheDisk) {
    const auto composition = start();
    composition->flush();
    EXPECT_EQ(world.windowServer.flushes, 1);
    EXPECT_EQ(world.store.synchronizations, 1);
}

TEST_F(CompositionTest, AppliesTheStoredThemeAtStart) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    const auto composition = start();
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.windowServer.registered.contains(kArrow));
    EXPECT_TRUE(world.log.has("Auto-applied last theme: Bibata Modern Ice"));
    EXPECT_TRUE(composition->changer().isActive());
}

TEST_F(CompositionTest, FlushesTheWindowServerAtTheEndOfEachTurnAndAtItsEnd) {
    auto composition = start();
    EXPECT_EQ(world.windowServer.flushes, 0);
    composition->settings().setCursorScale(1.5);
    world.scheduler.step();
    EXPECT_EQ(world.windowServer.flushes, 1);
    world.scheduler.runUntilIdle();
    const auto before = world.windowServer.flushes;
    composition.reset();
    EXPECT_EQ(world.windowServer.flushes, before + 1);
}

TEST_F(CompositionTest, ItsEndLeavesARegisteredThemeInForce) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    auto composition = start();
    world.scheduler.runUntilIdle();
    composition.reset();
    EXPECT_TRUE(world.windowServer.registered.contains(kArrow));
    world.scheduler.advance(std::chrono::minutes(5));
    EXPECT_EQ(*world.store.object("currentThemeId"), PropertyValue(kIce));
}

TEST_F(CompositionTest, MayEndInTheMiddleOfALoad) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    for (int steps = 0; steps < 8; ++steps) {
        auto composition = start();
        for (int i = 0; i < steps; ++i) world.scheduler.step();
        composition.reset();
        world.scheduler.runUntilIdle();
    }
    EXPECT_TRUE(world.hints.active->empty());
}

TEST_F(CompositionTest, InstallsTheSharedAnswers) {
    const auto composition = start();
    EXPECT_EQ(&CursorViewModel::shared(), &composition->viewModel());
    EXPECT_EQ(&CursorApplier::shared(), &composition->applier());
    EXPECT_EQ(&SystemCursorChanger::shared(), &composition->changer());
    EXPECT_EQ(&composition->overlay(), overlay);
}

TEST_F(CompositionTest, ShowsTheDesktopsCursorWhereRegistrationIsRefusedAndNothingCanBeDrawn) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    world.windowServer.missing = {WindowServerFunction::registerCursorWithImages};
    Composition composition(early());
    composition.build(platform(), std::make_unique<NullOverlay>(world.log));
    composition.viewModel().applyLastUsedTheme();
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] CGS symbols unavailable"));
    EXPECT_TRUE(composition.overlay().isActive());
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
}

TEST_F(CompositionTest, AWakeRepeatsTheRegistrationOfTheLastTheme) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    const auto composition = start();
    world.scheduler.runUntilIdle();
    ASSERT_TRUE(composition->changer().isActive());
    workspace.send(WorkspaceEvent::didWake);
    world.scheduler.advance(std::chrono::seconds(1));
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Re-applied after NSWorkspaceDidWakeNotification"));
}

TEST_F(CompositionTest, AnApplicationThatTheUserExcludedSuspendsTheTheme) {
    writeTheme();
    world.store.set("currentThemeId", kIce);
    const auto composition = start();
    world.scheduler.runUntilIdle();
    composition->settings().addExcludedApp("Blender");
    workspace.activate("Blender");
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Suspended for excluded app: Blender"));
    composition->settings().removeExcludedApp("Blender");
    workspace.activate("Blender");
    EXPECT_TRUE(world.log.has("[SystemCursorChanger] Resumed after excluded app"));
}

TEST_F(CompositionTest, TheLoginItemFollowsTheProgramBeforeAnythingElseIsMade) {
    FakeLoginItemService service;
    const auto agent = makeLaunchAgentFile(world.directories.home, world.propertyLists);
    world.store.set("launchAtLogin", true);
    Composition composition(early());
    composition.refreshLoginItem({service, *agent, LoginAgentRole::fallback, {"/opt/Pintle", "/opt/Pintle"}});
    EXPECT_THAT(world.log.systemLines, ElementsAre("[LaunchAtLogin] Login item re-pointed to /opt/Pintle"));
    composition.launchAtLogin().setLaunchAtLogin(false);
    EXPECT_THAT(service.calls, ElementsAre("unregister", "register", "unregister", "status"));
}

TEST_F(CompositionTest, TheUpdateCheckAsksTheHostOfTheBuild) {
    const auto composition = start();
    composition->updateChecker().start();
    world.scheduler.runUntilIdle();
    ASSERT_EQ(world.http.requests.size(), 1u);
    EXPECT_EQ(world.http.requests.front().url, builtInUpdateEndpoint().versionURL);
    EXPECT_EQ(&UpdateChecker::shared(), &composition->updateChecker());
}

}  // namespace
}  // namespace pintle
