#include "app/root/prepare_toolkit_mac.h"

#include <QGuiApplication>

#include "app/root/desktop_backend.h"
#include "platform/qt/qt_process_runner.h"

namespace pintle {

std::optional<std::string> prepareToolkit() {
    qputenv(kStayInBackground, "1");
    QCoreApplication::setApplicationName(QStringLiteral("Pintle"));
    // The program lives in the menu bar and ends on request only.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return std::nullopt;
}

std::unique_ptr<ProcessRunner> makeRunnerForForeignPrograms(MainQueue& queue) {
    return makeQtProcessRunner(queue, {}, {kStayInBackground});
}

}  // namespace pintle
