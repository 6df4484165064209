// The user interface's tests run inside one application object of the toolkit, drawn by software and shown
// nowhere.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickWindow>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setDefaultAlphaBuffer(true);
    const QGuiApplication application(argc, argv);
    QAccessible::setActive(true);
    return RUN_ALL_TESTS();
}
