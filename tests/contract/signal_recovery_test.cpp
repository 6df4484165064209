#include "platform/posix/signal_recovery.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/contract/child_process.h"

namespace pintle {
namespace {

struct Death {
    int status = 0;
    /// What the child reported: "s" when it runs, "r" for each call of the recovery function.
    std::string report;
};

/// Runs the helper to its end; sends `number` once it reports that it runs.
Death death(const std::string& kind, int number = 0) {
    int ends[2];
    if (::pipe(ends) != 0) return {};
    ChildProcess child({"signal", kind, std::to_string(ends[1])});
    ::close(ends[1]);
    Death result;
    char byte = 0;
    while (::read(ends[0], &byte, 1) == 1) {
        result.report += byte;
        if (byte == 's') child.signal(number);
    }
    ::close(ends[0]);
    result.status = child.wait();
    return result;
}

void expectDeathBy(int number, const Death& death, const std::string& report) {
    EXPECT_TRUE(WIFSIGNALED(death.status)) << "status " << death.status;
    EXPECT_EQ(WTERMSIG(death.status), number);
    EXPECT_EQ(death.report, report);
}

TEST(SignalRecovery, AnAbortRecoversOnceAndStillEndsTheProcessByAbort) {
    expectDeathBy(SIGABRT, death("abort"), "r");
}

TEST(SignalRecovery, ASegmentationFaultRecoversOnceAndStillEndsTheProcessByIt) {
    expectDeathBy(SIGSEGV, death("segv"), "r");
    expectDeathBy(SIGSEGV, death("raise-segv"), "r");
}

TEST(SignalRecovery, AStackThatOverflowedRecoversToo) { expectDeathBy(SIGSEGV, death("overflow"), "r"); }

TEST(SignalRecovery, ATerminationRequestEndsAProcessWhoseEventLoopRuns) {
    expectDeathBy(SIGTERM, death("loop", SIGTERM), "sr");
}

TEST(SignalRecovery, WithoutARecoveryFunctionTheSignalStillEndsTheProcess) {
    expectDeathBy(SIGABRT, death("abort-null"), "");
    expectDeathBy(SIGSEGV, death("segv-null"), "");
    expectDeathBy(SIGTERM, death("loop-null", SIGTERM), "s");
}

TEST(SignalRecovery, OtherSignalsAreLeftAlone) { expectDeathBy(SIGINT, death("loop", SIGINT), "s"); }

}  // namespace
}  // namespace pintle
