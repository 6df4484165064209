// The names of the symbols that the models use. The user interface has one drawing for each name, see `all`.
#pragma once

#include <array>
#include <string_view>

namespace pintle::symbol {

/// The program itself, in the tray and in the popover's header; also the section "Behavior".
inline constexpr std::string_view logo = "cursorarrow.motionlines";

// Header of the popover.
inline constexpr std::string_view update = "arrow.down.circle.fill";
inline constexpr std::string_view settings = "gearshape";
inline constexpr std::string_view about = "info.circle";
/// The quit button and the section "Startup".
inline constexpr std::string_view power = "power";

// Filters; the last three also mark a theme's hand.
inline constexpr std::string_view filterAll = "person.2.fill";
inline constexpr std::string_view handUniversal = "hand.raised.fill";
inline constexpr std::string_view handRight = "hand.point.right.fill";
inline constexpr std::string_view handLeft = "hand.point.left.fill";

// Rows.
inline constexpr std::string_view active = "checkmark.circle.fill";
inline constexpr std::string_view notActive = "circle";
inline constexpr std::string_view download = "arrow.down.to.line";
inline constexpr std::string_view warning = "exclamationmark.triangle";
/// A downloaded theme without a preview; also the first feature.
inline constexpr std::string_view pointer = "cursorarrow";
inline constexpr std::string_view animated = "timelapse";
/// Deletes a theme, removes an excluded name, resets the application.
inline constexpr std::string_view trash = "trash.fill";

/// Before the slider of the popover.
inline constexpr std::string_view scale = "arrow.down.left.and.arrow.up.right";

// Settings.
inline constexpr std::string_view launchAtLogin = "arrow.right.circle";
inline constexpr std::string_view applyOnLaunch = "checkmark.circle";
inline constexpr std::string_view restoreOnQuit = "arrow.uturn.backward.circle";
inline constexpr std::string_view fullscreen = "rectangle.on.rectangle";
inline constexpr std::string_view missingTypes = "cursorarrow.rays";
inline constexpr std::string_view screenSharing = "dot.radiowaves.left.and.right";
inline constexpr std::string_view interfaceStyle = "square.stack.3d.forward.dottedline";
inline constexpr std::string_view glassMode = "square.on.square";
/// The section "Cursor Size" and the second feature.
inline constexpr std::string_view size = "arrow.up.left.and.arrow.down.right";
inline constexpr std::string_view exclusions = "nosign";
inline constexpr std::string_view showField = "plus.circle.fill";
inline constexpr std::string_view hideField = "minus.circle.fill";
inline constexpr std::string_view reset = "arrow.counterclockwise.circle";

// About.
inline constexpr std::string_view features = "sparkles";
inline constexpr std::string_view autoApply = "arrow.clockwise";
inline constexpr std::string_view menuBar = "menubar.rectangle";
inline constexpr std::string_view mail = "envelope";

inline constexpr std::array all = {
    logo,         update,        settings,       about,         power,         filterAll,     handUniversal,
    handRight,    handLeft,      active,         notActive,     download,      warning,       pointer,
    animated,     trash,         scale,          launchAtLogin, applyOnLaunch, restoreOnQuit, fullscreen,
    missingTypes, screenSharing, interfaceStyle, glassMode,     size,          exclusions,    showField,
    hideField,    reset,         features,       autoApply,     menuBar,       mail,
};

}  // namespace pintle::symbol
