// A program that a test starts: silent, and ended with the test however that ends.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace pintle {

class Child {
  public:
    explicit Child(std::vector<std::string> words, int output = -1) {
        std::vector<char*> arguments;
        for (auto& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ != 0) return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, STDIN_FILENO);
        ::dup2(output < 0 ? nothing : output, STDOUT_FILENO);
        ::dup2(nothing, STDERR_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ~Child() { end(SIGKILL); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void signal(int number) const {
        if (pid_ > 0) ::kill(pid_, number);
    }
    void end(int number) {
        if (pid_ <= 0) return;
        ::kill(pid_, number);
        ::kill(pid_, SIGCONT);
        ::waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

  private:
    pid_t pid_ = -1;
};

}  // namespace pintle
