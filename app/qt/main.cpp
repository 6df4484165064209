// The program: one copy for each user, without a window yet.
#include <QCoreApplication>

#include "app/qt/root.h"

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("pintle");
    pintle::Root root;
    if (!root.start()) return 0;
    return QCoreApplication::exec();
}
