// What the tests of the macOS backend share.
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <cstdlib>
#include <functional>

#include "tests/mac/fake/mac_world.h"

namespace pintle {

/// A bitmap whose pixels all differ, from `seed`.
inline Bitmap picture(int width, int height, int seed = 0) {
    return *Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(i * 7 + static_cast<std::size_t>(seed));
    });
}

/// Runs `scenario` once without a failure, then once for each call in it that can fail, with that one
/// failing. Whatever fails, nothing may be left behind. The scenario must make all its objects itself.
inline void failEachCallByItself(const std::function<void()>& scenario) {
    mac_fake::resetWorld();
    scenario();
    const int calls = mac_fake::world().fallibleCalls;
    ASSERT_EQ(mac_fake::leftovers(), "");
    ASSERT_GT(calls, 0);
    for (int call = 1; call <= calls; ++call) {
        mac_fake::resetWorld();
        mac_fake::world().failAt = call;
        scenario();
        EXPECT_EQ(mac_fake::leftovers(), "") << "when call " << call << " fails";
    }
    mac_fake::resetWorld();
}

/// The end of a scenario in a process of its own.
[[noreturn]] inline void endScenario() {
    EXPECT_EQ(mac_fake::leftovers(), "");
    std::_Exit(::testing::Test::HasFailure() ? 1 : 0);
}

}  // namespace pintle

/// What is looked up stays so for the life of a process, therefore these scenarios start in one of their own.
#define IN_A_NEW_PROCESS(...)                           \
    do {                                                \
        GTEST_FLAG_SET(death_test_style, "threadsafe"); \
        EXPECT_EXIT(                                    \
            {                                           \
                (__VA_ARGS__)();                        \
                ::pintle::endScenario();                \
            },                                          \
            ::testing::ExitedWithCode(0), "");          \
    } while (false)
