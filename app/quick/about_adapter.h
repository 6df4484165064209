// The about window's model as its view reads it. The user interface makes one with the view and hands it over
// as the view's property `model`. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include "app/about_window_model.h"
#include "base/subscription.h"

namespace pintle {

class AboutAdapter : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString tagline READ tagline CONSTANT)
    Q_PROPERTY(QString featuresTitle READ featuresTitle CONSTANT)
    Q_PROPERTY(QString featuresSymbol READ featuresSymbol CONSTANT)
    /// From the top: symbol, text, delay in milliseconds.
    Q_PROPERTY(QVariantList features READ features CONSTANT)
    Q_PROPERTY(QString contactText READ contactText CONSTANT)
    Q_PROPERTY(QString contactSymbol READ contactSymbol CONSTANT)
    Q_PROPERTY(QString contactAddress READ contactAddress CONSTANT)
    // Where the entrance begins and how long it takes, in milliseconds.
    Q_PROPERTY(double iconScaleAtFirst READ iconScaleAtFirst CONSTANT)
    Q_PROPERTY(double glowOpacityAtFirst READ glowOpacityAtFirst CONSTANT)
    Q_PROPERTY(double rowRise READ rowRise CONSTANT)
    Q_PROPERTY(int iconDuration READ iconDuration CONSTANT)
    Q_PROPERTY(int rowDuration READ rowDuration CONSTANT)
    // Where it goes.
    Q_PROPERTY(double iconScale READ iconScale NOTIFY changed)
    Q_PROPERTY(double glowOpacity READ glowOpacity NOTIFY changed)
    Q_PROPERTY(bool appeared READ appeared NOTIFY changed)
    Q_PROPERTY(bool featuresAppeared READ featuresAppeared NOTIFY changed)

  public:
    /// `model` outlives it.
    explicit AboutAdapter(AboutWindowModel& model);

    static QString name();
    QString versionText() const;
    static QString tagline();
    static QString featuresTitle();
    static QString featuresSymbol();
    QVariantList features() const;
    static QString contactText();
    static QString contactSymbol();
    static QString contactAddress() { return QString::fromStdString(AboutWindowModel::contactAddress()); }
    static double iconScaleAtFirst() { return AboutWindowModel::iconScaleAtFirst; }
    static double glowOpacityAtFirst() { return AboutWindowModel::glowOpacityAtFirst; }
    static double rowRise() { return AboutWindowModel::rowRise; }
    static int iconDuration() { return static_cast<int>(AboutWindowModel::iconDuration.count()); }
    static int rowDuration() { return static_cast<int>(AboutWindowModel::rowDuration.count()); }
    double iconScale() const { return model_.iconScale(); }
    double glowOpacity() const { return model_.glowOpacity(); }
    bool appeared() const { return model_.appeared(); }
    bool featuresAppeared() const { return model_.featuresAppeared(); }

    Q_INVOKABLE void appear() { model_.appear(); }
    Q_INVOKABLE void dismiss() { model_.dismiss(); }
    Q_INVOKABLE void openContact() { model_.openContact(); }

  Q_SIGNALS:
    void changed();

  private:
    AboutWindowModel& model_;
    Subscription observer_;
};

}  // namespace pintle
