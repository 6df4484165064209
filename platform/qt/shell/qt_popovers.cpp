#include "platform/qt/shell/qt_popovers.h"

#include <QEvent>
#include <QGuiApplication>
#include <QRegion>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "base/round_corner.h"
#include "base/subscription.h"
#include "platform/qt/shell/qt_status_bar.h"
#include "platform/qt/shell/shell_geometry.h"
#include "platform/qt/shell/window_host.h"

namespace pintle {
namespace {

/// In whole pixels.
QRegion roundedRectangle(const QSize& size, int radius) {
    const auto insets = cornerInsets(std::min({radius, size.width() / 2, size.height() / 2}));
    const int corner = static_cast<int>(insets.size());
    QRegion region(0, corner, size.width(), size.height() - 2 * corner);
    for (int row = 0; row < corner; ++row) {
        const int cut = insets[static_cast<std::size_t>(row)];
        const QRect line(cut, row, size.width() - 2 * cut, 1);
        region += line;
        region += line.translated(0, size.height() - 1 - 2 * row);
    }
    return region;
}

constexpr int kAsks = 3;

/// Sees the presses on the program's other windows, which nobody reports as presses elsewhere.
class OtherWindows : public QObject {
  public:
    OtherWindows(const QWindow& view, std::function<void()> pressed)
        : view_(view), pressed_(std::move(pressed)) {
        qApp->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        // Clicks on the icon are left to the icon's own handler.
        if (event->type() == QEvent::MouseButtonPress && receiver->isWindowType() && receiver != &view_ &&
            !receiver->property(kIsTrayIcon).toBool())
            pressed_();
        return false;
    }

  private:
    const QWindow& view_;
    const std::function<void()> pressed_;
};

class QtPopover : public Popover {
  public:
    QtPopover(const PopoverSpec& spec, ShellViews& views, Appearance& appearance, const ShellDesktop& desktop)
        : spec_(spec), views_(views), appearance_(appearance), desktop_(desktop) {
        views_.setComposited(appearance_.look().blendsWindows);
        looks_ = appearance_.observe([this] { follow(); });
        asking_.setSingleShot(true);
        QObject::connect(&asking_, &QTimer::timeout, &asking_, [this] { askAgain(); });
    }
    ~QtPopover() override { close(); }

    bool isShown() const override { return host_ && host_->isVisible(); }
    void show(const StatusItem&, const Rect& frame) override {
        frame_ = frame;
        if (!host_ && !open()) return;
        place();
        if (!isShown()) views_.popoverWillShow(spec_.animates);
        asks_ = kAsks;
        host_->showInFront();
        limitInput();
    }
    void close() override {
        if (!isShown()) return;
        host_->hide();
        views_.popoverDidHide();
    }

  private:
    bool open() {
        auto* const view = views_.popover();
        if (!view) return false;
        view->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        view->setTitle(QStringLiteral("Pintle"));
        host_.emplace(*view, desktop_, [this] { views_.popoverDidHide(); });
        // A window manager copies the input area to its frame when the area changes, but does not look at one
        // that was there before it took the window in.
        host_->setAppeared([this] { limitInput(); });
        for (const auto moved : {&QWindow::xChanged, &QWindow::yChanged})
            QObject::connect(view, moved, &asking_, [this] { asking_.start(0); });
        if (spec_.transient) otherWindows_.emplace(*view, [this] { close(); });
        // Where presses elsewhere cannot be seen, the loss of the keyboard stands in for them.
        if (spec_.transient && !desktop_.watchPresses)
            QObject::connect(qApp, &QGuiApplication::focusWindowChanged, &*host_, [this](QWindow* focused) {
                if (!focused) close();
            });
        return true;
    }
    bool isComposited() const { return appearance_.look().blendsWindows; }
    void follow() {
        if (std::exchange(composited_, isComposited()) == composited_) return;
        views_.setComposited(composited_);
        if (!isShown()) return;
        place();
        limitInput();
    }
    void place() {
        auto* const view = host_->view();
        if (!view) return;
        const QRect panel = shell::pixelsFrom(frame_);
        const PopoverShape shape = views_.popoverShape();
        shadow_ = composited_ ? roomFor(shape.shadow, panel) : QMargins();
        views_.setPopoverShadow(shadow_);
        const QRect window = panel.marginsAdded(shadow_);
        place_ = window.topLeft();
        view->setMinimumSize(window.size());
        view->setMaximumSize(window.size());
        view->setGeometry(window);
        cutCorners(composited_ ? 0 : shape.cornerRadius);
        blur(shape.cornerRadius);
    }
    /// A window manager may push a window that reaches over panels or screen edges back, and the panel in it
    /// away from its place.
    QMargins roomFor(const QMargins& shadow, const QRect& panel) const {
        const auto* screen = QGuiApplication::screenAt(panel.center());
        if (!screen) return shadow;
        const QRect area = shell::workArea(*screen, desktop_);
        const auto room = [](int wanted, int free) { return std::clamp(free, 0, wanted); };
        return {room(shadow.left(), panel.left() - area.left()), room(shadow.top(), panel.top() - area.top()),
                room(shadow.right(), area.right() - panel.right()),
                room(shadow.bottom(), area.bottom() - panel.bottom())};
    }
    /// Window managers may place a new window by rules of their own, but follow one that moves itself.
    void askAgain() {
        auto* const view = host_ ? host_->view() : nullptr;
        if (!view || !isShown() || view->position() == place_ || asks_ == 0) return;
        --asks_;
        view->setPosition(place_);
    }
    /// In the screen's own pixels: those of the toolkit are too coarse for a corner where they are larger.
    void cutCorners(int radius) {
        auto* const view = host_->view();
        if (!desktop_.setShape) return;
        view->create();
        const qreal ratio = view->devicePixelRatio();
        desktop_.setShape(
            view->winId(),
            radius == 0 ? QRegion()
                        : roundedRectangle((QSizeF(view->size()) * ratio).toSize(), qRound(radius * ratio)));
    }
    void blur(int radius) {
        auto* const view = host_->view();
        if (!desktop_.setBlurBehind) return;
        view->create();
        const qreal ratio = view->devicePixelRatio();
        const QRect panel = QRect(QPoint(), view->size()).marginsRemoved(shadow_);
        desktop_.setBlurBehind(
            view->winId(),
            composited_ && views_.isGlass()
                ? roundedRectangle((QSizeF(panel.size()) * ratio).toSize(), qRound(radius * ratio))
                      .translated((QPointF(panel.topLeft()) * ratio).toPoint())
                : QRegion());
    }
    /// A press on the shadow is a press on what lies below it.
    void limitInput() {
        auto* const view = host_->view();
        if (!view || !desktop_.setInputArea) return;
        const QRect panel = QRect(QPoint(), view->size()).marginsRemoved(shadow_);
        const qreal ratio = view->devicePixelRatio();
        desktop_.setInputArea(view->winId(),
                              QRect((QPointF(panel.topLeft()) * ratio).toPoint(), panel.size() * ratio));
    }

    const PopoverSpec spec_;
    ShellViews& views_;
    Appearance& appearance_;
    const ShellDesktop& desktop_;
    Rect frame_;
    QMargins shadow_;
    /// Of the window, as it was asked for.
    QPoint place_;
    /// How often it may still be asked for, lest two insist on different places for ever.
    int asks_ = 0;
    QTimer asking_;
    bool composited_ = appearance_.look().blendsWindows;
    std::optional<shell::WindowHost> host_;
    std::optional<OtherWindows> otherWindows_;
    Subscription looks_;
};

class QtPopovers : public Popovers {
  public:
    QtPopovers(ShellViews& views, Appearance& appearance, const ShellDesktop& desktop)
        : views_(views), appearance_(appearance), desktop_(desktop) {}
    std::unique_ptr<Popover> makePopover(const PopoverSpec& spec) override {
        return std::make_unique<QtPopover>(spec, views_, appearance_, desktop_);
    }

  private:
    ShellViews& views_;
    Appearance& appearance_;
    const ShellDesktop& desktop_;
};

}  // namespace

std::unique_ptr<Popovers> makeQtPopovers(ShellViews& views, Appearance& appearance,
                                         const ShellDesktop& desktop) {
    return std::make_unique<QtPopovers>(views, appearance, desktop);
}

}  // namespace pintle
