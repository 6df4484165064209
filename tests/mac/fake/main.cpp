// Runs the tests of the macOS backend, and fails each that leaves something behind on the fake desktop.
#include <gtest/gtest.h>

#include "tests/mac/fake/mac_world.h"

namespace {

class CleanDesktop : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo&) override {
        EXPECT_EQ(pintle::mac_fake::leftovers(), "") << "is left behind";
        pintle::mac_fake::resetWorld();
    }
};

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new CleanDesktop);
    return RUN_ALL_TESTS();
}
