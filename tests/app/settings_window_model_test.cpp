#include "app/settings_window_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "app/popover_model.h"
#include "platform/fake/fake_login_item_service.h"
#include "settings/launch_agent_file.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kIce = ModelWorld::ice;
using Toggle = SettingsToggle;

struct SettingsWindowModelTest : testing::Test {
    ModelWorld world;
    FakeLoginItemService service;
    std::unique_ptr<LoginAgent> agent = makeLaunchAgentFile(world.directories.home, world.propertyLists);
    LaunchAtLogin launchAtLogin{service,
                                *agent,
                                world.store,
                                world.log,
                                {"/Applications/Pintle.app", "/Applications/Pintle"},
                                LoginAgentRole::fallback};
    std::unique_ptr<SettingsWindowModel> model;
    std::vector<double> announced;
    Subscription scaleObserver = world.notifications.observe(
        "cursorScaleChanged",
        [this](const std::any& scale) { announced.push_back(std::any_cast<double>(scale)); });

    SettingsWindowModelTest() {
        world.writeTheme(kIce, 0x102030);
        world.start();
        model = std::make_unique<SettingsWindowModel>(
            SettingsWindowModel::Dependencies{world.settings, world.store, launchAtLogin, world.notifications,
                                              *world.viewModel, world.alerts, world.application});
    }
    bool isOn(Toggle toggle) { return model->toggle(toggle).isOn; }
    std::vector<std::string> percentages() {
        std::vector<std::string> texts;
        for (const auto& button : model->scaleButtons())
            texts.push_back(button.title.english() + (button.isSelected ? " selected" : ""));
        return texts;
    }
    void typeAndAdd(const std::string& name) {
        if (!model->showAddAppField()) model->toggleAddAppField();
        model->setNewAppName(name);
        model->addExcludedApp();
    }
};

TEST_F(SettingsWindowModelTest, WhatHasNoEffectInASessionIsDisabledAndSaysWhy) {
    EXPECT_TRUE(model->toggle(Toggle::alwaysUseThemedCursor).isEnabled);
    EXPECT_TRUE(model->exclusionsEnabled());
    model = std::make_unique<SettingsWindowModel>(
        SettingsWindowModel::Dependencies{world.settings, world.store, launchAtLogin, world.notifications,
                                          *world.viewModel, world.alerts, world.application, false});
    for (const auto each : {Toggle::alwaysUseThemedCursor, Toggle::pauseWhenScreenShared}) {
        const auto row = model->toggle(each);
        EXPECT_FALSE(row.isEnabled);
        EXPECT_EQ(row.subtitle.english(), "This kind of session does not allow it");
        model->setToggle(each, !row.isOn);
        EXPECT_EQ(isOn(each), row.isOn);
    }
    for (const auto each : {Toggle::launchAtLogin, Toggle::applyOnLaunch, Toggle::restoreOnQuit,
                            Toggle::useSystemCursorForMissing, Toggle::glassMode})
        EXPECT_TRUE(model->toggle(each).isEnabled);
    EXPECT_FALSE(model->exclusionsEnabled());
    EXPECT_EQ(model->exclusionsExplanation().english(), "This kind of session does not allow it");
}

TEST_F(SettingsWindowModelTest, TheSectionsStandInTheirOrderWithTheirSymbols) {
    std::vector<std::string> seen;
    for (const auto& section : model->sections())
        seen.push_back(section.title.english() + " " + std::string(section.symbol));
    EXPECT_THAT(seen, ElementsAre("Startup power", "Behavior cursorarrow.motionlines",
                                  "Interface Style square.stack.3d.forward.dottedline",
                                  "Cursor Size arrow.up.left.and.arrow.down.right", "Exclusions nosign",
                                  "Reset arrow.counterclockwise.circle"));
    EXPECT_EQ(SettingsWindowModel::contentSize, (Size{480, 760}));
}

TEST_F(SettingsWindowModelTest, TheTogglesHaveTheirTextsAndSymbols) {
    std::vector<std::string> seen;
    for (const auto& section : model->sections())
        for (const auto& row : section.toggles)
            seen.push_back(row.title.english() + " | " + row.subtitle.english() + " | " +
                           std::string(row.icon));
    EXPECT_THAT(
        seen,
        ElementsAre("Launch at Login | Start Pintle when you log in | arrow.right.circle",
                    "Apply Last Cursor on Launch | Restore your cursor theme at startup | checkmark.circle",
                    "Restore System Cursor on Quit | Reset to default when closing app | "
                    "arrow.uturn.backward.circle",
                    "Use Themed Cursor in Fullscreen | Keep custom cursor in fullscreen apps | "
                    "rectangle.on.rectangle",
                    "Use System Cursor for Missing Types | Show system cursor (e.g., iBeam for text) when "
                    "theme doesn't have it | cursorarrow.rays",
                    "System Cursor During Screen Sharing | Remote viewers see the real cursor (recommended) "
                    "| dot.radiowaves.left.and.right",
                    "Total Glass Mode | Ultra-modern blurred transparency (macOS 2026) | square.on.square"));
}

TEST_F(SettingsWindowModelTest, AFreshInstallShowsTheDefaults) {
    EXPECT_FALSE(isOn(Toggle::launchAtLogin));
    EXPECT_TRUE(isOn(Toggle::applyOnLaunch));
    EXPECT_FALSE(isOn(Toggle::restoreOnQuit));
    EXPECT_FALSE(isOn(Toggle::alwaysUseThemedCursor));
    EXPECT_TRUE(isOn(Toggle::useSystemCursorForMissing));
    EXPECT_TRUE(isOn(Toggle::pauseWhenScreenShared));
    EXPECT_TRUE(isOn(Toggle::glassMode));
    EXPECT_EQ(model->cursorScale(), 1.0);
    EXPECT_EQ(model->newAppName(), "");
    EXPECT_FALSE(model->showAddAppField());
}

TEST_F(SettingsWindowModelTest, WithoutRegisteredDefaultsTheFieldsHaveTheirOwn) {
    world.store.defaults.clear();
    EXPECT_FALSE(isOn(Toggle::launchAtLogin));
    EXPECT_TRUE(isOn(Toggle::applyOnLaunch));
    EXPECT_FALSE(isOn(Toggle::restoreOnQuit));
    EXPECT_EQ(model->cursorScale(), 1.0);
}

TEST_F(SettingsWindowModelTest, EveryToggleFlipsWhatItIsBoundTo) {
    const std::vector<std::pair<Toggle, const char*>> toggles = {
        {Toggle::launchAtLogin, "launchAtLogin"},
        {Toggle::applyOnLaunch, "applyOnLaunch"},
        {Toggle::restoreOnQuit, "restoreOnQuit"},
        {Toggle::alwaysUseThemedCursor, "alwaysUseThemedCursor"},
        {Toggle::useSystemCursorForMissing, "useSystemCursorForMissing"},
        {Toggle::pauseWhenScreenShared, "pauseWhenScreenShared"},
        {Toggle::glassMode, "glassMode"}};
    for (const auto& [toggle, key] : toggles) {
        const bool before = isOn(toggle);
        int changes = 0;
        const auto observer = model->changed.observe([&] { ++changes; });
        model->setToggle(toggle, !before);
        EXPECT_EQ(isOn(toggle), !before) << key;
        EXPECT_EQ(world.store.object(key), PropertyValue(!before)) << key;
        EXPECT_GT(changes, 0) << key;
        world.store.writes.clear();
        model->setToggle(toggle, !before);
        EXPECT_THAT(world.store.writes, IsEmpty()) << key;
    }
}

TEST_F(SettingsWindowModelTest, TheStoredFieldsGoBehindTheBackOfTheSettings) {
    model->setToggle(Toggle::restoreOnQuit, true);
    model->setToggle(Toggle::applyOnLaunch, false);
    EXPECT_FALSE(world.settings.restoreOnQuit());
    EXPECT_TRUE(world.settings.applyOnLaunch());
}

TEST_F(SettingsWindowModelTest, LaunchAtLoginIsStoredBeforeItIsSetUp) {
    world.store.writes.clear();
    model->setToggle(Toggle::launchAtLogin, true);
    EXPECT_EQ(world.store.writes.front(), "launchAtLogin");
    EXPECT_THAT(service.calls, ElementsAre("register", "status"));
    service.calls.clear();
    model->setToggle(Toggle::launchAtLogin, false);
    EXPECT_EQ(service.calls.front(), "unregister");
}

TEST_F(SettingsWindowModelTest, AppearingBringsTheLaunchToggleToTheTruthWithoutSettingAnythingUp) {
    ASSERT_TRUE(agent->write("/Applications/Pintle"));
    ASSERT_FALSE(isOn(Toggle::launchAtLogin));
    model->appear();
    EXPECT_TRUE(isOn(Toggle::launchAtLogin));
    EXPECT_THAT(service.calls, ElementsAre("status"));
    ASSERT_TRUE(agent->remove());
    model->appear();
    EXPECT_FALSE(isOn(Toggle::launchAtLogin));
    EXPECT_THAT(service.calls, ElementsAre("status", "status"));
}

TEST_F(SettingsWindowModelTest, ChangesMadeElsewhereShow) {
    int changes = 0;
    const auto observer = model->changed.observe([&] { ++changes; });
    world.store.set("restoreOnQuit", true);
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(isOn(Toggle::restoreOnQuit));
    world.store.set("launchAtLogin", true);
    EXPECT_EQ(changes, 2);
    world.settings.setGlassOpacity(0.9);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(model->glassOpacityText().english(), "90%");
}

TEST_F(SettingsWindowModelTest, GlassOpacityRunsFromThreeQuartersToOneInTwentieths) {
    EXPECT_EQ(SettingsWindowModel::glassOpacityRange.from, 0.75);
    EXPECT_EQ(SettingsWindowModel::glassOpacityRange.to, 1.0);
    EXPECT_EQ(SettingsWindowModel::glassOpacityRange.step, 0.05);
    EXPECT_EQ(model->glassOpacityText().english(), "85%");
    model->setGlassOpacity(0.8999999);
    EXPECT_EQ(world.store.object("glassOpacity"), PropertyValue(0.9));
    world.store.writes.clear();
    model->setGlassOpacity(0.9);
    EXPECT_THAT(world.store.writes, IsEmpty());
}

TEST_F(SettingsWindowModelTest, GlassOpacityIsOnlyOfUseWithTheGlassLook) {
    EXPECT_TRUE(model->glassOpacityEnabled());
    model->setToggle(Toggle::glassMode, false);
    EXPECT_FALSE(model->glassOpacityEnabled());
}

TEST_F(SettingsWindowModelTest, FourScalesAreOfferedAndTheStoredOneIsMarked) {
    EXPECT_THAT(percentages(), ElementsAre("75%", "100% selected", "125%", "150%"));
    EXPECT_EQ(model->cursorScaleText().english(), "100%");
    world.store.set("cursorScale", 1.1);
    EXPECT_THAT(percentages(), ElementsAre("75%", "100%", "125%", "150%"));
    EXPECT_EQ(model->cursorScaleText().english(), "110%");
}

TEST_F(SettingsWindowModelTest, ClickingAnotherScaleStoresItSetsItAndAnnouncesItTwice) {
    model->selectScale(1.25);
    EXPECT_EQ(world.store.object("cursorScale"), PropertyValue(1.25));
    EXPECT_EQ(world.settings.cursorScale(), 1.25);
    EXPECT_THAT(announced, ElementsAre(1.25, 1.25));
    EXPECT_THAT(percentages(), ElementsAre("75%", "100%", "125% selected", "150%"));
}

TEST_F(SettingsWindowModelTest, ClickingTheScaleAlreadySelectedPostsAndStoresNothing) {
    model->selectScale(1.25);
    announced.clear();
    world.store.writes.clear();
    model->selectScale(1.25);
    EXPECT_THAT(announced, IsEmpty());
    EXPECT_THAT(world.store.writes, IsEmpty());
}

TEST_F(SettingsWindowModelTest, TheScaleIsStoredBeforeItIsAnnounced) {
    std::vector<PropertyValue> stored;
    const auto observer = world.notifications.observe("cursorScaleChanged", [&](const std::any&) {
        stored.push_back(*world.store.object("cursorScale"));
        EXPECT_EQ(world.settings.cursorScale(), 1.5);
    });
    model->selectScale(1.5);
    EXPECT_THAT(stored, ElementsAre(PropertyValue(1.5), PropertyValue(1.5)));
}

TEST_F(SettingsWindowModelTest, AScaleThatTheSettingsHaveAlreadyIsAnnouncedTwiceAllTheSame) {
    world.store.domain->insert_or_assign("cursorScale", 1.5);
    ASSERT_EQ(world.settings.cursorScale(), 1.0);
    model->selectScale(1.0);
    EXPECT_THAT(announced, ElementsAre(1.0, 1.0));
}

TEST_F(SettingsWindowModelTest, AScaleOfAnotherWriterAtWhichNothingCanBeDrawnIsLeftAloneUntilOneIsChosen) {
    for (const double scale :
         {1e18, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        world.store.writes.clear();
        announced.clear();
        world.store.set("cursorScale", scale);
        EXPECT_THAT(announced, IsEmpty());
        EXPECT_THAT(world.store.writes, ElementsAre("cursorScale")) << "the other writer's alone";
        EXPECT_EQ(world.settings.cursorScale(), 1.0);
        EXPECT_EQ(model->cursorScale(), 0.0);
        EXPECT_EQ(model->cursorScaleText().english(), "0%");
        model->selectScale(1.0);
        EXPECT_EQ(world.store.object("cursorScale"), PropertyValue(1.0));
        EXPECT_THAT(announced, ElementsAre(1.0, 1.0));
    }
}

TEST_F(SettingsWindowModelTest, AScaleStoredByAnotherWriterIsTakenOverAndOneOfTheSettingsIsNotRepeated) {
    world.store.set("cursorScale", 0.75);
    EXPECT_EQ(world.settings.cursorScale(), 0.75);
    EXPECT_THAT(announced, ElementsAre(0.75, 0.75));
    announced.clear();
    world.settings.setCursorScale(1.5);
    EXPECT_THAT(announced, ElementsAre(1.5));
    EXPECT_EQ(model->cursorScaleText().english(), "150%");
}

TEST_F(SettingsWindowModelTest, ADoubleAnnouncementAppliesTheThemeOnce) {
    world.applyNow(kIce);
    model->selectScale(1.25);
    world.scheduler.advance(10s);
    EXPECT_EQ(world.linesOf({"[CursorViewModel] Applying scale"}).size(), 1u);
    EXPECT_EQ(world.applier.currentScale(), 1.25);
}

TEST_F(SettingsWindowModelTest, AClickOnAScaleTakesBackWhatTheSliderHasStillToAskFor) {
    PopoverModel popover({*world.viewModel, world.updates, world.settings, world.notifications,
                          world.scheduler.mainQueue(), world.application, world.log});
    world.applyNow(kIce);
    popover.sliderChanged(1.5);
    world.scheduler.advance(100ms);
    model->selectScale(0.75);
    world.scheduler.advance(10s);
    EXPECT_EQ(world.applier.currentScale(), 0.75);
    EXPECT_EQ(popover.cursorScale(), 0.75);
}

TEST_F(SettingsWindowModelTest, ANameIsStoredWithoutTheBlanksAroundIt) {
    typeAndAdd(" \t Safari Technology\tPreview \t");
    EXPECT_THAT(model->excludedApps(), ElementsAre("Safari Technology\tPreview"));
    EXPECT_FALSE(model->showAddAppField());
    EXPECT_EQ(model->newAppName(), "");
}

TEST_F(SettingsWindowModelTest, LineBreaksAroundANameStay) {
    typeAndAdd(" \nSafari\n ");
    EXPECT_THAT(model->excludedApps(), ElementsAre("\nSafari\n"));
}

TEST_F(SettingsWindowModelTest, ANameOfBlanksOnlyAddsNothingAndKeepsTheFieldOpen) {
    for (const char* name : {"", " ", "\t \t"}) {
        typeAndAdd(name);
        EXPECT_THAT(model->excludedApps(), IsEmpty());
        EXPECT_TRUE(model->showAddAppField());
        EXPECT_EQ(model->newAppName(), name);
    }
}

TEST_F(SettingsWindowModelTest, ANameThatIsThereAlreadyAddsNothingAndClosesTheField) {
    int posted = 0;
    const auto observer =
        world.notifications.observe("excludedAppsChanged", [&](const std::any&) { ++posted; });
    typeAndAdd("Safari");
    typeAndAdd(" Safari");
    typeAndAdd("safari");
    EXPECT_THAT(model->excludedApps(), ElementsAre("Safari", "safari"));
    EXPECT_EQ(posted, 2);
    EXPECT_FALSE(model->showAddAppField());
}

TEST_F(SettingsWindowModelTest, TheDiscShowsAndHidesTheFieldAndKeepsWhatStandsInIt) {
    EXPECT_EQ(model->addButtonSymbol(), "plus.circle.fill");
    model->toggleAddAppField();
    EXPECT_EQ(model->addButtonSymbol(), "minus.circle.fill");
    model->setNewAppName("Saf");
    model->toggleAddAppField();
    EXPECT_FALSE(model->showAddAppField());
    EXPECT_EQ(model->newAppName(), "Saf");
}

TEST_F(SettingsWindowModelTest, AnOpenFieldStaysOpenBetweenTwoOpeningsOfTheWindow) {
    model->toggleAddAppField();
    model->setNewAppName("Saf");
    model->appear();
    EXPECT_TRUE(model->showAddAppField());
    EXPECT_EQ(model->newAppName(), "Saf");
}

TEST_F(SettingsWindowModelTest, CancelHidesTheFieldAndForgetsTheName) {
    model->toggleAddAppField();
    model->setNewAppName("Saf");
    model->cancelAddApp();
    EXPECT_FALSE(model->showAddAppField());
    EXPECT_EQ(model->newAppName(), "");
    EXPECT_THAT(model->excludedApps(), IsEmpty());
}

TEST_F(SettingsWindowModelTest, RemovesAnExcludedName) {
    typeAndAdd("Safari");
    typeAndAdd("Mail");
    EXPECT_EQ(SettingsWindowModel::removeLabel("Safari").english(), "Remove Safari");
    model->removeExcludedApp("Safari");
    EXPECT_THAT(model->excludedApps(), ElementsAre("Mail"));
    model->removeExcludedApp("Safari");
    EXPECT_THAT(model->excludedApps(), ElementsAre("Mail"));
}

TEST_F(SettingsWindowModelTest, TheTextsOfExclusionsAndResetAreToTheLetter) {
    EXPECT_EQ(settings_text::exclusionsExplanation, "Apps where themed cursor will NOT be applied");
    EXPECT_EQ(settings_text::addHelp, "Add app to exclusion list");
    EXPECT_EQ(settings_text::placeholder, "App name (e.g., Safari)");
    EXPECT_EQ(settings_text::noExclusions, "No exclusions added");
    EXPECT_EQ(settings_text::resetExplanation,
              "Reset all downloaded themes, settings, and restore system cursor");
    EXPECT_EQ(settings_text::resetButton, "Reset Application");
    EXPECT_EQ(settings_text::glassOpacity, "Glass Opacity");
}

TEST_F(SettingsWindowModelTest, ResetAsksFirst) {
    model->resetApplication();
    ASSERT_EQ(world.alerts.shown.size(), 1u);
    EXPECT_EQ(
        world.alerts.shown.front(),
        (Alert{AlertStyle::warning,
               "Reset Application?",
               "This will delete all downloaded themes, reset all settings to defaults, and restore the "
               "system cursor. Pintle will quit after reset.",
               {"Reset & Quit", "Cancel"}}));
    EXPECT_THAT(world.log.outputLines, IsEmpty());
}

TEST_F(SettingsWindowModelTest, CancellingTheResetChangesNothing) {
    world.applyNow(kIce);
    world.store.writes.clear();
    model->resetApplication();
    world.alerts.answer(0, 1);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(std::filesystem::exists(world.cursorsOf(kIce)));
    EXPECT_THAT(world.store.writes, IsEmpty());
    EXPECT_EQ(world.store.domainRemovals, 0);
    EXPECT_TRUE(world.viewModel->currentTheme());
    EXPECT_THAT(world.transcript, ElementsAre("alerts runModal \"Reset Application?\""));
    EXPECT_EQ(world.application.terminations, 0);
}

TEST_F(SettingsWindowModelTest, AConfirmedResetDeletesEverythingSaysSoAndEndsTheProgram) {
    world.applyNow(kIce);
    typeAndAdd("Safari");
    model->selectScale(1.5);
    world.scheduler.runUntilIdle();
    model->resetApplication();
    world.alerts.answer(0, 0);
    EXPECT_FALSE(std::filesystem::exists(world.themesDirectory()));
    EXPECT_THAT(*world.store.domain, ElementsAre(testing::Pair("cursorScale", PropertyValue(1.0))));
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_EQ(world.log.outputLines.back(), "[RESET] Full reset completed!");
    ASSERT_EQ(world.alerts.shown.size(), 2u);
    EXPECT_EQ(world.alerts.shown.back(),
              (Alert{AlertStyle::informational,
                     "Reset Complete",
                     "Application has been reset. Pintle will now quit. Launch it again to start fresh.",
                     {"Quit"}}));
    EXPECT_EQ(world.application.terminations, 0);
    world.alerts.answer(1, 0);
    EXPECT_THAT(world.transcript, ElementsAre("alerts runModal \"Reset Application?\"",
                                              "alerts runModal \"Reset Complete\"", "application terminate"));
    world.scheduler.advance(10s);
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
}

TEST_F(SettingsWindowModelTest, TheResetAnnouncesTheScaleAsOftenAsItDoesWithoutAWindow) {
    model->selectScale(1.5);
    model->resetApplication();
    announced.clear();
    world.alerts.answer(0, 0);
    EXPECT_THAT(announced, ElementsAre(1.0));
}

TEST_F(SettingsWindowModelTest, ASecondClickOnResetAsksNoSecondQuestion) {
    model->resetApplication();
    model->resetApplication();
    EXPECT_EQ(world.alerts.shown.size(), 1u);
    world.alerts.answer(0, 1);
    model->resetApplication();
    EXPECT_EQ(world.alerts.shown.size(), 2u);
}

TEST_F(SettingsWindowModelTest, AnAnswerThatComesAfterItsEndDoesNothing) {
    model->resetApplication();
    model.reset();
    world.alerts.answer(0, 0);
    EXPECT_THAT(world.log.outputLines, IsEmpty());
    world.store.set("cursorScale", 1.5);
    EXPECT_EQ(world.settings.cursorScale(), 1.0);
}

}  // namespace
}  // namespace pintle
