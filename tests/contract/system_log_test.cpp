#include "platform/freedesktop/system_log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>
#include <thread>
#include <vector>

namespace pintle {
namespace {

TEST(SystemLog, ALineStaysOneLineWhateverIsInIt) {
    EXPECT_EQ(oneLine("plain"), "plain");
    EXPECT_EQ(oneLine("a\nb\r\tc"), "a\\nb\\x0d\\tc");
    EXPECT_EQ(oneLine(std::string_view("\0\x1b[0m\x7f", 6)), "\\x00\\x1b[0m\\x7f");
    EXPECT_EQ(oneLine("\xc2\x9b\x31m"), "\\x9b1m");
    EXPECT_EQ(oneLine("f\xc3\xbcr %s \\n 100 %"), "f\xc3\xbcr %s \\n 100 %");
}

TEST(SystemLog, SystemLinesGoToStandardErrorAndOutputLinesToStandardOutput) {
    const auto log = makeSystemLog();
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    log->system("[Test] of the log: 100 %s\nsecond");
    log->standardOutput("output");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "output\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[Test] of the log: 100 %s\\nsecond\n");
}

TEST(SystemLog, LinesOfManyThreadsStayWhole) {
    const auto log = makeSystemLog();
    testing::internal::CaptureStdout();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&log, t] {
            for (int i = 0; i < 100; ++i) log->standardOutput(std::string(200, static_cast<char>('a' + t)));
        });
    for (auto& thread : threads) thread.join();
    std::istringstream lines(testing::internal::GetCapturedStdout());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_EQ(line, std::string(200, line.empty() ? '?' : line[0]));
    EXPECT_EQ(count, 400);
}

TEST(SystemLog, AReaderThatWentAwayDoesNotEndTheProcess) {
    const auto log = makeSystemLog();
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int kept = ::dup(STDOUT_FILENO);
    std::fflush(stdout);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
    log->standardOutput("nobody reads this");
    ::dup2(kept, STDOUT_FILENO);
    ::close(kept);
    testing::internal::CaptureStdout();
    log->standardOutput("somebody reads this");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "somebody reads this\n");
}

}  // namespace
}  // namespace pintle
