// What is made of the settings of real desktops.
#include "platform/freedesktop/look_rules.h"

#include <gtest/gtest.h>

#include <limits>

namespace pintle {
namespace {

DesktopLook lookOf(const PortalLook& portal, const PublishedLook& published = {}) {
    return desktopLook(portal, published, false, true);
}

TEST(LookRules, WithoutAnyAnswerTheLookIsTheDefaultOne) { EXPECT_EQ(lookOf({}), DesktopLook()); }

TEST(LookRules, AThemeIsDarkWhenItsNameSaysSoAsAWordOrAtItsEnd) {
    for (const char* name : {"Adwaita-dark", "Yaru-dark", "Arc-Dark", "Breeze-Dark", "Materia-dark-compact",
                             "Mint-Y-Dark-Aqua", "Greybirddark", "dark", "Numix Dark", "HighContrastInverse"})
        EXPECT_TRUE(isDarkThemeName(name)) << name;
    for (const char* name : {"Adwaita", "Arc-Darker", "Breeze", "Darkroom", "", "HighContrast", "Dar"})
        EXPECT_FALSE(isDarkThemeName(name)) << name;
}

TEST(LookRules, ThePortalsSchemeGoesBeforeTheThemesName) {
    EXPECT_TRUE(lookOf({.colorScheme = 1}, {.dark = false}).dark);
    EXPECT_FALSE(lookOf({.colorScheme = 2}, {.dark = true}).dark);
}

TEST(LookRules, ASchemeWithoutPreferenceLeavesTheChoiceToTheThemesName) {
    EXPECT_TRUE(lookOf({.colorScheme = 0}, {.dark = true}).dark);
    EXPECT_FALSE(lookOf({.colorScheme = 0}).dark);
    EXPECT_TRUE(lookOf({.colorScheme = 7}, {.dark = true}).dark);
}

TEST(LookRules, ARequestForLessMotionFromAnySourceCounts) {
    EXPECT_TRUE(lookOf({.reducedMotion = 1}).reducedMotion);
    EXPECT_TRUE(lookOf({.animations = false}).reducedMotion);
    EXPECT_TRUE(lookOf({.reducedMotion = 0, .animations = true}, {.animations = false}).reducedMotion);
    EXPECT_FALSE(lookOf({.reducedMotion = 0, .animations = true}, {.animations = true}).reducedMotion);
}

TEST(LookRules, ARequestForContrastFromAnySourceCounts) {
    EXPECT_TRUE(lookOf({.contrast = 1}).highContrast);
    EXPECT_TRUE(lookOf({.highContrast = true}).highContrast);
    EXPECT_TRUE(lookOf({}, {.highContrast = true}).highContrast);
    EXPECT_FALSE(lookOf({.contrast = 0, .highContrast = false}, {.highContrast = false}).highContrast);
}

TEST(LookRules, TheSettingsManagersEntriesAreTakenByTheirNames) {
    const auto look = publishedLook({{"Net/ThemeName", "HighContrastInverse"},
                                     {"Gtk/EnableAnimations", 0},
                                     {"Xft/DPI", 144 * 1024},
                                     {"Gtk/CursorThemeName", "dark"}});
    EXPECT_EQ(look, (PublishedLook{.dark = true, .animations = false, .highContrast = true, .dpi = 144}));
    EXPECT_EQ(publishedLook({{"Net/ThemeName", "Adwaita"}, {"Gtk/ApplicationPreferDarkTheme", 1}}).dark,
              true);
    EXPECT_EQ(publishedLook({{"Net/ThemeName", 1}, {"Gtk/EnableAnimations", "no"}, {"Xft/DPI", -1}}),
              PublishedLook());
}

TEST(LookRules, TheScaleOfWindowsIsNoPartOfTheSizeOfTexts) {
    EXPECT_EQ(publishedLook({{"Xft/DPI", 2 * 96 * 1024}, {"Gdk/WindowScalingFactor", 2}}).dpi, 96);
    EXPECT_EQ(publishedLook({{"Xft/DPI", 2 * 120 * 1024}, {"Gdk/UnscaledDPI", 120 * 1024}}).dpi, 120);
}

TEST(LookRules, WhatTheToolkitMadeLargerIsNotMadeLargerAgain) {
    const PublishedLook published{.dpi = 192};
    EXPECT_EQ(desktopLook({.textScale = 2}, published, false, true).textScale, 1);
    EXPECT_EQ(desktopLook({.textScale = 2}, published, false, false).textScale, 2);
    EXPECT_EQ(desktopLook({.textScale = 1.5}, {}, false, true).textScale, 1.5);
}

TEST(LookRules, ASizeOfTextThatNobodyCouldReadIsBroughtIntoBounds) {
    EXPECT_EQ(lookOf({.textScale = 40}).textScale, 4);
    EXPECT_EQ(lookOf({.textScale = 0.01}).textScale, 0.5);
    EXPECT_EQ(lookOf({.textScale = 0}).textScale, 1);
    EXPECT_EQ(lookOf({.textScale = -2}).textScale, 1);
    EXPECT_EQ(lookOf({.textScale = std::numeric_limits<double>::quiet_NaN()}).textScale, 1);
}

}  // namespace
}  // namespace pintle
