#include "app/quick/window_views.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <utility>

#include "app/quick/visible_focus.h"

namespace pintle {
namespace {

constexpr QSize kNoLimit(16777215, 16777215);

std::unique_ptr<QQuickView> makeView(QQmlEngine& engine, const char* name, QObject& model) {
    // Read from its drawing when the first window comes, not at the start.
    if (QGuiApplication::windowIcon().isNull()) QGuiApplication::setWindowIcon(appIcon());
    auto view = std::make_unique<QQuickView>(&engine, nullptr);
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    // The content covers all of it, as translucent as the look wants it.
    view->setColor(Qt::transparent);
    view->setInitialProperties({{"model", QVariant::fromValue(&model)}});
    view->setSource(QUrl(QStringLiteral("qrc:/qt-project.org/imports/Pintle/%1.qml").arg(name)));
    if (view->status() != QQuickView::Ready) return nullptr;
    new VisibleFocus(*view);
    return view;
}

QSize inPixels(const Size& size) { return {static_cast<int>(size.width), static_cast<int>(size.height)}; }

}  // namespace

WindowViews::WindowViews(Models models) : models_(std::move(models)) {}
WindowViews::~WindowViews() = default;

std::unique_ptr<QWindow> WindowViews::makeWindow(QQmlEngine& engine, WindowContent content) {
    std::unique_ptr<QQuickView> view;
    switch (content) {
        case WindowContent::settings:
            if (!settings_) settings_ = std::make_unique<SettingsAdapter>(models_.settings());
            view = makeView(engine, "SettingsView", *settings_);
            if (view) view->resize(inPixels(SettingsWindowModel::contentSize));
            break;
        case WindowContent::about:
            if (!about_) about_ = std::make_unique<AboutAdapter>(models_.about());
            view = makeView(engine, "AboutView", *about_);
            if (view) view->resize(inPixels(AboutWindowModel::contentSize));
            break;
    }
    return view;
}

QWindow* WindowViews::alert(QQmlEngine& engine, const Alert& alert, std::function<void(int button)> chosen) {
    alertContent_.show(alert, std::move(chosen));
    if (!alert_) alert_ = makeView(engine, "AlertView", alertContent_);
    if (!alert_) return nullptr;
    const auto* content = alert_->rootObject();
    // Of the alert before it.
    alert_->setMinimumSize({});
    alert_->setMaximumSize(kNoLimit);
    // The texts need their width to know their height.
    alert_->resize(QSizeF(content->implicitWidth(), content->implicitHeight()).toSize());
    alert_->resize(QSizeF(content->implicitWidth(), content->implicitHeight()).toSize());
    return alert_.get();
}

void WindowViews::forgetAlert() { alert_.reset(); }

QIcon appIcon() { return QIcon(QStringLiteral(":/pintle/icons/app.svg")); }

}  // namespace pintle
