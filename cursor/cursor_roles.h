// Which X11 cursor stands for which role: the ordered rules, the procedure that runs them over a name-keyed
// map, the reference table and the names loaded first. Data and one pure procedure; any thread.
#pragma once

#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "cursor/cursor_type.h"

namespace pintle {

struct CursorRoleRule {
    CursorType role;
    /// X11 names; the first one present wins.
    std::span<const std::string_view> candidates;
};

/// The rules of both passes in the order in which they run. The later ones overwrite the earlier ones' roles
/// on purpose: diagonal shapes take the straight resize roles, and any zoom, busy or help shape takes
/// `arrow`.
std::span<const CursorRoleRule> cursorRoleRules();

/// Runs every rule over `appliedCursors` (X11 name → value) and stores what it finds in `customCursors`
/// (role raw value → value). Removes nothing: a role without a candidate keeps what it has.
template <typename AppliedCursors, typename CustomCursors>
void mapCursorsToSystemTypes(const AppliedCursors& appliedCursors, CustomCursors& customCursors) {
    for (const auto& rule : cursorRoleRules()) {
        for (const auto candidate : rule.candidates) {
            const auto found = appliedCursors.find(std::string(candidate));
            if (found == appliedCursors.end()) continue;
            customCursors.insert_or_assign(std::string(rawValue(rule.role)), found->second);
            break;
        }
    }
}

/// The reference table, X11 name → role raw value.
const std::map<std::string, std::string>& cursorTypeMapping();

/// The X11 names of the common shapes, which are loaded before the rest of a theme.
const std::set<std::string>& essentialCursors();

}  // namespace pintle
