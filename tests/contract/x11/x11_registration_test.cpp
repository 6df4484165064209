// What registering, unregistering and copying do to the pointer that an independent client sees.
#include <algorithm>
#include <set>

#include "platform/x11/cursors/cursor_names.h"
#include "tests/contract/x11/x11_fixture.h"

namespace pintle {
namespace {

using X11Registration = X11Test;

TEST_F(X11Registration, ARegisteredCursorReplacesTheOneOfARunningProgram) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    ASSERT_EQ(shownPixel(), kThemeA + 0x10);

    start();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 10)), 0);
    server->flush();

    const auto seen = client->shown();
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->name, "left_ptr");
    EXPECT_EQ(seen->width, 20);
    EXPECT_EQ(seen->height, 20);
    EXPECT_EQ(seen->hotspotX, 1);
    EXPECT_EQ(seen->hotspotY, 2);
    EXPECT_THAT(seen->pixels, testing::Each(themePixel(10)));
    EXPECT_EQ(seen->pixels.size(), 400u);
}

TEST_F(X11Registration, NothingIsSentBeforeTheFlush) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 10)), 0);
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
    server->flush();
    EXPECT_EQ(shownPixel(), themePixel(10));
}

TEST_F(X11Registration, AnAnimatedCursorShowsEachOfItsFramesUnderItsName) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("watch"));
    client->warp(50, 50);
    start();
    EXPECT_EQ(registerTheme(themeCursor(kWait, 20, 4)), 0);
    server->flush();
    std::set<std::uint32_t> frames;
    EXPECT_TRUE(eventually([&] {
        const auto seen = client->shown();
        if (seen && seen->name == "watch" && seen->width > 1) frames.insert(seen->pixels.front());
        return frames.size() == 4;
    }));
    for (int frame = 0; frame < 4; ++frame) EXPECT_TRUE(frames.contains(themePixel(20, frame)));
}

TEST_F(X11Registration, ANameThatTheNewSetLacksShowsTheDesktopsOwn) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("xterm"));
    client->warp(50, 50);
    start();
    apply(10);
    EXPECT_EQ(shownPixel(), themePixel(10));
    unregisterAll();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 11)), 0);
    server->flush();
    EXPECT_EQ(shownPixel(), kThemeA + 0x20);
    EXPECT_EQ(shownName(), "xterm");
}

TEST_F(X11Registration, TheFirstFlushCoversAlsoTheNamesThatAnEarlierProcessLeftBehind) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("hand2"));
    client->warp(50, 50);
    start();
    apply(10);
    stop();
    ASSERT_EQ(shownPixel(), themePixel(10));
    start();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 11)), 0);
    server->flush();
    EXPECT_EQ(shownPixel(), kThemeA + 0x30);
}

TEST_F(X11Registration, OneTurnOfUnregisteringAndRegisteringSendsOnlyWhatChanged) {
    start();
    apply(10);
    namesSent.clear();
    unregisterAll();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 10)), 0);
    EXPECT_EQ(registerTheme(themeCursor(kIBeam, 12)), 0);
    EXPECT_EQ(registerTheme(themeCursor(kPointingHand, 10)), 0);
    server->flush();
    EXPECT_THAT(namesSent, testing::UnorderedElementsAre("xterm", "text", "ibeam"));
}

TEST_F(X11Registration, TheSameSetAgainSendsNothing) {
    start();
    apply(10);
    EXPECT_FALSE(namesSent.empty());
    namesSent.clear();
    apply(10);
    EXPECT_THAT(namesSent, testing::IsEmpty());
}

TEST_F(X11Registration, TheDesktopsCursorNeverShowsBetweenTwoSets) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    unregisterAll();
    EXPECT_EQ(shownPixel(), themePixel(10));
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 11)), 0);
    EXPECT_EQ(shownPixel(), themePixel(10));
    server->flush();
    EXPECT_EQ(shownPixel(), themePixel(11));
}

TEST_F(X11Registration, AChangeOutsideOfAnyTurnAsksForOne) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    settle();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 11)), 0);
    queue.runOnce(std::chrono::milliseconds(0));
    EXPECT_EQ(shownPixel(), themePixel(11));
    settle();
    unregisterAll();
    queue.runOnce(std::chrono::milliseconds(0));
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
    settle();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 12)), 0);
    settle();
    EXPECT_EQ(registerOriginal(kArrow), 0);
    queue.runOnce(std::chrono::milliseconds(0));
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
}

TEST_F(X11Registration, AFlushWithoutChangesSendsNothing) {
    start();
    server->flush();
    EXPECT_THAT(namesSent, testing::IsEmpty());
    EXPECT_EQ(client->windowProperty(client->root(), "_PINTLE_REGISTRATION"), 0u);
}

TEST_F(X11Registration, TheRootWindowShowsTheArrow) {
    client->warp(300, 300);
    start();
    apply(10);
    EXPECT_EQ(shownPixel(), themePixel(10));
    EXPECT_EQ(shownName(), "left_ptr");
}

TEST_F(X11Registration, ARootCursorThatAWindowManagerSetForTheDeviceIsReplacedToo) {
    client->defineForDevice(client->root(), client->cursor("left_ptr"));
    client->warp(300, 300);
    ASSERT_EQ(shownPixel(), kThemeA + 0x10);
    start();
    apply(10);
    EXPECT_EQ(shownPixel(), themePixel(10));
    restore();
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
    EXPECT_EQ(shownName(), "left_ptr");
}

TEST_F(X11Registration, ARootCursorOfTheDeviceIsReplacedAlsoWhileThePointerIsElsewhere) {
    client->defineForDevice(client->root(), client->cursor("left_ptr"));
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("xterm"));
    client->warp(50, 50);
    start();
    apply(10);
    stop();
    client->warp(300, 300);
    EXPECT_EQ(shownPixel(), themePixel(10));
}

TEST_F(X11Registration, ARootCursorThatIsNotTheDevicesStaysReachableForTheDesktop) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("xterm"));
    client->warp(50, 50);
    start();
    apply(10);
    restore();
    XTestClient other(x.display(), "B");
    other.define(other.root(), other.cursor("left_ptr"));
    client->warp(300, 300);
    EXPECT_EQ(shownPixel(), kThemeB + 0x10);
    other.changeByName(other.cursor("hand2"), "left_ptr");
    EXPECT_EQ(shownPixel(), kThemeB + 0x30);
}

TEST_F(X11Registration, AWindowKeepsItsArrowWhenTheRootsCursorChanges) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    client->define(client->root(), client->cursor("watch"));
    client->defineForDevice(client->root(), client->cursor("watch"));
    EXPECT_EQ(shownPixel(), themePixel(10));
    EXPECT_EQ(shownName(), "left_ptr");
}

TEST_F(X11Registration, AResetShowsTheDesktopsOwnPixelsEverywhere) {
    std::map<std::string, XTestClient::Id> windows;
    int left = 0;
    for (const auto& name : {"left_ptr", "xterm", "hand2"}) {
        windows[name] = client->window(left, 0);
        client->define(windows[name], client->cursor(name));
        left += 100;
    }
    start();
    apply(10);
    restore();
    client->warp(50, 50);
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
    client->warp(150, 50);
    EXPECT_EQ(shownPixel(), kThemeA + 0x20);
    client->warp(250, 50);
    EXPECT_EQ(shownPixel(), kThemeA + 0x30);
    client->warp(300, 300);
    EXPECT_EQ(shownPixel(), kThemeA + 0x10);
}

TEST_F(X11Registration, AnOriginalGivesBackTheDesktopsPictureWhateverPixelsItCarries) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("xterm"));
    client->warp(50, 50);
    start();
    apply(10);
    EXPECT_EQ(registerOriginal(kIBeam), 0);
    server->flush();
    EXPECT_EQ(shownPixel(), kThemeA + 0x20);
    RegisteredCursor empty;
    empty.identifier = kArrow;
    EXPECT_EQ(server->registerCursorWithImages(1, empty, RegistrationPurpose::original), 0);
}

TEST_F(X11Registration, AfterARestartAResetShowsTheDesktopsNewThemeAndLaterChangesShowAtOnce) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("xterm"));
    const auto arrow = client->window(100, 0);
    client->define(arrow, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    ASSERT_EQ(shownPixel(), themePixel(10));
    stop();
    client->setResources("Xcursor.theme:\tB\n");
    start();
    restore();
    EXPECT_EQ(shownPixel(), kThemeB + 0x20);
    client->warp(150, 50);
    EXPECT_EQ(shownPixel(), kThemeB + 0x10);
    client->warp(300, 300);
    EXPECT_EQ(shownPixel(), kThemeB + 0x10);

    client->setResources("Xcursor.theme:\tC\n");
    EXPECT_TRUE(becomes(kThemeC + 0x10));
    client->warp(150, 50);
    EXPECT_EQ(shownPixel(), kThemeC + 0x10);
    client->warp(50, 50);
    EXPECT_EQ(shownPixel(), kThemeC + 0x20);
}

TEST_F(X11Registration, ASettingsManagerDecidesTheDesktopsTheme) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    client->warp(50, 50);
    start();
    apply(10);
    restore();
    ASSERT_EQ(shownPixel(), kThemeA + 0x10);
    client->publishSettings("B", 24);
    EXPECT_TRUE(becomes(kThemeB + 0x10));
    client->publishSettings("C", 24);
    EXPECT_TRUE(becomes(kThemeC + 0x10));
}

TEST_F(X11Registration, AThemeInForceStaysWhenTheDesktopsThemeChangesAndNamesItLacksFollow) {
    const auto window = client->window(0, 0);
    client->define(window, client->cursor("left_ptr"));
    const auto lacking = client->window(100, 0);
    client->define(lacking, client->cursor("fleur"));
    client->warp(150, 50);
    start();
    apply(10);
    ASSERT_EQ(shownPixel(), kThemeA + 0x40);
    client->setResources("Xcursor.theme:\tB\n");
    EXPECT_TRUE(becomes(kThemeB + 0x40));
    client->warp(50, 50);
    EXPECT_EQ(shownPixel(), themePixel(10));
}

TEST_F(X11Registration, AProcessThatNeverSentAnythingDoesNotReactToTheDesktopsTheme) {
    start();
    client->setResources("Xcursor.theme:\tB\n");
    settle();
    EXPECT_THAT(namesSent, testing::IsEmpty());
}

TEST_F(X11Registration, AHotspotIsRoundedToNearestAndClampedIntoTheImage) {
    client->warp(300, 300);
    start();
    const auto shownHotspot = [&](Point hotspot) {
        EXPECT_EQ(registerTheme(themeCursor(kArrow, 10, 1, 20, hotspot)), 0);
        server->flush();
        const auto seen = client->shown();
        return seen ? std::pair(seen->hotspotX, seen->hotspotY) : std::pair(-1, -1);
    };
    EXPECT_EQ(shownHotspot({1.5, 2.4}), std::pair(2, 2));
    EXPECT_EQ(shownHotspot({-3, 25}), std::pair(0, 19));
    EXPECT_EQ(shownHotspot({19.7, 20}), std::pair(19, 19));
}

TEST_F(X11Registration, AnUnusableImageIsRefusedAtOnceAndChangesNothing) {
    client->warp(300, 300);
    start();
    apply(10);
    auto tooManyFrames = themeCursor(kArrow, 11);
    tooManyFrames.frameCount = 2;
    EXPECT_NE(registerTheme(tooManyFrames), 0);
    auto tooLarge = themeCursor(kArrow, 11, 1, 3000);
    EXPECT_NE(registerTheme(tooLarge), 0);
    auto noImage = themeCursor(kArrow, 11);
    noImage.images.clear();
    EXPECT_NE(registerTheme(noImage), 0);
    server->flush();
    EXPECT_EQ(shownPixel(), themePixel(10));
}

TEST_F(X11Registration, IdentifiersWithoutAnX11NameAreAcceptedAndSendNothing) {
    start();
    for (const auto& identifier : {"com.apple.coregraphics.ArrowS", "com.apple.cursor.39"})
        EXPECT_EQ(registerTheme(themeCursor(identifier, 10)), 0);
    server->flush();
    EXPECT_THAT(namesSent, testing::IsEmpty());
}

TEST_F(X11Registration, CopyingAnswersTheDesktopsImagesAsOneStrip) {
    start();
    apply(10);
    const auto copied = server->copyRegisteredCursorImages(server->mainConnectionID(), kWait);
    ASSERT_EQ(copied.error, 0);
    EXPECT_EQ(copied.cursor.identifier, kWait);
    EXPECT_EQ(copied.cursor.frameCount, 3u);
    EXPECT_DOUBLE_EQ(copied.cursor.frameDuration, 0.04);
    EXPECT_EQ(copied.cursor.size, (Size{24, 24}));
    EXPECT_EQ(copied.cursor.hotspot, (Point{3, 4}));
    ASSERT_EQ(copied.cursor.images.size(), 1u);
    const auto& strip = copied.cursor.images.front();
    EXPECT_EQ(strip.width(), 24);
    EXPECT_EQ(strip.height(), 72);
    for (int frame = 0; frame < 3; ++frame)
        EXPECT_EQ(strip.pixel(5, 24 * frame)[2], static_cast<std::uint8_t>((kThemeA + 0x50) + frame));
}

TEST_F(X11Registration, CopyingAStillCursorAnswersNoDuration) {
    start();
    const auto copied = server->copyRegisteredCursorImages(server->mainConnectionID(), kArrow);
    ASSERT_EQ(copied.error, 0);
    EXPECT_EQ(copied.cursor.frameCount, 1u);
    EXPECT_EQ(copied.cursor.frameDuration, 0);
}

TEST_F(X11Registration, CopyingAnIdentifierWithoutX11NameAnswersAnError) {
    start();
    for (const auto& identifier : {"com.apple.coregraphics.ArrowS", "com.apple.cursor.39", "nonsense"}) {
        const auto copied = server->copyRegisteredCursorImages(server->mainConnectionID(), identifier);
        EXPECT_NE(copied.error, 0);
        EXPECT_TRUE(copied.cursor.images.empty());
    }
}

TEST_F(X11Registration, EveryNameOfTheRowIsSentWithAnIdentifier) {
    start();
    EXPECT_EQ(registerTheme(themeCursor(kArrow, 10)), 0);
    server->flush();
    for (const auto name : x11::namesOf(kArrow))
        EXPECT_EQ(std::count(namesSent.begin(), namesSent.end(), name), 1) << name;
}

}  // namespace
}  // namespace pintle
