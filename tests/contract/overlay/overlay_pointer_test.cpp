// Hiding the pointer and identifying it on a real server, and what following a pointer costs.
#include <X11/cursorfont.h>

#include "platform/x11/overlay/overlay_connection.h"
#include "platform/x11/overlay/x11_displays.h"
#include "platform/x11/overlay/x11_overlay_surfaces.h"
#include "platform/x11/overlay/x11_pointer.h"
#include "platform/x11/windows/x11_window_list.h"
#include "tests/contract/overlay/overlay_fixture.h"

namespace pintle {
namespace {

using testing::Contains;
using testing::Pair;

/// The pieces that the overlay's desktop is made of, so that a test can count requests.
class OverlayPointerTest : public OverlayDesktopTest {
  protected:
    /// Requests since the last question.
    unsigned requests() {
        const unsigned now = xcb_no_operation(connection->get()).sequence;
        const unsigned since = now - counted - 1;
        counted = now;
        return since;
    }

    std::unique_ptr<overlay::OverlayConnection> connection = overlay::OverlayConnection::open(x.display());
    overlay::X11Pointer pointer{*connection, x.display(),
                                [](const std::string& name) -> std::optional<std::string> {
                                    const char* const value = ::getenv(name.c_str());
                                    return value ? std::optional<std::string>(value) : std::nullopt;
                                },
                                [] { return false; }};
    unsigned counted = 0;
};

TEST_F(OverlayPointerTest, OneCountServesAllDisplays) {
    onlooker.move(150, 150);
    for (const DisplayId display : {1, 2}) {
        pointer.show(display);
        pointer.hide(display);
    }
    pointer.flush();
    EXPECT_TRUE(nothingIsDrawn());
    // The second display has gone.
    pointer.show(1);
    pointer.flush();
    EXPECT_FALSE(nothingIsDrawn());
}

TEST_F(OverlayPointerTest, WhatTheServerHasToLearnAsksForAFlushOnce) {
    int asked = 0;
    overlay::X11Pointer asking{*connection, x.display(), [](const std::string&) { return std::nullopt; },
                               [] { return false; }, [&] { ++asked; }};
    asking.show(1);
    EXPECT_EQ(asked, 0) << "nothing was hidden";
    asking.hide(1);
    asking.hide(2);
    EXPECT_EQ(asked, 1);
    asking.flush();
    asking.show(1);
    EXPECT_EQ(asked, 1) << "it stays hidden";
    asking.show(2);
    EXPECT_EQ(asked, 2);
}

TEST_F(OverlayPointerTest, ShowingMoreOftenThanWasHiddenNeverGoesBelowZero) {
    onlooker.move(150, 150);
    pointer.hide(1);
    for (int i = 0; i < 10; ++i) pointer.show(1);
    pointer.flush();
    EXPECT_FALSE(nothingIsDrawn());
    pointer.hide(1);
    pointer.flush();
    EXPECT_TRUE(nothingIsDrawn());
}

TEST_F(OverlayPointerTest, TheServerIsSentOnlyAChangeBetweenHiddenAndShownAndOnlyAtTheEndOfTheTurn) {
    requests();
    pointer.hide(1);
    pointer.hide(1);
    EXPECT_EQ(requests(), 0u);
    pointer.flush();
    EXPECT_EQ(requests(), 1u);
    for (int i = 0; i < 5; ++i) {
        pointer.show(1);
        pointer.hide(1);
        pointer.flush();
    }
    pointer.show(1);
    pointer.flush();
    EXPECT_EQ(requests(), 0u);
    pointer.show(1);
    pointer.flush();
    EXPECT_EQ(requests(), 1u);
    for (int i = 0; i < 10; ++i) pointer.show(1);
    pointer.flush();
    EXPECT_EQ(requests(), 0u);
    EXPECT_EQ(connection->x().firstError({}), 0);
}

TEST_F(OverlayPointerTest, AHiddenPointerIsIdentifiedByTheNameItsProgramGaveIt) {
    XTestClient program(x.display(), "A");
    const auto window = program.window(100, 100);
    onlooker.move(150, 150);
    pointer.hide(1);
    pointer.flush();
    for (const std::string name : {"xterm", "hand2", "left_ptr"}) {
        program.define(window, program.cursor(name));
        const auto seen = pointer.currentSystemCursor();
        ASSERT_TRUE(seen);
        EXPECT_EQ(seen->name, name);
        EXPECT_EQ(seen->hotspot, (Point{3, 4}));
        EXPECT_EQ(seen->image.size(), (Size{24, 24}));
    }
    EXPECT_TRUE(program.shown()) << "the program itself can still ask";
}

TEST_F(OverlayPointerTest, APrivateCopyOfTheDesktopsCursorIsKnownByItsPixels) {
    XTestClient program(x.display(), "A");
    program.setResources("Xcursor.theme:\tA\n");
    const auto window = program.window(100, 100);
    onlooker.move(150, 150);
    pointer.standardCursors();
    program.define(window, program.namelessCursor("xterm"));
    const auto seen = pointer.currentSystemCursor();
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->name, "xterm");
}

TEST_F(OverlayPointerTest, ACursorOfTheServersFontHasAnImageAndNoName) {
    onlooker.setShape(backdrop, XC_gumby);
    onlooker.move(150, 150);
    const auto seen = pointer.currentSystemCursor();
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->name, std::nullopt);
    EXPECT_GT(seen->image.size().width, 1);
}

TEST_F(OverlayPointerTest, TheSeedChangesWithTheCursorAndStaysWithIt) {
    XTestClient program(x.display(), "A");
    const auto window = program.window(100, 100);
    onlooker.move(150, 150);
    program.define(window, program.cursor("xterm"));
    const auto first = pointer.currentCursorSeed();
    ASSERT_TRUE(first);
    EXPECT_EQ(pointer.currentCursorSeed(), first);
    program.define(window, program.cursor("hand2"));
    const auto second = pointer.currentCursorSeed();
    EXPECT_NE(second, first);
    EXPECT_EQ(pointer.currentCursorSeed(), second);
}

TEST_F(OverlayPointerTest, TheIndexOfStandardCursorsIsTheDesktopsOwnTheme) {
    const auto standard = pointer.standardCursors();
    EXPECT_THAT(standard, Contains(Pair("left_ptr", testing::_)));
    ASSERT_FALSE(standard.empty());
    EXPECT_EQ(standard[0].first, "left_ptr");
    EXPECT_EQ(standard[0].second.pixel(5, 5)[0], 0x11);
}

/// Passes questions on and counts them: one about the mouse a tick.
class CountedDisplays : public Displays {
  public:
    explicit CountedDisplays(Displays& real) : real_(real) {}
    const std::vector<Screen>& screens() override { return real_.screens(); }
    DisplayId mainDisplayID() override { return real_.mainDisplayID(); }
    Point mouseLocation() override {
        ++ticks;
        return real_.mouseLocation();
    }
    int ticks = 0;

  private:
    Displays& real_;
};

struct NoAccessibility : Accessibility {
    bool isProcessTrusted() override { return false; }
    std::optional<std::string> roleAt(TopLeftPoint) override { return std::nullopt; }
};

TEST_F(OverlayPointerTest, WithThePointerAtRestElevenOfTwelveTicksAskTheServerNothing) {
    overlay::X11Displays real(*connection);
    CountedDisplays displays(real);
    overlay::X11OverlaySurfaces surfaces(*connection, real);
    overlay::X11WindowList windowList(*connection, real);
    NoAccessibility accessibility;
    CursorOverlayManager overlay(CursorOverlayManager::Desktop{queue, log, displays, surfaces, windowList,
                                                               workspace, pointer, cursors, accessibility,
                                                               settings, names});
    const auto endOfTurn = queue.atEndOfTurn([&] { pointer.flush(); });
    const auto readable = queue.watchReadable(connection->x().descriptor(), [&] { connection->drain(); });
    overlay.loadCursorsFromPreloaded({{"left_ptr", unevenImage(20, 20), {0, 0}, {}, 0}}, 1.0);
    overlay.start();
    onlooker.move(150, 150);
    ASSERT_TRUE(draws(unevenImage(20, 20), 150, 150, false));

    requests();
    displays.ticks = 0;
    int busy = 0;
    while (displays.ticks < 360) {
        const int before = displays.ticks;
        queue.runOnce(std::chrono::milliseconds(4));
        if (displays.ticks != before && requests() > 0) ++busy;
    }
    EXPECT_LE(busy, displays.ticks / 12);
    EXPECT_GT(busy, 0) << "a pointer moved by a program would never be seen";
}

TEST_F(OverlayPointerTest, AProgramThatFollowsNoPointerIsNotNotifiedOfMotion) {
    overlay::X11Displays displays(*connection);
    displays.mouseLocation();
    const auto motions = connection->motions();
    onlooker.move(10, 10);
    EXPECT_TRUE(eventually([&] { return connection->drain(), connection->motions() > motions; }));
    EXPECT_TRUE(eventually([&] { return connection->drain(), !connection->isFollowed(); }));
    const auto before = connection->motions();
    onlooker.move(20, 20);
    runFor(std::chrono::milliseconds(100));
    connection->drain();
    EXPECT_EQ(connection->motions(), before);
    // The first question after that asks the server whatever was missed.
    EXPECT_EQ(displays.mouseLocation(), (Point{20, 460}));
}

TEST(OverlayDesktopAnswer, ThereIsNoneWithoutAServer) {
    PollQueue queue;
    FakeLog log;
    FakeWorkspace workspace;
    const auto make = [&](std::optional<std::string> display) {
        return makeOverlayDesktop({std::move(display),
                                   queue,
                                   log,
                                   workspace,
                                   [&](int descriptor, std::function<void()> readable) {
                                       return queue.watchReadable(descriptor, std::move(readable));
                                   },
                                   {}});
    };
    EXPECT_FALSE(make(":4711"));
    XTestServer x;
    ::setenv("DISPLAY", x.display().c_str(), 1);
    EXPECT_TRUE(make(std::nullopt));
}

}  // namespace
}  // namespace pintle
