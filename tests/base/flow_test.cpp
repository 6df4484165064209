#include "base/flow.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pintle {
namespace {

using Lines = std::vector<std::string>;

/// Says when what a flow holds is released.
struct Held {
    explicit Held(Lines& given) : lines(given) {}
    ~Held() { lines.emplace_back("released"); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Lines& lines;
};

struct FlowTest : testing::Test {
    Flow addTwo() {
        const Held held(lines);
        lines.emplace_back("begun");
        Answer<int> one;
        first = one.resolver();
        const int sum = co_await one;
        lines.push_back("first " + std::to_string(sum));
        Answer<int> two;
        second = two.resolver();
        lines.push_back("sum " + std::to_string(sum + co_await two));
    }
    Flow callingOut(std::function<void()> outside) {
        const Held held(lines);
        Answer<int> one;
        first = one.resolver();
        co_await one;
        outside();
        lines.emplace_back("still running");
        Answer<int> never;
        co_await never;
        lines.emplace_back("never reached");
    }
    Flow atOnce() {
        Answer<int> known([](auto resolve) { resolve(7); });
        lines.push_back("known " + std::to_string(co_await known));
    }

    Lines lines;
    std::function<void(int)> first;
    std::function<void(int)> second;
};

TEST_F(FlowTest, NothingRunsBeforeTheStart) {
    const auto flow = addTwo();
    EXPECT_EQ(lines, Lines{});
}

TEST_F(FlowTest, ItRunsFromAnswerToAnswerAndSaysOnceThatItHasEnded) {
    auto flow = addTwo();
    flow.start([this] { lines.emplace_back("ended"); });
    EXPECT_EQ(lines, Lines{"begun"});
    first(1);
    second(2);
    EXPECT_EQ(lines, (Lines{"begun", "first 1", "sum 3", "released", "ended"}));
}

TEST_F(FlowTest, AnAnswerThatIsThereAlreadyIsNotWaitedFor) {
    auto flow = atOnce();
    flow.start([this] { lines.emplace_back("ended"); });
    EXPECT_EQ(lines, (Lines{"known 7", "ended"}));
}

TEST_F(FlowTest, ItsOwnerMayDestroyItAsSoonAsItHasEnded) {
    std::list<Flow> flows;
    const auto entry = flows.insert(flows.end(), addTwo());
    entry->start([&flows, entry, this] {
        flows.erase(entry);
        lines.emplace_back("erased");
    });
    first(1);
    second(2);
    EXPECT_TRUE(flows.empty());
    EXPECT_EQ(lines.back(), "erased");
}

TEST_F(FlowTest, DestroyedWhileItWaitsItReleasesWhatItHoldsAndNeverSaysThatItHasEnded) {
    std::optional<Flow> flow = addTwo();
    flow->start([this] { lines.emplace_back("ended"); });
    flow.reset();
    EXPECT_EQ(lines, (Lines{"begun", "released"}));
}

TEST_F(FlowTest, AnAnswerThatComesAfterItsEndIsDropped) {
    std::optional<Flow> flow = addTwo();
    flow->start([this] { lines.emplace_back("ended"); });
    flow.reset();
    first(1);
    EXPECT_EQ(lines, (Lines{"begun", "released"}));
}

TEST_F(FlowTest, DestroyedByWhatItCallsItRunsToItsNextWaitAndEndsThere) {
    std::optional<Flow> flow;
    flow.emplace(callingOut([&flow] { flow.reset(); }));
    flow->start([this] { lines.emplace_back("ended"); });
    first(1);
    EXPECT_EQ(lines, (Lines{"still running", "released"}));
}

TEST_F(FlowTest, OneThatWasNeverStartedReleasesNothingAndEndsQuietly) {
    std::optional<Flow> flow = addTwo();
    flow.reset();
    EXPECT_EQ(lines, Lines{});
}

}  // namespace
}  // namespace pintle
