#include "platform/qt/shell/qt_windows.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/shell/shell_geometry.h"
#include "platform/qt/shell/window_host.h"

namespace pintle {
namespace {

constexpr unsigned kClosable = 2;

class QtShellWindow : public ShellWindow {
  public:
    QtShellWindow(const WindowSpec& spec, QWindow& view, ShellViews& views, const ShellDesktop& desktop)
        : content_(qRound(spec.contentSize.width), qRound(spec.contentSize.height)),
          views_(views),
          desktop_(desktop),
          host_(view, desktop, {}) {
        Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
        if (spec.styleMask & kClosable) flags |= Qt::WindowCloseButtonHint;
        if (spec.showsMiniaturizeAndZoom) flags |= Qt::WindowMinMaxButtonsHint;
        view.setFlags(flags);
        view.setTitle(QCoreApplication::translate("Pintle", spec.title.c_str()));
        // Of a window that cannot change its size, window managers draw less.
        view.setMinimumSize(content_);
        view.setMaximumSize(content_);
        view.create();
        if (desktop.frameExtents)
            expected_ = shell::scaledDown(desktop.frameExtents(view.winId()), view.devicePixelRatio());
        frame_ = QRect(QPoint(), content_).marginsAdded(expected_);
        // What the window manager has really drawn is known after it has drawn it.
        const auto changed = [this] { follow(); };
        QObject::connect(&view, &QWindow::visibilityChanged, &host_, changed);
        QObject::connect(&view, &QWindow::xChanged, &host_, changed);
        QObject::connect(&view, &QWindow::yChanged, &host_, changed);
        const auto blurs = [this] { blur(); };
        QObject::connect(&view, &QWindow::widthChanged, &host_, blurs);
        QObject::connect(&view, &QWindow::heightChanged, &host_, blurs);
        glassChanged_ = views.observeGlass(blurs);
        applyFrame();
        blur();
    }

    bool isVisible() const override { return host_.isVisible(); }
    bool isKey() const override { return isVisible() && QGuiApplication::focusWindow() == host_.view(); }
    Rect frame() const override {
        return shell::pointsFrom(isVisible() ? host_.view()->frameGeometry() : frame_);
    }
    void setFrame(const Rect& frame) override {
        frame_ = shell::pixelsFrom(frame);
        applyFrame();
    }
    void makeKeyAndOrderFront() override { host_.showInFront(); }
    void close() override { host_.hide(); }

  private:
    QMargins margins() const {
        const QMargins drawn = host_.view()->frameMargins();
        return drawn.isNull() ? expected_ : drawn;
    }
    /// The content is what the frame leaves; it scrolls when that is less than it wants.
    void applyFrame() {
        auto* const view = host_.view();
        if (!view) return;
        const QMargins around = margins();
        const QSize size = frame_.marginsRemoved(around).size().expandedTo({1, 1});
        view->setMinimumSize(size);
        view->setMaximumSize(size);
        view->resize(size);
        view->setFramePosition(frame_.topLeft());
        applied_ = around;
    }
    /// The guess about the window manager's drawing was wrong: the content keeps its size where the screen
    /// has room for both.
    void follow() {
        const QMargins around = margins();
        if (!isVisible() || around == applied_) return;
        const QSize content = frame_.marginsRemoved(applied_).size();
        frame_.setSize(content.grownBy(around));
        if (const auto* const screen = host_.view()->screen())
            frame_.setBottom(std::min(frame_.bottom(), screen->availableGeometry().bottom()));
        applyFrame();
    }

    void blur() const {
        auto* const view = host_.view();
        if (!view || !desktop_.setBlurBehind) return;
        const QSizeF pixels = QSizeF(view->size()) * view->devicePixelRatio();
        desktop_.setBlurBehind(view->winId(),
                               views_.isGlass() ? QRegion(QRect({}, pixels.toSize())) : QRegion());
    }

    const QSize content_;
    ShellViews& views_;
    const ShellDesktop& desktop_;
    shell::WindowHost host_;
    QMargins expected_;
    QMargins applied_;
    /// With the window manager's drawing, as it was asked for.
    QRect frame_;
    Subscription glassChanged_;
};

class QtWindows : public Windows {
  public:
    QtWindows(ShellViews& views, const ShellDesktop& desktop) : views_(views), desktop_(desktop) {}

    std::unique_ptr<ShellWindow> makeWindow(const WindowSpec& spec) override {
        auto* const view = views_.window(spec.content);
        if (!view) return nullptr;
        return std::make_unique<QtShellWindow>(spec, *view, views_, desktop_);
    }
    std::vector<ScreenArea> screens() const override {
        std::vector<ScreenArea> areas;
        // The primary screen comes first.
        for (const auto* const screen : QGuiApplication::screens())
            areas.push_back({shell::pointsFrom(screen->geometry()),
                             shell::pointsFrom(shell::workArea(*screen, desktop_))});
        return areas;
    }
    Point mouseLocation() const override { return shell::pointsFrom(QCursor::pos()); }

  private:
    ShellViews& views_;
    const ShellDesktop& desktop_;
};

}  // namespace

std::unique_ptr<Windows> makeQtWindows(ShellViews& views, const ShellDesktop& desktop) {
    return std::make_unique<QtWindows>(views, desktop);
}

}  // namespace pintle
