// What a run of the program leaves on disk only while it works: scratch folders beside the themes and
// archives in the temporary folder. Each is locked by the run that made it, so that the next run recognises
// what a dead one has left. Used by download, extraction and removal. Any thread.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>

#include "base/result.h"

namespace pintle {

/// 36 characters, upper case, different each time.
std::string freshUuid();

/// The error of a file operation as the rows show it.
Error fileError(const std::error_code& code);

/// Holds a lock on a file or folder as long as it lives.
class Lock {
  public:
    Lock() = default;
    explicit Lock(int fd) : fd_(fd) {}
    Lock(Lock&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Lock& operator=(Lock&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock();
    explicit operator bool() const { return fd_ >= 0; }

  private:
    int fd_ = -1;
};

/// A folder ".extract-" + UUID, removed with everything in it at the end of its life.
class ScratchFolder {
  public:
    /// Makes it inside `parent`, which is made too.
    static Result<std::shared_ptr<ScratchFolder>> create(const std::filesystem::path& parent);
    ~ScratchFolder() { remove(); }
    const std::filesystem::path& path() const { return path_; }
    /// Removes it now; whoever else still holds it may let go of it later.
    void remove();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

  private:
    ScratchFolder(std::filesystem::path path, Lock lock) : path_(std::move(path)), lock_(std::move(lock)) {}
    const std::filesystem::path path_;
    Lock lock_;
    std::once_flag removed_;
};

/// The file that a download arrives in: "pintle-" + UUID + ".part" until it is complete, then the same with
/// ".download". Removed at the end of its life.
class ArchiveFile {
  public:
    /// Makes it empty inside `temporary`; where that fails, whoever writes to it finds out.
    explicit ArchiveFile(const std::filesystem::path& temporary);
    ~ArchiveFile() { remove(); }
    ArchiveFile(const ArchiveFile&) = delete;
    ArchiveFile& operator=(const ArchiveFile&) = delete;

    /// Where it is now.
    const std::filesystem::path& path() const { return path_; }
    /// Gives the file, found at `arrived`, its final name.
    std::error_code complete(const std::filesystem::path& arrived);
    void remove();

  private:
    std::filesystem::path path_;
    Lock lock_;
};

/// Removes the folder so that at no moment a part of it stands at its place: first it moves into a scratch
/// folder beside it. What cannot be removed goes back.
std::error_code removeWhole(const std::filesystem::path& folder);

/// Removes what earlier runs have left: unlocked scratch folders in the themes folder and unlocked archives
/// in the temporary folder, those of this user only.
void removeLeftovers(const std::filesystem::path& themesDirectory, const std::filesystem::path& temporary);

}  // namespace pintle
