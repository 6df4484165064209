#include "platform/freedesktop/system_log.h"

#include <fmt/format.h>
#include <signal.h>
#include <syslog.h>
#include <time.h>

#include <cstdio>
#include <mutex>

namespace pintle {
namespace {

/// Keeps SIGPIPE from this thread for one write, and takes back the one that the write raised.
class NoBrokenPipe {
  public:
    NoBrokenPipe() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~NoBrokenPipe() {
        constexpr timespec kNow{0, 0};
        if (!wasPending_) sigtimedwait(&pipe_, nullptr, &kNow);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoBrokenPipe(const NoBrokenPipe&) = delete;
    NoBrokenPipe& operator=(const NoBrokenPipe&) = delete;

  private:
    sigset_t pipe_ = {};
    sigset_t before_ = {};
    bool wasPending_ = false;
};

class SystemLog : public Log {
  public:
    SystemLog() { ::openlog("pintle", LOG_PID, LOG_USER); }
    ~SystemLog() override { ::closelog(); }

    void system(std::string_view line) override {
        const std::string text = oneLine(line);
        write(stderr, text);
        ::syslog(LOG_USER | LOG_NOTICE, "%s", text.c_str());
    }
    void standardOutput(std::string_view line) override { write(stdout, oneLine(line)); }

  private:
    void write(std::FILE* stream, const std::string& text) {
        const std::string whole = text + "\n";
        const std::lock_guard lock(mutex_);
        const NoBrokenPipe guard;
        std::fwrite(whole.data(), 1, whole.size(), stream);
        std::fflush(stream);
        std::clearerr(stream);
    }

    std::mutex mutex_;
};

}  // namespace

std::string oneLine(std::string_view line) {
    std::string text;
    text.reserve(line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto c = static_cast<unsigned char>(line[i]);
        const auto next = i + 1 < line.size() ? static_cast<unsigned char>(line[i + 1]) : 0U;
        if (c == '\n') {
            text += "\\n";
        } else if (c == '\t') {
            text += "\\t";
        } else if (c < 0x20 || c == 0x7f) {
            text += fmt::format("\\x{:02x}", c);
        } else if (c == 0xc2 && next >= 0x80 && next < 0xa0) {
            // The second set of control characters, which terminals obey as well.
            text += fmt::format("\\x{:02x}", next);
            ++i;
        } else {
            text += line[i];
        }
    }
    return text;
}

std::unique_ptr<Log> makeSystemLog() { return std::make_unique<SystemLog>(); }

}  // namespace pintle
