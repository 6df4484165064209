// The half of the probe that needs the toolkit: whether a view of it inside the desktop's popover and window
// draws, takes keys and goes away, whether the program is in front when it should be and only then, and
// whether an overlay stays when the program is hidden. One JSON report on standard output; ends with 0
// whatever is missing.
//
//   mac_probe_views               with PINTLE_PROBE_PICTURES=FOLDER it leaves pictures of the screen there
#include <unistd.h>

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPainter>
#include <QProcess>
#include <QRasterWindow>
#include <QTimer>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "app/root/native_views_qt.h"
#include "app/root/prepare_toolkit_mac.h"
#include "app/root/root.h"
#include "platform/mac/mac_application.h"
#include "platform/mac/mac_overlay_surfaces.h"
#include "platform/mac/mac_popovers.h"
#include "platform/mac/mac_status_bar.h"
#include "platform/mac/mac_windows.h"
#include "platform/mac/mac_workspace.h"
#include "tools/mac_probe/probe_events.h"

namespace pintle {
namespace {

using nlohmann::json;

constexpr int kSettleMs = 1500;
constexpr unsigned short kCodeOfA = 0;

void runFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void takePicture(const char* name) {
    const QString folder = qEnvironmentVariable("PINTLE_PROBE_PICTURES");
    if (folder.isEmpty()) return;
    QProcess::execute(QStringLiteral("/usr/sbin/screencapture"),
                      {QStringLiteral("-x"), folder + u'/' + QLatin1String(name) + QStringLiteral(".png")});
}

/// Green, and counts what comes.
class CountingView : public QRasterWindow {
  public:
    int paints = 0;
    int keys = 0;

  protected:
    void paintEvent(QPaintEvent*) override {
        ++paints;
        QPainter(this).fillRect(0, 0, width(), height(), Qt::darkGreen);
    }
    void keyPressEvent(QKeyEvent* event) override { keys += event->text() == QStringLiteral("a") ? 1 : 0; }
};

class ProbeViews : public ShellViews {
  public:
    void setComposited(bool) override {}
    QWindow* popover() override { return &popoverView; }
    PopoverShape popoverShape() const override { return {}; }
    QWindow* window(WindowContent) override { return &windowView; }
    void setTitleStrip(WindowContent, double height) override { titleStrip = height; }
    QWindow* alert(const Alert&, std::function<void(int)>) override { return nullptr; }

    CountingView popoverView;
    CountingView windowView;
    double titleStrip = 0;
};

struct Desktop {
    std::unique_ptr<Application> application =
        makeMacApplication([](const std::function<void()>&) { return Subscription(); });
    std::unique_ptr<Workspace> workspace = makeMacWorkspace();
    ProbeViews views;
    std::unique_ptr<NativeViews> native = makeNativeViews(views);

    /// By the program itself and by the desktop.
    json front() const {
        const auto frontmost = workspace->frontmostApplication();
        return {{"active", isActiveProgram()}, {"frontmost", frontmost && frontmost->pid == ::getpid()}};
    }
    static json seenOf(const CountingView& view) {
        return {{"paints", view.paints},
                {"exposed", view.isExposed()},
                {"size", {view.width(), view.height()}},
                {"keys_before", view.keys}};
    }
    /// Whether a key reaches the view.
    static json keyTo(const CountingView& view) {
        const int before = view.keys;
        const bool pressed = pressKey('a', kCodeOfA);
        runFor(500);
        return {{"a_window_has_the_keys", pressed}, {"keys", view.keys - before}};
    }

    json tryPopover() {
        const auto bar = makeMacStatusBar();
        const auto item = bar->makeStatusItem(-2);
        item->setImage({"cursorarrow.motionlines", "Pintle", true});
        runFor(kSettleMs);
        const auto popover = makeMacPopovers(*native)->makePopover({{340, 520}, true, true});
        popover->show(*item, {});
        application->activateIgnoringOtherApps();
        runFor(kSettleMs);
        json report = {{"item_has_a_frame", item->buttonFrame().has_value()},
                       {"shown", popover->isShown()},
                       {"view", seenOf(views.popoverView)},
                       {"front", front()}};
        takePicture("popover");
        report["key"] = keyTo(views.popoverView);
        views.popoverView.close();
        runFor(kSettleMs);
        report["after_the_view_closed"] = {{"shown", popover->isShown()},
                                           {"view_visible", views.popoverView.isVisible()}};
        popover->show(*item, {});
        popover->close();
        popover->show(*item, {});
        runFor(kSettleMs);
        report["shown_again_while_it_closed"] = {{"shown", popover->isShown()},
                                                 {"view_visible", views.popoverView.isVisible()}};
        popover->close();
        runFor(kSettleMs);
        report["in_the_end"] = {{"shown", popover->isShown()},
                                {"view_visible", views.popoverView.isVisible()}};
        return report;
    }

    json tryWindow() {
        WindowSpec spec;
        spec.contentSize = {480, 760};
        spec.title = "Probe";
        spec.styleMask = 32771;
        spec.titleHidden = true;
        spec.titlebarTransparent = true;
        spec.backgroundAlpha = 0.001;
        spec.showsMiniaturizeAndZoom = false;
        const auto windows = makeMacWindows(*native);
        const auto window = windows->makeWindow(spec);
        if (!window) return {{"made", false}};
        window->setFrame({{100, 100}, spec.contentSize});
        window->makeKeyAndOrderFront();
        application->activateIgnoringOtherApps();
        runFor(kSettleMs);
        json report = {{"visible", window->isVisible()},
                       {"key", window->isKey()},
                       {"title_strip", views.titleStrip},
                       {"view", seenOf(views.windowView)},
                       {"front", front()}};
        takePicture("window");
        report["key_press"] = keyTo(views.windowView);
        window->close();
        runFor(kSettleMs);
        report["after_closing"] = {{"visible", window->isVisible()},
                                   {"view_visible", views.windowView.isVisible()}};
        return report;
    }

    static json tryHiding() {
        const auto surfaces = makeMacOverlaySurfaces();
        const auto surface = surfaces->create(0, {32, 32});
        surface->setAlpha(1);
        surface->orderFront();
        runFor(kSettleMs);
        json report = {{"visible", surface->isVisible()}};
        hideThisProgram();
        runFor(kSettleMs);
        report["visible_while_the_program_is_hidden"] = surface->isVisible();
        showThisProgram();
        runFor(kSettleMs);
        return report;
    }
};

int run(int argc, char** argv) {
    ::alarm(60);
    if (prepareToolkit()) return 1;
    QApplication toolkit(argc, argv);
    Desktop desktop;
    desktop.application->setActivationPolicy(ActivationPolicy::accessory);
    runFor(kSettleMs);
    json report = {{"after_the_start", desktop.front()}};
    report["popover"] = desktop.tryPopover();
    report["window"] = desktop.tryWindow();
    report["overlay"] = Desktop::tryHiding();
    std::cout << report.dump() << '\n';
    return 0;
}

}  // namespace
}  // namespace pintle

int main(int argc, char** argv) { return pintle::run(argc, argv); }
