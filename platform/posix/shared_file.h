// One small file that several processes rewrite whole: the lock, reading, replacing, putting aside, and
// bringing onto the disk. Used by the preference store. No state; bringToDisk from any thread, the rest on
// the main one.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "base/result.h"
#include "base/subscription.h"

namespace pintle {

/// Distinguishes one state of a file from another.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0;
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

struct FileContent {
    enum class Outcome {
        absent,
        read,
        /// Something is there that this process may not or cannot read as a file.
        unreadable,
        /// Reading failed for want of something that may come back (descriptors, memory, the device).
        failed,
    };
    Outcome outcome = Outcome::absent;
    std::vector<std::uint8_t> bytes;
    FileStamp stamp;
    /// What the system said; empty when absent or read.
    std::string reason;
};

/// The file behind `path`: links are followed, also a dangling one, so that a link is never replaced.
std::filesystem::path behindLinks(std::filesystem::path path);

/// Keeps other processes that ask the same away from `file` until the handle ends. An empty handle when the
/// lock could not be had, within half a second or at once: replacing stays whole without it, only a merge may
/// be lost.
enum class LockWait { halfASecond, none };
Subscription lockFile(const std::filesystem::path& file, LockWait wait = LockWait::halfASecond);

/// The stamp of `file` as it is now; a default one when it is absent.
FileStamp stampOf(const std::filesystem::path& file);
FileContent readWholeFile(const std::filesystem::path& file);

/// Writes `bytes` beside `file` and renames over it, making missing folders; mode 0600. The stamp is that of
/// the new file. On an error the old file is as it was and nothing is left beside it.
Result<FileStamp> replaceFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);
/// Removes what interrupted replacements left. Only under the lock.
void removeLeftovers(const std::filesystem::path& file);

/// Gives `file` a free name beside it, NAME.damaged-1 and so on, and answers that name.
Result<std::filesystem::path> putAside(const std::filesystem::path& file);

/// Waits until `file` and its name are on the disk.
bool bringToDisk(const std::filesystem::path& file);

}  // namespace pintle
