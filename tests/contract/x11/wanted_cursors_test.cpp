#include "platform/x11/cursors/wanted_cursors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

#include "platform/x11/cursors/cursor_names.h"

namespace pintle::x11 {
namespace {

PicturePtr picture(std::uint8_t red) {
    RegisteredCursor cursor;
    cursor.images.push_back(*Bitmap::create(2, 2, [&](auto bytes) {
        for (auto& byte : bytes) byte = red;
    }));
    cursor.size = {2, 2};
    return CursorPicture::of(cursor);
}

class WantedCursorsTest : public testing::Test {
  protected:
    /// The names that change, and from then on they are sent.
    std::vector<std::string_view> send() {
        std::vector<std::string_view> names;
        for (const auto& change :
             wanted.changes([this](std::string_view name) { return name == "pirate" ? nullptr : desktop; })) {
            names.push_back(change.name);
            wanted.sent(change);
        }
        return names;
    }

    WantedCursors wanted;
    PicturePtr desktop = picture(1);
    std::span<const std::string_view> arrow = namesOf("com.apple.coregraphics.Arrow");
    std::span<const std::string_view> iBeam = namesOf("com.apple.coregraphics.IBeam");
};

TEST_F(WantedCursorsTest, TheFirstSendingCoversEveryNameOfTheTable) {
    wanted.wantTheme(arrow, picture(5));
    const auto names = send();
    EXPECT_EQ(names.size(), allCursorNames().size() - 1);
    EXPECT_THAT(names, testing::Not(testing::Contains("pirate")));
    EXPECT_THAT(wanted.sentPicture("left_ptr"), wanted.themePicture("left_ptr"));
    EXPECT_EQ(wanted.sentPicture("xterm"), desktop);
}

TEST_F(WantedCursorsTest, UnregisteringAndRegisteringTheSameSetChangesNothing) {
    wanted.wantTheme(arrow, picture(5));
    send();
    wanted.wantDesktopEverywhere();
    wanted.wantTheme(arrow, picture(5));
    EXPECT_THAT(send(), testing::IsEmpty());
}

TEST_F(WantedCursorsTest, ANameOfBothSetsGoesStraightAndOneTheNewSetLacksBecomesTheDesktops) {
    wanted.wantTheme(arrow, picture(5));
    wanted.wantTheme(iBeam, picture(6));
    send();
    wanted.wantDesktopEverywhere();
    const auto next = picture(7);
    wanted.wantTheme(arrow, next);
    const auto changes = wanted.changes([this](std::string_view) { return desktop; });
    EXPECT_EQ(changes.size(), arrow.size() + iBeam.size() + 1);
    for (const auto& change : changes) {
        const bool isArrow = std::find(arrow.begin(), arrow.end(), change.name) != arrow.end();
        EXPECT_EQ(change.picture, isArrow ? next : desktop) << change.name;
    }
}

TEST_F(WantedCursorsTest, AnOriginalGivesOnlyItsNamesBack) {
    wanted.wantTheme(arrow, picture(5));
    wanted.wantTheme(iBeam, picture(6));
    send();
    wanted.wantDesktop(iBeam);
    EXPECT_THAT(send(), testing::ElementsAreArray(iBeam));
    EXPECT_TRUE(wanted.hasTheme());
    wanted.wantDesktop(arrow);
    EXPECT_FALSE(wanted.hasTheme());
}

TEST_F(WantedCursorsTest, ANewDesktopThemeChangesWhatNoThemeCovers) {
    wanted.wantTheme(arrow, picture(5));
    send();
    desktop = picture(2);
    EXPECT_EQ(send().size(), allCursorNames().size() - 1 - arrow.size());
}

TEST_F(WantedCursorsTest, ANewConnectionIsSentEverythingAgain) {
    wanted.wantTheme(arrow, picture(5));
    const auto first = send();
    wanted.forgetSent();
    EXPECT_EQ(send(), first);
}

}  // namespace
}  // namespace pintle::x11
