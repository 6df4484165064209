#include "cursor/cursor_type.h"

#include <cstddef>

namespace pintle {
namespace {

struct Role {
    CursorType type;
    std::string_view rawValue;
    StandardCursor standard;
};

/// In declaration order, so that a role is found by its number.
constexpr std::array<Role, 17> kRoles = {{
    {CursorType::arrow, "arrow", StandardCursor::arrow},
    {CursorType::iBeam, "iBeam", StandardCursor::iBeam},
    {CursorType::crosshair, "crosshair", StandardCursor::crosshair},
    {CursorType::closedHand, "closedHand", StandardCursor::closedHand},
    {CursorType::openHand, "openHand", StandardCursor::openHand},
    {CursorType::pointingHand, "pointingHand", StandardCursor::pointingHand},
    {CursorType::resizeLeft, "resizeLeft", StandardCursor::resizeLeft},
    {CursorType::resizeRight, "resizeRight", StandardCursor::resizeRight},
    {CursorType::resizeLeftRight, "resizeLeftRight", StandardCursor::resizeLeftRight},
    {CursorType::resizeUp, "resizeUp", StandardCursor::resizeUp},
    {CursorType::resizeDown, "resizeDown", StandardCursor::resizeDown},
    {CursorType::resizeUpDown, "resizeUpDown", StandardCursor::resizeUpDown},
    {CursorType::disappearingItem, "disappearingItem", StandardCursor::disappearingItem},
    {CursorType::operationNotAllowed, "operationNotAllowed", StandardCursor::operationNotAllowed},
    {CursorType::dragLink, "dragLink", StandardCursor::dragLink},
    {CursorType::dragCopy, "dragCopy", StandardCursor::dragCopy},
    {CursorType::contextualMenu, "contextualMenu", StandardCursor::contextualMenu},
}};

constexpr bool rolesAreInDeclarationOrder() {
    for (std::size_t i = 0; i < kRoles.size(); ++i)
        if (kRoles[i].type != kCursorTypes[i] || static_cast<std::size_t>(kRoles[i].type) != i) return false;
    return true;
}
static_assert(rolesAreInDeclarationOrder());

}  // namespace

std::string_view rawValue(CursorType type) { return kRoles[static_cast<std::size_t>(type)].rawValue; }

std::optional<CursorType> cursorTypeFromRawValue(std::string_view rawValue) {
    for (const auto& role : kRoles)
        if (role.rawValue == rawValue) return role.type;
    return std::nullopt;
}

StandardCursor standardCursorOf(CursorType type) { return kRoles[static_cast<std::size_t>(type)].standard; }

}  // namespace pintle
