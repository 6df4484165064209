#include "apply/cursor_identifiers.h"

namespace pintle {
namespace {

// The numbers are deliberately not ascending: 20 and 39 come before 17.
constexpr std::array<CursorIdentifierRow, 46> kRows = {{
    {"com.apple.coregraphics.Arrow", {"left_ptr", "default", "arrow", "top_left_arrow"}},
    {"com.apple.coregraphics.ArrowS", {"left_ptr", "default", "arrow", "top_left_arrow"}},
    {"com.apple.coregraphics.IBeam", {"xterm", "text", "ibeam"}},
    {"com.apple.coregraphics.IBeamS", {"xterm", "text", "ibeam"}},
    {"com.apple.coregraphics.IBeamXOR", {"xterm", "text", "ibeam"}},
    {"com.apple.coregraphics.Alias", {"alias", "dnd-link", "link"}},
    {"com.apple.coregraphics.Copy", {"copy", "dnd-copy"}},
    {"com.apple.coregraphics.Move", {"move", "fleur", "size_all", "all-scroll"}},
    {"com.apple.coregraphics.ArrowCtx", {"context-menu", "context_menu", "right_ptr"}},
    {"com.apple.coregraphics.Wait", {"wait", "watch"}},
    {"com.apple.cursor.2", {"alias", "dnd-link", "link"}},
    {"com.apple.cursor.3", {"not-allowed", "forbidden", "crossed_circle", "no-drop"}},
    {"com.apple.cursor.4", {"left_ptr_watch", "progress", "half-busy"}},
    {"com.apple.cursor.5", {"dnd-copy", "copy"}},
    {"com.apple.cursor.7", {"crosshair", "cross", "tcross"}},
    {"com.apple.cursor.8", {"crosshair", "cross", "tcross"}},
    {"com.apple.cursor.11", {"grabbing", "closedhand", "closed_hand"}},
    {"com.apple.cursor.12", {"grab", "openhand", "open_hand", "hand1"}},
    {"com.apple.cursor.13", {"pointer", "hand2", "pointing_hand", "hand1"}},
    {"com.apple.cursor.20", {"cell", "plus", "tcross"}},
    {"com.apple.cursor.39", {"move", "fleur", "size_all", "all-scroll"}},
    {"com.apple.cursor.17", {"left_side", "w-resize", "size_hor"}},
    {"com.apple.cursor.18", {"right_side", "e-resize", "size_hor"}},
    {"com.apple.cursor.19", {"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow"}},
    {"com.apple.cursor.21", {"top_side", "n-resize", "size_ver"}},
    {"com.apple.cursor.22", {"bottom_side", "s-resize", "size_ver"}},
    {"com.apple.cursor.23", {"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow"}},
    {"com.apple.cursor.24", {"context-menu", "context_menu", "right_ptr"}},
    {"com.apple.cursor.25", {"pirate", "X_cursor", "x-cursor"}},
    {"com.apple.cursor.26", {"vertical-text"}},
    {"com.apple.cursor.27", {"right_side", "e-resize", "size_hor"}},
    {"com.apple.cursor.28", {"size_hor", "sb_h_double_arrow", "ew-resize", "h_double_arrow"}},
    {"com.apple.cursor.29", {"top_right_corner", "ne-resize", "size_bdiag", "nesw-resize"}},
    {"com.apple.cursor.30", {"size_bdiag", "nesw-resize", "bd_double_arrow", "top_right_corner"}},
    {"com.apple.cursor.31", {"top_side", "n-resize", "size_ver"}},
    {"com.apple.cursor.32", {"size_ver", "sb_v_double_arrow", "ns-resize", "v_double_arrow"}},
    {"com.apple.cursor.33", {"top_left_corner", "nw-resize", "size_fdiag", "nwse-resize"}},
    {"com.apple.cursor.34", {"size_fdiag", "nwse-resize", "fd_double_arrow", "bottom_right_corner"}},
    {"com.apple.cursor.35", {"bottom_right_corner", "se-resize", "size_fdiag", "nwse-resize"}},
    {"com.apple.cursor.36", {"bottom_side", "s-resize", "size_ver"}},
    {"com.apple.cursor.37", {"bottom_left_corner", "sw-resize", "size_bdiag", "nesw-resize"}},
    {"com.apple.cursor.38", {"left_side", "w-resize", "size_hor"}},
    {"com.apple.cursor.40", {"help", "question_arrow", "whats_this", "left_ptr_help"}},
    {"com.apple.cursor.41", {"cell", "plus", "tcross"}},
    {"com.apple.cursor.42", {"zoom-in", "zoom_in", "zoomin"}},
    {"com.apple.cursor.43", {"zoom-out", "zoom_out", "zoomout"}},
}};

constexpr std::size_t kBackedUp = 10;

}  // namespace

std::span<const CursorIdentifierRow> cursorIdentifiers() { return kRows; }

std::span<const CursorIdentifierRow> backedUpIdentifiers() {
    return std::span<const CursorIdentifierRow>(kRows).first(kBackedUp);
}

}  // namespace pintle
