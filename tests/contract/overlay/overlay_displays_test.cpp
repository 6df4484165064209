// Displays and the mouse in the program's coordinates: up is positive and the first screen carries the
// origin.
#include "platform/x11/overlay/x11_displays.h"

#include "tests/contract/overlay/overlay_fixture.h"

namespace pintle {
namespace {

using testing::SizeIs;

class OverlayDisplaysTest : public OverlayDesktopTest {
  protected:
    std::unique_ptr<overlay::OverlayConnection> connection = overlay::OverlayConnection::open(x.display());
    overlay::X11Displays displays{*connection};
};

TEST_F(OverlayDisplaysTest, OneDisplayCoversTheRootWindow) {
    ASSERT_THAT(displays.screens(), SizeIs(1));
    EXPECT_EQ(displays.screens()[0].frame, (Rect{{0, 0}, {640, 480}}));
    EXPECT_EQ(displays.mainDisplayID(), displays.screens()[0].id);
}

TEST_F(OverlayDisplaysTest, ThePrimaryDisplayIsTheFirstAndCarriesTheOriginWhereverItLies) {
    onlooker.setMonitor("LEFT", {10, 40, 290, 400}, false);
    onlooker.setMonitor("RIGHT", {300, 20, 340, 440}, true);
    ASSERT_THAT(displays.screens(), SizeIs(2));
    EXPECT_EQ(displays.screens()[0].frame, (Rect{{0, 0}, {340, 440}}));
    EXPECT_EQ(displays.screens()[1].frame, (Rect{{-290, 20}, {290, 400}}));
    EXPECT_EQ(displays.mainDisplayID(), displays.screens()[0].id);
    EXPECT_NE(displays.screens()[0].id, displays.screens()[1].id);
    EXPECT_EQ(displays.originX(), 300);
    EXPECT_EQ(displays.originTop(), 20);
    EXPECT_EQ(displays.originBottom(), 460);
}

TEST_F(OverlayDisplaysTest, AtTwoPixelsAPointEverythingIsMeasuredInPoints) {
    onlooker.setMonitor("LEFT", {10, 40, 290, 400}, false);
    onlooker.setMonitor("RIGHT", {300, 20, 340, 440}, true);
    double density = 1;
    overlay::X11Displays dense(*connection, [&] { return density; });
    EXPECT_EQ(dense.screens()[0].frame, (Rect{{0, 0}, {340, 440}}));
    density = 2;
    EXPECT_EQ(dense.screens()[0].frame, (Rect{{0, 0}, {170, 220}}));
    EXPECT_EQ(dense.screens()[1].frame, (Rect{{-145, 10}, {145, 200}}));
    onlooker.move(300 + 40, 460 - 60);
    EXPECT_EQ(dense.mouseLocation(), (Point{20, 30}));
    EXPECT_EQ(dense.originTop(), 20);
}

TEST_F(OverlayDisplaysTest, TheMouseInTheLowerLeftPixelOfTheFirstScreenIsOnePointUp) {
    onlooker.setMonitor("RIGHT", {300, 20, 340, 440}, true);
    onlooker.move(300, 459);
    EXPECT_EQ(displays.mouseLocation(), (Point{0, 1}));
    EXPECT_TRUE(mouseInRect(displays.mouseLocation(), displays.screens()[0].frame));
    onlooker.move(300, 460);
    EXPECT_TRUE(eventually([&] { return displays.mouseLocation() == Point{0, 0}; }));
    EXPECT_FALSE(mouseInRect(displays.mouseLocation(), displays.screens()[0].frame));
    onlooker.move(639, 20);
    EXPECT_TRUE(eventually([&] { return displays.mouseLocation() == Point{339, 440}; }));
    EXPECT_TRUE(mouseInRect(displays.mouseLocation(), displays.screens()[0].frame));
}

TEST_F(OverlayDisplaysTest, ADisplayThatComesOrGoesIsSeenWithTheNextQuestionAboutTheMouse) {
    ASSERT_THAT(displays.screens(), SizeIs(1));
    onlooker.setMonitor("LEFT", {0, 0, 320, 480}, false);
    onlooker.setMonitor("RIGHT", {320, 0, 320, 480}, true);
    const auto becomes = [&](std::size_t count) {
        return eventually([&] {
            displays.mouseLocation();
            return displays.screens().size() == count;
        });
    };
    EXPECT_TRUE(becomes(2));
    onlooker.removeMonitor("RIGHT");
    onlooker.removeMonitor("LEFT");
    EXPECT_TRUE(becomes(1));
}

}  // namespace
}  // namespace pintle
