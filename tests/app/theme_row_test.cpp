#include "app/theme_row.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Bitmap picture() {
    return *Bitmap::create(2, 2, [](auto bytes) { std::fill(bytes.begin(), bytes.end(), 0x80); });
}

CursorThemeInfo ice() {
    CursorThemeInfo theme;
    theme.id = "bibata-modern-ice";
    theme.name = "Bibata Modern Ice";
    theme.author = "Somebody";
    theme.license = "GPL-3.0";
    theme.handedness = CursorHandedness::rightHanded;
    return theme;
}
CursorThemeInfo downloaded() {
    auto theme = ice();
    theme.isDownloaded = true;
    theme.previewImage = picture();
    return theme;
}
CursorThemeInfo downloading(std::string status, double progress) {
    auto theme = ice();
    theme.isDownloading = true;
    theme.downloadStatus = std::move(status);
    theme.downloadProgress = progress;
    return theme;
}
ThemeRow rowOf(const CursorThemeInfo& theme, bool isActive = false) {
    return themeRow(&theme, theme.id, isActive);
}
std::vector<std::string> description(const ThemeRow& row) {
    std::vector<std::string> words;
    for (const auto& word : row.accessibleDescription) words.push_back(word.english());
    return words;
}

TEST(ThemeRowTest, AThemeThatIsNotDownloadedOffersItsDownload) {
    const auto row = rowOf(ice());
    EXPECT_EQ(row.name.english(), "Bibata Modern Ice");
    EXPECT_EQ(row.nameWeight, RowWeight::regular);
    EXPECT_EQ(row.author, "Somebody");
    EXPECT_EQ(row.license, "GPL-3.0");
    EXPECT_EQ(row.tile, RowTile::download);
    EXPECT_EQ(row.tileSymbol, "arrow.down.to.line");
    EXPECT_EQ(row.tileTone, RowTone::quiet);
    EXPECT_EQ(row.statusText.english(), "Click to download");
    EXPECT_EQ(row.statusTone, RowTone::quiet);
    EXPECT_EQ(row.progress, RowProgress::none);
    EXPECT_EQ(row.mark, RowMark::circle);
    EXPECT_EQ(row.markSymbol, "circle");
    EXPECT_FALSE(row.canDelete);
    EXPECT_FALSE(row.errorTooltip);
    EXPECT_TRUE(row.acceptsTap);
}

TEST(ThemeRowTest, ADownloadWithoutATextYetIsStarting) {
    const auto row = rowOf(downloading("", 0));
    EXPECT_EQ(row.statusText.english(), "Starting...");
    EXPECT_EQ(row.statusTone, RowTone::accent);
    EXPECT_EQ(row.tile, RowTile::download);
    EXPECT_EQ(row.tileTone, RowTone::accent);
    EXPECT_EQ(row.progress, RowProgress::indeterminate);
    EXPECT_EQ(row.mark, RowMark::circle);
}

TEST(ThemeRowTest, ADownloadShowsItsStatusAsItIsAndItsProgressAsABar) {
    const auto row = rowOf(downloading("Downloading 50%", 0.4));
    EXPECT_EQ(row.statusText.english(), "Downloading 50%");
    EXPECT_EQ(row.statusText.source, "Downloading %1");
    EXPECT_EQ(row.progress, RowProgress::value);
    EXPECT_EQ(row.progressValue, 0.4);
    const auto extracting = rowOf(downloading("Extracting...", 0.85));
    EXPECT_EQ(extracting.statusText, UserText("Extracting..."));
    EXPECT_EQ(extracting.progressValue, 0.85);
}

TEST(ThemeRowTest, AConnectingDownloadHasNothingToMeasureYet) {
    const auto row = rowOf(downloading("Connecting...", 0));
    EXPECT_EQ(row.statusText, UserText("Connecting..."));
    EXPECT_EQ(row.progress, RowProgress::indeterminate);
}

TEST(ThemeRowTest, AStatusThatNobodyForesawIsShownAsItIs) {
    EXPECT_EQ(rowOf(downloading("Thinking", 0.1)).statusText, UserText::verbatim("Thinking"));
}

TEST(ThemeRowTest, AProgressBeyondItsEndFillsTheBar) {
    EXPECT_EQ(rowOf(downloading("Downloading 130%", 1.04)).progressValue, 1.0);
}

TEST(ThemeRowTest, ARowWhoseThemeIsBeingDownloadedAcceptsNoTap) {
    EXPECT_FALSE(rowOf(downloading("", 0)).acceptsTap);
    EXPECT_FALSE(rowOf(downloading("Extracting...", 0.85)).acceptsTap);
}

TEST(ThemeRowTest, AFailedDownloadOffersToRetryAndShowsTheWholeError) {
    auto theme = ice();
    theme.downloadError = "HTTP 404";
    const auto row = rowOf(theme);
    EXPECT_EQ(row.statusText.english(), "Error - Tap to retry");
    EXPECT_EQ(row.statusTone, RowTone::danger);
    EXPECT_EQ(row.tile, RowTile::warning);
    EXPECT_EQ(row.tileSymbol, "exclamationmark.triangle");
    EXPECT_EQ(row.tileTone, RowTone::danger);
    EXPECT_EQ(row.errorTooltip, "HTTP 404");
    EXPECT_EQ(row.mark, RowMark::circle);
    EXPECT_TRUE(row.acceptsTap);
}

TEST(ThemeRowTest, ADownloadedThemeShowsItsArrowAndCanBeDeleted) {
    const auto row = rowOf(downloaded());
    EXPECT_EQ(row.tile, RowTile::preview);
    EXPECT_EQ(row.preview, picture());
    EXPECT_EQ(row.tileSymbol, "");
    EXPECT_EQ(row.nameWeight, RowWeight::medium);
    EXPECT_EQ(row.status, RowStatus::none);
    EXPECT_TRUE(row.statusText.empty());
    EXPECT_EQ(row.mark, RowMark::circle);
    EXPECT_TRUE(row.canDelete);
}

TEST(ThemeRowTest, ADownloadedThemeWithoutAPreviewShowsAPointer) {
    auto theme = downloaded();
    theme.previewImage.reset();
    const auto row = rowOf(theme);
    EXPECT_EQ(row.tile, RowTile::pendingPreview);
    EXPECT_EQ(row.tileSymbol, "cursorarrow");
    EXPECT_FALSE(row.preview);
}

TEST(ThemeRowTest, AThemeThatIsBeingAppliedShowsASpinnerAndCannotBeDeleted) {
    auto theme = downloaded();
    theme.isApplying = true;
    const auto row = rowOf(theme);
    EXPECT_EQ(row.statusText.english(), "Applying...");
    EXPECT_EQ(row.statusTone, RowTone::accent);
    EXPECT_EQ(row.tile, RowTile::preview);
    EXPECT_EQ(row.nameWeight, RowWeight::medium);
    EXPECT_EQ(row.mark, RowMark::spinner);
    EXPECT_EQ(row.markSymbol, "");
    EXPECT_FALSE(row.canDelete);
}

TEST(ThemeRowTest, TheActiveThemeIsCheckedAndBold) {
    const auto row = rowOf(downloaded(), true);
    EXPECT_TRUE(row.isActive);
    EXPECT_TRUE(row.accessibleChecked());
    EXPECT_EQ(row.nameWeight, RowWeight::demiBold);
    EXPECT_EQ(row.mark, RowMark::check);
    EXPECT_EQ(row.markSymbol, "checkmark.circle.fill");
    EXPECT_TRUE(row.canDelete);
}

TEST(ThemeRowTest, AnIdThatNoThemeHasIsUnknown) {
    const auto row = themeRow(nullptr, "gone", false);
    EXPECT_EQ(row.id, "gone");
    EXPECT_EQ(row.name, UserText("Unknown"));
    EXPECT_EQ(row.nameWeight, RowWeight::regular);
    EXPECT_EQ(row.author, "");
    EXPECT_EQ(row.license, "");
    EXPECT_FALSE(row.handSymbol);
    EXPECT_EQ(row.tile, RowTile::download);
    EXPECT_EQ(row.statusText.english(), "Click to download");
    EXPECT_EQ(row.mark, RowMark::circle);
    EXPECT_FALSE(row.canDelete);
    EXPECT_THAT(description(row), ElementsAre("Click to download"));
    EXPECT_EQ(unknownTheme("gone").name, "Unknown");
}

struct Several {
    const char* what;
    bool applying;
    bool downloading;
    bool error;
    bool downloaded;
    bool active;
    RowStatus status;
    const char* text;
    RowTile tile;
    RowMark mark;
    RowWeight weight;
    RowProgress progress;
    bool canDelete;
    bool tooltip;
};

struct SeveralStatesTest : testing::TestWithParam<Several> {};

// The first that holds of applying, downloading, error and not downloaded decides the status; the mark and
// the weight do not depend on it.
TEST_P(SeveralStatesTest, AtOnceShowTheFirstThatMatters) {
    const auto& state = GetParam();
    auto theme = ice();
    theme.isApplying = state.applying;
    theme.isDownloading = state.downloading;
    if (state.downloading) theme.downloadStatus = "Extracting...";
    if (state.downloading) theme.downloadProgress = 0.85;
    if (state.error) theme.downloadError = "HTTP 404";
    theme.isDownloaded = state.downloaded;
    if (state.downloaded) theme.previewImage = picture();
    const auto row = rowOf(theme, state.active);
    EXPECT_EQ(row.status, state.status);
    EXPECT_EQ(row.statusText.english(), state.text);
    EXPECT_EQ(row.tile, state.tile);
    EXPECT_EQ(row.mark, state.mark);
    EXPECT_EQ(row.nameWeight, state.weight);
    EXPECT_EQ(row.progress, state.progress);
    EXPECT_EQ(row.canDelete, state.canDelete);
    EXPECT_EQ(row.errorTooltip.has_value(), state.tooltip);
}

using S = RowStatus;
using T = RowTile;
using M = RowMark;
using W = RowWeight;
using P = RowProgress;
// clang-format off
INSTANTIATE_TEST_SUITE_P(
    Rows, SeveralStatesTest,
    testing::Values(
        //                                  appl   load   error  disk   active
        Several{"ActiveAndApplying",        true,  false, false, true,  true,  S::applying,      "Applying...",          T::preview,  M::spinner, W::demiBold, P::none,  false, false},
        Several{"ApplyingAndDownloading",   true,  true,  false, true,  false, S::applying,      "Applying...",          T::preview,  M::spinner, W::medium,   P::value, false, false},
        Several{"ApplyingWithAnOldError",   true,  false, true,  true,  false, S::applying,      "Applying...",          T::preview,  M::spinner, W::medium,   P::none,  false, false},
        Several{"DownloadingOverAnError",   false, true,  true,  false, false, S::downloading,   "Extracting...",        T::download, M::circle,  W::regular,  P::value, false, false},
        Several{"DownloadingWhatIsOnDisk",  false, true,  false, true,  false, S::downloading,   "Extracting...",        T::preview,  M::circle,  W::medium,   P::value, false, false},
        Several{"DownloadingTheActiveOne",  false, true,  false, true,  true,  S::downloading,   "Extracting...",        T::preview,  M::check,   W::demiBold, P::value, false, false},
        Several{"ErrorOfWhatIsOnDisk",      false, false, true,  true,  false, S::error,         "Error - Tap to retry", T::preview,  M::circle,  W::medium,   P::none,  true,  true},
        Several{"ErrorOfTheActiveOne",      false, false, true,  true,  true,  S::error,         "Error - Tap to retry", T::preview,  M::check,   W::demiBold, P::none,  true,  true},
        Several{"ActiveAndGoneFromDisk",    false, false, false, false, true,  S::notDownloaded, "Click to download",    T::download, M::check,   W::demiBold, P::none,  false, false},
        Several{"ActiveWithAFailedRetry",   false, false, true,  false, true,  S::error,         "Error - Tap to retry", T::warning,  M::check,   W::demiBold, P::none,  false, true},
        Several{"ActiveAlone",              false, false, false, true,  true,  S::none,          "",                     T::preview,  M::check,   W::demiBold, P::none,  true,  false}),
    [](const auto& state) { return state.param.what; });
// clang-format on

TEST(ThemeRowTest, AnAnimatedThemeKeepsItsSignInEveryState) {
    for (auto theme : {ice(), downloaded(), downloading("", 0)}) {
        EXPECT_FALSE(rowOf(theme).isAnimated);
        theme.isAnimated = true;
        EXPECT_TRUE(rowOf(theme).isAnimated);
        theme.isApplying = true;
        EXPECT_TRUE(rowOf(theme, true).isAnimated);
    }
}

TEST(ThemeRowTest, OnlyAThemeForOneHandShowsAHand) {
    auto theme = ice();
    EXPECT_EQ(rowOf(theme).handSymbol, "hand.point.right.fill");
    EXPECT_EQ(rowOf(theme).handHelp.english(), "For the right hand");
    theme.handedness = CursorHandedness::leftHanded;
    EXPECT_EQ(rowOf(theme).handSymbol, "hand.point.left.fill");
    EXPECT_EQ(rowOf(theme).handHelp.english(), "For the left hand");
    theme.handedness = CursorHandedness::universal;
    EXPECT_FALSE(rowOf(theme).handSymbol);
    EXPECT_TRUE(rowOf(theme).handHelp.empty());
}

TEST(ThemeRowTest, IsDescribedByAuthorLicenceHandAndStatus) {
    EXPECT_THAT(description(rowOf(ice())), ElementsAre("Somebody", "GPL-3.0", "Right", "Click to download"));
    EXPECT_THAT(description(rowOf(downloaded())), ElementsAre("Somebody", "GPL-3.0", "Right"));
    EXPECT_EQ(ThemeRow::accessibleRole, AccessibleRole::listItem);
}

TEST(ThemeRowTest, AssistiveTechnologyLearnsOfAnimationAndOfTheErrorToo) {
    auto theme = ice();
    theme.handedness = CursorHandedness::universal;
    theme.isAnimated = true;
    theme.downloadError = "HTTP 404";
    EXPECT_THAT(description(rowOf(theme)),
                ElementsAre("Somebody", "GPL-3.0", "Universal", "Animated cursors", "Error - Tap to retry",
                            "The server has no such file", "HTTP 404"));
}

TEST(ThemeRowTest, NamesErrorsAndLicencesAreNotTranslated) {
    auto theme = ice();
    theme.downloadError = "HTTP 404";
    const auto row = rowOf(theme);
    EXPECT_THAT(row.name.source, IsEmpty());
    EXPECT_THAT(row.accessibleDescription.front().source, IsEmpty());
    EXPECT_THAT(row.accessibleDescription.back().source, IsEmpty());
    EXPECT_EQ(row.statusText.source, "Error - Tap to retry");
}

}  // namespace
}  // namespace pintle
