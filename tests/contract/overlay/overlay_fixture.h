// An overlay manager on a private X server, wired as the root would, with an onlooker that says what is
// drawn. The workspace is the test's.
#pragma once

#include <X11/cursorfont.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "apply/cursor_overlay_manager.h"
#include "platform/fake/fake_hardware_cursor.h"
#include "platform/fake/fake_key_value_store.h"
#include "platform/fake/fake_log.h"
#include "platform/fake/fake_workspace.h"
#include "platform/freedesktop/freedesktop_names.h"
#include "platform/x11/overlay/overlay_desktop.h"
#include "settings/cursor_settings.h"
#include "tests/contract/overlay/onlooker.h"
#include "tests/contract/x11/poll_queue.h"
#include "tests/contract/x11/x_test_client.h"
#include "tests/contract/x11/x_test_server.h"
#include "tests/support/temporary_folder.h"

namespace pintle {

/// A picture no two parts of which look alike: opaque, half transparent and clear pixels.
inline Bitmap unevenImage(int width, int height) {
    return *Bitmap::create(width, height, [=](auto out) {
        for (std::size_t i = 0; i < out.size(); i += 4) {
            const auto x = static_cast<int>(i / 4) % width;
            const auto y = static_cast<int>(i / 4) / width;
            const int alpha = x + y < 4 ? 0 : (x % 3 == 0 ? 90 : (y % 4 == 0 ? 170 : 255));
            const auto channel = [alpha](int value) {
                return static_cast<std::uint8_t>((value % 256) * alpha / 255);
            };
            out[i] = channel(40 + x * 7);
            out[i + 1] = channel(90 + y * 5);
            out[i + 2] = channel(200 - x - y);
            out[i + 3] = static_cast<std::uint8_t>(alpha);
        }
    });
}

/// One for the process: the cursor library reads its search path once.
inline const TemporaryFolder& overlayThemesFolder() {
    static const TemporaryFolder folder;
    return folder;
}

class OverlayDesktopTest : public testing::Test {
  protected:
    static constexpr std::uint32_t kBackdrop = 0x3060A0;
    static constexpr int kWidth = 640;
    static constexpr int kHeight = 480;

    OverlayDesktopTest() {
        writeTestTheme(overlayThemesFolder().path(), "A",
                       {{"left_ptr", 0xFF112233}, {"xterm", 0xFF445566}, {"hand2", 0xFF778899}});
        ::setenv("XCURSOR_PATH", overlayThemesFolder().path().c_str(), 1);
        ::setenv("XCURSOR_THEME", "A", 1);
        ::unsetenv("XCURSOR_SIZE");
        settings.setUseSystemCursorForMissing(false);
        workspace.frontmost = RunningApplication{"editor", 7};
        backdrop = onlooker.window({0, 0, kWidth, kHeight}, kBackdrop);
        // Else it would count as a full-screen window, and the server's own pointer would be blank.
        onlooker.setType(backdrop, "_NET_WM_WINDOW_TYPE_DESKTOP");
        onlooker.setShape(backdrop, XC_left_ptr);
    }

    void openDesktop() {
        OverlayDesktopOptions options{x.display(), queue, log, workspace, {}, {}};
        options.watchReadable = [this](int descriptor, std::function<void()> readable) {
            return queue.watchReadable(descriptor, std::move(readable));
        };
        options.screenWatched = [this] { return watched; };
        desktop = makeOverlayDesktop(std::move(options));
    }
    /// A running overlay that draws `image` for every cursor.
    void run(Bitmap image, Point hotspot) { run({"left_ptr", std::move(image), hotspot, {}, 0}); }
    void run(const PreloadedCursor& cursor) {
        if (!desktop) openDesktop();
        ASSERT_TRUE(desktop);
        if (!manager)
            manager = std::make_unique<CursorOverlayManager>(CursorOverlayManager::Desktop{
                queue, log, desktop->displays(), desktop->surfaces(), desktop->windowList(), workspace,
                desktop->pointer(), cursors, desktop->accessibility(), settings, names});
        manager->loadCursorsFromPreloaded({cursor}, 1.0);
        manager->updateOverlayWindows();
        manager->start();
    }
    void stop() {
        manager->deactivate();
        manager->showSystemCursorGuaranteed();
        manager->destroyWindows();
    }

    template <typename Condition>
    bool eventually(Condition condition) {
        const auto end = queue.now() + std::chrono::seconds(10);
        while (queue.now() < end) {
            if (condition()) return true;
            queue.runOnce(std::chrono::milliseconds(4));
        }
        return condition();
    }
    void runFor(std::chrono::milliseconds time) {
        const auto end = queue.now() + time;
        while (queue.now() < end) queue.runOnce(std::chrono::milliseconds(4));
    }
    /// Where nothing but the backdrop is drawn.
    static Drawn bare() {
        return {kWidth, kHeight, std::vector<Pixel>(std::size_t{kWidth} * kHeight, Pixel{0x30, 0x60, 0xA0})};
    }
    /// Whether exactly the image is drawn, with its hotspot on the pointer at (x, y), and no other pointer.
    bool draws(const Bitmap& image, int left, int top, bool blended) {
        const Drawn wanted = drawnOver(bare(), image, left, top, blended);
        const auto isRight = [&] { return largestDifference(onlooker.drawn(), wanted) <= (blended ? 1 : 0); };
        if (eventually(isRight)) return true;
        std::cerr << "drawn otherwise: " << firstDifference(onlooker.drawn(), wanted) << "\n";
        return false;
    }
    bool nothingIsDrawn() { return onlooker.drawn() == bare(); }

    TemporaryFolder picture;
    XTestServer x{{"-fbdir", picture.path()}};
    Onlooker onlooker{x.display(), picture.path()};
    Onlooker::Id backdrop = 0;
    PollQueue queue;
    FakeLog log;
    FakeWorkspace workspace;
    FakeHardwareCursor cursors;
    FakeKeyValueStore store;
    NotificationCenter notifications;
    CursorSettings settings{store, notifications};
    DesktopNames names = makeFreedesktopNames();
    bool watched = false;
    std::unique_ptr<OverlayDesktop> desktop;
    std::unique_ptr<CursorOverlayManager> manager;
};

}  // namespace pintle
