// What a running overlay really draws, pixel by pixel over the whole screen: one image where it belongs and
// no other pointer.
#include <algorithm>
#include <cmath>

#include "tests/contract/overlay/child.h"
#include "tests/contract/overlay/overlay_fixture.h"

namespace pintle {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class DrawnOverlayTest : public OverlayDesktopTest {
  protected:
    /// The second carries the origin and neither lies at the root window's corner.
    const Onlooker::Place left{10, 40, 290, 400};
    const Onlooker::Place right{300, 20, 340, 440};
    void makeTwoDisplays() {
        onlooker.setMonitor("LEFT", left, false);
        onlooker.setMonitor("RIGHT", right, true);
    }
    void startCompositor() {
        ::setenv("DISPLAY", x.display().c_str(), 1);
        compositor = std::make_unique<Child>(
            std::vector<std::string>{"picom", "--backend", "xrender", "--config", "/dev/null"});
    }
    void checkEveryCorner(bool blended) {
        const Bitmap image = unevenImage(21, 33);
        struct Case {
            Point hotspot;
            int x;
            int y;
        };
        for (const Case& each : {Case{{0, 0}, 0, 0}, Case{{5.5, 7.4}, 6, 7}, Case{{-3, 99}, 0, 32}}) {
            run(image, each.hotspot);
            for (const auto& display : {left, right})
                for (const int px : {display.x, display.x + display.width - 1})
                    for (const int py : {display.y, display.y + display.height - 1}) {
                        onlooker.move(px, py);
                        EXPECT_TRUE(draws(image, px - each.x, py - each.y, blended))
                            << "pointer " << px << "," << py << " hotspot " << each.x << "," << each.y;
                    }
        }
    }

    std::unique_ptr<Child> compositor;
};

TEST_F(DrawnOverlayTest, WithoutACompositorTheShapeOfTheImageIsDrawnToThePixelAtEveryCornerOfEveryDisplay) {
    makeTwoDisplays();
    checkEveryCorner(false);
}

TEST_F(DrawnOverlayTest, WithACompositorTheImageIsBlendedToThePixelAtEveryCornerOfEveryDisplay) {
    makeTwoDisplays();
    startCompositor();
    checkEveryCorner(true);
}

TEST_F(DrawnOverlayTest, AtEveryDensityTheImagesPixelsAreDrawnWhereARegisteredCursorHasThem) {
    makeTwoDisplays();
    for (const double density : {1.25, 1.5, 1.75, 2.0, 3.0}) {
        workspace.changeDensity(density);
        PreloadedCursor cursor{"left_ptr", unevenImage(20, 30), {}, {}, 0, density};
        cursor.pointSize = Size{std::floor(20 / density), std::floor(30 / density)};
        for (const Point hotspot : {Point{0, 0}, Point{2.5, 3.2}, Point{4, 6}}) {
            cursor.hotspot = hotspot;
            run(cursor);
            const int across = static_cast<int>(std::lround(hotspot.x * density));
            const int down = static_cast<int>(std::lround(hotspot.y * density));
            for (const auto& [px, py] :
                 {std::pair(right.x, right.y), {333, 77}, {left.x + 101, left.y + 55}}) {
                onlooker.move(px, py);
                EXPECT_TRUE(draws(cursor.image, px - across, py - down, false))
                    << density << ": pointer " << px << "," << py << " hotspot " << across << "," << down;
            }
        }
    }
}

TEST_F(DrawnOverlayTest, ACompositorThatComesOrGoesSwitchesBetweenBlendingAndTheShape) {
    const Bitmap image = unevenImage(30, 24);
    run(image, {3, 4});
    onlooker.move(200, 150);
    EXPECT_TRUE(draws(image, 197, 146, false));
    startCompositor();
    EXPECT_TRUE(draws(image, 197, 146, true));
    compositor->end(SIGKILL);
    EXPECT_TRUE(draws(image, 197, 146, false));
}

TEST_F(DrawnOverlayTest, AnImageOfAnotherSizeTakesThePlaceOfTheFirst) {
    run(unevenImage(16, 16), {1, 1});
    onlooker.move(200, 150);
    EXPECT_TRUE(draws(unevenImage(16, 16), 199, 149, false));
    run(unevenImage(40, 50), {20, 30});
    EXPECT_TRUE(draws(unevenImage(40, 50), 180, 120, false));
    run(unevenImage(12, 10), {0, 0});
    EXPECT_TRUE(draws(unevenImage(12, 10), 200, 150, false));
}

TEST_F(DrawnOverlayTest, AClickReachesTheWindowBelowAndMovesNoFocus) {
    const auto below = onlooker.window({100, 100, 200, 200}, 0x00FF00);
    onlooker.focus(backdrop);
    run(unevenImage(32, 32), {16, 16});
    onlooker.move(150, 150);
    ASSERT_TRUE(eventually([&] { return onlooker.overlayWindows().size() == 1; }));
    runFor(std::chrono::milliseconds(100));
    const auto window = onlooker.placeOf(onlooker.overlayWindows()[0]);
    ASSERT_TRUE(window.x < 150 && 150 < window.x + window.width);
    onlooker.click();
    EXPECT_TRUE(eventually([&] { return onlooker.clicksOn(below) == 1; }));
    EXPECT_EQ(onlooker.focused(), backdrop);
}

TEST_F(DrawnOverlayTest, AMenuThatOpensUnderAPointerAtRestIsBelowTheOverlay) {
    const Bitmap image = unevenImage(20, 20);
    run(image, {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(image, 150, 150, false));
    onlooker.window({140, 140, 60, 60}, kBackdrop);
    EXPECT_TRUE(draws(image, 150, 150, false));
    EXPECT_EQ(onlooker.overlayWindows(), std::vector<Onlooker::Id>{onlooker.topmost()});
}

TEST_F(DrawnOverlayTest, OnlyTheDisplayUnderThePointerHasAVisibleOverlay) {
    makeTwoDisplays();
    run(unevenImage(20, 20), {0, 0});
    for (const auto& display : {left, right, left}) {
        onlooker.move(display.x + 50, display.y + 50);
        EXPECT_TRUE(eventually([&] {
            const auto shown = onlooker.overlayWindows();
            return shown.size() == 1 && onlooker.placeOf(shown[0]).x == display.x + 50;
        }));
    }
    EXPECT_THAT(onlooker.overlayWindows(true), SizeIs(2));
}

TEST_F(DrawnOverlayTest, APointerMovedByAProgramIsFollowedWithoutAReportOfADevice) {
    const Bitmap image = unevenImage(20, 20);
    run(image, {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(image, 150, 150, false));
    onlooker.warp(400, 300);
    EXPECT_TRUE(draws(image, 400, 300, false));
}

TEST_F(DrawnOverlayTest, AfterStoppingOnlyTheServersPointerIsDrawn) {
    run(unevenImage(20, 20), {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    stop();
    EXPECT_TRUE(eventually([&] { return !nothingIsDrawn(); }));
    const Drawn pointer = onlooker.drawn();
    EXPECT_THAT(onlooker.overlayWindows(true), IsEmpty());
    run(unevenImage(20, 20), {0, 0});
    EXPECT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    stop();
    EXPECT_TRUE(eventually([&] { return onlooker.drawn() == pointer; }));
}

TEST_F(DrawnOverlayTest, TheEndOfTheDesktopShowsThePointerWithoutAnotherTurn) {
    run(unevenImage(20, 20), {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    stop();
    manager.reset();
    desktop.reset();
    EXPECT_FALSE(nothingIsDrawn());
    EXPECT_THAT(onlooker.overlayWindows(true), IsEmpty());
}

TEST_F(DrawnOverlayTest, WhenTheServerEndsOurConnectionItIsOpenedAgainAndTheOverlayGoesOn) {
    run(unevenImage(20, 20), {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    const auto before = onlooker.overlayWindows().at(0);
    onlooker.killOwnerOf(before);
    EXPECT_TRUE(eventually(
        [&] { return log.has("[X11] The connection that draws the overlay was closed - opened again"); }));
    onlooker.move(160, 140);
    EXPECT_TRUE(draws(unevenImage(20, 20), 160, 140, false));
    EXPECT_THAT(onlooker.overlayWindows(true), SizeIs(1));
    run(unevenImage(24, 16), {0, 0});
    EXPECT_TRUE(draws(unevenImage(24, 16), 160, 140, false));
    stop();
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
}

TEST_F(DrawnOverlayTest, WhenTheServerEndsOurConnectionASecondTimeThePointerIsDrawnAndNothingElseHappens) {
    run(unevenImage(20, 20), {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    onlooker.killOwnerOf(onlooker.overlayWindows().at(0));
    ASSERT_TRUE(eventually(
        [&] { return log.has("[X11] The connection that draws the overlay was closed - opened again"); }));
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    onlooker.killOwnerOf(onlooker.overlayWindows().at(0));
    EXPECT_TRUE(eventually([&] {
        return log.has("[X11] The connection that draws the overlay was closed - overlay unavailable");
    }));
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows(true).empty() && !nothingIsDrawn(); }));
    workspace.send(WorkspaceEvent::screenParametersDidChange);
    runFor(std::chrono::milliseconds(100));
    stop();
    manager.reset();
    desktop.reset();
    EXPECT_FALSE(nothingIsDrawn());
}

TEST_F(DrawnOverlayTest, AnImageLargerThanOneRequestIsDrawn) {
    const auto image = *Bitmap::create(2100, 2100, [](auto out) {
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(i / 9000);
    });
    run(image, {0, 0});
    onlooker.move(100, 100);
    EXPECT_TRUE(draws(image, 100, 100, false));
    EXPECT_FALSE(log.has("[X11] The connection that draws the overlay was closed - opened again"));
}

TEST_F(DrawnOverlayTest, ADisplayUnpluggedWhileThePointerIsHiddenLeavesNoPointerHidden) {
    makeTwoDisplays();
    run(unevenImage(20, 20), {0, 0});
    onlooker.move(left.x + 100, left.y + 100);
    ASSERT_TRUE(draws(unevenImage(20, 20), left.x + 100, left.y + 100, false));
    onlooker.removeMonitor("LEFT");
    workspace.send(WorkspaceEvent::screenParametersDidChange);
    // The pointer is where no display is any more.
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
    EXPECT_THAT(onlooker.overlayWindows(true), SizeIs(1));
    onlooker.move(right.x + 100, right.y + 100);
    EXPECT_TRUE(draws(unevenImage(20, 20), right.x + 100, right.y + 100, false));
    // One display's show is enough though two had hidden it.
    workspace.activate("TeamViewer");
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
}

TEST_F(DrawnOverlayTest, AFullScreenWindowOnOneDisplayShowsTheServersPointerThereAlone) {
    makeTwoDisplays();
    run(unevenImage(20, 20), {0, 0});
    const auto film = onlooker.window(right, kBackdrop, "player");
    onlooker.move(right.x + 100, right.y + 100);
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
    onlooker.move(left.x + 100, left.y + 100);
    EXPECT_TRUE(draws(unevenImage(20, 20), left.x + 100, left.y + 100, false));
    onlooker.close(film);
    onlooker.move(right.x + 100, right.y + 100);
    EXPECT_TRUE(draws(unevenImage(20, 20), right.x + 100, right.y + 100, false));
}

TEST_F(DrawnOverlayTest, OverALockersWindowInACornerTheServersPointerShowsAndBesideItTheTheme) {
    makeTwoDisplays();
    run(unevenImage(20, 20), {0, 0});
    onlooker.window({right.x + 200, right.y + 300, 140, 140}, kBackdrop, "i3lock");
    onlooker.move(right.x + 250, right.y + 350);
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
    // Where the window would be if an axis were flipped.
    for (const auto& [px, py] : {std::pair(right.x + 250, right.y + 90), {right.x + 90, right.y + 350}}) {
        onlooker.move(px, py);
        EXPECT_TRUE(draws(unevenImage(20, 20), px, py, false));
    }
}

TEST_F(DrawnOverlayTest, AtTwoPixelsAPointALockersWindowIsAvoidedWhereItIs) {
    makeTwoDisplays();
    workspace.density = 2;
    run({"left_ptr", unevenImage(20, 20), {0, 0}, {}, 0, 2, Size{10, 10}});
    onlooker.window({right.x + 200, right.y + 300, 140, 140}, kBackdrop, "i3lock");
    for (const int inside : {1, 139}) {
        onlooker.move(right.x + 200 + inside, right.y + 300 + inside);
        EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
    }
    for (const auto& [px, py] : {std::pair(right.x + 198, right.y + 298), {right.x + 250, right.y + 90}}) {
        onlooker.move(px, py);
        EXPECT_TRUE(draws(unevenImage(20, 20), px, py, false));
    }
}

TEST_F(DrawnOverlayTest, AWatchedScreenShowsTheServersPointerWhenTheUserWantsThat) {
    settings.setPauseWhenScreenShared(true);
    run(unevenImage(20, 20), {0, 0});
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
    watched = true;
    EXPECT_TRUE(eventually([&] { return onlooker.overlayWindows().empty() && !nothingIsDrawn(); }));
    watched = false;
    EXPECT_TRUE(draws(unevenImage(20, 20), 150, 150, false));
}

}  // namespace
}  // namespace pintle
