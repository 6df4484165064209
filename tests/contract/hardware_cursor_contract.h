// What every backend of this process's cursors does. Include it once, after naming the backends to try as the
// type list `HardwareCursors`.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/hardware_cursor.h"

namespace pintle {
namespace {

template <typename Backend>
class HardwareCursorContract : public ::testing::Test {
  protected:
    static Bitmap image() {
        return *Bitmap::create(2, 2,
                               [](std::span<std::uint8_t> out) { std::fill(out.begin(), out.end(), 9); });
    }
    std::unique_ptr<HardwareCursor> cursors_ = Backend::make();
};
TYPED_TEST_SUITE(HardwareCursorContract, HardwareCursors);

TYPED_TEST(HardwareCursorContract, CursorsOfEqualImagesAreDifferentAndACopyIsTheSame) {
    const auto first = this->cursors_->makeCursor(this->image(), {1, 1});
    const auto second = this->cursors_->makeCursor(this->image(), {1, 1});
    const auto copy = first;
    EXPECT_NE(first, second);
    EXPECT_EQ(first, copy);
}

TYPED_TEST(HardwareCursorContract, EachStandardCursorIsOneObjectOfItsOwn) {
    for (const auto one : kStandardCursors)
        for (const auto other : kStandardCursors)
            EXPECT_EQ(this->cursors_->standardCursor(one) == this->cursors_->standardCursor(other),
                      one == other);
}

TYPED_TEST(HardwareCursorContract, AfterTheExchangeSetGoesThroughTheReplacement) {
    std::vector<DesktopCursor> replaced;
    const auto cursor = this->cursors_->makeCursor(this->image(), {0, 0});
    this->cursors_->set(cursor);
    ASSERT_TRUE(this->cursors_->exchangeSet([&](const DesktopCursor& which) { replaced.push_back(which); }));
    EXPECT_TRUE(replaced.empty());
    this->cursors_->set(cursor);
    EXPECT_THAT(replaced, ::testing::ElementsAre(cursor));
}

TYPED_TEST(HardwareCursorContract, TheDesktopsOwnImplementationNeverReachesTheReplacement) {
    int calls = 0;
    ASSERT_TRUE(this->cursors_->exchangeSet([&](const DesktopCursor& which) {
        ++calls;
        // As a replacement does for what it passes through.
        this->cursors_->setOriginal(which);
    }));
    this->cursors_->setOriginal(this->cursors_->standardCursor(StandardCursor::arrow));
    EXPECT_EQ(calls, 0);
    this->cursors_->set(this->cursors_->standardCursor(StandardCursor::arrow));
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace pintle
