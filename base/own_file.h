// Reading and replacing the small files that the program keeps. Anything may stand at their places by now.
// Any thread.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "base/result.h"

namespace pintle {

struct OwnFile {
    std::vector<std::uint8_t> bytes;
    /// Of the file that was read, before its bytes.
    struct stat status = {};
};

/// The whole of a regular file of at most `most` bytes, behind links; anything else is not waited for and is
/// an error of the domain "errno": EISDIR for a folder, ENXIO for another kind, EFBIG for a larger file.
Result<OwnFile> readOwnFile(const std::filesystem::path& file, std::size_t most);

/// Writes a regular file of these bytes at `file`, replacing anything there but a folder, and waits until it
/// is on the disk. Whoever reads meanwhile sees the old one or the new one. On an error, of the domain
/// "errno", the old one is as it was. The bytes go to a new file beside it, ".NAME.new-…" first, which is
/// gone afterwards. `mode`: the file's permissions, less the umask.
Status replaceOwnFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes,
                      mode_t mode = 0666);

}  // namespace pintle
