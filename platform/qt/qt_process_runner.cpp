#include "platform/qt/qt_process_runner.h"

#include <sys/resource.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <unistd.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <csignal>
#include <utility>

namespace pintle {
namespace {

constexpr int kSigkillWaitMs = 5000;

/// Runs between fork and exec: only what is safe there.
void prepareChild(pid_t parent, std::optional<std::uint64_t> largestFile,
                  std::optional<std::chrono::seconds> processorTime) {
#ifdef __linux__
    // An archiver that outlives us would go on filling a folder that the next start removes.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(127);
#else
    (void)parent;
#endif
    rlimit limit = {};
    if (processorTime) {
        const auto most = static_cast<rlim_t>(processorTime->count());
        if (::getrlimit(RLIMIT_CPU, &limit) == 0) {
            if (limit.rlim_cur > most) limit.rlim_cur = most;
            // A child that ignores the signal is killed.
            if (limit.rlim_max > most + 1) limit.rlim_max = most + 1;
            ::setrlimit(RLIMIT_CPU, &limit);
        }
        ::signal(SIGXCPU, SIG_DFL);
        // That signal would leave a core file.
        const rlimit none = {};
        ::setrlimit(RLIMIT_CORE, &none);
    }
    if (!largestFile) return;
    const rlim_t most = static_cast<rlim_t>(*largestFile);
    if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur > most) {
        limit.rlim_cur = most;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    // So that the child reads an error it can report instead of dying without a word.
    ::signal(SIGXFSZ, SIG_IGN);
}

class QtChildProcess : public ChildProcess {
  public:
    QtChildProcess(MainQueue& queue, ProcessRequest request, const ProcessSubstitute* substitute,
                   const std::vector<std::string>& withheld, ProcessRunner::Completion completion)
        : queue_(queue), answer_(std::make_shared<Answer>()) {
        answer_->completion = std::move(completion);
        std::string missing;
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const auto& name : withheld) environment.remove(QString::fromStdString(name));
        if (substitute) {
            request.executable = substitute->executable;
            request.arguments.insert(request.arguments.begin(), substitute->arguments.begin(),
                                     substitute->arguments.end());
            missing = substitute->missing;
            if (!substitute->environment.empty()) environment.clear();
            for (const auto& [name, value] : substitute->environment)
                environment.insert(QString::fromStdString(name), QString::fromStdString(value));
        }
        process_.setProcessEnvironment(environment);
        process_.setProgram(QString::fromStdString(request.executable.string()));
        QStringList arguments;
        for (const auto& argument : request.arguments) arguments.append(QString::fromStdString(argument));
        process_.setArguments(arguments);
        process_.setStandardInputFile(QProcess::nullDevice());
        process_.setStandardOutputFile(QProcess::nullDevice());
        process_.setStandardErrorFile(QString::fromStdString(request.standardError.string()),
                                      QIODevice::Append);
        process_.setChildProcessModifier(
            [parent = ::getpid(), largest = request.largestFile, time = request.processorTime] {
                prepareChild(parent, largest, time);
            });

        QObject::connect(&process_, &QProcess::finished, &process_,
                         [this](int code, QProcess::ExitStatus) { answer(code); });
        QObject::connect(
            &process_, &QProcess::errorOccurred, &process_,
            [this, missing, executable = request.executable](QProcess::ProcessError error) {
                if (error != QProcess::FailedToStart) return;
                const bool there = ::access(executable.c_str(), F_OK) == 0;
                answer(Error{"Pintle", -1,
                             !there && !missing.empty() ? missing : process_.errorString().toStdString()});
            });
        process_.start(QIODevice::NotOpen);
    }
    ~QtChildProcess() override {
        answer_->completion = nullptr;
        process_.disconnect();
        if (process_.state() == QProcess::NotRunning) return;
        process_.kill();
        process_.waitForFinished(kSigkillWaitMs);
    }
    void kill() override { process_.kill(); }

  private:
    struct Answer {
        ProcessRunner::Completion completion;
    };
    void answer(Result<int> status) {
        queue_.post([answer = answer_, status = std::move(status)] {
            // Taken out first: the completion may destroy this object.
            if (const auto completion = std::exchange(answer->completion, nullptr)) completion(status);
        });
    }

    MainQueue& queue_;
    std::shared_ptr<Answer> answer_;
    QProcess process_;
};

class QtProcessRunner : public ProcessRunner {
  public:
    QtProcessRunner(MainQueue& queue, ProcessSubstitutes substitutes, std::vector<std::string> withheld)
        : queue_(queue), substitutes_(std::move(substitutes)), withheld_(std::move(withheld)) {}

    std::unique_ptr<ChildProcess> start(ProcessRequest request, Completion completion) override {
        const auto found = substitutes_.find(request.executable);
        const auto* substitute = found == substitutes_.end() ? nullptr : &found->second;
        return std::make_unique<QtChildProcess>(queue_, std::move(request), substitute, withheld_,
                                                std::move(completion));
    }

  private:
    MainQueue& queue_;
    const ProcessSubstitutes substitutes_;
    const std::vector<std::string> withheld_;
};

}  // namespace

std::unique_ptr<ProcessRunner> makeQtProcessRunner(MainQueue& queue, ProcessSubstitutes substitutes,
                                                   std::vector<std::string> withheld) {
    return std::make_unique<QtProcessRunner>(queue, std::move(substitutes), std::move(withheld));
}

}  // namespace pintle
