// How the desktop wants the user interface to look, as the views read it: the object "Appearance" of the
// module Pintle.Shell. Its owner sets it from the desktop and from the settings; the views only read. Main
// thread only.
#pragma once

#include <QObject>
#include <QString>

namespace pintle {

class ViewLook : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(bool glass READ glass NOTIFY changed)
    Q_PROPERTY(double glassOpacity READ glassOpacity NOTIFY changed)
    Q_PROPERTY(bool blendsWindows READ blendsWindows NOTIFY changed)
    Q_PROPERTY(bool nativelyHosted READ nativelyHosted NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)
    Q_PROPERTY(QString fontFamily READ fontFamily NOTIFY changed)

  public:
    struct Look {
        bool dark = false;
        /// The setting, as it is stored.
        bool glassMode = false;
        double glassOpacity = 1;
        /// Whether what is behind a window can be seen through it.
        bool blendsWindows = false;
        /// Whether the desktop's own windows hold the views, with an edge and a shadow of theirs and a
        /// material behind.
        bool nativelyHosted = false;
        bool reducedMotion = false;
        bool highContrast = false;
        /// The user's text size over 13 pixels.
        double textScale = 1;
        QString fontFamily;
        friend bool operator==(const Look&, const Look&) = default;
    };

    explicit ViewLook(QObject* parent = nullptr) : QObject(parent) {}

    bool dark() const { return look_.dark; }
    bool glass() const { return look_.glassMode && look_.blendsWindows && !look_.highContrast; }
    double glassOpacity() const { return look_.glassOpacity; }
    bool blendsWindows() const { return look_.blendsWindows; }
    bool nativelyHosted() const { return look_.nativelyHosted; }
    bool reducedMotion() const { return look_.reducedMotion; }
    bool highContrast() const { return look_.highContrast; }
    double textScale() const { return look_.textScale; }
    QString fontFamily() const { return look_.fontFamily; }
    const Look& look() const { return look_; }
    void setLook(const Look& look);

    /// The name of the drawing for a symbol; empty for a symbol that has none.
    Q_INVOKABLE static QString iconOf(const QString& symbol);

  Q_SIGNALS:
    void changed();

  private:
    Look look_;
};

/// Makes `look` the object that views see. Before the first view is made; it must outlive all views.
void offerToViews(ViewLook& look);

}  // namespace pintle
