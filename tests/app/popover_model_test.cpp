#include "app/popover_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/notification_names.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr auto kIce = ModelWorld::ice;
constexpr auto kBanana = ModelWorld::banana;
/// Classed as left-handed, whatever its name says.
constexpr auto kLeft = "bibata-modern-ice-right";

struct PopoverModelTest : testing::Test {
    ModelWorld world;
    std::unique_ptr<PopoverModel> model;

    PopoverModelTest() {
        world.writeTheme(kIce, 0x102030);
        world.writeTheme(kBanana, 0xC0B000);
        world.start();
        make();
    }
    void make(PopoverModel::Session session = PopoverModel::Session::pointerCanChange) {
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log},
            session);
        world.log.systemLines.clear();
    }
    std::size_t listed(CursorHandedness filter) {
        model->select(filter);
        return model->rowIds().size();
    }
    std::vector<std::string> scaleLines() const {
        return world.linesOf({"[CursorViewModel] Applying scale"});
    }
};

TEST_F(PopoverModelTest, TheHeaderNamesTheProgram) {
    EXPECT_EQ(PopoverModel::logo, "cursorarrow.motionlines");
    EXPECT_EQ(PopoverModel::title().english(), "Pintle");
    EXPECT_EQ(PopoverModel::contentSize, (Size{340, 520}));
}

TEST_F(PopoverModelTest, TheHeaderButtonsPostTheirRequests) {
    std::vector<std::string> posted;
    std::vector<Subscription> observers;
    for (const auto name :
         {notification::openSettingsRequest, notification::openAboutRequest, notification::quitAppRequest})
        observers.push_back(world.notifications.observe(
            std::string(name), [&posted, name](const std::any&) { posted.emplace_back(name); }));
    std::vector<std::string> names;
    for (const auto& button : PopoverModel::headerButtons()) {
        names.push_back(button.name.english());
        model->press(button.request);
    }
    EXPECT_THAT(posted, ElementsAre("openSettingsRequest", "openAboutRequest", "quitAppRequest"));
    EXPECT_THAT(names, ElementsAre("Settings", "About Pintle", "Quit Pintle"));
}

TEST_F(PopoverModelTest, TheUpdateButtonComesWithANewerVersionAndOpensTheDownloadPage) {
    EXPECT_FALSE(model->updateButton());
    int changes = 0;
    const auto observer = model->changed.observe([&] { ++changes; });
    world.publishVersion("1.4.0");
    EXPECT_GT(changes, 0);
    EXPECT_EQ(model->updateButton()->english(), "Update 1.4.0");
    model->openDownloadPage();
    EXPECT_THAT(world.transcript, ElementsAre("application openUrl https://updates.test/get"));
}

TEST_F(PopoverModelTest, TheFilterButtonsStandInTheOrderOfTheCasesWithTheirSymbols) {
    std::vector<std::string> seen;
    for (const auto& button : model->filterButtons())
        seen.push_back(button.title.english() + " " + std::string(button.icon) +
                       (button.isSelected ? " selected" : ""));
    EXPECT_THAT(seen, ElementsAre("All person.2.fill selected", "Universal hand.raised.fill",
                                  "Right hand.point.right.fill", "Left hand.point.left.fill"));
    model->select(CursorHandedness::leftHanded);
    EXPECT_TRUE(model->filterButtons()[3].isSelected);
    EXPECT_FALSE(model->filterButtons()[0].isSelected);
}

TEST_F(PopoverModelTest, TheRightFilterListsUniversalAndRightHandedThemesAndNoLeftHandedOne) {
    model->select(CursorHandedness::rightHanded);
    EXPECT_THAT(model->rowIds(), AllOf(Contains(kBanana), Contains(kIce), Not(Contains(kLeft))));
    model->select(CursorHandedness::leftHanded);
    EXPECT_THAT(model->rowIds(), AllOf(Contains(kBanana), Contains(kLeft), Not(Contains(kIce))));
}

TEST_F(PopoverModelTest, TheUniversalFilterHidesTheThemesOfBothHands) {
    model->select(CursorHandedness::universal);
    EXPECT_THAT(model->rowIds(), AllOf(Contains(kBanana), Not(Contains(kIce)), Not(Contains(kLeft))));
    for (const auto& id : model->rowIds())
        EXPECT_EQ(world.theme(id).handedness, CursorHandedness::universal) << id;
}

TEST_F(PopoverModelTest, EveryThemePassesTheFiltersThatItShould) {
    const auto all = listed(CursorHandedness::all);
    const auto universal = listed(CursorHandedness::universal);
    const auto right = listed(CursorHandedness::rightHanded);
    const auto left = listed(CursorHandedness::leftHanded);
    EXPECT_EQ(all, 77u);
    EXPECT_EQ(all, right + left - universal);
}

TEST_F(PopoverModelTest, TheRowsStandInCatalogOrder) {
    std::vector<std::string> expected;
    for (const auto& theme : CursorThemeInfo::catalog())
        if (theme.handedness != CursorHandedness::leftHanded) expected.push_back(theme.id);
    model->select(CursorHandedness::rightHanded);
    EXPECT_EQ(model->rowIds(), expected);
}

TEST_F(PopoverModelTest, EachEvaluationOfTheFilteredThemesIsLogged) {
    const auto filtered = world.viewModel->filteredThemes();
    EXPECT_EQ(filtered.size(), 77u);
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[VIEWMODEL] filteredThemes called: filter=All, total=77, filtered=77"));
    world.log.systemLines.clear();
    model->select(CursorHandedness::universal);
    const auto count = std::to_string(model->rowIds().size());
    EXPECT_THAT(
        world.log.systemLines,
        ElementsAre("[VIEWMODEL] filteredThemes called: filter=Universal, total=77, filtered=" + count));
}

TEST_F(PopoverModelTest, AProgressReportDoesNotEvaluateTheListAgain) {
    world.changeRow(kLeft, [](auto& row) { row.downloadProgress = 0.5; });
    EXPECT_THAT(world.linesOf({"[VIEWMODEL] filteredThemes"}), IsEmpty());
}

TEST_F(PopoverModelTest, AppearingLogsItsLinesWithBothSizes) {
    model->select(CursorHandedness::universal);
    world.log.systemLines.clear();
    model->onAppear();
    EXPECT_THAT(world.linesOf({"[POPOVER]"}),
                ElementsAre("[POPOVER] ON APPEAR CALLED!!!",
                            "[POPOVER] themes: 77, filtered: " + std::to_string(model->rowIds().size())));
}

TEST_F(PopoverModelTest, AppearingReadsTheScaleAgain) {
    world.settings.setCursorScale(1.35);
    model->onAppear();
    EXPECT_EQ(model->cursorScale(), 1.35);
    EXPECT_EQ(model->scalePercent(), 135);
    EXPECT_EQ(model->scaleText().english(), "135%");
}

TEST_F(PopoverModelTest, StartsWithTheStoredScaleAlsoWhenItIsOutsideOfTheRange) {
    world.settings.setCursorScale(10);
    make();
    EXPECT_EQ(model->cursorScale(), 10);
    EXPECT_EQ(model->scaleText().english(), "1000%");
    EXPECT_EQ(PopoverModel::scaleRange.position(model->cursorScale()), 1);
    EXPECT_EQ(world.settings.cursorScale(), 10);
}

TEST_F(PopoverModelTest, TheSliderRunsFromThreeQuartersToOneAndAHalfInTwentieths) {
    EXPECT_EQ(PopoverModel::scaleRange.from, 0.75);
    EXPECT_EQ(PopoverModel::scaleRange.to, 1.5);
    EXPECT_EQ(PopoverModel::scaleRange.step, 0.05);
    EXPECT_EQ(PopoverModel::scaleNotch, 1.0);
}

TEST_F(PopoverModelTest, DraggingStoresEachValueAndAppliesOnceTheSliderHasRested) {
    world.applyNow(kIce);
    std::vector<double> announced;
    const auto observer = world.notifications.observe("cursorScaleChanged", [&](const std::any& scale) {
        announced.push_back(std::any_cast<double>(scale));
        EXPECT_EQ(world.store.object("cursorScale"), PropertyValue(announced.back()));
    });
    for (const double value : {1.05, 1.1, 1.15, 1.2, 1.25}) {
        model->sliderChanged(value);
        world.scheduler.advance(100ms);
    }
    EXPECT_THAT(announced, ElementsAre(1.05, 1.1, 1.15, 1.2, 1.25));
    // What the change of the setting asks for by itself has been asked for by now.
    world.log.systemLines.clear();
    world.scheduler.advance(199ms);
    EXPECT_THAT(scaleLines(), IsEmpty());
    world.scheduler.advance(1ms);
    EXPECT_THAT(scaleLines(),
                ElementsAre("[CursorViewModel] Applying scale: 1.25 for theme: Bibata Modern Ice"));
    world.log.systemLines.clear();
    world.scheduler.advance(10s);
    EXPECT_THAT(scaleLines(), IsEmpty());
}

TEST_F(PopoverModelTest, ADragAppliesEachValueByTheSettingAndTheLastOnceMoreByTheSlider) {
    world.applyNow(kIce);
    for (const double value : {1.05, 1.1, 1.15, 1.2, 1.25}) {
        model->sliderChanged(value);
        world.scheduler.advance(100ms);
    }
    world.scheduler.advance(10s);
    std::vector<std::string> lines;
    for (const char* scale : {"1.05", "1.1", "1.15", "1.2", "1.25", "1.25"})
        lines.push_back(std::string("[CursorViewModel] Applying scale: ") + scale +
                        " for theme: Bibata Modern Ice");
    EXPECT_EQ(scaleLines(), lines);
    EXPECT_EQ(world.applier.currentScale(), 1.25);
}

TEST_F(PopoverModelTest, DraggingWithoutACurrentThemeAppliesNothing) {
    model->sliderChanged(1.25);
    world.scheduler.advance(10s);
    EXPECT_THAT(scaleLines(), IsEmpty());
    EXPECT_EQ(world.store.object("cursorScale"), PropertyValue(1.25));
}

TEST_F(PopoverModelTest, TheThemeThatIsCurrentWhenTheSliderHasRestedIsTheOneApplied) {
    world.applyNow(kIce);
    model->sliderChanged(1.25);
    world.scheduler.advance(100ms);
    world.applyNow(kBanana);
    world.scheduler.advance(200ms);
    EXPECT_THAT(scaleLines(), ElementsAre("[CursorViewModel] Applying scale: 1.25 for theme: Banana"));
}

TEST_F(PopoverModelTest, AValueThatTheSliderHasAlreadyIsNoChange) {
    int announced = 0;
    const auto observer =
        world.notifications.observe("cursorScaleChanged", [&](const std::any&) { ++announced; });
    model->sliderChanged(1.0);
    model->sliderChanged(1.0000000000000002);
    EXPECT_EQ(announced, 0);
    model->sliderChanged(1.1500000000000001);
    model->sliderChanged(1.15);
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(world.settings.cursorScale(), 1.15);
}

TEST_F(PopoverModelTest, AScaleSetElsewhereMovesTheSliderAndTakesItsPendingRequestBack) {
    world.applyNow(kIce);
    model->sliderChanged(1.5);
    world.scheduler.advance(100ms);
    world.settings.setCursorScale(0.75);
    EXPECT_EQ(model->cursorScale(), 0.75);
    world.scheduler.advance(10s);
    EXPECT_EQ(world.applier.currentScale(), 0.75);
    EXPECT_EQ(scaleLines().back(), "[CursorViewModel] Applying scale: 0.75 for theme: Bibata Modern Ice");
}

TEST_F(PopoverModelTest, ResetBringsTheScaleBackTheWayTheSliderDoes) {
    world.applyNow(kIce);
    model->sliderChanged(1.5);
    world.scheduler.advance(1s);
    world.log.systemLines.clear();
    model->resetScale();
    EXPECT_EQ(world.store.object("cursorScale"), PropertyValue(1.0));
    EXPECT_EQ(model->cursorScale(), 1.0);
    world.scheduler.runUntilIdle();
    world.log.systemLines.clear();
    world.scheduler.advance(300ms);
    EXPECT_THAT(scaleLines(),
                ElementsAre("[CursorViewModel] Applying scale: 1.0 for theme: Bibata Modern Ice"));
    EXPECT_TRUE(world.viewModel->currentTheme());
}

TEST_F(PopoverModelTest, SystemDefaultGoesBackToTheDesktopsCursorsAndKeepsTheScale) {
    world.applyNow(kIce);
    model->sliderChanged(1.25);
    model->resetToDefault();
    EXPECT_FALSE(world.viewModel->currentTheme());
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    world.scheduler.advance(10s);
    EXPECT_THAT(world.windowServer.registered, IsEmpty());
    EXPECT_EQ(model->cursorScale(), 1.25);
}

TEST_F(PopoverModelTest, TappingADownloadedThemeAppliesIt) {
    model->buttonAction(kIce);
    EXPECT_THAT(world.linesOf({"[UI]", "[APPLY]"}),
                ElementsAre("[UI] BUTTON ACTION FIRED for theme: Bibata Modern Ice",
                            "[UI] handleTap() called for theme: Bibata Modern Ice, isDownloaded: 1",
                            "[UI] Theme is downloaded, calling applyTheme()",
                            "[APPLY] Applying theme: Bibata Modern Ice at scale: 1.0"));
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(model->row(kIce).isActive);
    EXPECT_FALSE(model->row(kBanana).isActive);
}

TEST_F(PopoverModelTest, TappingAThemeThatIsNotDownloadedDownloadsItAndDoesNotApplyIt) {
    model->buttonAction(kLeft);
    EXPECT_THAT(world.linesOf({"[UI]"}),
                ElementsAre("[UI] BUTTON ACTION FIRED for theme: Bibata Modern Ice (Right)",
                            "[UI] handleTap() called for theme: Bibata Modern Ice (Right), isDownloaded: 0",
                            "[UI] Theme NOT downloaded, calling downloadTheme()"));
    EXPECT_TRUE(world.log.has(std::string("[DOWNLOAD] downloadTheme() CALLED for theme: ") + kLeft));
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme(kLeft).isDownloading);
    EXPECT_THAT(world.linesOf({"[APPLY]"}), IsEmpty());
}

TEST_F(PopoverModelTest, ATapOnAThemeThatIsBeingDownloadedStartsNoSecondDownload) {
    model->buttonAction(kLeft);
    world.scheduler.runUntilIdle();
    world.log.systemLines.clear();
    model->buttonAction(kLeft);
    EXPECT_THAT(world.linesOf({"[UI]", "[DOWNLOAD]"}), IsEmpty());
    EXPECT_EQ(world.http.requests.size(), 1u);
}

TEST_F(PopoverModelTest, ATapOnAFailedDownloadStartsItAgain) {
    world.changeRow(kLeft, [](auto& row) { row.downloadError = "HTTP 404"; });
    EXPECT_EQ(model->row(kLeft).statusText.english(), "Error - Tap to retry");
    model->buttonAction(kLeft);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.http.requests.size(), 1u);
    EXPECT_EQ(model->row(kLeft).status, RowStatus::downloading);
}

TEST_F(PopoverModelTest, ARowWhoseIdNoThemeHasIsUnknownAndATapOnItHarmsNothing) {
    EXPECT_EQ(model->row("gone").name.english(), "Unknown");
    model->buttonAction("gone");
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.linesOf({"[UI]"}),
                ElementsAre("[UI] BUTTON ACTION FIRED for theme: Unknown",
                            "[UI] handleTap() called for theme: Unknown, isDownloaded: 0",
                            "[UI] Theme NOT downloaded, calling downloadTheme()"));
    EXPECT_THAT(world.http.requests, IsEmpty());
}

TEST_F(PopoverModelTest, DeletingADownloadedThemeRemovesIt) {
    model->deleteTheme(kIce);
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.theme(kIce).isDownloaded);
    EXPECT_FALSE(std::filesystem::exists(world.themesDirectory() / kIce));
    EXPECT_EQ(model->row(kIce).statusText.english(), "Click to download");
}

TEST_F(PopoverModelTest, ARowWithoutADeleteButtonDeletesNothing) {
    model->deleteTheme(kLeft);
    world.changeRow(kIce, [](auto& row) { row.isApplying = true; });
    model->deleteTheme(kIce);
    model->deleteTheme("gone");
    world.scheduler.runUntilIdle();
    EXPECT_THAT(world.linesOf({"[DELETE]"}), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(world.themesDirectory() / kIce));
}

TEST_F(PopoverModelTest, AChangeOfOneRowReportsThatRowAlone) {
    std::vector<std::vector<std::string>> reported;
    int replaced = 0;
    const auto rows = model->rowsChanged.observe([&](const auto& ids) { reported.push_back(ids); });
    const auto list = model->rowsReplaced.observe([&] { ++replaced; });
    world.changeRow(kLeft, [](auto& row) { row.downloadProgress = 0.5; });
    EXPECT_THAT(reported, IsEmpty()) << "a bar that is not shown has not changed";
    world.changeRow(kLeft, [](auto& row) { row.isDownloading = true; });
    EXPECT_THAT(reported, ElementsAre(ElementsAre(kLeft)));
    EXPECT_EQ(replaced, 0);
}

TEST_F(PopoverModelTest, AnApplyReportsTheRowsThatItTouches) {
    world.applyNow(kIce);
    std::set<std::string> reported;
    const auto rows =
        model->rowsChanged.observe([&](const auto& ids) { reported.insert(ids.begin(), ids.end()); });
    model->buttonAction(kBanana);
    world.scheduler.runUntilIdle();
    EXPECT_THAT(reported, ElementsAre(kBanana, kIce));
}

TEST_F(PopoverModelTest, AnotherFilterReplacesTheListAndChangesNoRow) {
    int changedRows = 0;
    int replaced = 0;
    int changes = 0;
    const auto rows = model->rowsChanged.observe([&](const auto&) { ++changedRows; });
    const auto list = model->rowsReplaced.observe([&] { ++replaced; });
    const auto rest = model->changed.observe([&] { ++changes; });
    model->select(CursorHandedness::universal);
    EXPECT_EQ(changedRows, 0);
    EXPECT_EQ(replaced, 1);
    EXPECT_EQ(changes, 1);
    model->select(CursorHandedness::universal);
    EXPECT_EQ(replaced, 1);
}

TEST_F(PopoverModelTest, TheBackgroundFollowsTheGlassSettings) {
    EXPECT_EQ(model->glass(), (GlassBackground{true, 0.85}));
    int changes = 0;
    const auto observer = model->changed.observe([&] { ++changes; });
    world.settings.setGlassMode(false);
    EXPECT_FALSE(model->glass().isOn);
    EXPECT_EQ(changes, 1);
    world.settings.setGlassOpacity(0.95);
    EXPECT_EQ(model->glass().opacity, 0.95);
}

TEST_F(PopoverModelTest, AnOpacityOutsideOfTheRangeIsDrawnAsItsNearestEndAndStaysStored) {
    for (const auto& [stored, drawn] : {std::pair{0.2, 0.75}, {1.7, 1.0}, {-1.0, 0.75}}) {
        world.settings.setGlassOpacity(stored);
        EXPECT_EQ(model->glass().opacity, drawn);
        EXPECT_EQ(world.store.object("glassOpacity"), PropertyValue(stored));
    }
}

TEST_F(PopoverModelTest, WhereThePointerCannotChangeItSaysSoAndPretendsNothing) {
    EXPECT_FALSE(model->unavailable());
    EXPECT_TRUE(model->footerEnabled());
    world.applyNow(kIce);
    make(PopoverModel::Session::pointerCannotChange);
    ASSERT_TRUE(model->unavailable());
    EXPECT_THAT(model->unavailable()->english(), testing::StartsWith("Pintle cannot change the pointer"));
    EXPECT_FALSE(model->footerEnabled());
    EXPECT_FALSE(model->row(kIce).isActive);
    model->buttonAction(kBanana);
    EXPECT_THAT(world.linesOf({"[UI]", "[APPLY]"}), IsEmpty());
    model->buttonAction(kLeft);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme(kLeft).isDownloading);
}

TEST_F(PopoverModelTest, WhereThePointerFollowsASettingItSaysWhoFollowsLaterAndEverythingElseWorks) {
    world.applyNow(kIce);
    make(PopoverModel::Session::pointerFollowsSetting);
    ASSERT_TRUE(model->unavailable());
    EXPECT_THAT(model->unavailable()->english(), testing::HasSubstr("until they are restarted"));
    EXPECT_TRUE(model->footerEnabled());
    EXPECT_TRUE(model->row(kIce).isActive);
    EXPECT_TRUE(model->row(kIce).acceptsTap);
}

TEST_F(PopoverModelTest, NothingOfItRunsAfterItsEnd) {
    world.applyNow(kIce);
    model->sliderChanged(1.25);
    world.scheduler.runUntilIdle();
    model.reset();
    world.log.systemLines.clear();
    world.scheduler.advance(1s);
    EXPECT_THAT(scaleLines(), IsEmpty());
    world.settings.setGlassMode(false);
    world.viewModel->setSelectedFilter(CursorHandedness::universal);
}

}  // namespace
}  // namespace pintle
