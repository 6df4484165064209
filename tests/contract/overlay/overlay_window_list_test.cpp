// The windows of a real server as the rules about areas get them.
#include "platform/x11/windows/x11_window_list.h"

#include "platform/x11/overlay/x11_overlay_surfaces.h"
#include "tests/contract/overlay/overlay_fixture.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OverlayWindowListTest : public OverlayDesktopTest {
  protected:
    OverlayWindowListTest() { onlooker.close(backdrop); }

    std::unique_ptr<overlay::OverlayConnection> connection = overlay::OverlayConnection::open(x.display());
    overlay::X11Displays displays{*connection};
    overlay::X11WindowList list{*connection, displays};
    static constexpr auto managed = Onlooker::Kind::managed;
};

TEST_F(OverlayWindowListTest, AWindowInTheLowerRightCornerIsThereAndNotInAnother) {
    onlooker.setMonitor("RIGHT", {300, 20, 340, 440}, true);
    onlooker.window({600, 430, 40, 30}, 0, "corner");
    EXPECT_THAT(list.onScreenWindows(), ElementsAre(WindowInfo{"corner", 2, {{300, 0}, {40, 30}}}));
}

TEST_F(OverlayWindowListTest, AFullScreenWindowHasExactlyTheBoundsOfItsDisplay) {
    onlooker.setMonitor("LEFT", {10, 40, 290, 400}, false);
    onlooker.setMonitor("RIGHT", {300, 20, 340, 440}, true);
    onlooker.window({10, 40, 290, 400}, 0, "film");
    const auto windows = list.onScreenWindows();
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_EQ(windows[0].bounds, displays.screens()[1].frame);
}

TEST_F(OverlayWindowListTest, WindowsComeFrontToBackWithLockersOverManagedOnes) {
    const auto lower = onlooker.window({0, 0, 50, 50}, 0, "lower", managed);
    const auto upper = onlooker.window({10, 10, 50, 50}, 0, "upper", managed);
    onlooker.window({0, 0, 640, 480}, 0, "i3lock");
    onlooker.listAsManaged({lower, upper});
    EXPECT_THAT(list.onScreenWindows(), ElementsAre(WindowInfo{"i3lock", 2, {{0, 0}, {640, 480}}},
                                                    WindowInfo{"upper", 0, {{10, 420}, {50, 50}}},
                                                    WindowInfo{"lower", 0, {{0, 430}, {50, 50}}}));
}

TEST_F(OverlayWindowListTest, ADockLiesInALayerOfItsOwnAndTheDesktopsBackgroundIsLeftOut) {
    const auto dock = onlooker.window({0, 450, 640, 30}, 0, "panel", managed);
    const auto background = onlooker.window({0, 0, 640, 480}, 0, "desktop", managed);
    onlooker.setType(dock, "_NET_WM_WINDOW_TYPE_DOCK");
    onlooker.setType(background, "_NET_WM_WINDOW_TYPE_DESKTOP");
    onlooker.listAsManaged({background, dock});
    EXPECT_THAT(list.onScreenWindows(), ElementsAre(WindowInfo{"panel", 1, {{0, 0}, {640, 30}}}));
}

TEST_F(OverlayWindowListTest, HiddenWindowsAndTheOverlaysOwnAreNotOnScreen) {
    const auto window = onlooker.window({0, 0, 50, 50}, 0, "gone");
    onlooker.hide(window);
    overlay::X11OverlaySurfaces surfaces(*connection, displays);
    const auto surface = surfaces.create(1, {20, 20});
    ASSERT_TRUE(surface);
    surface->setImage(unevenImage(20, 20));
    surface->setOrigin({100, 100});
    surface->setAlpha(1);
    connection->flush();
    ASSERT_TRUE(eventually([&] { return onlooker.overlayWindows().size() == 1; }));
    EXPECT_THAT(list.onScreenWindows(), IsEmpty());
}

TEST_F(OverlayWindowListTest, AWindowOfAWindowManagersListThatIsGoneIsLeftOut) {
    const auto kept = onlooker.window({0, 0, 50, 50}, 0, "kept", managed);
    onlooker.listAsManaged({kept, 0x12345678});
    EXPECT_THAT(list.onScreenWindows(), ElementsAre(WindowInfo{"kept", 0, {{0, 430}, {50, 50}}}));
}

}  // namespace
}  // namespace pintle
