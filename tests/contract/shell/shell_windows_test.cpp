// Popover, windows, alerts and the end of the program on a real window manager.
#include <xcb/shape.h>

#include <QRegion>

#include "tests/contract/shell/shell_fixture.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Rect kPanelFrame{{900, 200}, {340, 520}};

class PopoverWindow : public ShellTest {
  protected:
    void show() {
        if (!popover) popover = popovers->makePopover({.contentSize = {340, 520}});
        makeItem();
        popover->show(*item, kPanelFrame);
    }
    /// Moves the mouse there and waits until no window takes what it does.
    bool letsPressesThrough(QPoint at) {
        mouse("mousemove " + std::to_string(at.x()) + " " + std::to_string(at.y()));
        const auto connection = x11::XConnection::open("");
        return connection && until([&] {
                   const x11::Reply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
                       connection->get(), xcb_query_pointer(connection->get(), connection->root()), nullptr));
                   return pointer && QPoint(pointer->root_x, pointer->root_y) == at &&
                          pointer->child == XCB_WINDOW_NONE;
               });
    }
    static QRegion shapeOf(const QWindow& window) {
        const auto connection = x11::XConnection::open("");
        QRegion shape;
        if (!connection) return shape;
        QGuiApplication::sync();
        const x11::Reply<xcb_shape_get_rectangles_reply_t> reply(xcb_shape_get_rectangles_reply(
            connection->get(),
            xcb_shape_get_rectangles(connection->get(), static_cast<xcb_window_t>(window.winId()),
                                     XCB_SHAPE_SK_BOUNDING),
            nullptr));
        for (int i = 0; reply && i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i) {
            const auto& part = xcb_shape_get_rectangles_rectangles(reply.get())[i];
            shape += QRect(part.x, part.y, part.width, part.height);
        }
        return shape;
    }
    std::unique_ptr<Popover> popover;
};

/// What a compositor is asked to blur behind the window.
QRegion blurBehind(const QWindow& window) {
    const auto connection = x11::XConnection::open("");
    QRegion region;
    QGuiApplication::sync();
    const x11::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection->get(),
        xcb_get_property(connection->get(), 0, static_cast<xcb_window_t>(window.winId()),
                         connection->atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_ATOM_CARDINAL, 0, 4096),
        nullptr));
    const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    for (std::uint32_t i = 0; i + 3 < reply->value_len; i += 4)
        region += QRect(static_cast<int>(values[i]), static_cast<int>(values[i + 1]),
                        static_cast<int>(values[i + 2]), static_cast<int>(values[i + 3]));
    return region;
}

TEST_F(PopoverWindow, IsMadeWhenItIsFirstShown) {
    popover = popovers->makePopover({.contentSize = {340, 520}});
    EXPECT_EQ(views.isComposited, false);
    EXPECT_FALSE(views.popoverView);
    EXPECT_FALSE(popover->isShown());
    popover->close();
    EXPECT_THAT(views.calls, IsEmpty());
}

TEST_F(PopoverWindow, StandsOnItsFrameInFrontOfEverythingWithTheKeyboard) {
    show();
    EXPECT_TRUE(popover->isShown());
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.popoverView.get(); }));
    EXPECT_EQ(views.popoverView->frameGeometry(), QRect(900, 80, 340, 520));
    EXPECT_TRUE(views.popoverView->flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(views.popoverView->flags().testFlag(Qt::WindowStaysOnTopHint));
    const std::string id = std::to_string(views.popoverView->winId());
    EXPECT_EQ(::system(("xprop -id " + id + " _NET_WM_STATE | grep -q SKIP_TASKBAR").c_str()), 0);
    EXPECT_EQ(::system(("xprop -id " + id + " _NET_WM_STATE | grep -q ABOVE").c_str()), 0);
}

TEST_F(PopoverWindow, WithoutACompositorIsCutToRoundCorners) {
    show();
    const QRegion mask = shapeOf(*views.popoverView);
    EXPECT_TRUE(mask.contains(QPoint(170, 260)));
    EXPECT_TRUE(mask.contains(QPoint(12, 0)));
    EXPECT_FALSE(mask.contains(QPoint(0, 0)));
    EXPECT_FALSE(mask.contains(QPoint(339, 519)));
}

TEST_F(PopoverWindow, WithACompositorHasRoomForItsShadowAroundTheFrame) {
    appearance.become({.blendsWindows = true});
    show();
    EXPECT_EQ(views.isComposited, true);
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.popoverView.get(); }));
    EXPECT_EQ(views.popoverView->frameGeometry(), QRect(876, 56, 388, 568));
    EXPECT_EQ(shapeOf(*views.popoverView), QRegion(0, 0, 388, 568));
    // A press on the shadow goes to what lies below it, and that is elsewhere.
    ASSERT_TRUE(letsPressesThrough({880, 300}));
    click(880, 300);
    EXPECT_TRUE(until([this] { return pressed.size() == 1; }));
    click(1000, 300);
    // Which window a press is on is asked when it is seen, so the mouse waits for that.
    ASSERT_TRUE(hasSeen(2));
    click(880, 300);
    ASSERT_TRUE(until([this] { return pressed.size() == 2; }));
    EXPECT_EQ(pressed[1].press, 3u);
}

TEST_F(PopoverWindow, ItsShadowLetsPressesThroughUnderAWindowManagerThatTakesItInLate) {
    appearance.become({.blendsWindows = true});
    for (int time = 0; time < 2; ++time) {
        windowManager.signal(SIGSTOP);
        show();
        QGuiApplication::sync();
        windowManager.signal(SIGCONT);
        ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.popoverView.get(); }));
        EXPECT_TRUE(letsPressesThrough({880, 300}));
        popover->close();
        ASSERT_TRUE(until([] { return !QGuiApplication::focusWindow(); }));
    }
}

TEST_F(PopoverWindow, FollowsACompositorThatComesWhileItIsShown) {
    show();
    appearance.become({.blendsWindows = true});
    EXPECT_EQ(views.isComposited, true);
    EXPECT_TRUE(until([this] { return views.popoverView->frameGeometry() == QRect(876, 56, 388, 568); }));
    appearance.become({});
    EXPECT_TRUE(until([this] { return views.popoverView->frameGeometry() == QRect(900, 80, 340, 520); }));
    EXPECT_FALSE(shapeOf(*views.popoverView).contains(QPoint(0, 0)));
}

TEST_F(PopoverWindow, TakesItsPlaceAgainFromAWindowManagerThatGaveItAnother) {
    show();
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.popoverView.get(); }));
    mouse("windowmove " + std::to_string(views.popoverView->winId()) + " 100 100");
    EXPECT_TRUE(until([this] { return views.popoverView->position().x() < 900; }));
    EXPECT_TRUE(until([this] { return views.popoverView->position() == QPoint(900, 80); }));
}

TEST_F(PopoverWindow, ItsShadowDoesNotReachOverAPanelOrTheScreensEdge) {
    appearance.become({.blendsWindows = true});
    startPanel();
    ASSERT_TRUE(until([this] { return windows->screens()[0].workArea == Rect{{0, 0}, {1280, 770}}; }));
    popover = popovers->makePopover({.contentSize = {340, 520}});
    makeItem();
    popover->show(*item, {{932, 245}, {340, 520}});
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.popoverView.get(); }));
    EXPECT_EQ(views.popoverView->frameGeometry(), QRect(908, 30, 372, 549));
    EXPECT_EQ(views.shadow, QMargins(24, 5, 8, 24));
}

TEST_F(PopoverWindow, GlassAsksForABlurBehindThePanelAlone) {
    const auto asked = [this] { return blurBehind(*views.popoverView); };
    views.glass = true;
    appearance.become({.blendsWindows = true});
    show();
    EXPECT_EQ(asked().boundingRect(), QRect(24, 24, 340, 520));
    EXPECT_FALSE(asked().contains(QPoint(24, 24)));
    appearance.become({});
    EXPECT_TRUE(asked().isEmpty());
}

TEST_F(PopoverWindow, ClosesByItsOwnEscapeAndComesBack) {
    show();
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.popoverView.get(); }));
    mouse("key Escape");
    ASSERT_TRUE(until([this] { return !popover->isShown(); }));
    EXPECT_THAT(views.calls, ElementsAre("will animate", "hidden"));
    popover->show(*item, kPanelFrame);
    EXPECT_TRUE(popover->isShown());
    popover->close();
    EXPECT_FALSE(popover->isShown());
    EXPECT_THAT(views.calls, ElementsAre("will animate", "hidden", "will animate", "hidden"));
}

WindowSpec aboutSpec() {
    return {.content = WindowContent::about,
            .contentSize = {300, 480},
            .title = "About Pintle",
            .styleMask = 32771,
            .showsMiniaturizeAndZoom = false};
}

TEST_F(ShellTest, AWindowOfGlassAsksForABlurAsLongAsItIs) {
    const auto window = windows->makeWindow(aboutSpec());
    const auto& view = *views.windowViews.at(WindowContent::about);
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    EXPECT_TRUE(blurBehind(view).isEmpty());
    views.glass = true;
    views.glassChanged.emit();
    EXPECT_EQ(blurBehind(view), QRegion(QRect(QPoint(), view.size())));
    views.glass = false;
    views.glassChanged.emit();
    EXPECT_TRUE(blurBehind(view).isEmpty());
}

TEST_F(ShellTest, AWindowEndsWithItsTitleBarInsideTheFrameItWasGiven) {
    const auto window = windows->makeWindow(aboutSpec());
    // The window manager says beforehand what it will draw.
    const Rect whole = window->frame();
    EXPECT_GT(whole.size.height, 480);
    EXPECT_GE(whole.size.width, 300);
    window->setFrame({{200, 100}, whole.size});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    EXPECT_TRUE(until([&] { return window->frame() == Rect{{200, 100}, whole.size}; }));
    auto& view = *views.windowViews[WindowContent::about];
    EXPECT_EQ(view.size(), QSize(300, 480));
    EXPECT_EQ(view.title(), QStringLiteral("About Pintle"));
    EXPECT_FALSE(view.flags().testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(ShellTest, AWindowThatIsSmallerThanItsContentShrinksItsView) {
    const auto window = windows->makeWindow(aboutSpec());
    const Rect whole = window->frame();
    window->setFrame({{200, 100}, {whole.size.width, 300}});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    EXPECT_TRUE(until([&] { return window->frame() == Rect{{200, 100}, {whole.size.width, 300}}; }));
    EXPECT_EQ(views.windowViews[WindowContent::about]->height(), 300 - (whole.size.height - 480));
}

TEST_F(ShellTest, AClosedWindowIsKeptAndShownAgain) {
    const auto window = windows->makeWindow(aboutSpec());
    window->setFrame({{200, 100}, window->frame().size});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    auto* const view = views.windowViews[WindowContent::about].get();
    const auto id = view->winId();
    // As the close button of the title bar does.
    ASSERT_EQ(::system(("wmctrl -i -c " + std::to_string(id) + " 2>/dev/null || xdotool key alt+F4").c_str()),
              0);
    ASSERT_TRUE(until([&] { return !window->isVisible(); }));
    EXPECT_FALSE(window->isKey());
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(until([&] { return window->isKey(); }));
    EXPECT_EQ(view->winId(), id);
    window->close();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ShellTest, TheWorkAreaLeavesThePanelOut) {
    const auto screens = windows->screens();
    ASSERT_EQ(screens.size(), 1u);
    EXPECT_EQ(screens[0].frame, (Rect{{0, 0}, {1280, 800}}));
    EXPECT_EQ(screens[0].workArea, screens[0].frame);
    startPanel();
    EXPECT_TRUE(until([this] { return windows->screens()[0].workArea == Rect{{0, 0}, {1280, 770}}; }));
}

TEST_F(ShellTest, TheMouseIsMeasuredFromTheLowerLeftCorner) {
    mouse("mousemove 200 300");
    EXPECT_TRUE(until([this] { return windows->mouseLocation() == Point{200, 500}; }));
}

TEST_F(ShellTest, AlertsWaitTheirTurnAndAnswerOnce) {
    std::vector<std::string> answers;
    const auto note = [&](const char* name) {
        return [&answers, name](int button) { answers.push_back(name + std::to_string(button)); };
    };
    alerts->runModal({AlertStyle::warning, "first", "", {"Yes", "No"}}, note("first "));
    alerts->runModal({AlertStyle::informational, "second", "", {"Yes", "Later", "No"}}, note("second "));
    alerts->runModal({AlertStyle::informational, "third", "", {}}, note("third "));
    EXPECT_THAT(views.alerts, ElementsAre("first"));
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.alertView.get(); }));
    const auto stale = views.chosen;
    views.chosen(0);
    stale(1);
    EXPECT_THAT(answers, IsEmpty());
    ASSERT_TRUE(until([&] { return answers.size() == 1; }));
    ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.alertView.get(); }));
    EXPECT_THAT(views.alerts, ElementsAre("first", "second"));
    runFor(std::chrono::milliseconds(300));
    // Closing is the last button.
    mouse("key Escape");
    ASSERT_TRUE(until([&] { return answers.size() == 2; }));
    ASSERT_TRUE(until([this] { return views.alerts.size() == 3 && views.alertView->isVisible(); }));
    views.alertView->close();
    ASSERT_TRUE(until([&] { return answers.size() == 3; }));
    EXPECT_THAT(answers, ElementsAre("first 0", "second 2", "third 0"));
    EXPECT_FALSE(views.alertView->isVisible());
}

TEST_F(ShellTest, AfterAnAlertTheKeyboardReturnsToTheWindowThatHadIt) {
    const auto window = windows->makeWindow(aboutSpec());
    const auto other = windows->makeWindow({.content = WindowContent::settings,
                                            .contentSize = {300, 300},
                                            .title = "Settings",
                                            .styleMask = 32771,
                                            .showsMiniaturizeAndZoom = false});
    for (const auto* each : {&window, &other}) {
        (*each)->setFrame({{each == &window ? 200.0 : 700.0, 100}, (*each)->frame().size});
        (*each)->makeKeyAndOrderFront();
        ASSERT_TRUE(until([&] { return (*each)->isKey(); }));
    }
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    int answers = 0;
    for (int time = 0; time < 2; ++time)
        alerts->runModal({AlertStyle::warning, "again", "", {"Yes", "No"}}, [&](int) { ++answers; });
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == views.alertView.get(); }));
        runFor(std::chrono::milliseconds(100));
        views.chosen(0);
        ASSERT_TRUE(until([&] { return answers == time + 1; }));
    }
    EXPECT_TRUE(until([&] { return window->isKey(); }));
    runFor(std::chrono::milliseconds(300));
    EXPECT_TRUE(window->isKey());
}

TEST_F(ShellTest, TheEndRunsTheHandlerOnceWithWindowsOpen) {
    const auto application = makeQtApplication({});
    int ends = 0;
    application->setWillTerminate([&] { ++ends; });
    const auto window = windows->makeWindow(aboutSpec());
    window->setFrame({{200, 100}, window->frame().size});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(until([&] { return window->isKey(); }));
    application->terminate();
    application->terminate();
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(ends, 1);
}

TEST_F(ShellTest, AnEndThatIsAskedForBeforeTheLoopRunsComesWhenItDoes) {
    const auto application = makeQtApplication({});
    application->terminate();
    EXPECT_EQ(QApplication::exec(), 0);
}

}  // namespace
}  // namespace pintle
