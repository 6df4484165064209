// Reading a theme's cursor files and building its cursors at a scale and density, in two passes. Functions
// from values to values for background work; the pipeline is the only caller.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cursor/cursor_folder.h"
#include "cursor/preloaded_cursor.h"
#include "cursor/xcursor_image.h"

namespace pintle {

/// Nominal sizes above this are not read, except each file's smallest and what a density above 1 is drawn
/// from.
inline constexpr std::int64_t kMaxNominalSize = 48;

/// X11 name and parsed images of one cursor file each.
using NamedImages = std::vector<std::pair<std::string, XCursorImages>>;

struct EssentialSet {
    /// False when the folder has no entry that could be listed.
    bool listed = false;
    NamedImages images;
    std::vector<PreloadedCursor> cursors;
    /// Names of the folder that the first pass left for the second.
    std::vector<std::string> rest;
    /// That is shown.
    std::int64_t nominalSize = 0;
    /// Knows what has been read, so that the second pass reads no file again. One thread at a time.
    std::shared_ptr<CursorFolder> folder;
};

/// First pass: the common shapes only.
EssentialSet loadEssentialSet(const std::filesystem::path& cursorsFolder, double scale, double density);

/// Reads what is shown of the rest of the folder; the answer holds the essential images as well.
NamedImages loadRemainingImages(const EssentialSet& essential);

/// All images of the files of which `shown` holds those that are shown, from the same open files. Closes
/// them. Empty when one of them has been changed since: a part of a theme would pass for all of it.
NamedImages loadAllImages(const NamedImages& shown);

/// Every cursor of `images`, taking those that the first pass has built.
std::vector<PreloadedCursor> completeSet(const EssentialSet& essential, const NamedImages& images,
                                         double scale, double density);

}  // namespace pintle
