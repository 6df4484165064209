#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>

#include "themes/cursor_theme_info.h"

namespace pintle {
namespace {

using testing::ElementsAre;

struct Expected {
    const char* id;
    const char* name;
    CursorHandedness handedness;
    const char* license;
    const char* suffix;
};

// clang-format off
const Expected kExpected[] = {
    {"bibata-modern-classic", "Bibata Modern Classic", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-modern-ice", "Bibata Modern Ice", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-modern-amber", "Bibata Modern Amber", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-modern-classic-right", "Bibata Modern Classic (Right)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-modern-ice-right", "Bibata Modern Ice (Right)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-modern-amber-right", "Bibata Modern Amber (Right)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-original-classic", "Bibata Original Classic", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-original-ice", "Bibata Original Ice", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-original-amber", "Bibata Original Amber", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-original-classic-right", "Bibata Original Classic (Right)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-original-ice-right", "Bibata Original Ice (Right)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-original-amber-right", "Bibata Original Amber (Right)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.xz"},
    {"bibata-rainbow-modern", "Bibata Rainbow Modern", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"bibata-rainbow-original", "Bibata Rainbow Original", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"xcursor-pro-dark", "XCursor Pro Dark", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"xcursor-pro-light", "XCursor Pro Light", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"xcursor-pro-red", "XCursor Pro Red", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"breezex", "BreezeX", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"breezex-black", "BreezeX Black", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"breezex-dark", "BreezeX Dark", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"breezex-light", "BreezeX Light", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"google-dot-black", "Google Dot Black", CursorHandedness::universal, "GPL-3.0", ".tar.gz"},
    {"google-dot-white", "Google Dot White", CursorHandedness::universal, "GPL-3.0", ".tar.gz"},
    {"google-dot-blue", "Google Dot Blue", CursorHandedness::universal, "GPL-3.0", ".tar.gz"},
    {"google-dot-red", "Google Dot Red", CursorHandedness::universal, "GPL-3.0", ".tar.gz"},
    {"fuchsia", "Fuchsia", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"fuchsia-amber", "Fuchsia Amber", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"fuchsia-pop", "Fuchsia Pop", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"fuchsia-red", "Fuchsia Red", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"banana", "Banana", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"banana-blue", "Banana Blue", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"banana-green", "Banana Green", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"banana-red", "Banana Red", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"nordzy-cursors", "Nordzy Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"nordzy-cursors-white", "Nordzy Cursors White", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"nordzy-cursors-left", "Nordzy Cursors (Left)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.gz"},
    {"nordzy-cursors-white-left", "Nordzy Cursors White (Left)", CursorHandedness::leftHanded, "GPL-3.0", ".tar.gz"},
    {"phinger-cursors-light", "Phinger Light", CursorHandedness::rightHanded, "CC-BY-SA-4.0", ".tar.bz2"},
    {"phinger-cursors-dark", "Phinger Dark", CursorHandedness::rightHanded, "CC-BY-SA-4.0", ".tar.bz2"},
    {"phinger-cursors-light-left", "Phinger Light (Left)", CursorHandedness::leftHanded, "CC-BY-SA-4.0", ".tar.bz2"},
    {"phinger-cursors-dark-left", "Phinger Dark (Left)", CursorHandedness::leftHanded, "CC-BY-SA-4.0", ".tar.bz2"},
    {"apple-cursor", "Apple Cursor", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"apple-cursor-white", "Apple Cursor White", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"bibata-bee-modern", "Bibata Bee Modern", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"bibata-bee-original", "Bibata Bee Original", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"bibata-zebra-modern", "Bibata Zebra Modern", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"bibata-zebra-original", "Bibata Zebra Original", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"notwaita", "Notwaita", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"notwaita-black", "Notwaita Black", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"notwaita-white", "Notwaita White", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"notwaita-gray", "Notwaita Gray", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"pokemon", "Pokemon", CursorHandedness::universal, "GPL-3.0", ".tar.gz"},
    {"bibata-extra-modern", "Bibata Extra Modern", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"bibata-extra-original", "Bibata Extra Original", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"catppuccin-frappe-dark", "Catppuccin Frappe Dark", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-mocha-dark", "Catppuccin Mocha Dark", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-latte-dark", "Catppuccin Latte Dark", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-macchiato-dark", "Catppuccin Macchiato Dark", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-frappe-blue", "Catppuccin Frappe Blue", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-mocha-blue", "Catppuccin Mocha Blue", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-latte-blue", "Catppuccin Latte Blue", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"catppuccin-macchiato-blue", "Catppuccin Macchiato Blue", CursorHandedness::rightHanded, "GPL-2.0", ".zip"},
    {"dracula-cursors", "Dracula Cursors", CursorHandedness::universal, "GPL-3.0", ".tar.xz"},
    {"lyra-cursors", "Lyra Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"mcmojave-cursors", "McMojave Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"nier-cursors", "NieR Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.xz"},
    {"numix-cursor", "Numix Cursor", CursorHandedness::rightHanded, "GPL-3.0", ".tar"},
    {"adwaita-cursors", "Adwaita Cursors", CursorHandedness::rightHanded, "LGPL-3.0", ".tar.gz"},
    {"oxygen-cursors", "Oxygen Cursors", CursorHandedness::rightHanded, "GPL", ".tar.bz2"},
    {"vimix-cursors", "Vimix Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"layan-cursors", "Layan Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"graphite-cursors", "Graphite Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"qogir-cursors", "Qogir Cursors", CursorHandedness::rightHanded, "GPL-3.0", ".tar.gz"},
    {"anime-reimu", "Anime Reimu", CursorHandedness::rightHanded, "GPL-3.0", ".zip"},
    {"anime-cirno", "Anime Cirno", CursorHandedness::rightHanded, "GPL-3.0", ".zip"},
    {"radioactive-cursors", "Radioactive", CursorHandedness::rightHanded, "GPL-2.0", ".tar.gz"},
    {"lilith-cursors", "Lilith", CursorHandedness::rightHanded, "MIT", ".tar"},
};
// clang-format on

const CursorThemeInfo& theme(const std::string& id) {
    for (const auto& each : CursorThemeInfo::catalog())
        if (each.id == id) return each;
    throw std::runtime_error("no theme " + id);
}

TEST(Catalog, Holds77ThemesInTheirOrder) {
    const auto& catalog = CursorThemeInfo::catalog();
    ASSERT_EQ(catalog.size(), 77u);
    ASSERT_EQ(std::size(kExpected), 77u);
    for (std::size_t i = 0; i < catalog.size(); ++i) {
        EXPECT_EQ(catalog[i].id, kExpected[i].id);
        EXPECT_EQ(catalog[i].name, kExpected[i].name);
        EXPECT_EQ(catalog[i].handedness, kExpected[i].handedness) << catalog[i].id;
        EXPECT_EQ(catalog[i].license, kExpected[i].license) << catalog[i].id;
    }
}

TEST(Catalog, AllIdsDiffer) {
    std::set<std::string> ids;
    for (const auto& each : CursorThemeInfo::catalog()) ids.insert(each.id);
    EXPECT_EQ(ids.size(), 77u);
}

TEST(Catalog, IdsAreLowerCaseWordsThatNameAFolder) {
    for (const auto& each : CursorThemeInfo::catalog()) {
        EXPECT_EQ(each.id.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos)
            << each.id;
        EXPECT_FALSE(each.id.empty());
    }
}

TEST(Catalog, EveryArchiveHasTheSuffixOfItsKindAndASecureAddress) {
    const auto& catalog = CursorThemeInfo::catalog();
    for (std::size_t i = 0; i < catalog.size(); ++i) {
        EXPECT_TRUE(catalog[i].downloadURL.starts_with("https://")) << catalog[i].id;
        EXPECT_TRUE(catalog[i].downloadURL.ends_with(kExpected[i].suffix)) << catalog[i].id;
        EXPECT_EQ(catalog[i].downloadURL.find(' '), std::string::npos) << catalog[i].id;
    }
}

TEST(Catalog, SnapshotsOfSourcesAreTheSixKnownOnes) {
    std::vector<std::string> snapshots;
    for (const auto& each : CursorThemeInfo::catalog())
        if (each.downloadURL.find("/archive/refs/") != std::string::npos) snapshots.push_back(each.id);
    EXPECT_THAT(snapshots, ElementsAre("lyra-cursors", "mcmojave-cursors", "vimix-cursors", "layan-cursors",
                                       "graphite-cursors", "qogir-cursors"));
}

TEST(Catalog, OnlyTheFourPhingerRowsShareAnArchive) {
    std::map<std::string, std::vector<std::string>> byAddress;
    for (const auto& each : CursorThemeInfo::catalog()) byAddress[each.downloadURL].push_back(each.id);
    EXPECT_EQ(byAddress.size(), 74u);
    EXPECT_THAT(byAddress[theme("phinger-cursors-light").downloadURL],
                ElementsAre("phinger-cursors-light", "phinger-cursors-dark", "phinger-cursors-light-left",
                            "phinger-cursors-dark-left"));
}

TEST(Catalog, EveryThemeNamesItsAuthor) {
    for (const auto& each : CursorThemeInfo::catalog()) EXPECT_FALSE(each.author.empty()) << each.id;
}

TEST(Catalog, BibataThemesNamedRightAreForTheLeftHand) {
    int named = 0;
    for (const auto& each : CursorThemeInfo::catalog())
        if (each.name.ends_with("(Right)")) {
            ++named;
            EXPECT_EQ(each.handedness, CursorHandedness::leftHanded) << each.id;
        }
    EXPECT_EQ(named, 6);
    EXPECT_EQ(theme("bibata-modern-classic").handedness, CursorHandedness::rightHanded);
}

TEST(Catalog, NoThemeIsForAll) {
    for (const auto& each : CursorThemeInfo::catalog()) EXPECT_NE(each.handedness, CursorHandedness::all);
}

TEST(Catalog, LicencesWithoutAVersionStayBare) {
    EXPECT_EQ(theme("oxygen-cursors").license, "GPL");
    EXPECT_EQ(theme("adwaita-cursors").license, "LGPL-3.0");
    const std::set<std::string> others = {"GPL-3.0", "GPL-2.0", "CC-BY-SA-4.0", "MIT"};
    for (const auto& each : CursorThemeInfo::catalog()) {
        if (each.id == "oxygen-cursors" || each.id == "adwaita-cursors") continue;
        EXPECT_TRUE(others.contains(each.license)) << each.id;
    }
}

TEST(Catalog, EveryRowStartsWithoutAnyState) {
    for (const auto& each : CursorThemeInfo::catalog()) {
        CursorThemeInfo fresh;
        fresh.id = each.id;
        fresh.name = each.name;
        fresh.author = each.author;
        fresh.license = each.license;
        fresh.downloadURL = each.downloadURL;
        fresh.handedness = each.handedness;
        EXPECT_EQ(each, fresh) << each.id;
    }
}

TEST(CursorThemeInfo, StateStartsEmpty) {
    const CursorThemeInfo row;
    EXPECT_FALSE(row.isDownloaded);
    EXPECT_FALSE(row.isDownloading);
    EXPECT_FALSE(row.isApplying);
    EXPECT_EQ(row.downloadError, std::nullopt);
    EXPECT_EQ(row.previewImage, std::nullopt);
    EXPECT_EQ(row.downloadProgress, 0.0);
    EXPECT_FALSE(row.isAnimated);
    EXPECT_EQ(row.downloadStatus, "");
}

TEST(CursorHandedness, TheFourTextsConvertToTheFourCasesAndBack) {
    EXPECT_EQ(cursor_handedness::fromRawValue("All"), CursorHandedness::all);
    EXPECT_EQ(cursor_handedness::fromRawValue("Universal"), CursorHandedness::universal);
    EXPECT_EQ(cursor_handedness::fromRawValue("Right"), CursorHandedness::rightHanded);
    EXPECT_EQ(cursor_handedness::fromRawValue("Left"), CursorHandedness::leftHanded);
    std::vector<std::string> texts;
    for (const auto each : cursor_handedness::allCases) texts.emplace_back(cursor_handedness::rawValue(each));
    EXPECT_THAT(texts, ElementsAre("All", "Universal", "Right", "Left"));
}

TEST(CursorHandedness, AnyOtherTextConvertsToNothing) {
    for (const auto* text : {"all", "", "ALL", "Left ", "rightHanded"})
        EXPECT_EQ(cursor_handedness::fromRawValue(text), std::nullopt) << text;
}

TEST(CursorHandedness, TakesOneByte) { EXPECT_EQ(sizeof(CursorHandedness), 1u); }

}  // namespace
}  // namespace pintle
