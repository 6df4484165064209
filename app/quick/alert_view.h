// One alert at a time as its view reads it. The user interface keeps one with the view, hands it over as the
// view's property `model`, and gives it each alert in its turn. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

#include "platform/alerts.h"

namespace pintle {

class AlertView : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString informativeText READ informativeText NOTIFY changed)
    /// From the default one; never empty.
    Q_PROPERTY(QStringList buttons READ buttons NOTIFY changed)
    Q_PROPERTY(bool warning READ warning NOTIFY changed)
    /// The first button does what cannot be undone.
    Q_PROPERTY(bool destructive READ destructive NOTIFY changed)
    /// The button that has the keyboard at first.
    Q_PROPERTY(int firstFocus READ firstFocus NOTIFY changed)

  public:
    /// `chosen` runs once, with the number of the button counted from 0.
    void show(const Alert& alert, std::function<void(int button)> chosen);

    const QString& message() const { return message_; }
    const QString& informativeText() const { return informativeText_; }
    const QStringList& buttons() const { return buttons_; }
    bool warning() const { return warning_; }
    bool destructive() const { return destructive_; }
    int firstFocus() const { return firstFocus_; }

    /// Out of range or a second time: nothing.
    Q_INVOKABLE void choose(int button);
    Q_INVOKABLE void chooseLast() { choose(static_cast<int>(buttons_.size()) - 1); }

  Q_SIGNALS:
    void changed();

  private:
    QString message_;
    QString informativeText_;
    QStringList buttons_;
    bool warning_ = false;
    bool destructive_ = false;
    int firstFocus_ = 0;
    std::function<void(int)> chosen_;
};

}  // namespace pintle
