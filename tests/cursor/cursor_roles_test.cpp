#include "cursor/cursor_roles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace pintle {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using Map = std::map<std::string, std::string>;

/// Each name stands for itself, so that a role's value shows which candidate won.
Map applied(std::initializer_list<const char*> names) {
    Map map;
    for (const auto* name : names) map.emplace(name, name);
    return map;
}
Map mapped(std::initializer_list<const char*> names) {
    Map roles;
    mapCursorsToSystemTypes(applied(names), roles);
    return roles;
}

TEST(CursorTypeTest, HasSeventeenRolesWhoseRawValuesAreTheirNamesInOrder) {
    const std::vector<std::string> names = {
        "arrow",        "iBeam",         "crosshair",        "closedHand",          "openHand",
        "pointingHand", "resizeLeft",    "resizeRight",      "resizeLeftRight",     "resizeUp",
        "resizeDown",   "resizeUpDown",  "disappearingItem", "operationNotAllowed", "dragLink",
        "dragCopy",     "contextualMenu"};
    ASSERT_THAT(kCursorTypes, SizeIs(names.size()));
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(rawValue(kCursorTypes[i]), names[i]);
        EXPECT_EQ(cursorTypeFromRawValue(names[i]), kCursorTypes[i]);
    }
}

TEST(CursorTypeTest, HasNoRoleForAnotherRawValue) {
    for (const auto* value : {"", "Arrow", "arrowCursor", "left_ptr"})
        EXPECT_FALSE(cursorTypeFromRawValue(value));
}

TEST(CursorTypeTest, StandsForTheDesktopCursorOfItsName) {
    EXPECT_EQ(standardCursorOf(CursorType::arrow), StandardCursor::arrow);
    EXPECT_EQ(standardCursorOf(CursorType::closedHand), StandardCursor::closedHand);
    EXPECT_EQ(standardCursorOf(CursorType::resizeUpDown), StandardCursor::resizeUpDown);
    EXPECT_EQ(standardCursorOf(CursorType::contextualMenu), StandardCursor::contextualMenu);
    std::set<StandardCursor> all;
    for (const auto type : kCursorTypes) all.insert(standardCursorOf(type));
    EXPECT_THAT(all, SizeIs(17));
}

TEST(CursorRoles, TakesDefaultBeforeLeftPtrForTheArrow) {
    EXPECT_EQ(mapped({"left_ptr", "default"}).at("arrow"), "default");
    EXPECT_EQ(mapped({"left_ptr", "arrow"}).at("arrow"), "left_ptr");
}

TEST(CursorRoles, ABusyShapeTakesTheArrow) { EXPECT_EQ(mapped({"left_ptr", "watch"}).at("arrow"), "watch"); }

TEST(CursorRoles, ADiagonalShapeTakesTheStraightResizeRoles) {
    const auto roles = mapped({"size_ver", "size_fdiag", "size_hor", "size_bdiag"});
    EXPECT_EQ(roles.at("resizeUpDown"), "size_fdiag");
    EXPECT_EQ(roles.at("resizeLeftRight"), "size_bdiag");
}

TEST(CursorRoles, ClosedhandAloneServesClosedHandAndDisappearingItem) {
    EXPECT_EQ(mapped({"closedhand"}),
              (Map{{"closedHand", "closedhand"}, {"disappearingItem", "closedhand"}}));
}

TEST(CursorRoles, PlusTakesTheCrosshairAndTheDragCopyWhenNothingElseStandsForThem) {
    auto roles = mapped({"plus", "crosshair"});
    EXPECT_EQ(roles.at("crosshair"), "plus");
    EXPECT_EQ(roles.at("dragCopy"), "plus");
    for (const auto* copy : {"copy", "dnd-copy", "drag-copy", "1081"}) {
        roles = mapped({"plus", copy});
        EXPECT_EQ(roles.at("crosshair"), "plus");
        EXPECT_EQ(roles.at("dragCopy"), copy);
    }
    EXPECT_EQ(mapped({"plus", "cell"}).at("crosshair"), "cell");
}

TEST(CursorRoles, TheLastOfZoomBusyAndHelpShapesBecomesTheArrow) {
    EXPECT_EQ(mapped({"default", "zoom-in"}).at("arrow"), "zoom-in");
    EXPECT_EQ(mapped({"default", "zoom-in", "zoom-out"}).at("arrow"), "zoom-out");
    EXPECT_EQ(mapped({"default", "zoom-in", "zoom-out", "wait"}).at("arrow"), "wait");
    EXPECT_EQ(mapped({"default", "zoom-in", "zoom-out", "wait", "help"}).at("arrow"), "help");
    EXPECT_EQ(mapped({"wait", "help"}).at("arrow"), "help");
}

TEST(CursorRoles, RolesOfAnEarlierRunStayWhenTheSecondMapsThemNot) {
    Map roles;
    mapCursorsToSystemTypes(applied({"left_ptr", "xterm"}), roles);
    mapCursorsToSystemTypes(applied({"default"}), roles);
    EXPECT_EQ(roles, (Map{{"arrow", "default"}, {"iBeam", "xterm"}}));
}

TEST(CursorRoles, AnEmptyAppliedMapLeavesTheRolesAsTheyWere) {
    Map roles = {{"arrow", "before"}};
    mapCursorsToSystemTypes(Map{}, roles);
    EXPECT_EQ(roles, (Map{{"arrow", "before"}}));
}

TEST(CursorRoles, NamesAreComparedCaseSensitively) {
    EXPECT_THAT(mapped({"Left_Ptr", "DEFAULT", "x"}), IsEmpty());
    EXPECT_EQ(mapped({"X"}), (Map{{"operationNotAllowed", "X"}}));
    EXPECT_EQ(mapped({"1081"}), (Map{{"dragCopy", "1081"}}));
}

/// The table of rules as text, to hold the data to.
struct WrittenRule {
    const char* role;
    std::vector<std::string> candidates;
};
const std::vector<WrittenRule>& writtenRules() {
    static const std::vector<WrittenRule> rules = {
        {"arrow", {"default", "left_ptr", "arrow"}},
        {"iBeam", {"xterm", "text", "ibeam"}},
        {"pointingHand", {"pointer", "hand2", "hand", "pointing_hand"}},
        {"openHand", {"grab", "openhand", "open_hand"}},
        {"closedHand", {"grabbing", "closedhand", "move", "fleur"}},
        {"crosshair", {"crosshair", "cross", "tcross"}},
        {"resizeLeftRight", {"size_hor", "sb_h_double_arrow", "ew-resize"}},
        {"resizeUpDown", {"size_ver", "sb_v_double_arrow", "ns-resize"}},
        {"resizeLeft", {"left_side", "w-resize"}},
        {"resizeRight", {"right_side", "e-resize"}},
        {"resizeUp", {"top_side", "n-resize"}},
        {"resizeDown", {"bottom_side", "s-resize"}},
        {"operationNotAllowed",
         {"not-allowed", "forbidden", "crossed_circle", "no-drop", "dnd-no-drop", "circle", "X",
          "unavailable", "cancel"}},
        {"contextualMenu", {"context-menu", "context_menu", "menu", "right-arrow", "right_ptr", "draft"}},
        {"dragCopy", {"copy", "dnd-copy", "drag-copy", "1081", "plus"}},
        {"dragLink", {"alias", "dnd-link", "link", "drag-link", "symlink"}},
        {"disappearingItem", {"pirate", "X_cursor", "x-cursor", "poof", "closedhand"}},
        {"resizeUpDown",
         {"size_fdiag", "nwse-resize", "fd_double_arrow", "top_left_corner", "bottom_right_corner"}},
        {"resizeLeftRight",
         {"size_bdiag", "nesw-resize", "bd_double_arrow", "top_right_corner", "bottom_left_corner"}},
        {"arrow", {"zoom-in", "zoom_in", "zoomin"}},
        {"arrow", {"zoom-out", "zoom_out", "zoomout"}},
        {"arrow", {"wait", "watch", "progress", "left_ptr_watch", "half-busy"}},
        {"crosshair", {"cell", "plus", "tcross"}},
        {"arrow", {"help", "question_arrow", "whats_this", "left_ptr_help"}},
    };
    return rules;
}

TEST(CursorRoles, RunTheTwentyFourRulesInOrder) {
    ASSERT_THAT(cursorRoleRules(), SizeIs(24));
    for (std::size_t i = 0; i < writtenRules().size(); ++i) {
        const auto& rule = cursorRoleRules()[i];
        EXPECT_EQ(rawValue(rule.role), writtenRules()[i].role) << "rule " << i + 1;
        EXPECT_THAT(std::vector<std::string>(rule.candidates.begin(), rule.candidates.end()),
                    testing::ElementsAreArray(writtenRules()[i].candidates))
            << "rule " << i + 1;
    }
}

TEST(CursorRoles, EachCandidateWinsOverThoseBehindItInItsRule) {
    for (std::size_t i = 0; i < cursorRoleRules().size(); ++i) {
        const auto& rule = cursorRoleRules()[i];
        const std::string role(rawValue(rule.role));
        for (std::size_t first = 0; first < rule.candidates.size(); ++first) {
            Map names;
            for (auto j = first; j < rule.candidates.size(); ++j)
                names.emplace(std::string(rule.candidates[j]), std::string(rule.candidates[j]));
            // Rules after this one may take the role for themselves.
            std::string expected(rule.candidates[first]);
            for (auto later = i + 1; later < cursorRoleRules().size(); ++later) {
                const auto& other = cursorRoleRules()[later];
                if (other.role != rule.role) continue;
                const auto winner =
                    std::find_if(other.candidates.begin(), other.candidates.end(),
                                 [&](auto name) { return names.contains(std::string(name)); });
                if (winner != other.candidates.end()) expected = *winner;
            }
            Map roles;
            mapCursorsToSystemTypes(names, roles);
            EXPECT_EQ(roles.at(role), expected) << "rule " << i + 1;
        }
    }
}

TEST(CursorRoles, TheReferenceTableHasItsFiftySevenEntries) {
    const std::map<std::string, std::vector<std::string>> byRole = {
        {"arrow", {"default", "left_ptr", "arrow", "top_left_arrow", "wait", "watch", "progress"}},
        {"iBeam", {"text", "xterm", "ibeam"}},
        {"pointingHand", {"hand", "hand1", "hand2", "pointer", "pointing_hand"}},
        {"openHand", {"grab", "openhand", "open_hand"}},
        {"closedHand", {"grabbing", "closedhand", "closed_hand", "move", "fleur"}},
        {"crosshair", {"crosshair", "cross", "tcross"}},
        {"resizeLeftRight", {"size_hor", "sb_h_double_arrow", "ew-resize", "col-resize", "h_double_arrow"}},
        {"resizeUpDown", {"size_ver", "sb_v_double_arrow", "ns-resize", "row-resize", "v_double_arrow"}},
        {"resizeLeft", {"left_side", "w-resize"}},
        {"resizeRight", {"right_side", "e-resize"}},
        {"resizeUp", {"top_side", "n-resize"}},
        {"resizeDown", {"bottom_side", "s-resize"}},
        {"operationNotAllowed", {"not-allowed", "forbidden", "no-drop", "crossed_circle"}},
        {"contextualMenu", {"context-menu", "context_menu"}},
        {"dragCopy", {"copy", "dnd-copy"}},
        {"dragLink", {"alias", "dnd-link", "link"}},
        {"disappearingItem", {"pirate", "X_cursor"}},
    };
    Map expected;
    for (const auto& [role, names] : byRole)
        for (const auto& name : names) expected.emplace(name, role);
    EXPECT_THAT(expected, SizeIs(57));
    EXPECT_EQ(cursorTypeMapping(), expected);
}

TEST(CursorRoles, TheEssentialNamesAreFortyThree) {
    const std::set<std::string> expected = {"left_ptr",
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
    EXPECT_THAT(essentialCursors(), SizeIs(43));
    EXPECT_EQ(essentialCursors(), expected);
}

}  // namespace
}  // namespace pintle
