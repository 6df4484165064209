#include "cursor/pixel_pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

namespace pintle {
namespace {

TEST(PixelPoolTest, RunsOfAllLengthsAreApartAndCanBeFilled) {
    PixelPool pool;
    std::mt19937 random(1);
    std::vector<std::pair<std::shared_ptr<std::uint32_t>, std::size_t>> runs;
    for (std::uint32_t i = 0; i < 300; ++i) {
        const std::size_t count = i % 50 == 0 ? 300'000 : random() % 5000;
        runs.emplace_back(pool.allocate(count), count);
        ASSERT_TRUE(runs.back().first);
        std::fill_n(runs.back().first.get(), count, i);
    }
    for (std::uint32_t i = 0; i < runs.size(); ++i) {
        const auto* first = runs[i].first.get();
        ASSERT_TRUE(std::all_of(first, first + runs[i].second, [&](auto value) { return value == i; }));
    }
}

TEST(PixelPoolTest, RunsOutliveThePoolInAnyOrder) {
    std::vector<std::shared_ptr<std::uint32_t>> runs;
    {
        PixelPool pool;
        for (int i = 0; i < 100; ++i) runs.push_back(pool.allocate(10'000));
    }
    std::shuffle(runs.begin(), runs.end(), std::mt19937(2));
    while (!runs.empty()) {
        *runs.back() = 1;
        runs.pop_back();
    }
}

TEST(PixelPoolTest, HandsOutNoMoreThanItsLimit) {
    PixelPool pool(4000);
    EXPECT_TRUE(pool.allocate(600));
    EXPECT_FALSE(pool.allocate(401));
    EXPECT_TRUE(pool.allocate(400));
    EXPECT_FALSE(pool.allocate(1));
    EXPECT_FALSE(pool.allocate(SIZE_MAX));
}

}  // namespace
}  // namespace pintle
