// The least that a tray program with a panel can be: an item, its menu and a window with a list, in Qt
// Widgets. The benches of the shell measure the program beside it, and the desktop tours try their tray hosts
// with it.
#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QPixmap drawing(22, 22);
    drawing.fill(Qt::transparent);
    {
        QPainter painter(&drawing);
        painter.setBrush(QColor(230, 230, 230));
        painter.drawEllipse(3, 3, 16, 16);
    }
    QSystemTrayIcon item{QIcon(drawing)};
    item.setToolTip("Plain tray");

    QWidget panel(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    panel.setWindowTitle("Plain panel");
    panel.resize(340, 520);
    auto* layout = new QVBoxLayout(&panel);
    layout->addWidget(new QLabel("Plain tray"));
    auto* list = new QListWidget;
    for (int row = 0; row < 77; ++row) list->addItem("Row " + QString::number(row));
    layout->addWidget(list);

    QMenu menu;
    QAction* const quit = menu.addAction("Quit");
    QObject::connect(quit, &QAction::triggered, &application, &QApplication::quit);
    item.setContextMenu(&menu);
    QObject::connect(&item, &QSystemTrayIcon::activated, [&](QSystemTrayIcon::ActivationReason reason) {
        if (reason != QSystemTrayIcon::Trigger) return;
        if (panel.isVisible()) {
            panel.hide();
            return;
        }
        const QRect place = item.geometry().isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : item.geometry();
        panel.move(place.center().x() - panel.width() / 2, place.bottom() + 6);
        panel.show();
    });
    item.show();
    return QApplication::exec();
}
