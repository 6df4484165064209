// Keeps a view's keys to what is visibly marked: a control that has the keyboard without its ring takes no
// key but shows the ring first. A window that gets the keyboard back shows where it is. Main thread only.
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
