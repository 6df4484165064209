// The program: one copy for each user, an icon in the tray and nothing else until it is clicked.
#include <QApplication>
#include <cstdio>

#include "app/root/root.h"

int main(int argc, char** argv) {
    if (const auto obstacle = pintle::prepareToolkit()) {
        std::fprintf(stderr, "%s\n", obstacle->c_str());
        return 1;
    }
    QApplication application(argc, argv);
    pintle::Root root;
    if (!root.start()) return 0;
    return QApplication::exec();
}
