#include "platform/x11/cursors/keeper_rules.h"

#include <gtest/gtest.h>

namespace pintle::x11 {
namespace {

using namespace std::chrono_literals;

class KeeperRules : public testing::Test {
  protected:
    KeeperRules() {
        RegisteredCursor cursor;
        cursor.images.push_back(*Bitmap::create(2, 4, [](auto bytes) {
            std::uint8_t value = 0;
            for (auto& byte : bytes) byte = ++value;
        }));
        cursor.size = {2, 2};
        cursor.frameCount = 2;
        theme = CursorPicture::of(cursor);
    }
    KeeperFinding judged(const ShownCursor& shown) {
        return judge(
            shown,
            [this](std::string_view name) {
                return name == "left_ptr" || name == "hand2" ? theme : PicturePtr();
            },
            [](const ShownCursor& unnamed) -> std::string_view {
                const auto image = *unnamed.fingerprint;
                return image == 1 ? "hand2" : image == 2 ? "xterm" : "";
            });
    }
    PicturePtr theme;
};

TEST_F(KeeperRules, ANameOfTheThemeWithAnotherPictureIsReplaced) {
    const auto finding = judged({7, "left_ptr", 99, false});
    EXPECT_EQ(finding.verdict, KeeperVerdict::replace);
    EXPECT_EQ(finding.name, "left_ptr");
}

TEST_F(KeeperRules, EachFrameOfTheThemesPictureIsLeft) {
    for (const auto frame : theme->fingerprints())
        EXPECT_EQ(judged({7, "left_ptr", frame, false}).verdict, KeeperVerdict::leave);
}

TEST_F(KeeperRules, ANameThatTheThemeDoesNotCoverIsLeft) {
    EXPECT_EQ(judged({7, "xterm", 99, false}).verdict, KeeperVerdict::leave);
    EXPECT_EQ(judged({7, "nobodys", 99, false}).verdict, KeeperVerdict::leave);
}

TEST_F(KeeperRules, ACursorWithoutNameIsKnownByTheDesktopsPixels) {
    const auto finding = judged({7, "", 1, false});
    EXPECT_EQ(finding.verdict, KeeperVerdict::replace);
    EXPECT_EQ(finding.name, "hand2");
    EXPECT_EQ(judged({7, "", 2, false}).verdict, KeeperVerdict::leave);
    EXPECT_EQ(judged({7, "", 99, false}).verdict, KeeperVerdict::leave);
}

TEST_F(KeeperRules, ANamedCursorOfNobodyIsNotKnownByItsPixels) {
    EXPECT_EQ(judged({7, "nobodys", 1, false}).verdict, KeeperVerdict::leave);
}

TEST_F(KeeperRules, AnUnreadableCursorIsJudgedByItsName) {
    EXPECT_EQ(judged({7, "left_ptr", std::nullopt, false}).verdict, KeeperVerdict::replace);
    EXPECT_EQ(judged({7, "", std::nullopt, false}).verdict, KeeperVerdict::leave);
}

TEST_F(KeeperRules, InvisibleCursorsAreLeft) {
    EXPECT_EQ(judged({7, "left_ptr", 99, true}).verdict, KeeperVerdict::leave);
    EXPECT_EQ(judged({7, "blank", 99, false}).verdict, KeeperVerdict::leave);
    EXPECT_EQ(judged({7, "none", 99, false}).verdict, KeeperVerdict::leave);
    EXPECT_EQ(judged({7, "", 1, true}).verdict, KeeperVerdict::leave);
}

TEST(FixLimit, WhileThePointerRestsOnlyAFewReplacementsAreAllowed) {
    FixLimit limit;
    for (int i = 0; i < FixLimit::kMostInARow; ++i) EXPECT_TRUE(limit.allow(5, 5, i * 50ms));
    EXPECT_FALSE(limit.allow(5, 5, 300ms));
    EXPECT_FALSE(limit.allow(5, 5, 350ms));
}

TEST(FixLimit, AnsweringAQuarrelKeepsItRefused) {
    FixLimit limit;
    for (int i = 0; i < 100; ++i) {
        const bool allowed = limit.allow(5, 5, i * 1s);
        EXPECT_EQ(allowed, i < FixLimit::kMostInARow) << i;
    }
}

TEST(FixLimit, AMovedPointerStartsAnew) {
    FixLimit limit;
    for (int i = 0; i < 100; ++i) EXPECT_TRUE(limit.allow(i, 5, i * 10ms));
}

TEST(FixLimit, AQuietTimeStartsAnew) {
    FixLimit limit;
    for (int i = 0; i < 10; ++i) (void)limit.allow(5, 5, 0ms);
    EXPECT_TRUE(limit.allow(5, 5, FixLimit::kQuiet));
}

}  // namespace
}  // namespace pintle::x11
