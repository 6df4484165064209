#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/root/desktop_backend.h"

namespace pintle {
namespace {

using testing::ElementsAre;

struct Hints : ProcessHints {
    explicit Hints(std::vector<std::string>& names) : ended(names) {}
    ~Hints() override { ended.emplace_back("hints"); }
    Subscription beginActivity(const std::string&) override { return {}; }
    void releaseFreeMemory() override {}
    std::vector<std::string>& ended;
};

struct Threads : BackgroundTasks {
    explicit Threads(std::vector<std::string>& names) : ended(names) {}
    ~Threads() override { ended.emplace_back("threads"); }
    void run(Priority, std::function<void()>) override {}
    std::vector<std::string>& ended;
};

TEST(EarlyBackend, TheThreadsEndBeforeWhatTheirWorkStillUses) {
    std::vector<std::string> ended;
    {
        EarlyBackend early;
        early.background = std::make_unique<Threads>(ended);
        early.hints = std::make_unique<Hints>(ended);
    }
    EXPECT_THAT(ended, ElementsAre("threads", "hints"));
}

}  // namespace
}  // namespace pintle
