// Draws the popover: popover_pictures PICTURE.png [dark] [large] [rtl] [still] [themes=FOLDER] [apply=ID]
// [type=TEXT] [keys=TEXT] [wait=MILLISECONDS]. QT_SCALE_FACTOR=2 draws at twice the size. `themes` is a
// folder with one folder per theme on disk, named by the theme's id; `keys` are d, u, h, e for down, up, home
// and end.
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QQuickWindow>
#include <cstdio>
#include <filesystem>

#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

struct Picture : PopoverWorld {
    void TestBody() override {}
};

QString valueOf(const char* name) {
    const auto start = QString::fromLatin1(name) + '=';
    for (const auto& argument : QGuiApplication::arguments())
        if (argument.startsWith(start)) return argument.mid(start.size());
    return {};
}

bool isAsked(const char* word) { return QGuiApplication::arguments().contains(QString::fromLatin1(word)); }

void wait(Picture& picture, qint64 milliseconds) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds) {
        picture.world.scheduler.advance(std::chrono::milliseconds(20));
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

Qt::Key keyOf(QChar letter) {
    switch (letter.toLatin1()) {
        case 'u':
            return Qt::Key_Up;
        case 'h':
            return Qt::Key_Home;
        case 'e':
            return Qt::Key_End;
        default:
            return Qt::Key_Down;
    }
}

bool draw(const QString& file) {
    namespace fs = std::filesystem;
    if (isAsked("rtl")) QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    Picture picture;
    picture.appearance.become({.dark = isAsked("dark"),
                               .reducedMotion = isAsked("still"),
                               .textScale = isAsked("large") ? 2.0 : 1.0});
    if (const auto themes = valueOf("themes"); !themes.isEmpty()) {
        fs::create_directories(picture.world.themesDirectory());
        fs::copy(themes.toStdString(), picture.world.themesDirectory(),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    }
    picture.world.start();
    if (const auto id = valueOf("apply"); !id.isEmpty()) picture.world.applyNow(id.toUtf8().constData());
    picture.show();
    if (picture.view == nullptr) return false;
    for (const auto letter : valueOf("keys")) picture.press(keyOf(letter));
    picture.type(valueOf("type"));
    wait(picture, std::max(400, valueOf("wait").toInt()));
    return picture.view->grabWindow().save(file);
}

}  // namespace
}  // namespace pintle

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (QGuiApplication::arguments().size() < 2) {
        std::fputs("usage: popover_pictures PICTURE.png [dark] [large] [rtl] [still] [NAME=VALUE...]\n",
                   stderr);
        return 2;
    }
    return pintle::draw(QGuiApplication::arguments()[1]) ? 0 : 1;
}
