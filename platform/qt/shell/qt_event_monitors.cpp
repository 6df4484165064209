#include "platform/qt/shell/qt_event_monitors.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QObject>
#include <utility>

namespace pintle {
namespace {

/// Sees the keys on their way to the windows; what lies inside the windows gets them afterwards.
class KeyFilter : public QObject {
  public:
    explicit KeyFilter(std::function<bool(const LocalKeyDown&)> handler) : handler_(std::move(handler)) {
        qApp->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !receiver->isWindowType()) return false;
        const auto& key = static_cast<const QKeyEvent&>(*event);
        // The key as it is labelled: with Control down its text would be a control character.
        const bool isCharacter = key.key() > 0 && key.key() < Qt::Key_Escape;
        return handler_({key.modifiers().testFlag(Qt::ControlModifier),
                         isCharacter ? QString(QChar(key.key())).toLower().toStdString() : std::string()});
    }

  private:
    const std::function<bool(const LocalKeyDown&)> handler_;
};

class QtEventMonitors : public EventMonitors {
  public:
    explicit QtEventMonitors(const ShellDesktop& desktop) : desktop_(desktop) {}

    Subscription addGlobalMonitor(EventMask mask,
                                  std::function<void(const GlobalMouseDown&)> handler) override {
        if (!desktop_.watchPresses) return {};
        return desktop_.watchPresses([mask, handler = std::move(handler)](const GlobalMouseDown& press) {
            const bool isLeft = press.button == GlobalMouseDown::Button::left;
            if (mask & (isLeft ? kLeftMouseDownMask : kRightMouseDownMask)) handler(press);
        });
    }
    Subscription addLocalMonitor(EventMask mask, std::function<bool(const LocalKeyDown&)> handler) override {
        if (!(mask & kKeyDownMask)) return {};
        // Ended from inside its own handler, the filter lives on until the call is over.
        return Subscription([filter = new KeyFilter(std::move(handler))] {
            qApp->removeEventFilter(filter);
            filter->deleteLater();
        });
    }

  private:
    const ShellDesktop& desktop_;
};

}  // namespace

std::unique_ptr<EventMonitors> makeQtEventMonitors(const ShellDesktop& desktop) {
    return std::make_unique<QtEventMonitors>(desktop);
}

}  // namespace pintle
