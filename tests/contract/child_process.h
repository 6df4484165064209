// Starts the helper program and waits for it.
#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace pintle {

class ChildProcess {
  public:
    explicit ChildProcess(std::vector<std::string> arguments) {
        std::vector<char*> pointers = {const_cast<char*>(CONTRACT_HELPER)};
        for (auto& argument : arguments) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        if (::posix_spawn(&pid_, CONTRACT_HELPER, nullptr, nullptr, pointers.data(), environ) != 0) pid_ = -1;
    }
    ~ChildProcess() {
        if (pid_ > 0) {
            signal(SIGKILL);
            wait();
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    void signal(int number) const { ::kill(pid_, number); }
    /// The status as waitpid reports it.
    int wait() {
        int status = -1;
        while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        pid_ = -1;
        return status;
    }

  private:
    pid_t pid_ = -1;
};

}  // namespace pintle
