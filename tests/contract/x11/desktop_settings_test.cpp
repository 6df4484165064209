#include "platform/x11/cursors/desktop_settings.h"

#include <gtest/gtest.h>

#include <vector>

namespace pintle::x11 {
namespace {

class Settings {
  public:
    explicit Settings(bool big) : big_(big) {
        number(big ? 1 : 0, 1);
        number(0, 3);
        number(1, 4);
        number(0, 4);
    }
    Settings& integer(const std::string& name, std::uint32_t value) {
        head(0, name);
        number(value, 4);
        return *this;
    }
    Settings& string(const std::string& name, const std::string& value) {
        head(1, name);
        number(static_cast<std::uint32_t>(value.size()), 4);
        text(value);
        return *this;
    }
    Settings& color(const std::string& name) {
        head(2, name);
        number(0, 4);
        number(0, 4);
        return *this;
    }
    std::vector<std::uint8_t> bytes;

  private:
    void number(std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value >> 8 * (big_ ? count - 1 - i : i)));
    }
    void text(const std::string& value) {
        bytes.insert(bytes.end(), value.begin(), value.end());
        while (bytes.size() % 4 != 0) bytes.push_back(0);
    }
    void head(std::uint32_t type, const std::string& name) {
        ++count_;
        for (int i = 0; i < 4; ++i)
            bytes[static_cast<std::size_t>(8 + (big_ ? 3 - i : i))] =
                static_cast<std::uint8_t>(count_ >> 8 * i);
        number(type, 1);
        number(0, 1);
        number(static_cast<std::uint32_t>(name.size()), 2);
        text(name);
        number(3, 4);
    }
    bool big_;
    std::uint32_t count_ = 0;
};

Settings full(bool big) {
    Settings settings(big);
    settings.string("Net/ThemeName", "Something").color("Some/Color");
    settings.integer("Gtk/CursorThemeSize", 32).string("Gtk/CursorThemeName", "Whatever");
    return settings;
}

TEST(XSettings, NameAndSizeAreReadInEitherByteOrder) {
    for (const bool big : {false, true}) {
        const auto read = parseXSettings(full(big).bytes);
        EXPECT_EQ(read.themeName, "Whatever");
        EXPECT_EQ(read.themeSize, 32);
    }
}

TEST(XSettings, APropertyCutAnywhereIsSurvived) {
    const auto bytes = full(false).bytes;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const std::vector<std::uint8_t> cut(bytes.begin(),
                                            bytes.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_FALSE(parseXSettings(cut).themeName) << length;
    }
}

TEST(XSettings, LengthsBeyondTheEndAreSurvived) {
    auto bytes = full(false).bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        auto broken = bytes;
        broken[i] = 0xFF;
        (void)parseXSettings(broken);
    }
    bytes.resize(12);
    bytes[8] = bytes[9] = bytes[10] = bytes[11] = 0xFF;
    EXPECT_EQ(parseXSettings(bytes), CursorXSettings{});
}

TEST(XSettings, AnUnsetSizeIsAbsent) {
    Settings settings(false);
    settings.integer("Gtk/CursorThemeSize", 0).string("Gtk/CursorThemeName", "");
    EXPECT_EQ(parseXSettings(settings.bytes), CursorXSettings{});
    Settings negative(false);
    negative.integer("Gtk/CursorThemeSize", 0xFFFFFFFF);
    EXPECT_EQ(parseXSettings(negative.bytes), CursorXSettings{});
}

TEST(Resources, TheLastSettingOfAKeyCounts) {
    const std::string text =
        "Xft.dpi:\t96\nXcursor.theme:\tFirst\n! Xcursor.theme: comment\nXcursor*theme:  Last "
        "\r\nXcursor.themes: No";
    EXPECT_EQ(resourceValue(text, "Xcursor", "theme"), "Last");
    EXPECT_EQ(resourceValue(text, "Xft", "dpi"), "96");
    EXPECT_FALSE(resourceValue(text, "Xcursor", "size"));
    EXPECT_FALSE(resourceValue("", "Xcursor", "size"));
    EXPECT_FALSE(resourceValue("Xcursor.size:", "Xcursor", "size"));
}

class CursorTheme : public testing::Test {
  protected:
    CursorThemeChoice choose() {
        return chooseCursorTheme(
            settings,
            [this](const std::string& name) -> std::optional<std::string> {
                if (name == "XCURSOR_THEME") return environmentTheme;
                if (name == "XCURSOR_SIZE") return environmentSize;
                return std::nullopt;
            },
            resources, 1920, 1080);
    }
    CursorXSettings settings;
    std::optional<std::string> environmentTheme;
    std::optional<std::string> environmentSize;
    std::string resources;
};

TEST_F(CursorTheme, EachChannelCountsBeforeTheNext) {
    resources = "Xcursor.theme: R\nXcursor.size: 30\nXft.dpi: 144\n";
    EXPECT_EQ(choose(), (CursorThemeChoice{"R", 30}));
    environmentTheme = "E";
    environmentSize = "40";
    EXPECT_EQ(choose(), (CursorThemeChoice{"E", 40}));
    settings = {"S", 50};
    EXPECT_EQ(choose(), (CursorThemeChoice{"S", 50}));
    environmentTheme = "";
    settings = {};
    EXPECT_EQ(choose().theme, "R");
}

TEST_F(CursorTheme, NameAndSizeMayComeFromDifferentChannels) {
    resources = "Xcursor.size: 30";
    settings.themeName = "S";
    EXPECT_EQ(choose(), (CursorThemeChoice{"S", 30}));
}

TEST_F(CursorTheme, WithoutASizeResolutionThenScreenDecide) {
    EXPECT_EQ(choose(), (CursorThemeChoice{"", 1080 / 48}));
    resources = "Xft.dpi: 144";
    EXPECT_EQ(choose().size, 32);
}

TEST(PixelsPerPoint, WithoutASettingsManagerTheDotsPerInchDecideInQuarters) {
    const auto of = [](const std::string& dpi) { return pixelsPerPoint(std::nullopt, "Xft.dpi:\t" + dpi); };
    for (const auto& [dpi, density] : {std::pair("96", 1.0),
                                       {"107", 1.0},
                                       {"108", 1.25},
                                       {"120", 1.25},
                                       {"144", 1.5},
                                       {"144.0", 1.5},
                                       {"163.2", 1.75},
                                       {"192", 2.0},
                                       {"288", 3.0},
                                       {"384", 4.0}})
        EXPECT_EQ(of(dpi), density) << dpi;
    EXPECT_EQ(pixelsPerPoint(std::nullopt, ""), 1);
}

TEST(PixelsPerPoint, IsBetweenOneAndFourAndNonsenseIsOne) {
    const auto of = [](const std::string& dpi) { return pixelsPerPoint(std::nullopt, "Xft.dpi:\t" + dpi); };
    for (const auto* low : {"48", "1", "0", "-192", "nonsense", "192dpi", "0x180", "nan", "inf", "1e999", ""})
        EXPECT_EQ(of(low), 1) << low;
    for (const auto* high : {"480", "1e300", "2147483648"}) EXPECT_EQ(of(high), 4) << high;
    for (const auto& [factor, density] :
         {std::pair(0, 1.0), {-2, 1.0}, {1, 1.0}, {2, 2.0}, {4, 4.0}, {9, 4.0}})
        EXPECT_EQ(pixelsPerPoint(CursorXSettings{.windowScalingFactor = factor}, ""), density) << factor;
}

TEST(PixelsPerPoint, UnderASettingsManagerTheSizeOfTextsSaysNothing) {
    EXPECT_EQ(pixelsPerPoint(CursorXSettings{}, "Xft.dpi:\t192"), 1);
    EXPECT_EQ(pixelsPerPoint(CursorXSettings{.windowScalingFactor = 1}, "Xft.dpi:\t192"), 1);
    EXPECT_EQ(pixelsPerPoint(CursorXSettings{.windowScalingFactor = 2}, "Xft.dpi:\t96"), 2);
}

TEST_F(CursorTheme, SizesBeyondReasonAreBounded) {
    for (const auto* const text : {"0", "-4", "nonsense", "99999999999999999999"}) {
        environmentSize = text;
        EXPECT_EQ(choose().size, 22) << text;
    }
    environmentSize = "100000";
    EXPECT_EQ(choose().size, 512);
    resources = "Xft.dpi: 2147483647";
    environmentSize.reset();
    EXPECT_EQ(choose().size, 512);
}

}  // namespace
}  // namespace pintle::x11
