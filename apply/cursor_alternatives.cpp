#include "apply/cursor_alternatives.h"

#include <algorithm>
#include <array>
#include <vector>

namespace pintle {
namespace {

using Names = std::vector<std::string_view>;

/// One row a shape. The first name is the one that identification answers.
const std::vector<Names>& groups() {
    static const std::vector<Names> rows = {
        {"left_ptr", "default", "arrow", "top_left_arrow"},
        {"xterm", "text", "ibeam"},
        {"pointer", "hand2", "pointing_hand", "hand", "hand1"},
        {"crosshair", "cross", "tcross"},
        {"grab", "openhand", "open_hand"},
        {"grabbing", "closedhand", "closed_hand"},
        {"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow"},
        {"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow"},
        {"left_side", "w-resize"},
        {"right_side", "e-resize"},
        {"top_side", "n-resize"},
        {"bottom_side", "s-resize"},
        {"not-allowed", "forbidden", "crossed_circle", "no-drop", "dnd-no-drop"},
        {"alias", "dnd-link", "link"},
        {"copy", "dnd-copy"},
        {"move", "fleur", "size_all", "all-scroll"},
        {"context-menu", "context_menu", "right_ptr"},
        {"vertical-text"},
        {"pirate", "X_cursor", "x-cursor"},
        {"zoom-in", "zoom_in", "zoomin"},
        {"zoom-out", "zoom_out", "zoomout"},
        {"col-resize", "split_h", "sb_h_double_arrow", "size_hor", "ew-resize"},
        {"row-resize", "split_v", "sb_v_double_arrow", "size_ver", "ns-resize"},
        {"size_fdiag", "nwse-resize", "fd_double_arrow"},
        {"size_bdiag", "nesw-resize", "bd_double_arrow"},
        {"top_left_corner", "nw-resize", "size_fdiag", "nwse-resize"},
        {"top_right_corner", "ne-resize", "size_bdiag", "nesw-resize"},
        {"bottom_left_corner", "sw-resize", "size_bdiag", "nesw-resize"},
        {"bottom_right_corner", "se-resize", "size_fdiag", "nwse-resize"},
        {"wait", "watch"},
        {"left_ptr_watch", "progress", "half-busy"},
        {"help", "question_arrow", "whats_this", "left_ptr_help"},
        {"cell", "plus"},
    };
    return rows;
}

/// The names to try by each name of a group: that name first, then the others in their order.
const Names* rowOf(std::string_view name) {
    static const std::vector<Names> expanded = [] {
        std::vector<Names> rows;
        for (const Names& group : groups())
            for (const std::string_view first : group) {
                const bool known =
                    std::any_of(rows.begin(), rows.end(), [&](const Names& r) { return r[0] == first; });
                if (known) continue;
                Names row = {first};
                std::copy_if(group.begin(), group.end(), std::back_inserter(row),
                             [&](std::string_view other) { return other != first; });
                rows.push_back(std::move(row));
            }
        return rows;
    }();
    const auto found =
        std::find_if(expanded.begin(), expanded.end(), [&](const Names& row) { return row[0] == name; });
    return found == expanded.end() ? nullptr : &*found;
}

}  // namespace

std::span<const std::string_view> cursorAlternatives(std::string_view name) {
    const Names* row = rowOf(name);
    return row ? std::span<const std::string_view>(*row) : std::span<const std::string_view>();
}

bool isThemeCursorName(std::string_view name) { return rowOf(name) != nullptr; }

}  // namespace pintle
