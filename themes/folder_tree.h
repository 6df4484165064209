// Whole folders on disk whose content came out of a stranger's archive: removing and measuring them. Links
// are never followed, and neither depth nor missing permissions stop a removal. Any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace pintle {

/// Removes a folder with everything in it, or a file or link. The first thing that could not be removed is
/// the error; nothing at `path` is an error too.
std::error_code removeTree(const std::filesystem::path& path);

struct TreeSize {
    /// Everything below the folder, itself not counted.
    std::uint64_t entries = 0;
    /// On the disk; a file of several names counts once.
    std::uint64_t bytes = 0;
    /// Folders inside folders, as far as they were followed.
    int depth = 0;
};

/// Measures until something passes its limit in `most`; what grows meanwhile may be missed. What lies deeper
/// than a path can be long is deeper than any limit.
TreeSize measureTree(const std::filesystem::path& folder, const TreeSize& most);

}  // namespace pintle
