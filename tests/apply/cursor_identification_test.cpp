#include "apply/cursor_identification.h"

#include <gtest/gtest.h>

namespace pintle {
namespace {

AlphaSignature mask(std::uint8_t value) {
    AlphaSignature signature;
    signature.fill(value);
    return signature;
}

/// A mask at the given distance from the all-`base` mask.
AlphaSignature maskAt(std::uint8_t base, int distance) {
    AlphaSignature signature = mask(base);
    for (auto& byte : signature) {
        const int step = std::min(distance, 255 - int{base});
        byte = static_cast<std::uint8_t>(byte + step);
        distance -= step;
    }
    return signature;
}

struct Question {
    std::vector<KnownCursor> known;
    CurrentCursorFacts current{true, {}, {2, 2}, {32, 32}};
    std::string previous = "grab";
    AlphaSignature signature = mask(200);
    std::optional<std::string> under;
    int signaturesTaken = 0;
    int accessibilityAsked = 0;

    std::string answer() {
        return identifyByDirectComparison(
            known, current, previous,
            [this] {
                ++signaturesTaken;
                return signature;
            },
            [this] {
                ++accessibilityAsked;
                return under;
            });
    }
};

TEST(CursorIdentification, ACursorThatIsByteIdenticalToTheIBeamIsXtermWithoutAnyShapeComparison) {
    const std::vector<std::uint8_t> bytes = {1, 2, 3};
    Question q;
    q.known = {{"left_ptr", {9}, mask(200)}, {"xterm", bytes, mask(1)}};
    q.current.encoded = bytes;
    EXPECT_EQ(q.answer(), "xterm");
    EXPECT_EQ(q.signaturesTaken, 0);
}

TEST(CursorIdentification, WithoutACurrentCursorTheAnswerIsTheArrow) {
    Question q;
    q.current = {};
    EXPECT_EQ(q.answer(), "left_ptr");
}

TEST(CursorIdentification, AnEncodingThatIsKnownAnswersEvenWithoutACurrentCursor) {
    const std::vector<std::uint8_t> encoding = {7};
    Question q;
    q.known = {{"xterm", encoding, mask(0)}};
    q.current.present = false;
    q.current.encoded = encoding;
    EXPECT_EQ(q.answer(), "xterm");
}

TEST(CursorIdentification, AnImageWhoseMaskIsEmptyKeepsThePreviousName) {
    Question q;
    q.known = {{"left_ptr", {9}, mask(0)}};
    q.signature = mask(0);
    EXPECT_EQ(q.answer(), "grab");
    EXPECT_EQ(q.accessibilityAsked, 0);
}

TEST(CursorIdentification, TheNearestKnownShapeBelowTheLimitAnswers) {
    Question q;
    q.signature = mask(10);
    q.known = {{"far", {}, maskAt(10, 1999)}, {"near", {}, maskAt(10, 7)}};
    q.current.encoded = q.known[0].encoded;
    const std::vector<std::uint8_t> other = {5};
    q.current.encoded = other;
    EXPECT_EQ(q.answer(), "near");
}

TEST(CursorIdentification, AtTwoEqualDistancesTheFirstShapeWins) {
    const std::vector<KnownCursor> known = {{"first", {1}, maskAt(10, 100)},
                                            {"second", {2}, maskAt(10, 100)}};
    EXPECT_EQ(nameByShape(known, mask(10)), "first");
}

TEST(CursorIdentification, ADistanceOf1999IsAMatchAndOneOf2000IsNot) {
    EXPECT_TRUE(nameByShape(std::vector<KnownCursor>{{"a", {1}, maskAt(0, 1999)}}, mask(0)));
    EXPECT_FALSE(nameByShape(std::vector<KnownCursor>{{"a", {1}, maskAt(0, 2000)}}, mask(0)));
}

TEST(CursorIdentification, AnUnknownShapeOverATextFieldIsXterm) {
    const std::vector<std::uint8_t> other = {5};
    Question q;
    q.current.encoded = other;
    q.under = nameForAccessibilityRole("AXTextField");
    EXPECT_EQ(q.answer(), "xterm");
}

TEST(CursorIdentification, AnUnknownShapeOverNothingKnownFallsThroughToGeometry) {
    const std::vector<std::uint8_t> other = {5};
    Question q;
    q.current.encoded = other;
    q.current.hotspot = {8, 16};
    q.current.size = {16, 32};
    EXPECT_EQ(q.answer(), "xterm");
    EXPECT_EQ(q.accessibilityAsked, 1);
}

TEST(CursorIdentification, RolesOfTextAndLinksHaveNamesAndOthersHaveNone) {
    for (const char* role : {"AXTextField", "AXTextArea", "AXSearchField", "AXComboBox"})
        EXPECT_EQ(nameForAccessibilityRole(role), "xterm") << role;
    EXPECT_EQ(nameForAccessibilityRole("AXLink"), "pointer");
    EXPECT_FALSE(nameForAccessibilityRole("AXButton"));
    EXPECT_FALSE(nameForAccessibilityRole("axlink"));
}

struct GeometryRow {
    Point hotspot;
    Size size;
    const char* name;
};

TEST(CursorIdentification, GeometryFollowsItsTable) {
    const GeometryRow rows[] = {
        {{2, 2}, {32, 32}, "left_ptr"},
        {{8, 16}, {16, 32}, "xterm"},
        {{12, 4}, {32, 32}, "pointer"},
        {{16, 16}, {32, 32}, "size_hor"},
        {{12, 16}, {24, 32}, "size_ver"},
        // No height: by the width alone.
        {{0, 0}, {0, 0}, "left_ptr"},
        {{8, 0}, {32, 0}, "pointer"},
        {{7, 0}, {32, 0}, "left_ptr"},
        {{8, 0}, {32, -4}, "pointer"},
        // No width: the proportion is 0, so a low hotspot means text.
        {{0, 8}, {0, 32}, "xterm"},
        {{0, 7}, {0, 32}, "left_ptr"},
        {{0, 31}, {-32, 32}, "xterm"},
        // The borders of the centre.
        {{12.8, 16}, {32, 32}, "left_ptr"},
        {{19.2, 16}, {32, 32}, "left_ptr"},
        {{16, 12.8}, {32, 32}, "left_ptr"},
        {{16, 19.2}, {32, 32}, "left_ptr"},
        {{16, 9.6}, {32, 32}, "left_ptr"},
        // A hotspot high in a square image is a hand, in a wide one an arrow.
        {{16, 9.5}, {32, 32}, "pointer"},
        {{16, 4}, {48, 32}, "left_ptr"},
        {{24, 16}, {48, 32}, "size_hor"},
        {{8, 2}, {32, 32}, "pointer"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(nameByGeometry(row.hotspot, row.size), row.name)
            << row.hotspot.x << "," << row.hotspot.y << " in " << row.size.width << "x" << row.size.height;
}

}  // namespace
}  // namespace pintle
