// Draws the windows and the alert with example settings: window_pictures PICTURE.png NAME [dark] [glass]
// [blends] [rtl] [large] [contrast] [still]. QT_SCALE_FACTOR=2 draws at twice the size. NAME is settings,
// settings-end, about, alert or alert-info.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>

#include "tests/quick/window_world.h"

namespace {

// What would be behind the window on a desktop.
QImage onDesk(const QImage& window, bool dark, bool glass) {
    const qreal ratio = window.devicePixelRatio();
    const int margin = static_cast<int>(24 * ratio);
    QImage desk(window.size() + QSize(2 * margin, 2 * margin), QImage::Format_RGB32);
    desk.fill(dark ? QColor("#2A3030") : QColor("#D8DEDD"));
    QPainter painter(&desk);
    if (glass) {
        QLinearGradient gradient(0, 0, desk.width(), desk.height());
        gradient.setColorAt(0, "#E8A33D");
        gradient.setColorAt(0.5, "#7C4DFF");
        gradient.setColorAt(1, "#101020");
        painter.fillRect(desk.rect(), gradient);
    }
    auto plain = window;
    plain.setDevicePixelRatio(1);
    painter.drawImage(margin, margin, plain);
    return desk;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace pintle;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setDefaultAlphaBuffer(true);
    const QGuiApplication application(argc, argv);
    const auto arguments = QGuiApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs(
            "usage: window_pictures PICTURE.png NAME [dark] [glass] [blends] [rtl] [large] [contrast]\n",
            stderr);
        return 2;
    }
    const auto asked = [&](const char* word) { return arguments.contains(QString::fromLatin1(word)); };
    if (asked("rtl")) QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    WindowWorld world({.dark = asked("dark"),
                       .glassMode = asked("glass"),
                       .glassOpacity = 0.85,
                       .blendsWindows = asked("glass") || asked("blends"),
                       .reducedMotion = asked("still"),
                       .highContrast = asked("contrast"),
                       .textScale = asked("large") ? 2.0 : 1.0,
                       .fontFamily = "Inter"});
    world.world.settings.setGlassOpacity(0.85);
    const QString name = arguments[2];
    QQuickView* view = nullptr;
    if (name.startsWith("settings")) {
        if (name == "settings-end") {
            world.world.settings.addExcludedApp("Safari");
            world.world.settings.addExcludedApp("Blender Benchmark Launcher");
            world.settings.toggleAddAppField();
        }
        view = world.show(WindowContent::settings);
    } else if (name == "about") {
        view = world.show(WindowContent::about);
    } else if (name == "alert-info") {
        view = world.show({AlertStyle::informational,
                           std::string(settings_text::resetDone),
                           std::string(settings_text::resetDoneText),
                           {std::string(settings_text::quit)}});
    } else {
        view = world.show({AlertStyle::warning,
                           std::string(settings_text::resetQuestion),
                           std::string(settings_text::resetQuestionText),
                           {std::string(settings_text::resetAndQuit), std::string(settings_text::cancel)}});
    }
    if (!view) return 1;
    WindowWorld::until([] { return false; }, 300);
    if (name == "settings-end")
        for (auto* item : view->rootObject()->findChildren<QQuickItem*>())
            if (item->inherits("QQuickFlickable"))
                item->setProperty("contentY", item->property("contentHeight").toReal() - item->height());
    WindowWorld::until([] { return false; }, 1200);
    const auto picture = onDesk(view->grabWindow(), asked("dark"), asked("glass"));
    return picture.save(arguments[1]) ? 0 : 1;
}
