#include "cursor/cursor_roles.h"

#include <array>

namespace pintle {
namespace {

template <std::size_t N>
using Names = std::array<std::string_view, N>;

constexpr Names<3> kArrow = {"default", "left_ptr", "arrow"};
constexpr Names<3> kIBeam = {"xterm", "text", "ibeam"};
constexpr Names<4> kPointingHand = {"pointer", "hand2", "hand", "pointing_hand"};
constexpr Names<3> kOpenHand = {"grab", "openhand", "open_hand"};
constexpr Names<4> kClosedHand = {"grabbing", "closedhand", "move", "fleur"};
constexpr Names<3> kCrosshair = {"crosshair", "cross", "tcross"};
constexpr Names<3> kResizeLeftRight = {"size_hor", "sb_h_double_arrow", "ew-resize"};
constexpr Names<3> kResizeUpDown = {"size_ver", "sb_v_double_arrow", "ns-resize"};
constexpr Names<2> kResizeLeft = {"left_side", "w-resize"};
constexpr Names<2> kResizeRight = {"right_side", "e-resize"};
constexpr Names<2> kResizeUp = {"top_side", "n-resize"};
constexpr Names<2> kResizeDown = {"bottom_side", "s-resize"};
constexpr Names<9> kOperationNotAllowed = {"not-allowed", "forbidden",   "crossed_circle",
                                           "no-drop",     "dnd-no-drop", "circle",
                                           "X",           "unavailable", "cancel"};
constexpr Names<6> kContextualMenu = {"context-menu", "context_menu", "menu",
                                      "right-arrow",  "right_ptr",    "draft"};
constexpr Names<5> kDragCopy = {"copy", "dnd-copy", "drag-copy", "1081", "plus"};
constexpr Names<5> kDragLink = {"alias", "dnd-link", "link", "drag-link", "symlink"};
constexpr Names<5> kDisappearingItem = {"pirate", "X_cursor", "x-cursor", "poof", "closedhand"};

constexpr Names<5> kFallingDiagonal = {"size_fdiag", "nwse-resize", "fd_double_arrow", "top_left_corner",
                                       "bottom_right_corner"};
constexpr Names<5> kRisingDiagonal = {"size_bdiag", "nesw-resize", "bd_double_arrow", "top_right_corner",
                                      "bottom_left_corner"};
constexpr Names<3> kZoomIn = {"zoom-in", "zoom_in", "zoomin"};
constexpr Names<3> kZoomOut = {"zoom-out", "zoom_out", "zoomout"};
constexpr Names<5> kBusy = {"wait", "watch", "progress", "left_ptr_watch", "half-busy"};
constexpr Names<3> kCell = {"cell", "plus", "tcross"};
constexpr Names<4> kHelp = {"help", "question_arrow", "whats_this", "left_ptr_help"};

constexpr std::array<CursorRoleRule, 24> kRules = {{
    {CursorType::arrow, kArrow},
    {CursorType::iBeam, kIBeam},
    {CursorType::pointingHand, kPointingHand},
    {CursorType::openHand, kOpenHand},
    {CursorType::closedHand, kClosedHand},
    {CursorType::crosshair, kCrosshair},
    {CursorType::resizeLeftRight, kResizeLeftRight},
    {CursorType::resizeUpDown, kResizeUpDown},
    {CursorType::resizeLeft, kResizeLeft},
    {CursorType::resizeRight, kResizeRight},
    {CursorType::resizeUp, kResizeUp},
    {CursorType::resizeDown, kResizeDown},
    {CursorType::operationNotAllowed, kOperationNotAllowed},
    {CursorType::contextualMenu, kContextualMenu},
    {CursorType::dragCopy, kDragCopy},
    {CursorType::dragLink, kDragLink},
    {CursorType::disappearingItem, kDisappearingItem},
    // The second pass.
    {CursorType::resizeUpDown, kFallingDiagonal},
    {CursorType::resizeLeftRight, kRisingDiagonal},
    {CursorType::arrow, kZoomIn},
    {CursorType::arrow, kZoomOut},
    {CursorType::arrow, kBusy},
    {CursorType::crosshair, kCell},
    {CursorType::arrow, kHelp},
}};

}  // namespace

std::span<const CursorRoleRule> cursorRoleRules() { return kRules; }

const std::map<std::string, std::string>& cursorTypeMapping() {
    static const std::map<std::string, std::string> mapping = {
        {"default", "arrow"},
        {"left_ptr", "arrow"},
        {"arrow", "arrow"},
        {"top_left_arrow", "arrow"},
        {"wait", "arrow"},
        {"watch", "arrow"},
        {"progress", "arrow"},
        {"text", "iBeam"},
        {"xterm", "iBeam"},
        {"ibeam", "iBeam"},
        {"hand", "pointingHand"},
        {"hand1", "pointingHand"},
        {"hand2", "pointingHand"},
        {"pointer", "pointingHand"},
        {"pointing_hand", "pointingHand"},
        {"grab", "openHand"},
        {"openhand", "openHand"},
        {"open_hand", "openHand"},
        {"grabbing", "closedHand"},
        {"closedhand", "closedHand"},
        {"closed_hand", "closedHand"},
        {"move", "closedHand"},
        {"fleur", "closedHand"},
        {"crosshair", "crosshair"},
        {"cross", "crosshair"},
        {"tcross", "crosshair"},
        {"size_hor", "resizeLeftRight"},
        {"sb_h_double_arrow", "resizeLeftRight"},
        {"ew-resize", "resizeLeftRight"},
        {"col-resize", "resizeLeftRight"},
        {"h_double_arrow", "resizeLeftRight"},
        {"size_ver", "resizeUpDown"},
        {"sb_v_double_arrow", "resizeUpDown"},
        {"ns-resize", "resizeUpDown"},
        {"row-resize", "resizeUpDown"},
        {"v_double_arrow", "resizeUpDown"},
        {"left_side", "resizeLeft"},
        {"w-resize", "resizeLeft"},
        {"right_side", "resizeRight"},
        {"e-resize", "resizeRight"},
        {"top_side", "resizeUp"},
        {"n-resize", "resizeUp"},
        {"bottom_side", "resizeDown"},
        {"s-resize", "resizeDown"},
        {"not-allowed", "operationNotAllowed"},
        {"forbidden", "operationNotAllowed"},
        {"no-drop", "operationNotAllowed"},
        {"crossed_circle", "operationNotAllowed"},
        {"context-menu", "contextualMenu"},
        {"context_menu", "contextualMenu"},
        {"copy", "dragCopy"},
        {"dnd-copy", "dragCopy"},
        {"alias", "dragLink"},
        {"dnd-link", "dragLink"},
        {"link", "dragLink"},
        {"pirate", "disappearingItem"},
        {"X_cursor", "disappearingItem"},
    };
    return mapping;
}

const std::set<std::string>& essentialCursors() {
    static const std::set<std::string> names = {"left_ptr",
                                                "default",
                                                "arrow",
                                                "xterm",
                                                "text",
                                                "pointer",
                                                "hand",
                                                "hand2",
                                                "grab",
                                                "grabbing",
                                                "openhand",
                                                "closedhand",
                                                "move",
                                                "fleur",
                                                "crosshair",
                                                "cross",
                                                "size_hor",
                                                "size_ver",
                                                "not-allowed",
                                                "watch",
                                                "wait",
                                                "left_side",
                                                "right_side",
                                                "top_side",
                                                "bottom_side",
                                                "size_fdiag",
                                                "size_bdiag",
                                                "nwse-resize",
                                                "nesw-resize",
                                                "ew-resize",
                                                "ns-resize",
                                                "w-resize",
                                                "e-resize",
                                                "n-resize",
                                                "s-resize",
                                                "sb_h_double_arrow",
                                                "sb_v_double_arrow",
                                                "h_double_arrow",
                                                "v_double_arrow",
                                                "top_left_corner",
                                                "top_right_corner",
                                                "bottom_left_corner",
                                                "bottom_right_corner"};
    return names;
}

}  // namespace pintle
