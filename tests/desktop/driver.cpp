// Drives the program for the tours: the same root as the program itself, and commands on standard input, one
// a line: "apply ID", "scale S", "reset", "download ID", "delete ID", "reset-all", "row ID", "quit". Each is
// answered on standard output by "ok COMMAND" once it is accepted, or by "error REASON". Never installed.
#include <unistd.h>

#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/root/root.h"
#include "platform/qt/qt_socket_watch.h"

namespace {

class Driver {
  public:
    explicit Driver(pintle::Root& root)
        : root_(root), input_(pintle::watchReadable(root.mainQueue(), STDIN_FILENO, [this] { read(); })) {}

  private:
    void read() {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            input_.end();
            QCoreApplication::quit();
            return;
        }
        pending_.append(bytes, static_cast<std::size_t>(count));
        for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
            const std::string line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            const std::string refusal = obey(line);
            if (refusal.empty())
                std::printf("ok %s\n", line.c_str());
            else
                std::printf("error %s\n", refusal.c_str());
            std::fflush(stdout);
        }
    }

    std::string obey(const std::string& line) {
        const auto space = line.find(' ');
        const std::string command = line.substr(0, space);
        const std::string argument = space == std::string::npos ? "" : line.substr(space + 1);
        auto& model = root_.composition().viewModel();
        if (command == "apply" || command == "download" || command == "delete" || command == "row") {
            const auto& themes = model.themes();
            const auto found =
                std::find_if(themes.begin(), themes.end(),
                             [&](const pintle::CursorThemeInfo& each) { return each.id == argument; });
            if (found == themes.end()) return "unknown theme " + argument;
            const auto row = *found;
            if (command == "apply") model.applyTheme(row);
            if (command == "download") model.downloadTheme(row);
            if (command == "delete") model.deleteTheme(row);
            if (command == "row") describe(row);
        } else if (command == "reset-all") {
            model.resetAllData();
        } else if (command == "scale") {
            root_.composition().settings().setCursorScale(std::strtod(argument.c_str(), nullptr));
        } else if (command == "reset") {
            model.resetToDefault();
        } else if (command == "quit") {
            QCoreApplication::quit();
        } else {
            return "unknown command " + command;
        }
        return "";
    }

    /// "row ID downloaded=0 …", ended by two texts after tabs, on one line before the "ok".
    static void describe(const pintle::CursorThemeInfo& row) {
        auto error = row.downloadError.value_or("");
        std::replace(error.begin(), error.end(), '\n', ' ');
        std::printf("row %s downloaded=%d downloading=%d preview=%d progress=%g\t%s\t%s\n", row.id.c_str(),
                    row.isDownloaded, row.isDownloading, row.previewImage.has_value(), row.downloadProgress,
                    row.downloadStatus.c_str(), error.c_str());
    }

    pintle::Root& root_;
    std::string pending_;
    pintle::Subscription input_;
};

}  // namespace

int main(int argc, char** argv) {
    if (const auto obstacle = pintle::prepareToolkit()) {
        std::fprintf(stderr, "%s\n", obstacle->c_str());
        return 1;
    }
    QApplication application(argc, argv);
    pintle::Root root;
    if (!root.start()) return 3;
    const Driver driver(root);
    return QApplication::exec();
}
