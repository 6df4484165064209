#include "platform/qt/shell/qt_application.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QMetaObject>
#include <QObject>
#include <QSessionManager>
#include <QUrl>
#include <QWindow>
#include <utility>

namespace pintle {
namespace {

class QtApplication : public Application {
  public:
    explicit QtApplication(QtApplicationOptions options) : options_(std::move(options)) {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, &context_, [this] {
            if (const auto handler = std::exchange(willTerminate_, nullptr)) handler();
        });
        // A session manager that starts programs again would meet the autostart entry's copy, and the second
        // one of the two would open the popover at each login.
        const auto neverRestart = [](QSessionManager& manager) {
            manager.setRestartHint(QSessionManager::RestartNever);
        };
        QObject::connect(qApp, &QGuiApplication::commitDataRequest, &context_, neverRestart,
                         Qt::DirectConnection);
        QObject::connect(qApp, &QGuiApplication::saveStateRequest, &context_, neverRestart,
                         Qt::DirectConnection);
    }

    /// Nothing is to be done: the program has no window in task bars by its windows' own attributes.
    void setActivationPolicy(ActivationPolicy) override {}
    void activateIgnoringOtherApps() override {
        for (auto* const window : QGuiApplication::topLevelWindows())
            if (window->isVisible() && window->isActive()) return;
        if (auto* const window = QGuiApplication::modalWindow()) window->requestActivate();
    }
    void openUrl(const std::string& url) override {
        QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
    }
    void notify(const std::string& title, const std::string& text) override {
        if (options_.notify) options_.notify(title, text);
    }
    void terminate() override {
        // Asked for before the event loop runs, the end must wait for it.
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
    }
    void setWillTerminate(std::function<void()> handler) override { willTerminate_ = std::move(handler); }

  private:
    QtApplicationOptions options_;
    std::function<void()> willTerminate_;
    QObject context_;
};

}  // namespace

std::unique_ptr<Application> makeQtApplication(QtApplicationOptions options) {
    return std::make_unique<QtApplication>(std::move(options));
}

}  // namespace pintle
