// The slider together with the pipeline, in random order of the main queue and the background: what reaches
// the window server while somebody drags, and after.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "app/popover_model.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

constexpr auto kArrow = "com.apple.coregraphics.Arrow";
constexpr std::uint64_t kSeeds = 200;

enum class Cache { cold, warm };

struct Drag {
    ModelWorld world;
    std::unique_ptr<PopoverModel> model;
    std::mt19937_64 random;

    Drag(std::uint64_t seed, Cache cache) : random(seed) {
        world.writeTheme(ModelWorld::ice, 0x102030);
        world.start();
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log});
        world.applyNow(ModelWorld::ice);
        if (cache == Cache::cold) world.scheduler.advance(61s);
        world.log.systemLines.clear();
        world.windowServer.registrations.clear();
        world.scheduler.shuffle(seed);
    }
    std::uint64_t upTo(std::uint64_t most) {
        return std::uniform_int_distribution<std::uint64_t>(0, most)(random);
    }
    /// Moves the slider one step; the program gets on with something in between, or with nothing.
    void step(double value) {
        model->sliderChanged(value);
        for (auto left = upTo(12); left > 0; --left)
            if (!world.scheduler.step()) break;
        if (upTo(2) == 0) world.scheduler.advance(std::chrono::milliseconds(upTo(40)));
    }
};

/// The number that a line ends with or that follows `before`.
std::optional<double> numberAfter(const std::string& line, const std::string& before) {
    const auto at = line.find(before);
    if (at == std::string::npos) return std::nullopt;
    return std::strtod(line.c_str() + at + before.size(), nullptr);
}

/// The scales of the sets that were applied, in order. Fails when one was applied that was not the newest
/// request at that time.
std::vector<double> appliedSets(const std::vector<std::string>& lines) {
    std::vector<double> sets;
    double newest = 0;
    for (const auto& line : lines) {
        if (const auto asked = numberAfter(line, "Applying scale: ")) newest = *asked;
        if (const auto applied = numberAfter(line, "pre-loaded cursors at scale ")) {
            EXPECT_EQ(*applied, newest) << "a request that was overtaken has reached the screen";
            sets.push_back(*applied);
        }
    }
    return sets;
}

struct PopoverSliderTest : testing::TestWithParam<Cache> {};

TEST_P(PopoverSliderTest, OfADragTheLastValueWinsAndNoOlderOneFollowsANewerOne) {
    std::size_t fewest = SIZE_MAX;
    std::size_t most = 0;
    std::size_t total = 0;
    for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
        Drag drag(seed, GetParam());
        for (int twentieths = 21; twentieths <= 30; ++twentieths) drag.step(twentieths / 20.0);
        drag.world.scheduler.advance(1s);
        const auto sets = appliedSets(drag.world.log.systemLines);
        ASSERT_FALSE(sets.empty()) << "seed " << seed;
        EXPECT_EQ(sets.back(), 1.5) << "seed " << seed;
        EXPECT_TRUE(std::is_sorted(sets.begin(), sets.end())) << "seed " << seed;
        EXPECT_EQ(drag.world.applier.currentScale(), 1.5) << "seed " << seed;
        EXPECT_EQ(drag.world.windowServer.registered.at(kArrow).size, (Size{72, 72})) << "seed " << seed;

        // One second after the last step nothing moves any more.
        drag.world.windowServer.registrations.clear();
        drag.world.scheduler.advance(30s);
        EXPECT_THAT(drag.world.windowServer.registrations, IsEmpty()) << "seed " << seed;
        if (testing::Test::HasFailure()) return;

        fewest = std::min(fewest, sets.size());
        most = std::max(most, sets.size());
        total += sets.size();
    }
    std::printf("sets applied by a drag of 10 steps: %zu to %zu, %.1f on average\n", fewest, most,
                static_cast<double>(total) / kSeeds);
    // Each step asks once and the rest at the end once; a request applies two sets when it reads the files.
    EXPECT_LE(most, 22u);
}

TEST_P(PopoverSliderTest, ADragForthAndBackEndsWhereTheSliderWasLeft) {
    for (std::uint64_t seed = 1; seed <= kSeeds / 4; ++seed) {
        Drag drag(seed, GetParam());
        for (int twentieths = 21; twentieths <= 30; ++twentieths) drag.step(twentieths / 20.0);
        for (int twentieths = 29; twentieths >= 15; --twentieths) drag.step(twentieths / 20.0);
        drag.world.scheduler.advance(1s);
        EXPECT_EQ(appliedSets(drag.world.log.systemLines).back(), 0.75) << "seed " << seed;
        EXPECT_EQ(drag.world.applier.currentScale(), 0.75) << "seed " << seed;
        EXPECT_EQ(drag.world.windowServer.registered.at(kArrow).size, (Size{18, 18})) << "seed " << seed;
        if (testing::Test::HasFailure()) return;
    }
}

TEST_P(PopoverSliderTest, ADragThatEndsWithSystemDefaultLeavesTheDesktopsCursors) {
    for (std::uint64_t seed = 1; seed <= kSeeds / 4; ++seed) {
        Drag drag(seed, GetParam());
        for (int twentieths = 21; twentieths <= 30; ++twentieths) drag.step(twentieths / 20.0);
        drag.model->resetToDefault();
        drag.world.scheduler.advance(10s);
        EXPECT_THAT(drag.world.windowServer.registered, IsEmpty()) << "seed " << seed;
        if (testing::Test::HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(Cache, PopoverSliderTest, testing::Values(Cache::cold, Cache::warm),
                         [](const auto& drag) { return drag.param == Cache::cold ? "Cold" : "Warm"; });

}  // namespace
}  // namespace pintle
