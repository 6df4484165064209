// The program: one copy for each user, an icon in the tray and nothing else until it is clicked.
#include <QApplication>
#include <QLocale>
#include <cstdio>

#include "app/quick/translations.h"
#include "app/root/root.h"

int main(int argc, char** argv) {
    if (const auto obstacle = pintle::prepareToolkit()) {
        std::fprintf(stderr, "%s\n", obstacle->c_str());
        return 1;
    }
    QApplication application(argc, argv);
    const auto translation = pintle::installTranslation(QLocale::system().uiLanguages());
    pintle::Root root;
    if (!root.start()) return 0;
    return QApplication::exec();
}
