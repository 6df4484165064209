#include "app/theme_monogram.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "themes/cursor_theme_info.h"

namespace pintle {
namespace {

TEST(ThemeMonogram, TakesTheInitialsOfFamilyAndKindAndTheTintOfTheColour) {
    EXPECT_EQ(themeMonogram("Bibata Modern Amber"), (ThemeMonogram{"BM", TileTint::amber}));
    EXPECT_EQ(themeMonogram("Bibata Original Ice"), (ThemeMonogram{"BO", TileTint::ice}));
    EXPECT_EQ(themeMonogram("Phinger Light"), (ThemeMonogram{"P", TileTint::ice}));
}

TEST(ThemeMonogram, GivesAFamilyOneTintWhereNoWordNamesAColour) {
    EXPECT_EQ(themeMonogram("Lyra Cursors").tint, themeMonogram("Lyra Round").tint);
}

TEST(ThemeMonogram, LeavesOutTheHandAndTheWordForWhatAllAre) {
    EXPECT_EQ(themeMonogram("Bibata Modern Ice (Right)"), themeMonogram("Bibata Modern Ice"));
    EXPECT_EQ(themeMonogram("Nordzy Cursors White (Left)").letters, "N");
}

TEST(ThemeMonogram, KeepsALetterOfSeveralBytesWhole) {
    EXPECT_EQ(themeMonogram("\xC3\x89toile Noire").letters, "\xC3\x89N");
    EXPECT_EQ(themeMonogram("Lune \xE6\x98\x9F").letters, "L\xE6\x98\x9F");
}

TEST(ThemeMonogram, IsEmptyForANameWithoutALetter) {
    EXPECT_EQ(themeMonogram("").letters, "");
    EXPECT_EQ(themeMonogram("(Right)").letters, "");
    EXPECT_EQ(themeMonogram(" - ) ( ").letters, "");
}

TEST(ThemeMonogram, TellsNeighboursInTheCatalogApartUnlessTheyAreTheSameDrawingForTheOtherHand) {
    const auto& catalog = CursorThemeInfo::catalog();
    for (std::size_t i = 1; i < catalog.size(); ++i) {
        const auto& one = catalog[i - 1];
        const auto& other = catalog[i];
        if (one.handedness != other.handedness) continue;
        EXPECT_NE(themeMonogram(one.name), themeMonogram(other.name)) << one.name << " and " << other.name;
    }
}

TEST(ThemeMonogram, ShowsNoTileMoreThanSixTimesInTheWholeCatalog) {
    std::map<std::tuple<std::string, TileTint>, int> times;
    for (const auto& theme : CursorThemeInfo::catalog()) {
        const auto monogram = themeMonogram(theme.name);
        EXPECT_LE(++times[std::tuple(monogram.letters, monogram.tint)], 6) << theme.name;
    }
}

}  // namespace
}  // namespace pintle
