// A message bus of a test, and the programs that serve on it. They end with their objects.
#pragma once

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/signals_of_process.h"

namespace pintle {

/// A child that ends with the test and whose outputs keep nothing open.
class QuietChild {
  public:
    explicit QuietChild(std::vector<std::string> words, int output = -1) {
        pid_ = ::fork();
        if (pid_ != 0) return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::vector<char*> arguments;
        for (auto& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        (void)::freopen("/dev/null", "r", stdin);
        if (output < 0) (void)::freopen("/dev/null", "w", stdout);
        (void)::freopen("/dev/null", "w", stderr);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ~QuietChild() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
    QuietChild(const QuietChild&) = delete;
    QuietChild& operator=(const QuietChild&) = delete;
    void signal(int number) const { ::kill(pid_, number); }
    void signalWhenCaught(int number) const { pintle::signalWhenCaught(pid_, number); }

  private:
    pid_t pid_ = -1;
};

/// A message bus of its own.
class TestBus {
  public:
    /// Where the daemon likes, or at `path`.
    explicit TestBus(const std::string& path = "") {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        std::vector<std::string> words{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                       "--print-address=" + std::to_string(ends[1])};
        if (!path.empty()) words.push_back("--address=unix:path=" + path);
        daemon_ = std::make_unique<QuietChild>(words, ends[1]);
        ::close(ends[1]);
        char character = 0;
        while (::read(ends[0], &character, 1) == 1 && character != '\n') address_ += character;
        ::close(ends[0]);
        if (address_.empty()) throw std::runtime_error("no bus");
    }
    const std::string& address() const { return address_; }

  private:
    std::unique_ptr<QuietChild> daemon_;
    std::string address_;
};

}  // namespace pintle
