#include "platform/wayland/output_scales.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "tests/wayland/fake_compositor.h"

namespace pintle::wayland {
namespace {

using ::testing::IsEmpty;

TEST(OutputScales, WithoutACompositorThereAreNone) {
    const TemporaryFolder folder;
    EXPECT_THAT(outputScales((folder.path() / "none").string()), IsEmpty());
}

TEST(OutputScales, WhatIsNoCompositorGivesNone) {
    const TemporaryFolder folder;
    const auto path = folder.path() / "wayland";
    const FakeCompositor nonsense(path, [](int descriptor) {
        FakeCompositor::receive(descriptor, 24);
        FakeCompositor::send(descriptor, std::string(64, '\xFF'));
    });
    EXPECT_THAT(outputScales(path.string()), IsEmpty());
}

TEST(OutputScales, OneThatSaysNothingIsNotWaitedForLong) {
    const TemporaryFolder folder;
    const auto path = folder.path() / "wayland";
    // Until the other side gives up.
    const FakeCompositor silent(path, [](int descriptor) {
        while (!FakeCompositor::receive(descriptor, 1).empty()) continue;
    });
    EXPECT_THAT(outputScales(path.string()), IsEmpty());
}

}  // namespace
}  // namespace pintle::wayland
