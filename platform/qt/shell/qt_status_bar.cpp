#include "platform/qt/shell/qt_status_bar.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <optional>
#include <utility>

#include "base/subscription.h"
#include "platform/qt/shell/menu_look.h"
#include "platform/qt/shell/qt_menus.h"
#include "platform/qt/shell/shell_geometry.h"
#include "platform/qt/shell/template_icon.h"

namespace pintle {
namespace {

/// What hosts look up that colour icons themselves.
constexpr const char* kThemeName = "com.pintle.app-symbolic";
constexpr QRgb kOnLight = 0x1F2626;
constexpr QRgb kOnDark = 0xF4F7F7;
constexpr std::chrono::milliseconds kPanelDrawn{1500};
constexpr std::chrono::milliseconds kBetweenTries{20};
constexpr int kTries = 250;

bool hasThemeIcon() {
    return !QStandardPaths::locate(
                QStandardPaths::GenericDataLocation,
                QStringLiteral("icons/hicolor/symbolic/apps/%1.svg").arg(QLatin1String(kThemeName)))
                .isEmpty();
}

class QtStatusItem : public QObject, public StatusItem {
  public:
    QtStatusItem(Appearance& appearance, const ShellDesktop& desktop)
        : appearance_(appearance), desktop_(desktop) {
        looks_ = appearance_.observe([this] { applyImage(); });
        if (desktop_.observeTrayHosts) hosts_ = desktop_.observeTrayHosts([this] { follow(); });
        panelDrawn_.setSingleShot(true);
        QObject::connect(&panelDrawn_, &QTimer::timeout, this, [this] { applyImage(); });
        finding_.setSingleShot(true);
        QObject::connect(&finding_, &QTimer::timeout, this, [this] {
            if (tray_ && !embedded_) findEmbedded();
        });
        follow();
    }

    ~QtStatusItem() override {
        // Its end must not be taken for the panel's.
        if (embedded_) embedded_->disconnect(this);
    }

    std::string description() const override {
        if (!tray_) return "<status item, no tray yet>";
        return embedded() ? "<status item, embedded in a panel>" : "<status item, on the session bus>";
    }
    bool hasButton() const override { return true; }
    void setImage(const StatusItemImage& image) override {
        image_ = image;
        applyImage();
    }
    void setAction(Action action) override { action_ = std::move(action); }
    void setActivation(std::function<void()> activated) override { activated_ = std::move(activated); }
    std::optional<Rect> buttonFrame() const override {
        if (!tray_ || !embedded()) return std::nullopt;
        const QRect frame = tray_->geometry();
        if (frame.isEmpty()) return std::nullopt;
        return shell::pointsFrom(frame);
    }

    void attachMenu(const Menu& menu) override { attached_ = menu; }
    void performClick() override { click({StatusItemEventType::leftMouseUp, std::nullopt}); }
    void detachMenu() override { attached_.reset(); }
    void setHostMenu(std::function<Menu()> build) override {
        buildHostMenu_ = std::move(build);
        applyHostMenu();
    }

  protected:
    // The toolkit acts on presses; here clicks count, as everywhere else in the panel.
    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (receiver != embedded_) return false;
        switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonDblClick:
                return true;
            case QEvent::MouseButtonRelease: {
                const auto& mouse = static_cast<const QMouseEvent&>(*event);
                if (embedded_->rect().contains(mouse.position().toPoint())) click(eventFor(mouse.button()));
                return true;
            }
            default:
                return false;
        }
    }

  private:
    QWidget* embedded() const { return embedded_; }

    StatusItemEvent eventFor(Qt::MouseButton button) const {
        const auto type = button == Qt::LeftButton    ? StatusItemEventType::leftMouseUp
                          : button == Qt::RightButton ? StatusItemEventType::rightMouseUp
                                                      : StatusItemEventType::other;
        return {type, currentPress()};
    }
    std::optional<std::uint64_t> currentPress() const {
        return desktop_.currentPress ? desktop_.currentPress() : std::nullopt;
    }

    /// Makes the icon when the first host is there: the toolkit chooses the kind of icon only once, so it
    /// must not be asked before.
    void follow() {
        const TrayHosts now = desktop_.trayHosts ? desktop_.trayHosts() : TrayHosts{.notifier = true};
        // A window that was in a panel which has gone does not know where it is in the next one.
        if (embedded_) tray_.reset();
        if (!now.any()) return;
        if (tray_) {
            // On the bus the toolkit registers with the next host by itself; that one may have other colours.
            panelDrawn_.start(kPanelDrawn);
            return;
        }
        tray_ = std::make_unique<QSystemTrayIcon>();
        QObject::connect(tray_.get(), &QSystemTrayIcon::activated, this,
                         [this](QSystemTrayIcon::ActivationReason reason) { activated(reason); });
        applyImage();
        tray_->show();
        // The toolkit learns of a new panel from its own message, perhaps later than this class does.
        tries_ = now.notifier ? 0 : kTries;
        findEmbedded();
        applyHostMenu();
        applyImage();
        panelDrawn_.start(kPanelDrawn);
    }

    void findEmbedded() {
        for (auto* const widget : QApplication::topLevelWidgets())
            if (widget->inherits("QSystemTrayIconSys")) embedded_ = widget;
        if (!embedded_) {
            if (tries_-- > 0) finding_.start(kBetweenTries);
            return;
        }
        embedded_->installEventFilter(this);
        // The toolkit makes another one when the panel is announced a second time.
        QObject::connect(embedded_, &QObject::destroyed, this, [this] {
            tries_ = kTries;
            finding_.start(kBetweenTries);
        });
        if (auto* const window = embedded_->windowHandle()) window->setProperty(kIsTrayIcon, true);
        tray_->setContextMenu(nullptr);
        applyImage();
        panelDrawn_.start(kPanelDrawn);
    }

    /// From hosts on the session bus, which report neither button nor place.
    void activated(QSystemTrayIcon::ActivationReason reason) {
        if (embedded_) return;
        switch (reason) {
            case QSystemTrayIcon::Context:
                click(eventFor(Qt::RightButton));
                break;
            case QSystemTrayIcon::MiddleClick:
                click(eventFor(Qt::MiddleButton));
                break;
            default:
                // Without a press it was the keyboard or an assistive program.
                if (desktop_.watchPresses && !currentPress() && !attached_) {
                    if (activated_) activated_();
                } else {
                    click(eventFor(Qt::LeftButton));
                }
        }
    }
    void click(const StatusItemEvent& event) {
        if (attached_)
            openMenu(*attached_);
        else if (action_)
            action_(event);
    }
    void openMenu(const Menu& menu) {
        if (!menu_) {
            menu_ = std::make_unique<QMenu>();
            menuKeys_ = std::make_unique<shell::MenuKeys>(*menu_);
        }
        shell::fill(*menu_, menu);
        shell::dress(*menu_, appearance_.look());
        menu_->popup(menuPosition());
        menu_->activateWindow();
    }
    /// Below an icon in the upper half of its screen, above one in the lower half.
    QPoint menuPosition() const {
        if (!embedded()) return QCursor::pos();
        const QRect icon = tray_->geometry();
        const auto* const screen = QGuiApplication::screenAt(icon.center());
        if (icon.isEmpty() || !screen) return QCursor::pos();
        const bool above = icon.center().y() > screen->geometry().center().y();
        return {icon.left(), above ? icon.top() - menu_->sizeHint().height() : icon.bottom() + 1};
    }

    void applyHostMenu() {
        // A panel that the icon is embedded in leaves clicks to us, and the toolkit would show the menu
        // beside the one that the action opens.
        if (!tray_ || embedded_ || !buildHostMenu_) return;
        if (!hostMenu_) {
            hostMenu_ = std::make_unique<QMenu>();
            QObject::connect(hostMenu_.get(), &QMenu::aboutToShow, this,
                             [this] { shell::fill(*hostMenu_, buildHostMenu_()); });
        }
        shell::fill(*hostMenu_, buildHostMenu_());
        tray_->setContextMenu(hostMenu_.get());
    }

    void applyImage() {
        if (!tray_ || !image_) return;
        const QColor color = image_->isTemplate ? foreground() : QColor();
        if (color != shownColor_ || tray_->icon().isNull()) {
            shownColor_ = color;
            tray_->setIcon(shell::templateIcon(
                color, image_->isTemplate && hasThemeIcon() ? QLatin1String(kThemeName) : QString()));
        }
        tray_->setToolTip(QString::fromStdString(image_->accessibilityDescription));
        if (embedded_) embedded_->setAccessibleName(tray_->toolTip());
    }
    QColor foreground() const {
        bool dark = appearance_.look().dark;
        if (desktop_.panelLook)
            if (const auto panel = desktop_.panelLook(embedded_ ? embedded_->winId() : 0)) {
                if (panel->foreground) return QColor(static_cast<QRgb>(*panel->foreground));
                dark = panel->dark;
            }
        return QColor(dark ? kOnDark : kOnLight);
    }

    Appearance& appearance_;
    const ShellDesktop& desktop_;
    std::optional<StatusItemImage> image_;
    Action action_;
    std::function<void()> activated_;
    std::optional<Menu> attached_;
    std::function<Menu()> buildHostMenu_;

    // The icon goes before the menu that it shows.
    std::unique_ptr<QMenu> hostMenu_;
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<shell::MenuKeys> menuKeys_;
    std::unique_ptr<QSystemTrayIcon> tray_;
    /// The toolkit's window in a panel; null on the session bus.
    QPointer<QWidget> embedded_;
    QColor shownColor_;
    QTimer panelDrawn_;
    QTimer finding_;
    int tries_ = 0;
    Subscription looks_;
    Subscription hosts_;
};

class QtStatusBar : public StatusBar {
  public:
    QtStatusBar(Appearance& appearance, const ShellDesktop& desktop)
        : appearance_(appearance), desktop_(desktop) {}
    std::unique_ptr<StatusItem> makeStatusItem(double) override {
        return std::make_unique<QtStatusItem>(appearance_, desktop_);
    }
    bool isAvailable() const override { return !desktop_.trayHosts || desktop_.trayHosts().any(); }

  private:
    Appearance& appearance_;
    const ShellDesktop& desktop_;
};

}  // namespace

std::unique_ptr<StatusBar> makeQtStatusBar(Appearance& appearance, const ShellDesktop& desktop) {
    return std::make_unique<QtStatusBar>(appearance, desktop);
}

std::vector<NativeWindow> ownWindows() {
    std::vector<NativeWindow> windows;
    for (auto* const window : QGuiApplication::topLevelWindows())
        if (window->isVisible() && window->handle() && !window->property(kIsTrayIcon).toBool())
            windows.push_back(window->winId());
    return windows;
}

}  // namespace pintle
