#include "app/user_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <span>

#include "app/about_window_model.h"
#include "app/popover_model.h"
#include "app/settings_window_model.h"
#include "app/slider.h"
#include "app/symbols.h"
#include "app/theme_row.h"

namespace pintle {
namespace {

TEST(UserTextTest, PutsTheArgumentInItsPlace) {
    EXPECT_EQ(UserText("Remove %1", "Safari").english(), "Remove Safari");
    EXPECT_EQ(UserText("%1%", "115").english(), "115%");
    EXPECT_EQ(UserText("Cancel").english(), "Cancel");
    EXPECT_EQ(UserText("Remove %1", "%1").english(), "Remove %1");
}

TEST(UserTextTest, AVerbatimTextIsShownAsItIsAndHasNothingToTranslate) {
    const auto text = UserText::verbatim("100%1");
    EXPECT_EQ(text.english(), "100%1");
    EXPECT_TRUE(text.source.empty());
    EXPECT_FALSE(text.empty());
    EXPECT_TRUE(UserText().empty());
}

TEST(WholePercentTest, IsRoundedAndNotCutOff) {
    ASSERT_LT(1.15 * 100, 115);
    EXPECT_EQ(wholePercent(1.15), 115);
    for (int percent = 75; percent <= 150; percent += 5) EXPECT_EQ(wholePercent(percent / 100.0), percent);
    EXPECT_EQ(wholePercent(0.29), 29);
    EXPECT_EQ(percentText(0.85).english(), "85%");
}

TEST(WholePercentTest, HasAnAnswerForEveryNumberOfAPreferenceFile) {
    EXPECT_EQ(wholePercent(0), 0);
    EXPECT_EQ(wholePercent(10), 1000);
    EXPECT_EQ(wholePercent(-1), -100);
    EXPECT_EQ(wholePercent(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_GT(wholePercent(std::numeric_limits<double>::infinity()), 1'000'000);
    EXPECT_LT(wholePercent(-1e300), -1'000'000);
}

TEST(SliderRangeTest, EveryStepIsTheNumberThatPeopleWrite) {
    constexpr SliderRange range{0.75, 1.5, 0.05};
    double moved = 0.75;
    for (const double written :
         {0.75, 0.8, 0.85, 0.9, 0.95, 1.0, 1.05, 1.1, 1.15, 1.2, 1.25, 1.3, 1.35, 1.4, 1.45, 1.5}) {
        EXPECT_EQ(range.nearest(moved), written);
        moved += 0.05;
    }
    constexpr SliderRange opacity{0.75, 1.0, 0.05};
    EXPECT_EQ(opacity.nearest(0.849999), 0.85);
}

TEST(SliderRangeTest, ValuesOutsideBecomeTheNearestEnd) {
    constexpr SliderRange range{0.75, 1.5, 0.05};
    EXPECT_EQ(range.nearest(0), 0.75);
    EXPECT_EQ(range.nearest(10), 1.5);
    EXPECT_EQ(range.nearest(std::numeric_limits<double>::quiet_NaN()), 0.75);
    EXPECT_EQ(range.position(10), 1);
    EXPECT_EQ(range.position(-1), 0);
    EXPECT_DOUBLE_EQ(range.position(1.125), 0.5);
}

TEST(SymbolTest, NoNameStandsForTwoSymbols) {
    const std::set<std::string_view> names(symbol::all.begin(), symbol::all.end());
    EXPECT_EQ(names.size(), symbol::all.size());
}

void expectOnePlaceAtMost(std::span<const std::string_view> texts) {
    for (const auto text : texts) {
        EXPECT_FALSE(text.empty());
        const auto first = text.find('%');
        if (first == std::string_view::npos || text == popover_text::resetHelp) continue;
        EXPECT_EQ(text.substr(first, 2), "%1") << text;
        EXPECT_EQ(text.find('%', first + 1), std::string_view::npos) << text;
    }
}

TEST(TextListTest, EveryTextHasAtMostOnePlaceForAnArgument) {
    expectOnePlaceAtMost(popover_text::all);
    expectOnePlaceAtMost(row_text::all);
    expectOnePlaceAtMost(settings_text::all);
    expectOnePlaceAtMost(about_text::all);
}

}  // namespace
}  // namespace pintle
