// The views of the settings window, the about window and the alert. The root makes one and hands its
// functions to the user interface's ShellViews. Main thread only.
#pragma once

#include <QIcon>
#include <functional>
#include <memory>

#include "app/about_window_model.h"
#include "app/quick/about_adapter.h"
#include "app/quick/alert_view.h"
#include "app/quick/settings_adapter.h"
#include "app/settings_window_model.h"
#include "platform/alerts.h"
#include "platform/windows.h"

QT_BEGIN_NAMESPACE
class QQmlEngine;
class QQuickView;
class QWindow;
QT_END_NAMESPACE

namespace pintle {

class WindowViews {
  public:
    struct Models {
        /// Each called once, when its window is first asked for. The answers must outlive the views.
        std::function<SettingsWindowModel&()> settings;
        std::function<AboutWindowModel&()> about;
    };

    explicit WindowViews(Models models);
    ~WindowViews();

    /// Null when it cannot be made. Must end before this object and before the engine.
    std::unique_ptr<QWindow> makeWindow(QQmlEngine& engine, WindowContent content);
    /// The view with this alert, in the size it wants. Always the same one; null when it cannot be made.
    QWindow* alert(QQmlEngine& engine, const Alert& alert, std::function<void(int button)> chosen);
    /// Before the engine ends.
    void forgetAlert();

  private:
    const Models models_;
    std::unique_ptr<SettingsAdapter> settings_;
    std::unique_ptr<AboutAdapter> about_;
    AlertView alertContent_;
    std::unique_ptr<QQuickView> alert_;
};

/// The program's own icon, sharp in every size.
QIcon appIcon();

}  // namespace pintle
