// The overlay over this backend, so that the pointer is never lost: it may be hidden only while a window
// shows another one in its place.
#include "apply/cursor_overlay_manager.h"
#include "platform/fake/fake_workspace.h"
#include "platform/mac/mac_accessibility.h"
#include "platform/mac/mac_displays.h"
#include "platform/mac/mac_hardware_cursor.h"
#include "platform/mac/mac_overlay_surfaces.h"
#include "platform/mac/mac_pointer.h"
#include "platform/mac/mac_window_list.h"
#include "tests/mac/fake/fake_test.h"
#include "tests/mac/fake/fake_windows.h"
#include "tests/support/test_world.h"

namespace pintle {
namespace {

using mac_fake::FakeWindow;
using mac_fake::theWindow;
using mac_fake::world;

class MacOverlayTest : public ::testing::Test {
  protected:
    MacOverlayTest() {
        world().screens = {{{{0, 0}, {1440, 900}}, {{0, 50}, {1440, 825}}, 1}};
        world().mouse = {100, 100};
        workspace.frontmost = RunningApplication{"Editor", 5};
        manager.loadCursorsFromPreloaded({{"left_ptr", picture(32, 32), {2, 2}, {}, 0}}, 1);
        manager.start();
        tick();
    }
    void tick() { core.scheduler.advance(std::chrono::nanoseconds(8'333'334)); }
    /// As the desktop counts: a show too many does nothing.
    static bool pointerIsHidden() {
        int level = 0;
        for (const std::string& call : world().pointerCalls)
            level = call.starts_with("hide") ? level + 1 : std::max(0, level - 1);
        return level > 0;
    }
    static bool windowShowsThePointer() {
        const FakeWindow& window = theWindow(FakeWindow::Kind::overlay);
        return window.isVisible() && window.alpha == 1 && window.image.has_value();
    }

    TestWorld core;
    FakeWorkspace workspace;
    DesktopNames names;
    CursorSettings settings{core.store, core.notifications};
    std::unique_ptr<Displays> displays = makeMacDisplays();
    std::unique_ptr<OverlaySurfaces> surfaces = makeMacOverlaySurfaces();
    std::unique_ptr<WindowList> windowList = makeMacWindowList();
    std::unique_ptr<Pointer> pointer = makeMacPointer();
    std::unique_ptr<HardwareCursor> cursors = makeMacHardwareCursor();
    std::unique_ptr<Accessibility> accessibility = makeMacAccessibility();
    CursorOverlayManager manager{{core.scheduler.mainQueue(), core.log, *displays, *surfaces, *windowList,
                                  workspace, *pointer, *cursors, *accessibility, settings, names}};
};

TEST_F(MacOverlayTest, AWindowShowsThePointerThatIsHidden) {
    EXPECT_TRUE(pointerIsHidden());
    EXPECT_TRUE(windowShowsThePointer());
}

TEST_F(MacOverlayTest, HidingTheProgramLosesNoPointer) {
    mac_fake::hideProgram();
    workspace.activate("Browser");
    for (int i = 0; i < 3; ++i) {
        tick();
        EXPECT_NE(pointerIsHidden(), !windowShowsThePointer());
    }
    // What is themed stays so.
    EXPECT_TRUE(windowShowsThePointer());
    mac_fake::showProgram();
    tick();
    EXPECT_TRUE(pointerIsHidden());
    EXPECT_TRUE(windowShowsThePointer());
}

TEST_F(MacOverlayTest, AWindowThatTheDesktopTakesAwayLosesNoPointerAndTheThemeComesBackWithIt) {
    theWindow(FakeWindow::Kind::overlay).takenAway = true;
    for (int i = 0; i < 3; ++i) {
        tick();
        EXPECT_FALSE(pointerIsHidden());
    }
    theWindow(FakeWindow::Kind::overlay).takenAway = false;
    tick();
    EXPECT_TRUE(pointerIsHidden());
    EXPECT_TRUE(windowShowsThePointer());
}

}  // namespace
}  // namespace pintle
