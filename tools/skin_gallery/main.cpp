// Draws one view of the skin into a picture: skin_gallery VIEW.qml PICTURE.png [dark] [glass] [rtl] [large]
// [still]. QT_SCALE_FACTOR=2 draws at twice the size.
#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>

#include "app/qt/view_look.h"

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setDefaultAlphaBuffer(true);
    const QGuiApplication application(argc, argv);
    const auto arguments = QGuiApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: skin_gallery VIEW.qml PICTURE.png [dark] [glass] [rtl] [large] [still]\n", stderr);
        return 2;
    }
    const auto asked = [&](const char* word) { return arguments.contains(QString::fromLatin1(word)); };
    pintle::ViewLook look;
    look.setLook({.dark = asked("dark"),
                  .glassMode = asked("glass"),
                  .glassOpacity = 0.85,
                  .blendsWindows = asked("glass"),
                  .reducedMotion = asked("still"),
                  .highContrast = asked("contrast"),
                  .textScale = asked("large") ? 2.0 : 1.0,
                  .fontFamily = "Inter"});
    offerToViews(look);
    if (asked("rtl")) QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QQmlApplicationEngine engine;
    engine.load(QUrl::fromLocalFile(arguments[1]));
    if (engine.rootObjects().isEmpty()) return 1;
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    if (window == nullptr) return 1;
    window->show();
    QTimer::singleShot(700, window, [&] {
        const auto picture = window->grabWindow();
        QCoreApplication::exit(picture.save(arguments[2]) ? 0 : 1);
    });
    return QCoreApplication::exec();
}
