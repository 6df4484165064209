// The two cursor themes that this program writes for the desktop, in turn: a desktop does not look again at a
// theme of the name that it has already loaded. Files in the icon folders of the user, where anything may
// stand by now: what this program did not make is never changed or removed. Any thread, one call at a time.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace pintle::wayland {

inline constexpr std::array<std::string_view, 2> kThemeNames = {"Pintle-A", "Pintle-B"};

/// Whether a theme of this name is never the user's own choice.
bool isOwnThemeName(std::string_view name);
/// The name that follows the one in force; the first one when another theme is.
std::string_view nextThemeName(std::string_view inForce);

struct IconFolders {
    /// "icons" in the user's data folder. Holds the themes themselves, because sandboxes see no other.
    std::filesystem::path data;
    /// ".icons" in the home folder. Holds links to them, because some desktops look nowhere else.
    std::filesystem::path home;
};

struct ThemeFile {
    /// The first one is the file, the others are links to it. Names that are no plain file name are left out.
    std::vector<std::string> names;
    std::vector<std::uint8_t> bytes;
};

struct WrittenTheme {
    /// Why there is no link in the home folder; the theme itself is whole.
    std::optional<Error> linkError;
};

/// Writes a whole theme under one of kThemeNames instead of an earlier one of this program, and waits
/// until it is on the disk; nobody ever sees a part of it. `inherits`: the themes that are asked for what it
/// lacks; names that no index file can hold are left out. On an error, of the domain "errno", what was there
/// is as it was; EEXIST when something of this name is not ours.
Result<WrittenTheme> writeTheme(const IconFolders& folders, std::string_view name,
                                std::span<const std::string> inherits, std::span<const ThemeFile> files);

/// Removes a theme that this program wrote and the link to it; anything else stays.
void removeTheme(const IconFolders& folders, std::string_view name);

/// Removes what an interrupted writeTheme() left beside.
void removeThemeLeftovers(const IconFolders& folders);

/// Whether a theme that this program wrote stands under the name.
bool hasTheme(const IconFolders& folders, std::string_view name);

}  // namespace pintle::wayland
