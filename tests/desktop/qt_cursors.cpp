// A Qt application to point at: a grid of areas, each with another cursor shape, a line edit and a link. It
// prints "area NAME X Y" (centre, root window) for each area when its window is on the screen, then "ready".
// An argument becomes the window's title and the second and third its position.
#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPoint>
#include <QTimer>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    // Nothing blinks, so that two pictures of one place differ by the pointer alone.
    QApplication::setCursorFlashTime(0);
    QWidget window;
    window.setWindowTitle(argc > 1 ? argv[1] : "Qt cursors");
    if (argc > 3) window.move(std::atoi(argv[2]), std::atoi(argv[3]));

    const std::vector<std::pair<const char*, Qt::CursorShape>> shapes = {
        {"Arrow", Qt::ArrowCursor},
        {"UpArrow", Qt::UpArrowCursor},
        {"Cross", Qt::CrossCursor},
        {"Wait", Qt::WaitCursor},
        {"IBeam", Qt::IBeamCursor},
        {"SizeVer", Qt::SizeVerCursor},
        {"SizeHor", Qt::SizeHorCursor},
        {"SizeBDiag", Qt::SizeBDiagCursor},
        {"SizeFDiag", Qt::SizeFDiagCursor},
        {"SizeAll", Qt::SizeAllCursor},
        {"Blank", Qt::BlankCursor},
        {"SplitV", Qt::SplitVCursor},
        {"SplitH", Qt::SplitHCursor},
        {"PointingHand", Qt::PointingHandCursor},
        {"Forbidden", Qt::ForbiddenCursor},
        {"WhatsThis", Qt::WhatsThisCursor},
        {"Busy", Qt::BusyCursor},
        {"OpenHand", Qt::OpenHandCursor},
        {"ClosedHand", Qt::ClosedHandCursor},
        {"DragCopy", Qt::DragCopyCursor},
        {"DragMove", Qt::DragMoveCursor},
        {"DragLink", Qt::DragLinkCursor},
    };
    QGridLayout layout(&window);
    std::vector<std::pair<const char*, QWidget*>> areas;
    const auto add = [&](const char* name, QWidget* area) {
        area->setFixedSize(84, 34);
        const int index = static_cast<int>(areas.size());
        layout.addWidget(area, index / 5, index % 5);
        areas.emplace_back(name, area);
    };
    for (const auto& [name, shape] : shapes) {
        auto* area = new QLabel(name, &window);
        area->setFrameStyle(QFrame::Box);
        area->setCursor(shape);
        add(name, area);
    }
    add("LineEdit", new QLineEdit("text", &window));
    auto* link = new QLabel("<a href='there'>a link that is long enough</a>", &window);
    link->setWordWrap(true);
    add("Link", link);
    window.show();

    // A window manager may still move a new window; two equal looks are taken as its place.
    QPoint lastPlace(-1, -1);
    QTimer wait;
    QObject::connect(&wait, &QTimer::timeout, [&] {
        const QPoint place = window.mapToGlobal(QPoint());
        const bool stays = place == std::exchange(lastPlace, place);
        if (window.windowHandle() == nullptr || !window.windowHandle()->isExposed() || !stays) return;
        wait.stop();
        for (const auto& [name, area] : areas) {
            const QPoint centre = area->mapToGlobal(area->rect().center());
            const double pixels = area->devicePixelRatio();
            std::printf("area %s %d %d\n", name, qRound(centre.x() * pixels), qRound(centre.y() * pixels));
        }
        std::puts("ready");
        std::fflush(stdout);
    });
    wait.start(60);
    return QApplication::exec();
}
