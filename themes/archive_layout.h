// Finds the theme in an unpacked archive, whose layout is anyone's, and makes the chosen folder fit to stand
// alone. Functions over a folder tree that nobody else changes meanwhile; any thread. Nothing outside the
// tree is read or changed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "base/result.h"

namespace pintle {

/// The folder below `root` with Xcursor files directly inside it that fits best: a component of its path
/// below `root` equals the id in any letter case, then its name is "cursors", then it holds more of them;
/// otherwise the first in the order of the walk. Absent when there is none; `root` itself is none.
std::optional<std::filesystem::path> pickCursorDirectory(const std::filesystem::path& root,
                                                         const std::string& themeId);

/// Prepares `chosen`, a folder below `root`, for its move to a place where it is named "cursors". A link
/// into `chosen` stays where it will still lead to the same file after the move; any other link is replaced
/// by a copy of its target when that lies below `root` and is no folder around the link, and removed when
/// not. What is neither file, folder nor link is removed. Links are followed below `root` alone. Fails when
/// more than `mostCopies` files would have to be copied, when the links lead over too many others, or, with
/// nothing but modes changed, when not everything in `chosen` can be seen.
Status makeSelfContained(const std::filesystem::path& chosen, const std::filesystem::path& root,
                         std::uint64_t mostCopies);

}  // namespace pintle
