#include "themes/animation_detection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_world.h"
#include "tests/support/xcursor_builder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::vector<std::uint8_t> stillFile() { return XCursorBuilder().image({.size = 32}).bytes(); }
std::vector<std::uint8_t> animatedFile() {
    return XCursorBuilder().image({.size = 32, .delay = 50}).image({.size = 32, .delay = 50}).bytes();
}

struct ThemeHasAnimationTest : testing::Test {
    TemporaryFolder folder;
    void put(const std::string& name, std::span<const std::uint8_t> bytes) {
        writeFile(folder.path() / "cursors" / name, bytes);
    }
    bool animated() const { return themeHasAnimation(folder.path()); }
};

TEST_F(ThemeHasAnimationTest, TwoImagesOfOneSizeWithADelayAreAnAnimation) {
    put("left_ptr", animatedFile());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, OneDelayAmongTheImagesOfASizeIsEnough) {
    put("left_ptr", XCursorBuilder().image({}).image({}).image({.delay = 1}).bytes());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, ImagesWithoutADelayAreNoAnimation) {
    put("left_ptr", XCursorBuilder().image({}).image({}).image({}).bytes());
    EXPECT_FALSE(animated());
}

TEST_F(ThemeHasAnimationTest, OneImagePerSizeIsNoAnimationWhateverItsDelay) {
    put("left_ptr",
        XCursorBuilder().image({.size = 24, .delay = 50}).image({.size = 32, .delay = 50}).bytes());
    EXPECT_FALSE(animated());
}

TEST_F(ThemeHasAnimationTest, ADelayOfAnotherSizeDoesNotCount) {
    put("left_ptr",
        XCursorBuilder().image({.size = 24}).image({.size = 24}).image({.size = 32, .delay = 50}).bytes());
    EXPECT_FALSE(animated());
}

TEST_F(ThemeHasAnimationTest, AnySizeMayShowTheAnimation) {
    put("left_ptr",
        XCursorBuilder().image({.size = 24}).image({.size = 96, .delay = 40}).image({.size = 96}).bytes());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, FramesWithoutTheirPixelsCount) {
    put("left_ptr", XCursorBuilder()
                        .image({.delay = 50, .writePixels = false})
                        .image({.delay = 50, .writePixels = false})
                        .bytes());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, AStillLeftPtrBesideAnAnimatedDefaultIsAnimated) {
    put("left_ptr", stillFile());
    put("default", animatedFile());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, AnAnimatedArrowAloneIsEnough) {
    put("left_ptr", stillFile());
    put("default", stillFile());
    put("arrow", animatedFile());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, OnlyAnAnimatedWatchIsNotAnimated) {
    put("left_ptr", stillFile());
    put("watch", animatedFile());
    put("wait", animatedFile());
    EXPECT_FALSE(animated());
}

TEST_F(ThemeHasAnimationTest, MissingUnreadableAndBrokenCandidatesAreSkipped) {
    EXPECT_FALSE(animated());
    fs::create_directories(folder.path() / "cursors/left_ptr");
    put("default", std::vector<std::uint8_t>{1, 2, 3});
    EXPECT_FALSE(animated());
    put("arrow", animatedFile());
    EXPECT_TRUE(animated());
}

TEST_F(ThemeHasAnimationTest, OnlyTheFixedCursorsFolderIsLookedAt) {
    writeFile(folder.path() / "nested/cursors/left_ptr", animatedFile());
    EXPECT_FALSE(animated());
}

struct AnimationDetectionTest : testing::Test {
    TestWorld world;
    CursorSettings settings{world.store, world.notifications};
    ThemeStore store{world.directories, world.log};
    ThemeList list{store, settings, world.log};

    void download(const std::string& id, std::span<const std::uint8_t> bytes) {
        writeFile(world.themesDirectory() / id / "cursors/left_ptr", bytes);
    }
    /// All steps as at a start.
    void detect() {
        const auto themes = themesToExamine(world.store, list, store);
        recordAnimationAnswers(examineThemes(themes), world.store, list);
    }
    std::vector<std::string> namesToExamine() {
        std::vector<std::string> ids;
        for (const auto& theme : themesToExamine(world.store, list, store)) ids.push_back(theme.id);
        return ids;
    }
    PropertyValue record() { return world.store.domain->at("animatedThemeCheckV2"); }
};

TEST_F(AnimationDetectionTest, ExaminesDownloadedThemesWithoutAnAnswerInListOrder) {
    for (const auto* id : {"fuchsia", "banana", "bibata-modern-ice"}) download(id, stillFile());
    list.loadThemes();
    world.store.set("animatedThemeCheckV2", PropertyDictionary{{"fuchsia", false}, {"breezex", true}});
    EXPECT_THAT(
        themesToExamine(world.store, list, store),
        ElementsAre(ThemeToExamine{"bibata-modern-ice", world.themesDirectory() / "bibata-modern-ice"},
                    ThemeToExamine{"banana", world.themesDirectory() / "banana"}));
}

TEST_F(AnimationDetectionTest, RecordsTheAnswersAndMarksTheRows) {
    download("banana", animatedFile());
    download("fuchsia", stillFile());
    list.loadThemes();
    detect();
    EXPECT_EQ(record(), PropertyValue(PropertyDictionary{{"banana", true}, {"fuchsia", false}}));
    for (const auto& theme : list.themes()) EXPECT_EQ(theme.isAnimated, theme.id == "banana");
}

TEST_F(AnimationDetectionTest, AThemeDownloadedAfterTheFirstStartGetsItsMark) {
    list.loadThemes();
    detect();
    EXPECT_EQ(record(), PropertyValue(PropertyDictionary{}));
    download("banana", animatedFile());
    list.loadThemes();
    detect();
    EXPECT_TRUE(list.find("banana")->isAnimated);
}

TEST_F(AnimationDetectionTest, AnAnswerOnRecordIsNotExaminedAgain) {
    download("banana", stillFile());
    list.loadThemes();
    world.store.set("animatedThemeCheckV2", PropertyDictionary{{"banana", true}});
    EXPECT_THAT(namesToExamine(), IsEmpty());
    detect();
    EXPECT_TRUE(list.find("banana")->isAnimated);
    EXPECT_EQ(record(), PropertyValue(PropertyDictionary{{"banana", true}}));
}

TEST_F(AnimationDetectionTest, TheRecordIsWrittenBackAlsoWhenNothingIsNew) {
    list.loadThemes();
    detect();
    detect();
    EXPECT_THAT(world.store.writes, ElementsAre("animatedThemeCheckV2", "animatedThemeCheckV2"));
}

TEST_F(AnimationDetectionTest, IllTypedEntriesCountAsNoAnswer) {
    download("banana", animatedFile());
    download("fuchsia", stillFile());
    list.loadThemes();
    world.store.set("animatedThemeCheckV2", PropertyDictionary{{"banana", "no"}, {"fuchsia", true}});
    EXPECT_THAT(animationAnswers(world.store), ElementsAre(Pair("fuchsia", true)));
    EXPECT_THAT(namesToExamine(), ElementsAre("banana"));
    detect();
    EXPECT_EQ(record(), PropertyValue(PropertyDictionary{{"banana", true}, {"fuchsia", true}}));
}

TEST_F(AnimationDetectionTest, ARecordThatIsNoDictionaryCountsAsEmpty) {
    download("banana", animatedFile());
    list.loadThemes();
    world.store.set("animatedThemeCheckV2", "yes");
    EXPECT_THAT(animationAnswers(world.store), IsEmpty());
    detect();
    EXPECT_EQ(record(), PropertyValue(PropertyDictionary{{"banana", true}}));
}

TEST_F(AnimationDetectionTest, AnswersJoinTheRecordAsItIsWhenTheyArrive) {
    download("banana", animatedFile());
    download("fuchsia", animatedFile());
    list.loadThemes();
    const auto answers = examineThemes(themesToExamine(world.store, list, store));
    world.store.set("animatedThemeCheckV2", PropertyDictionary{{"breezex", true}});
    auto deleted = *list.find("fuchsia");
    deleted.isDownloaded = false;
    list.replace(deleted);
    recordAnimationAnswers(answers, world.store, list);
    EXPECT_EQ(record(), PropertyValue(PropertyDictionary{{"banana", true}, {"breezex", true}}));
    EXPECT_FALSE(list.find("fuchsia")->isAnimated);
}

TEST_F(AnimationDetectionTest, TheCandidatesAreLookedAtInTheirOrder) {
    EXPECT_THAT(animationCandidates, ElementsAre("left_ptr", "default", "arrow"));
}

}  // namespace
}  // namespace pintle
