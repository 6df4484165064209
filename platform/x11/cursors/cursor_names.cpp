#include "platform/x11/cursors/cursor_names.h"

#include <array>
#include <cstddef>

namespace pintle::x11 {
namespace {

// Row by row. Names of 32 hexadecimal digits are what toolkits ask for by the hash of a core cursor's bitmap.
// Of the diagonals "fd" is the one like a slash, "bd" the one like a backslash.
constexpr std::array<std::string_view, 129> kNames = {
    // com.apple.coregraphics.Arrow
    "left_ptr",
    "default",
    "arrow",
    "top_left_arrow",
    "left-arrow",
    // com.apple.coregraphics.IBeam
    "xterm",
    "text",
    "ibeam",
    // com.apple.coregraphics.Alias
    "alias",
    "dnd-link",
    "link",
    "3085a0e285430894940527032f8b26df",
    "640fb0e74195791501fd1ed57b41487f",
    "a2a266d0498c3104214a47bd64ab0fc8",
    // com.apple.coregraphics.Copy
    "copy",
    "dnd-copy",
    "1081e37283d90000800003c07f3ef6bf",
    "6407b0e94181790501fd1e167b474872",
    "b66166c04f8c3109214a4fbd64a50fc8",
    // com.apple.coregraphics.Move
    "move",
    "fleur",
    "size_all",
    "all-scroll",
    "all-resize",
    "dnd-move",
    "pointer-move",
    "4498f0e0c1937ffe01fd06f973665830",
    "9081237383d90e509aa00f00170e968f",
    // com.apple.coregraphics.ArrowCtx
    "context-menu",
    "context_menu",
    "right_ptr",
    // com.apple.coregraphics.Wait
    "wait",
    "watch",
    // com.apple.cursor.3
    "not-allowed",
    "forbidden",
    "crossed_circle",
    "no-drop",
    "circle",
    "dnd-none",
    "dnd-no-drop",
    "dnd_no_drop",
    "03b6e0fcb3499374a867c041f52298f0",
    // com.apple.cursor.4
    "left_ptr_watch",
    "progress",
    "half-busy",
    "00000000000000020006000e7e9ffc3f",
    "08e8e1c95fe2fc01f976f1e063a24ccd",
    "3ecb610c1bf2410f44200f48c40d3599",
    // com.apple.cursor.7
    "crosshair",
    "cross",
    "tcross",
    "cross_reverse",
    "diamond_cross",
    // com.apple.cursor.11
    "grabbing",
    "closedhand",
    "closed_hand",
    "fcf21c00b30f7e3f83fe0dfd12e71cff",
    // com.apple.cursor.12
    "grab",
    "openhand",
    "open_hand",
    "hand1",
    // com.apple.cursor.13
    "pointer",
    "hand2",
    "pointing_hand",
    "hand",
    "9d800788f1b08800ae810202380a0822",
    "e29285e634086352946a0e7090d73106",
    // com.apple.cursor.20
    "cell",
    "plus",
    // com.apple.cursor.17
    "left_side",
    "w-resize",
    // com.apple.cursor.18
    "right_side",
    "e-resize",
    // com.apple.cursor.19
    "size_hor",
    "size-hor",
    "sb_h_double_arrow",
    "ew-resize",
    "h_double_arrow",
    "col-resize",
    "split_h",
    "028006030e0e7ebffc7f7070c0600140",
    "14fef782d02440884392942c11205230",
    // com.apple.cursor.21
    "top_side",
    "n-resize",
    // com.apple.cursor.22
    "bottom_side",
    "s-resize",
    // com.apple.cursor.23
    "size_ver",
    "size-ver",
    "sb_v_double_arrow",
    "ns-resize",
    "v_double_arrow",
    "row-resize",
    "split_v",
    "double_arrow",
    "00008160000006810000408080010102",
    "2870a09082c103050810ffdffffe0204",
    // com.apple.cursor.25
    "pirate",
    "X_cursor",
    "x-cursor",
    // com.apple.cursor.26
    "vertical-text",
    // com.apple.cursor.29
    "top_right_corner",
    "ne-resize",
    // com.apple.cursor.30
    "size_bdiag",
    "nesw-resize",
    "fd_double_arrow",
    "fcf1c3c7cd4491d801f1e1c78f100000",
    // com.apple.cursor.33
    "top_left_corner",
    "nw-resize",
    // com.apple.cursor.34
    "size_fdiag",
    "nwse-resize",
    "bd_double_arrow",
    "c7088f0f3e6c8088236ef8e1e3e70000",
    // com.apple.cursor.35
    "bottom_right_corner",
    "se-resize",
    // com.apple.cursor.37
    "bottom_left_corner",
    "sw-resize",
    // com.apple.cursor.40
    "help",
    "question_arrow",
    "whats_this",
    "left_ptr_help",
    "dnd-ask",
    "5c6cd98b3f3ebcb1f9c7f1c204630408",
    "d9ce0ab605698f320427677b458ad60b",
    // com.apple.cursor.42
    "zoom-in",
    "zoom_in",
    "zoomin",
    // com.apple.cursor.43
    "zoom-out",
    "zoom_out",
    "zoomout",
};

constexpr CursorNameRow row(std::string_view identifier, std::size_t first, std::size_t count) {
    return {identifier, std::span(kNames).subspan(first, count)};
}

constexpr std::array<CursorNameRow, 31> kRows = {
    row("com.apple.coregraphics.Arrow", 0, 5), row("com.apple.coregraphics.IBeam", 5, 3),
    row("com.apple.coregraphics.Alias", 8, 6), row("com.apple.coregraphics.Copy", 14, 5),
    row("com.apple.coregraphics.Move", 19, 9), row("com.apple.coregraphics.ArrowCtx", 28, 3),
    row("com.apple.coregraphics.Wait", 31, 2), row("com.apple.cursor.3", 33, 9),
    row("com.apple.cursor.4", 42, 6),          row("com.apple.cursor.7", 48, 5),
    row("com.apple.cursor.11", 53, 4),         row("com.apple.cursor.12", 57, 4),
    row("com.apple.cursor.13", 61, 6),         row("com.apple.cursor.20", 67, 2),
    row("com.apple.cursor.17", 69, 2),         row("com.apple.cursor.18", 71, 2),
    row("com.apple.cursor.19", 73, 9),         row("com.apple.cursor.21", 82, 2),
    row("com.apple.cursor.22", 84, 2),         row("com.apple.cursor.23", 86, 10),
    row("com.apple.cursor.25", 96, 3),         row("com.apple.cursor.26", 99, 1),
    row("com.apple.cursor.29", 100, 2),        row("com.apple.cursor.30", 102, 4),
    row("com.apple.cursor.33", 106, 2),        row("com.apple.cursor.34", 108, 4),
    row("com.apple.cursor.35", 112, 2),        row("com.apple.cursor.37", 114, 2),
    row("com.apple.cursor.40", 116, 7),        row("com.apple.cursor.42", 123, 3),
    row("com.apple.cursor.43", 126, 3),
};

}  // namespace

std::span<const CursorNameRow> cursorNameTable() { return kRows; }

std::span<const std::string_view> namesOf(std::string_view identifier) {
    for (const auto& each : kRows)
        if (each.identifier == identifier) return each.names;
    return {};
}

const CursorNameRow* rowOf(std::string_view name) {
    for (const auto& each : kRows)
        for (const auto& candidate : each.names)
            if (candidate == name) return &each;
    return nullptr;
}

std::span<const std::string_view> allCursorNames() { return kNames; }

bool isNeverTouched(std::string_view name) { return name == "blank" || name == "none"; }

}  // namespace pintle::x11
