// The shell's backends wired as the root wires them, with plain views, a window manager, and a mouse.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QRasterWindow>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/root/shell_desktop_x11.h"
#include "base/signal.h"
#include "platform/fake/fake_appearance.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_socket_watch.h"
#include "platform/qt/shell/qt_alerts.h"
#include "platform/qt/shell/qt_application.h"
#include "platform/qt/shell/qt_event_monitors.h"
#include "platform/qt/shell/qt_popovers.h"
#include "platform/qt/shell/qt_status_bar.h"
#include "platform/qt/shell/qt_windows.h"
#include "tests/contract/session/loop_world.h"
#include "tests/contract/test_bus.h"
#include "tests/support/temporary_folder.h"

namespace pintle {

class PlainWindow : public QRasterWindow {
  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) close();
    }
};

class TestViews : public ShellViews {
  public:
    void setComposited(bool composited) override { isComposited = composited; }
    QWindow* popover() override {
        if (!popoverView) popoverView = std::make_unique<PlainWindow>();
        return popoverView.get();
    }
    PopoverShape popoverShape() const override { return {{24, 24, 24, 24}, 12}; }
    bool isGlass() const override { return glass; }
    Subscription observeGlass(const std::function<void()>& changed) override {
        return glassChanged.observe(changed);
    }
    void setPopoverShadow(const QMargins& room) override { shadow = room; }
    void popoverWillShow(bool animates) override { calls.push_back(animates ? "will animate" : "will show"); }
    void popoverDidHide() override { calls.emplace_back("hidden"); }
    QWindow* window(WindowContent content) override {
        auto& view = windowViews[content];
        if (!view) view = std::make_unique<PlainWindow>();
        return view.get();
    }
    QWindow* alert(const Alert& alert, std::function<void(int)> answer) override {
        alerts.push_back(alert.message);
        chosen = std::move(answer);
        if (!alertView) alertView = std::make_unique<PlainWindow>();
        alertView->resize(300, 120);
        return alertView.get();
    }

    std::optional<bool> isComposited;
    QMargins shadow;
    bool glass = false;
    Signal<> glassChanged;
    std::vector<std::string> calls;
    std::vector<std::string> alerts;
    std::function<void(int)> chosen;
    std::unique_ptr<PlainWindow> popoverView;
    std::map<WindowContent, std::unique_ptr<PlainWindow>> windowViews;
    std::unique_ptr<PlainWindow> alertView;
};

class ShellTest : public testing::Test, protected LoopWorld {
  protected:
    ShellTest()
        : windowManager(std::vector<std::string>{"openbox", "--sm-disable"}),
          x({std::nullopt, *queue,
             [this](int descriptor, std::function<void()> readable) {
                 return watchReadable(*queue, descriptor, std::move(readable));
             },
             ownWindows}),
          desktop(makeShellDesktop(x)),
          alerts(makeQtAlerts(views, *queue, desktop)),
          bar(makeQtStatusBar(appearance, desktop)),
          popovers(makeQtPopovers(views, appearance, desktop)),
          windows(makeQtWindows(views, desktop)),
          monitors(makeQtEventMonitors(desktop)) {
        // Until the window manager is there, windows come and go without it.
        QWindow probe;
        probe.create();
        EXPECT_TRUE(until([&] { return !desktop.frameExtents(probe.winId()).isNull(); }));
    }

    /// Runs a line of xdotool's.
    static void mouse(const std::string& line) {
        (void)!::system(("timeout 5 xdotool " + line + " >/dev/null 2>&1").c_str());
    }
    static void click(int x, int y, int button = 1) {
        mouse("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click " +
              std::to_string(button));
    }
    /// Waits until this press, counted from 1, has been seen, whether or not it is reported. Soon after the
    /// click.
    bool hasSeen(std::uint64_t press) {
        return until([&] { return desktop.currentPress() == press; });
    }
    static void runFor(std::chrono::milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        until([end] { return std::chrono::steady_clock::now() >= end; });
    }
    /// The panel that takes windows in, along the upper edge.
    void startPanel(const std::string& background = "#202020") {
        const auto settings = folder.path() / "tint2rc";
        std::ofstream(settings) << "panel_items = TS\npanel_position = top center horizontal\n"
                                   "panel_size = 100% 30\npanel_layer = top\nstrut_policy = follow_size\n"
                                   "systray_icon_size = 22\nrounded = 0\nborder_width = 0\n"
                                   "background_color = "
                                << background << " 100\npanel_background_id = 1\nwm_menu = 0\n";
        panel = std::make_unique<QuietChild>(std::vector<std::string>{"tint2", "-c", settings.string()});
    }
    /// An item whose callbacks are recorded in `events`.
    void makeItem() {
        item = bar->makeStatusItem(kSquareStatusItemLength);
        item->setImage({"cursorarrow.motionlines", "Pintle", true});
        item->setAction([this](const std::optional<StatusItemEvent>& event) {
            clicks.push_back(event);
            events.emplace_back("click");
        });
        item->setActivation([this] { events.emplace_back("activation"); });
        presses = monitors->addGlobalMonitor(kLeftMouseDownMask | kRightMouseDownMask,
                                             [this](const GlobalMouseDown& press) {
                                                 pressed.push_back(press);
                                                 events.emplace_back("press");
                                             });
    }
    /// Waits until the icon is drawn at its place: the panel takes its window in first, and then moves it
    /// there.
    bool isInPanel() {
        return until([this] {
            const auto frame = item->buttonFrame();
            if (!frame || frame->size != Size{22, 22} || frame->origin.y != 800 - 4 - 22) return false;
            const auto widgets = QApplication::topLevelWidgets();
            return std::any_of(widgets.begin(), widgets.end(), [](const QWidget* widget) {
                return widget->inherits("QSystemTrayIconSys") && widget->windowHandle() &&
                       widget->windowHandle()->isExposed();
            });
        });
    }
    /// In pixels from the upper left corner.
    QPoint middleOfIcon() const {
        const Rect frame = *item->buttonFrame();
        return {static_cast<int>(frame.origin.x + frame.size.width / 2),
                static_cast<int>(800 - frame.origin.y - frame.size.height / 2)};
    }

    TemporaryFolder folder;
    QuietChild windowManager;
    FakeAppearance appearance;
    TestViews views;
    X11Shell x;
    ShellDesktop desktop;
    std::unique_ptr<Alerts> alerts;
    std::unique_ptr<StatusBar> bar;
    std::unique_ptr<Popovers> popovers;
    std::unique_ptr<Windows> windows;
    std::unique_ptr<EventMonitors> monitors;
    std::unique_ptr<QuietChild> panel;
    std::unique_ptr<StatusItem> item;
    Subscription presses;
    std::vector<std::optional<StatusItemEvent>> clicks;
    std::vector<GlobalMouseDown> pressed;
    std::vector<std::string> events;
};

}  // namespace pintle
