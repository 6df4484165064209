// Starts the badly behaving web server for a test and ends it with the test.
#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace pintle {

class LoopbackServer {
  public:
    /// Serves `root`, over TLS when the two files are given.
    explicit LoopbackServer(const std::filesystem::path& root, const std::string& certificate = {},
                            const std::string& key = {}) {
        int in[2];
        int out[2];
        if (::pipe(in) != 0 || ::pipe(out) != 0) throw std::runtime_error("no pipe");
        std::vector<std::string> words = {PYTHON, LOOPBACK_SERVER, "--root", root.string()};
        if (!certificate.empty()) words.insert(words.end(), {"--certificate", certificate, "--key", key});
        child_ = ::fork();
        if (child_ == 0) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            for (const int fd : {in[0], in[1], out[0], out[1]}) ::close(fd);
            std::vector<char*> arguments;
            for (auto& word : words) arguments.push_back(word.data());
            arguments.push_back(nullptr);
            std::freopen("/dev/null", "w", stderr);
            ::execv(PYTHON, arguments.data());
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        commands_ = ::fdopen(in[1], "w");
        answers_ = ::fdopen(out[0], "r");
        char line[100] = {};
        if (!std::fgets(line, sizeof line, answers_) || std::sscanf(line, "port %d", &port_) != 1)
            throw std::runtime_error("no server");
    }
    ~LoopbackServer() {
        std::fclose(commands_);
        std::fclose(answers_);
        int status = 0;
        ::kill(child_, SIGTERM);
        ::waitpid(child_, &status, 0);
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    void behave(const std::string& name) {
        std::fprintf(commands_, "behave %s\n", name.c_str());
        std::fflush(commands_);
        char answer[100] = {};
        if (!std::fgets(answer, sizeof answer, answers_) || std::string(answer) != "ok " + name + "\n")
            throw std::runtime_error("the server cannot behave " + name);
    }
    int port() const { return port_; }
    std::string address(const std::string& path, const std::string& scheme = "http") const {
        return scheme + "://127.0.0.1:" + std::to_string(port_) + path;
    }

  private:
    pid_t child_ = -1;
    std::FILE* commands_ = nullptr;
    std::FILE* answers_ = nullptr;
    int port_ = 0;
};

}  // namespace pintle
