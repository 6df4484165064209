// Lets keys act only on a control whose focus is visible: a focused control without its ring takes no key but
// shows the ring first. A window that gets the keyboard back shows the focus ring. Main thread only.
#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickWindow>

namespace pintle {

class VisibleFocus : public QObject {
  public:
    /// Owned by the window.
    explicit VisibleFocus(QQuickWindow& window);

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    QQuickWindow& window_;
    /// The control whose ring was shown when the window lost the keyboard.
    QPointer<QQuickItem> ringed_;
};

}  // namespace pintle
