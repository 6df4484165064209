// The settings window's model as its view reads it. The user interface makes one with the view and hands it
// over as the view's property `model`. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QStringListModel>
#include <QVariant>

#include "app/settings_window_model.h"
#include "base/subscription.h"

namespace pintle {

class SettingsAdapter : public QObject {
    Q_OBJECT
    /// From the top: kind (the name of its SettingsSectionKind), symbol, title, and toggles with toggle (the
    /// number for toggleStates and setToggle), symbol, title, subtitle, enabled.
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)
    /// By number: whether it is on.
    Q_PROPERTY(QVariantList toggleStates READ toggleStates NOTIFY changed)
    /// What stands in the window and is no part of a toggle, by name.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)
    Q_PROPERTY(double glassOpacity READ glassOpacity NOTIFY changed)
    Q_PROPERTY(double glassOpacityFrom READ glassOpacityFrom CONSTANT)
    Q_PROPERTY(double glassOpacityTo READ glassOpacityTo CONSTANT)
    Q_PROPERTY(double glassOpacityStep READ glassOpacityStep CONSTANT)
    Q_PROPERTY(QString glassOpacityText READ glassOpacityText NOTIFY changed)
    Q_PROPERTY(bool glassOpacityEnabled READ glassOpacityEnabled NOTIFY changed)
    Q_PROPERTY(QString cursorScaleText READ cursorScaleText NOTIFY changed)
    /// From the smallest: scale and title.
    Q_PROPERTY(QVariantList scales READ scales CONSTANT)
    /// The number of the selected one of `scales`; -1 when none is.
    Q_PROPERTY(int selectedScale READ selectedScale NOTIFY changed)
    /// One row for each name, in the role "display".
    Q_PROPERTY(QAbstractItemModel* excludedApps READ excludedApps CONSTANT)
    Q_PROPERTY(bool exclusionsEnabled READ exclusionsEnabled CONSTANT)
    Q_PROPERTY(bool showAddAppField READ showAddAppField NOTIFY changed)
    Q_PROPERTY(QString addButtonSymbol READ addButtonSymbol NOTIFY changed)
    Q_PROPERTY(QString newAppName READ newAppName WRITE setNewAppName NOTIFY changed)

  public:
    /// `model` outlives it.
    explicit SettingsAdapter(SettingsWindowModel& model);

    QVariantList sections() const;
    QVariantList toggleStates() const;
    QVariantMap texts() const;
    bool exclusionsEnabled() const { return model_.exclusionsEnabled(); }
    double glassOpacity() const { return model_.glassOpacity(); }
    static double glassOpacityFrom() { return SettingsWindowModel::glassOpacityRange.from; }
    static double glassOpacityTo() { return SettingsWindowModel::glassOpacityRange.to; }
    static double glassOpacityStep() { return SettingsWindowModel::glassOpacityRange.step; }
    QString glassOpacityText() const;
    bool glassOpacityEnabled() const { return model_.glassOpacityEnabled(); }
    QString cursorScaleText() const;
    QVariantList scales() const;
    int selectedScale() const;
    QAbstractItemModel* excludedApps() { return &excludedApps_; }
    bool showAddAppField() const { return model_.showAddAppField(); }
    QString addButtonSymbol() const;
    QString newAppName() const { return QString::fromStdString(model_.newAppName()); }
    void setNewAppName(const QString& name) { model_.setNewAppName(name.toStdString()); }

    Q_INVOKABLE void appear() { model_.appear(); }
    Q_INVOKABLE void setToggle(int toggle, bool isOn);
    Q_INVOKABLE void setGlassOpacity(double value) { model_.setGlassOpacity(value); }
    Q_INVOKABLE void selectScale(double scale) { model_.selectScale(scale); }
    Q_INVOKABLE void toggleAddAppField() { model_.toggleAddAppField(); }
    Q_INVOKABLE void addExcludedApp() { model_.addExcludedApp(); }
    Q_INVOKABLE void cancelAddApp() { model_.cancelAddApp(); }
    Q_INVOKABLE void removeExcludedApp(const QString& name) { model_.removeExcludedApp(name.toStdString()); }
    Q_INVOKABLE static QString removeLabel(const QString& name);
    Q_INVOKABLE void resetApplication() { model_.resetApplication(); }

  Q_SIGNALS:
    void changed();

  private:
    /// Brings the rows up to date one by one, so that the others keep their place and the focus.
    void followExcludedApps();

    SettingsWindowModel& model_;
    QStringListModel excludedApps_;
    Subscription observer_;
};

}  // namespace pintle
