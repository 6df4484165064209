// The real runner of child processes.
#include "platform/qt/qt_process_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <iterator>

#include "platform/posix/archiver.h"
#include "tests/contract/queue_worlds.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

struct ProcessRunnerTest : testing::Test {
    TemporaryFolder folder;
    QtWorld world;
    fs::path errors = folder.path() / "stderr.txt";
    std::unique_ptr<ProcessRunner> runner = makeQtProcessRunner(world.queue(), {});
    std::unique_ptr<ChildProcess> child;
    std::optional<Result<int>> ended;

    ProcessRunnerTest() { writeFile(errors, ""); }
    void start(ProcessRequest request) {
        request.standardError = errors;
        ended.reset();
        child = runner->start(std::move(request), [this](Result<int> status) {
            EXPECT_TRUE(world.queue().isMain());
            ended = std::move(status);
        });
        EXPECT_FALSE(ended);
    }
    void shell(const std::string& script, std::optional<std::uint64_t> largest = std::nullopt) {
        start({"/bin/sh", {"-c", script}, {}, largest});
    }
    int status() {
        EXPECT_TRUE(world.runUntil([&] { return ended.has_value(); }));
        return *ended ? ended->value() : -1;
    }
    std::string errorText() const {
        std::ifstream file(errors);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(ProcessRunnerTest, AnswersTheExitStatusAndCollectsTheErrorOutput) {
    shell("echo out; echo words >&2; cat; exit 7");
    EXPECT_EQ(status(), 7);
    EXPECT_EQ(errorText(), "words\n");
}

TEST_F(ProcessRunnerTest, AnswersTheSignalThatEndedTheChild) {
    shell("kill -TERM $$");
    EXPECT_EQ(status(), SIGTERM);
}

TEST_F(ProcessRunnerTest, AKilledChildIsAnsweredToo) {
    shell("sleep 100");
    child->kill();
    EXPECT_EQ(status(), SIGKILL);
}

TEST_F(ProcessRunnerTest, ADestroyedChildIsDeadAndNotAnswered) {
    const auto pidFile = folder.path() / "pid";
    shell("echo $$ > " + pidFile.string() + "; exec sleep 100");
    EXPECT_TRUE(world.runUntil([&] { return fs::exists(pidFile) && fs::file_size(pidFile) > 1; }));
    int pid = 0;
    std::ifstream(pidFile) >> pid;
    child.reset();
    EXPECT_EQ(::kill(pid, 0), -1);
    world.runUntil([] { return true; });
    EXPECT_FALSE(ended);
}

TEST_F(ProcessRunnerTest, AChildMayBeDestroyedInsideItsCompletion) {
    bool answered = false;
    child = runner->start({"/bin/true", {}, errors, std::nullopt}, [&](const Result<int>& result) {
        EXPECT_TRUE(result);
        child.reset();
        answered = true;
    });
    EXPECT_TRUE(world.runUntil([&] { return answered; }));
}

TEST_F(ProcessRunnerTest, WhatIsNotThereIsAnError) {
    start({"/not/there", {}, {}, std::nullopt});
    EXPECT_EQ(status(), -1);
    EXPECT_NE(ended->error().description, "");
}

TEST_F(ProcessRunnerTest, AMissingSubstituteIsAnErrorWithItsOwnWords) {
    ProcessSubstitutes substitutes = limitedArchiver();
    substitutes["/usr/bin/tar"].executable = "/not/there";
    runner = makeQtProcessRunner(world.queue(), substitutes);
    start({"/usr/bin/tar", {}, {}, std::nullopt});
    EXPECT_EQ(status(), -1);
    EXPECT_THAT(ended->error().description, HasSubstr("pintle-unpack is missing"));
}

TEST_F(ProcessRunnerTest, ASubstituteRunsWithItsArgumentsAndItsEnvironmentAlone) {
    ProcessSubstitutes substitutes;
    substitutes["/usr/bin/tar"] = {
        "/bin/sh", {"-c", "echo \"$WORD $0 $1 ${HOME-bare}\" >&2"}, {{"WORD", "hello"}}, ""};
    runner = makeQtProcessRunner(world.queue(), substitutes);
    start({"/usr/bin/tar", {"-xf", "archive"}, {}, std::nullopt});
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(errorText(), "hello -xf archive bare\n");
}

TEST_F(ProcessRunnerTest, AFileOfTheChildGrowsNoFurtherThanAllowed) {
    const auto file = folder.path() / "large";
    shell("head -c 100000 /dev/zero > " + file.string(), 5000);
    EXPECT_NE(status(), 0);
    EXPECT_EQ(fs::file_size(file), 5000u);
    EXPECT_NE(errorText(), "") << "it could still say why";
}

TEST_F(ProcessRunnerTest, AChildComputesNoLongerThanAllowed) {
    start({"/bin/sh", {"-c", "while :; do :; done"}, {}, std::nullopt, std::chrono::seconds(1)});
    EXPECT_EQ(status(), SIGXCPU);
    start(
        {"/bin/sh", {"-c", "trap '' XCPU; while :; do :; done"}, {}, std::nullopt, std::chrono::seconds(1)});
    EXPECT_EQ(status(), SIGKILL);
}

TEST_F(ProcessRunnerTest, TheChildDiesWithTheProgram) {
    // Whoever opens a pipe waits for the other end.
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto pidFile = folder.path() / "pid";
    const pid_t program = ::fork();
    if (program == 0) {
        // A fresh event loop is not needed: the child is started inside start().
        shell("echo $$ > " + pipe.string() + "; exec sleep 100");
        writeFile(pidFile, contentOf(pipe));
        ::kill(::getpid(), SIGKILL);
    }
    int state = 0;
    ASSERT_EQ(::waitpid(program, &state, 0), program);
    int pid = 0;
    std::ifstream(pidFile) >> pid;
    ASSERT_GT(pid, 1);
    EXPECT_TRUE(world.runUntil([&] {
        std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
        std::string text{std::istreambuf_iterator<char>(stat), {}};
        return text.empty() || text.find(") Z") != std::string::npos;
    }));
}

}  // namespace
}  // namespace pintle
