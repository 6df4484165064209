#include "platform/x11/overlay/overlay_shape.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace pintle::overlay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One character a pixel: its alpha is 0, 127, 128 or 255 for '.', '-', '+' and '#'.
Bitmap drawing(const std::vector<std::string>& rows) {
    return *Bitmap::create(static_cast<std::int64_t>(rows[0].size()), static_cast<std::int64_t>(rows.size()),
                           [&](auto out) {
                               std::size_t at = 0;
                               for (const auto& row : rows)
                                   for (const char c : row) {
                                       const int alpha = c == '#' ? 255 : c == '+' ? 128 : c == '-' ? 127 : 0;
                                       std::fill_n(out.begin() + static_cast<std::ptrdiff_t>(at), 4,
                                                   static_cast<std::uint8_t>(alpha));
                                       at += 4;
                                   }
                           });
}

TEST(OverlayShape, AFullImageIsOneRectangle) {
    EXPECT_THAT(opaqueShape(drawing({"###", "###"})), ElementsAre(ShapeRectangle{0, 0, 3, 2}));
}

TEST(OverlayShape, HalfOpaquePixelsBelongToIt) {
    EXPECT_THAT(opaqueShape(drawing({".-+#"})), ElementsAre(ShapeRectangle{2, 0, 2, 1}));
}

TEST(OverlayShape, AClearImageHasNoRectangle) { EXPECT_THAT(opaqueShape(drawing({"..", "-."})), IsEmpty()); }

TEST(OverlayShape, RunsThatDifferFromTheRowAboveBeginARectangle) {
    EXPECT_THAT(
        opaqueShape(drawing({"#..#", "##.#", "##..", "...."})),
        ElementsAre(ShapeRectangle{0, 0, 1, 1}, ShapeRectangle{3, 0, 1, 2}, ShapeRectangle{0, 1, 2, 2}));
}

TEST(OverlayShape, ARunUnderAGapDoesNotJoinTheOneAboveIt) {
    EXPECT_THAT(opaqueShape(drawing({"##", "..", "##"})),
                ElementsAre(ShapeRectangle{0, 0, 2, 1}, ShapeRectangle{0, 2, 2, 1}));
}

}  // namespace
}  // namespace pintle::overlay
