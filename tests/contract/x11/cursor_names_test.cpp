#include "platform/x11/cursors/cursor_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace pintle::x11 {
namespace {

TEST(CursorNames, EachNameStandsInOneRowOnly) {
    std::set<std::string_view> seen;
    std::size_t count = 0;
    for (const auto& row : cursorNameTable())
        for (const auto name : row.names) {
            EXPECT_TRUE(seen.insert(name).second) << name;
            ++count;
        }
    EXPECT_EQ(count, allCursorNames().size());
    EXPECT_EQ(count, 129u);
}

TEST(CursorNames, EachIdentifierHasOneRow) {
    std::set<std::string_view> seen;
    for (const auto& row : cursorNameTable()) {
        EXPECT_TRUE(seen.insert(row.identifier).second) << row.identifier;
        EXPECT_FALSE(row.names.empty());
    }
    EXPECT_EQ(seen.size(), 31u);
}

TEST(CursorNames, TheFirstNameStandsForTheIdentifier) {
    const std::pair<const char*, const char*> expected[] = {
        {"com.apple.coregraphics.Arrow", "left_ptr"},
        {"com.apple.coregraphics.IBeam", "xterm"},
        {"com.apple.coregraphics.Alias", "alias"},
        {"com.apple.coregraphics.Copy", "copy"},
        {"com.apple.coregraphics.Move", "move"},
        {"com.apple.coregraphics.ArrowCtx", "context-menu"},
        {"com.apple.coregraphics.Wait", "wait"},
        {"com.apple.cursor.3", "not-allowed"},
        {"com.apple.cursor.4", "left_ptr_watch"},
        {"com.apple.cursor.7", "crosshair"},
        {"com.apple.cursor.11", "grabbing"},
        {"com.apple.cursor.12", "grab"},
        {"com.apple.cursor.13", "pointer"},
        {"com.apple.cursor.17", "left_side"},
        {"com.apple.cursor.18", "right_side"},
        {"com.apple.cursor.19", "size_hor"},
        {"com.apple.cursor.20", "cell"},
        {"com.apple.cursor.21", "top_side"},
        {"com.apple.cursor.22", "bottom_side"},
        {"com.apple.cursor.23", "size_ver"},
        {"com.apple.cursor.25", "pirate"},
        {"com.apple.cursor.26", "vertical-text"},
        {"com.apple.cursor.29", "top_right_corner"},
        {"com.apple.cursor.30", "size_bdiag"},
        {"com.apple.cursor.33", "top_left_corner"},
        {"com.apple.cursor.34", "size_fdiag"},
        {"com.apple.cursor.35", "bottom_right_corner"},
        {"com.apple.cursor.37", "bottom_left_corner"},
        {"com.apple.cursor.40", "help"},
        {"com.apple.cursor.42", "zoom-in"},
        {"com.apple.cursor.43", "zoom-out"},
    };
    for (const auto& [identifier, name] : expected) {
        ASSERT_FALSE(namesOf(identifier).empty()) << identifier;
        EXPECT_EQ(namesOf(identifier).front(), name);
    }
}

TEST(CursorNames, IdentifiersWithoutCounterpartHaveNoNames) {
    for (const auto* const identifier :
         {"com.apple.coregraphics.ArrowS", "com.apple.coregraphics.IBeamS", "com.apple.coregraphics.IBeamXOR",
          "com.apple.cursor.2", "com.apple.cursor.5", "com.apple.cursor.8", "com.apple.cursor.24",
          "com.apple.cursor.27", "com.apple.cursor.28", "com.apple.cursor.31", "com.apple.cursor.32",
          "com.apple.cursor.36", "com.apple.cursor.38", "com.apple.cursor.39", "com.apple.cursor.41", ""})
        EXPECT_TRUE(namesOf(identifier).empty()) << identifier;
}

TEST(CursorNames, AnAliasLeadsToItsRow) {
    ASSERT_TRUE(rowOf("hand2"));
    EXPECT_EQ(rowOf("hand2")->identifier, "com.apple.cursor.13");
    ASSERT_TRUE(rowOf("fcf1c3c7cd4491d801f1e1c78f100000"));
    EXPECT_EQ(rowOf("fcf1c3c7cd4491d801f1e1c78f100000")->identifier, "com.apple.cursor.30");
    EXPECT_FALSE(rowOf("nonsense"));
    EXPECT_FALSE(rowOf(""));
}

TEST(CursorNames, TheDiagonalsAreThoseThatThemesDrawUnderTheirNames) {
    for (const auto* const name : {"nesw-resize", "fd_double_arrow", "fcf1c3c7cd4491d801f1e1c78f100000"})
        EXPECT_EQ(rowOf(name), rowOf("size_bdiag")) << name;
    for (const auto* const name : {"nwse-resize", "bd_double_arrow", "c7088f0f3e6c8088236ef8e1e3e70000"})
        EXPECT_EQ(rowOf(name), rowOf("size_fdiag")) << name;
}

TEST(CursorNames, InvisibleCursorsAreNeverTouchedAndInNoRow) {
    for (const auto* const name : {"blank", "none"}) {
        EXPECT_TRUE(isNeverTouched(name));
        EXPECT_FALSE(rowOf(name));
    }
    EXPECT_FALSE(isNeverTouched("left_ptr"));
}

}  // namespace
}  // namespace pintle::x11
