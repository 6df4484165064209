#include "apply/cursor_alternatives.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

namespace pintle {
namespace {

using Names = std::vector<std::string_view>;

struct Shape {
    /// Names that mean the same. The first one is what identification answers.
    Names names;
    /// Tried behind them: what a registration falls back to for this shape.
    Names nearest = {};
};

const std::vector<Shape>& shapes() {
    static const std::vector<Shape> rows = {
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
    return rows;
}

/// The names to try by each name: that name first, then the others of its shape in their order.
const Names* rowOf(std::string_view name) {
    static const std::map<std::string_view, Names> rows = [] {
        std::map<std::string_view, Names> made;
        for (const Shape& shape : shapes())
            for (const std::string_view first : shape.names) {
                Names row = {first};
                std::copy_if(shape.names.begin(), shape.names.end(), std::back_inserter(row),
                             [&](std::string_view other) { return other != first; });
                row.insert(row.end(), shape.nearest.begin(), shape.nearest.end());
                made.emplace(first, std::move(row));
            }
        return made;
    }();
    const auto found = rows.find(name);
    return found == rows.end() ? nullptr : &found->second;
}

}  // namespace

std::span<const std::string_view> cursorAlternatives(std::string_view name) {
    const Names* row = rowOf(name);
    return row ? std::span<const std::string_view>(*row) : std::span<const std::string_view>();
}

bool isThemeCursorName(std::string_view name) { return rowOf(name) != nullptr; }

}  // namespace pintle
