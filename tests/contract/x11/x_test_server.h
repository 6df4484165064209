// A private X server of a test, on a display number of its own choice; ended with the object.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace pintle {

class XTestServer {
  public:
    explicit XTestServer(std::vector<std::string> extra = {}) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::close(ends[0]);
            const int nothing = ::open("/dev/null", O_RDWR);
            ::dup2(nothing, STDOUT_FILENO);
            ::dup2(nothing, STDERR_FILENO);
            const std::string descriptor = std::to_string(ends[1]);
            std::vector<std::string> words = {"Xvfb", "-displayfd", descriptor,  "-noreset", "-screen",
                                              "0",    "640x480x24", "-nolisten", "tcp",      "-ac"};
            words.insert(words.end(), extra.begin(), extra.end());
            std::vector<char*> arguments;
            for (auto& word : words) arguments.push_back(word.data());
            arguments.push_back(nullptr);
            ::execvp(arguments[0], arguments.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        std::string number;
        char character = 0;
        while (::read(ends[0], &character, 1) == 1 && character != '\n') number += character;
        ::close(ends[0]);
        if (number.empty()) {
            endBy(SIGKILL);
            throw std::runtime_error("Xvfb did not start");
        }
        display_ = ":" + number;
    }
    /// In order, so that it takes its lock and its socket away.
    ~XTestServer() { endBy(SIGTERM); }
    XTestServer(const XTestServer&) = delete;
    XTestServer& operator=(const XTestServer&) = delete;

    const std::string& display() const { return display_; }

    /// At once, as in a crash. What stays behind is replaced by the next server that takes the number.
    void crash() { endBy(SIGKILL); }

  private:
    void endBy(int signal) {
        if (process_ <= 0) return;
        ::kill(process_, signal);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }

    pid_t process_ = -1;
    std::string display_;
};

}  // namespace pintle
