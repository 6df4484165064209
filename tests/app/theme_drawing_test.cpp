#include "app/theme_drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "themes/cursor_theme_info.h"

namespace pintle {
namespace {

using Fill = ThemeDrawing::Fill;
using Kind = ThemeDrawing::Kind;
using Shape = ThemeDrawing::Shape;
using testing::ElementsAre;

ThemeDrawing drawn(std::string_view name) { return themeDrawing(name, CursorHandedness::rightHanded); }

TEST(ThemeDrawing, IsFilledWithTheColourInTheName) {
    EXPECT_THAT(drawn("Bibata Modern Ice").colours, ElementsAre(0xFFFFFFu));
    EXPECT_THAT(drawn("Phinger Light").colours, ElementsAre(0xF1F3F4u));
    EXPECT_EQ(drawn("Bibata Modern Classic").colours, drawn("Google Dot Black").colours);
    EXPECT_EQ(drawn("Pine ROS\xC3\x89").colours, drawn("Pine Rose").colours);
    EXPECT_EQ(drawn("Bibata Rainbow Modern").fill, Fill::blend);
    EXPECT_EQ(drawn("Bibata Zebra Original").fill, Fill::stripes);
    EXPECT_EQ(drawn("Bibata Zebra Original").colours.size(), 2u);
}

TEST(ThemeDrawing, TakesTheLastWordThatNamesAColour) {
    EXPECT_EQ(drawn("Fuchsia Amber").colours, drawn("Bibata Modern Amber").colours);
    EXPECT_NE(drawn("Fuchsia Pop").colours, drawn("Fuchsia Amber").colours);
}

TEST(ThemeDrawing, IsRoundedForModernAndAngularForOriginal) {
    EXPECT_EQ(drawn("Bibata Modern Ice").shape, Shape::rounded);
    EXPECT_EQ(drawn("Bibata Original Ice").shape, Shape::angular);
    EXPECT_EQ(drawn("Google Dot White").shape, Shape::plain);
}

TEST(ThemeDrawing, IsAnOutlineWhereTheNameHasAShapeAndNoColour) {
    const auto extra = drawn("Bibata Extra Modern");
    EXPECT_EQ(extra.kind, Kind::pointer);
    EXPECT_EQ(extra.fill, Fill::none);
    EXPECT_THAT(extra.colours, ElementsAre());
}

TEST(ThemeDrawing, IsMirroredForTheLeftHandWhateverTheNameSays) {
    EXPECT_TRUE(themeDrawing("Bibata Modern Ice (Right)", CursorHandedness::leftHanded).mirrored);
    EXPECT_FALSE(themeDrawing("Bibata Modern Ice", CursorHandedness::rightHanded).mirrored);
    EXPECT_FALSE(themeDrawing("Fuchsia Red", CursorHandedness::universal).mirrored);
}

TEST(ThemeDrawing, HasAnOutlineThatItsColourStandsOutFrom) {
    EXPECT_EQ(drawn("Bibata Modern Classic").outline, 0xFFFFFFu);
    EXPECT_EQ(drawn("Phinger Dark").outline, 0xFFFFFFu);
    for (const char* name : {"Bibata Modern Ice", "Banana", "Notwaita Gray", "Bibata Zebra Modern"})
        EXPECT_EQ(drawn(name).outline, 0x16191Au) << name;
}

TEST(ThemeDrawing, IsLettersWhereTheNameHasNeitherShapeNorColour) {
    const auto lyra = drawn("Lyra Cursors");
    EXPECT_EQ(lyra.kind, Kind::letters);
    EXPECT_EQ(lyra.letters, "L");
    EXPECT_EQ(drawn("Anime Reimu").letters, "AR");
    EXPECT_EQ(drawn("Nordzy Cursors (Left)").letters, "N");
    EXPECT_EQ(lyra.tint, drawn("Lyra Soft").tint);
}

TEST(ThemeDrawing, KeepsALetterOfSeveralBytesWhole) {
    EXPECT_EQ(drawn("\xC3\x89toile Noire").letters, "\xC3\x89N");
    EXPECT_EQ(drawn("Lune \xE6\x98\x9F").letters, "L\xE6\x98\x9F");
}

TEST(ThemeDrawing, IsEmptyForANameWithoutALetter) {
    for (const char* name : {"", "(Right)", " - ) ( "}) EXPECT_EQ(drawn(name), ThemeDrawing()) << name;
}

TEST(ThemeDrawing, DistinguishesThreeOfFourNeighboursInTheCatalog) {
    const auto& catalog = CursorThemeInfo::catalog();
    std::size_t alike = 0;
    for (std::size_t i = 1; i < catalog.size(); ++i)
        if (themeDrawing(catalog[i - 1].name, catalog[i - 1].handedness) ==
            themeDrawing(catalog[i].name, catalog[i].handedness))
            ++alike;
    EXPECT_LT(alike * 4, catalog.size());
}

}  // namespace
}  // namespace pintle
