// The tables of names, once more as they are meant to be: a change of one is made in two places or is a
// mistake.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "apply/cursor_alternatives.h"
#include "apply/cursor_identifiers.h"

namespace pintle {
namespace {

using Names = std::vector<std::string_view>;

TEST(CursorTables, EveryIdentifierIsSuppliedByItsNamesInTheirOrder) {
    const std::vector<Names> expected = {
        {"left_ptr", "default", "arrow", "top_left_arrow"},
        {"left_ptr", "default", "arrow", "top_left_arrow"},
        {"xterm", "text", "ibeam"},
        {"xterm", "text", "ibeam"},
        {"xterm", "text", "ibeam"},
        {"alias", "dnd-link", "link"},
        {"copy", "dnd-copy"},
        {"move", "fleur", "size_all", "all-scroll"},
        {"context-menu", "context_menu", "right_ptr"},
        {"wait", "watch"},
        {"alias", "dnd-link", "link"},
        {"not-allowed", "forbidden", "crossed_circle", "no-drop"},
        {"left_ptr_watch", "progress", "half-busy"},
        {"dnd-copy", "copy"},
        {"crosshair", "cross", "tcross"},
        {"crosshair", "cross", "tcross"},
        {"grabbing", "closedhand", "closed_hand"},
        {"grab", "openhand", "open_hand", "hand1"},
        {"pointer", "hand2", "pointing_hand", "hand1"},
        {"cell", "plus", "tcross"},
        {"move", "fleur", "size_all", "all-scroll"},
        {"left_side", "w-resize", "size_hor"},
        {"right_side", "e-resize", "size_hor"},
        {"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow"},
        {"top_side", "n-resize", "size_ver"},
        {"bottom_side", "s-resize", "size_ver"},
        {"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow"},
        {"context-menu", "context_menu", "right_ptr"},
        {"pirate", "X_cursor", "x-cursor"},
        {"vertical-text"},
        {"right_side", "e-resize", "size_hor"},
        {"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow"},
        {"top_right_corner", "ne-resize", "size_bdiag", "nesw-resize"},
        {"size_bdiag", "nesw-resize", "bd_double_arrow", "top_right_corner"},
        {"top_side", "n-resize", "size_ver"},
        {"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow"},
        {"top_left_corner", "nw-resize", "size_fdiag", "nwse-resize"},
        {"size_fdiag", "nwse-resize", "fd_double_arrow", "bottom_right_corner"},
        {"bottom_right_corner", "se-resize", "size_fdiag", "nwse-resize"},
        {"bottom_side", "s-resize", "size_ver"},
        {"bottom_left_corner", "sw-resize", "size_bdiag", "nesw-resize"},
        {"left_side", "w-resize", "size_hor"},
        {"help", "question_arrow", "whats_this", "left_ptr_help"},
        {"cell", "plus", "tcross"},
        {"zoom-in", "zoom_in", "zoomin"},
        {"zoom-out", "zoom_out", "zoomout"},
    };
    ASSERT_EQ(cursorIdentifiers().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto& row = cursorIdentifiers()[i];
        EXPECT_THAT(row.candidates(), testing::ElementsAreArray(expected[i])) << row.identifier;
    }
}

TEST(CursorTables, EveryNameHasTheAlternativesOfItsShape) {
    struct Shape {
        Names names;
        Names nearest = {};
    };
    const std::vector<Shape> shapes = {
        {{"left_ptr", "default", "arrow", "top_left_arrow", "left-arrow"}},
        {{"xterm", "text", "ibeam"}},
        {{"pointer", "hand2", "pointing_hand", "hand"}, {"hand1"}},
        {{"crosshair", "cross", "tcross", "cross_reverse", "diamond_cross"}},
        {{"grab", "openhand", "open_hand", "hand1"}},
        {{"grabbing", "closedhand", "closed_hand"}},
        {{"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow", "size-hor"}},
        {{"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow", "size-ver", "double_arrow"}},
        {{"left_side", "w-resize"}, {"size_hor"}},
        {{"right_side", "e-resize"}, {"size_hor"}},
        {{"top_side", "n-resize"}, {"size_ver"}},
        {{"bottom_side", "s-resize"}, {"size_ver"}},
        {{"not-allowed", "forbidden", "crossed_circle", "no-drop", "circle", "dnd-none", "dnd-no-drop",
          "dnd_no_drop"}},
        {{"alias", "dnd-link", "link"}},
        {{"copy", "dnd-copy"}},
        {{"move", "fleur", "size_all", "all-scroll", "all-resize", "dnd-move", "pointer-move"}},
        {{"context-menu", "context_menu", "right_ptr"}},
        {{"vertical-text"}},
        {{"pirate", "X_cursor", "x-cursor"}},
        {{"zoom-in", "zoom_in", "zoomin"}},
        {{"zoom-out", "zoom_out", "zoomout"}},
        {{"col-resize", "split_h"}, {"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow"}},
        {{"row-resize", "split_v"}, {"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow"}},
        {{"size_fdiag", "nwse-resize", "bd_double_arrow"}, {"fd_double_arrow", "bottom_right_corner"}},
        {{"size_bdiag", "nesw-resize", "fd_double_arrow"}, {"bd_double_arrow", "top_right_corner"}},
        {{"top_left_corner", "nw-resize"}, {"size_fdiag", "nwse-resize"}},
        {{"top_right_corner", "ne-resize"}, {"size_bdiag", "nesw-resize"}},
        {{"bottom_left_corner", "sw-resize"}, {"size_bdiag", "nesw-resize"}},
        {{"bottom_right_corner", "se-resize"}, {"size_fdiag", "nwse-resize"}},
        {{"wait", "watch"}},
        {{"left_ptr_watch", "progress", "half-busy"}},
        {{"help", "question_arrow", "whats_this", "left_ptr_help", "dnd-ask"}},
        {{"cell", "plus"}, {"tcross"}},
    };
    std::vector<std::string_view> seen;
    for (const auto& [names, nearest] : shapes)
        for (const auto first : names) {
            // A name in two shapes belongs to the first.
            if (std::find(seen.begin(), seen.end(), first) != seen.end()) continue;
            seen.push_back(first);
            Names expected = {first};
            for (const auto name : names)
                if (name != first) expected.push_back(name);
            expected.insert(expected.end(), nearest.begin(), nearest.end());
            EXPECT_THAT(cursorAlternatives(first), testing::ElementsAreArray(expected)) << first;
            EXPECT_TRUE(isThemeCursorName(first));
        }
    for (const auto* none : {"", "hand3", "Left_ptr", "sb_up_arrow"})
        EXPECT_TRUE(cursorAlternatives(none).empty()) << none;
}

}  // namespace
}  // namespace pintle
