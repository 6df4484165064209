#include "themes/theme_work.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ThemeWorkTest : testing::Test {
    ThemeWork work;
    std::vector<std::string> begun;
    std::vector<ThemeWork::Turn> turns;

    /// One by one: the end of a turn may begin other work, which adds its own.
    ~ThemeWorkTest() override {
        while (!turns.empty()) {
            const auto last = std::move(turns.back());
            turns.pop_back();
        }
    }

    void begin(const std::string& theme, const std::string& name) {
        work.begin(theme, [this, name](ThemeWork::Turn turn) {
            begun.push_back(name);
            turns.push_back(std::move(turn));
        });
    }
};

TEST_F(ThemeWorkTest, WorkOnOneThemeGoesOneAfterAnother) {
    begin("banana", "a");
    begin("banana", "b");
    begin("banana", "c");
    EXPECT_THAT(begun, ElementsAre("a"));
    turns[0] = nullptr;
    EXPECT_THAT(begun, ElementsAre("a", "b"));
    turns[1] = nullptr;
    turns[2] = nullptr;
    EXPECT_THAT(begun, ElementsAre("a", "b", "c"));
    begin("banana", "d");
    EXPECT_THAT(begun, ElementsAre("a", "b", "c", "d"));
}

TEST_F(ThemeWorkTest, WorkOnDifferentThemesDoesNotWait) {
    begin("banana", "a");
    begin("fuchsia", "b");
    EXPECT_THAT(begun, ElementsAre("a", "b"));
}

TEST_F(ThemeWorkTest, WorkThatGivesItsTurnBackAtOnceLetsTheNextBegin) {
    for (int i = 0; i < 3; ++i)
        work.begin("banana", [&](const ThemeWork::Turn&) { begun.push_back(std::to_string(i)); });
    EXPECT_THAT(begun, ElementsAre("0", "1", "2"));
}

TEST_F(ThemeWorkTest, TheEndOfAllWorkDropsWhatWaitsAndNotifiesOnce) {
    int calls = 0;
    const auto observer = work.ended.observe([&] { ++calls; });
    begin("banana", "a");
    begin("banana", "b");
    const auto permit = work.permit();
    work.endAll();
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(permit->use([] { ADD_FAILURE() << "it was withdrawn"; }));
    turns.clear();
    EXPECT_THAT(begun, ElementsAre("a"));
}

TEST_F(ThemeWorkTest, WorkBegunAfterTheEndOfAllIsNotTouched) {
    begin("banana", "a");
    work.endAll();
    begin("banana", "b");
    EXPECT_THAT(begun, ElementsAre("a", "b"));
    begin("banana", "c");
    turns[0] = nullptr;
    EXPECT_THAT(begun, ElementsAre("a", "b")) << "a turn of the past ends nothing of the present";
    bool ran = false;
    EXPECT_TRUE(work.permit()->use([&] { ran = true; }));
    EXPECT_TRUE(ran);
}

TEST_F(ThemeWorkTest, ATurnMayOutliveTheWork) {
    {
        ThemeWork shortLived;
        shortLived.begin("banana", [this](ThemeWork::Turn turn) { turns.push_back(std::move(turn)); });
        shortLived.begin("banana",
                         [](const ThemeWork::Turn&) { ADD_FAILURE() << "nobody is there any more"; });
    }
    turns.clear();
    EXPECT_THAT(begun, IsEmpty());
}

TEST_F(ThemeWorkTest, TheEndOfAllWorkWaitsForWhatIsWriting) {
    std::promise<void> inside;
    std::promise<void> go;
    std::atomic<bool> written = false;
    std::thread writer([&, permit = work.permit()] {
        permit->use([&] {
            inside.set_value();
            go.get_future().wait();
            written = true;
        });
    });
    inside.get_future().wait();
    const auto observer = work.ended.observe([&] { go.set_value(); });
    work.endAll();
    EXPECT_TRUE(written);
    writer.join();
}

}  // namespace
}  // namespace pintle
