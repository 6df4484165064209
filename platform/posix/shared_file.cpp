#include "platform/posix/shared_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "base/own_file.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFile = std::size_t{64} << 20;
constexpr int kMostLinks = 40;
constexpr int kLockTries = 250;
constexpr timespec kLockPause{0, 2'000'000};
constexpr int kMostAside = 10'000;

class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }
    /// Network file systems report a failed write here.
    bool close() { return ::close(std::exchange(fd_, -1)) == 0; }

  private:
    int fd_;
};

Error systemError(int code, std::string what) {
    return Error{"errno", code, std::move(what) + ": " + std::generic_category().message(code)};
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileStamp stampFrom(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

/// Missing folders are made for their owner alone, as the base directory rules ask.
void makeFolders(const fs::path& folder) {
    if (folder.empty() || folder == folder.root_path()) return;
    if (::mkdir(folder.c_str(), 0700) == 0 || errno != ENOENT) return;
    makeFolders(folder.parent_path());
    ::mkdir(folder.c_str(), 0700);
}

fs::path lockName(const fs::path& file) {
    return folderOf(file) / ("." + file.filename().string() + ".lock");
}
std::string temporaryPrefix(const fs::path& file) { return "." + file.filename().string() + ".new-"; }

bool writeAll(int fd, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written == 0) errno = ENOSPC;
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool mayComeBack(int code) {
    return code == EMFILE || code == ENFILE || code == ENOMEM || code == EIO || code == EINTR ||
           code == EAGAIN || code == ESTALE || code == ETIMEDOUT || code == ENOTCONN;
}

FileContent failure(int code) {
    FileContent content;
    content.outcome = mayComeBack(code) ? FileContent::Outcome::failed : FileContent::Outcome::unreadable;
    content.reason = std::generic_category().message(code);
    return content;
}

bool syncPath(const fs::path& path, int flags) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags));
    return file && ::fsync(file.get()) == 0;
}

}  // namespace

fs::path behindLinks(fs::path path) {
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const auto target = fs::read_symlink(path, error);
        if (error) return path;
        path = target.is_absolute() ? target : folderOf(path) / target;
    }
    return path;
}

Subscription lockFile(const fs::path& file, LockWait wait) {
    makeFolders(folderOf(file));
    auto lock = std::make_shared<Descriptor>(
        ::open(lockName(file).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (!*lock) return {};
    // Not a blocking wait: a stopped process that holds the lock must not stop this one.
    const int tries = wait == LockWait::none ? 1 : kLockTries;
    for (int i = 0; i < tries; ++i) {
        if (::flock(lock->get(), LOCK_EX | LOCK_NB) == 0)
            return Subscription([lock]() mutable { lock.reset(); });
        if ((errno != EWOULDBLOCK && errno != EINTR) || tries == 1) return {};
        ::nanosleep(&kLockPause, nullptr);
    }
    return {};
}

FileStamp stampOf(const fs::path& file) {
    struct stat status = {};
    return ::stat(file.c_str(), &status) == 0 ? stampFrom(status) : FileStamp{};
}

FileContent readWholeFile(const fs::path& file) {
    auto read = readOwnFile(file, kLargestFile);
    if (!read) {
        const int code = read.error().code;
        return code == ENOENT || code == ENOTDIR ? FileContent{} : failure(code);
    }
    FileContent content;
    content.stamp = stampFrom(read.value().status);
    content.bytes = std::move(read).value().bytes;
    content.outcome = FileContent::Outcome::read;
    return content;
}

Result<FileStamp> replaceFile(const fs::path& file, std::span<const std::uint8_t> bytes) {
    makeFolders(folderOf(file));
    std::string name = (folderOf(file) / (temporaryPrefix(file) + "XXXXXX")).string();
    Descriptor output(::mkostemp(name.data(), O_CLOEXEC));
    if (!output) return systemError(errno, "cannot make a file in " + folderOf(file).string());
    const auto giveUp = [&](const char* what) -> Result<FileStamp> {
        const int code = errno;
        ::unlink(name.c_str());
        return systemError(code, what);
    };
    if (!writeAll(output.get(), bytes)) return giveUp("cannot write");
    // A second descriptor outlives the close that reports late errors, for the stamp after the rename.
    const Descriptor kept(::fcntl(output.get(), F_DUPFD_CLOEXEC, 0));
    if (!output.close()) return giveUp("cannot write");
    if (::rename(name.c_str(), file.c_str()) != 0) return giveUp("cannot rename");
    struct stat status = {};
    if (!kept || ::fstat(kept.get(), &status) != 0) return stampOf(file);
    return stampFrom(status);
}

void removeLeftovers(const fs::path& file) {
    const std::string prefix = temporaryPrefix(file);
    std::error_code error;
    for (fs::directory_iterator entry(folderOf(file), error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().filename().string().starts_with(prefix)) ::unlink(entry->path().c_str());
}

Result<fs::path> putAside(const fs::path& file) {
    for (int i = 1; i < kMostAside; ++i) {
        const fs::path aside = file.string() + ".damaged-" + std::to_string(i);
        if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) return aside;
        if (errno == EEXIST) continue;
        if (errno != EINVAL && errno != ENOSYS) return systemError(errno, "cannot rename");
        // This file system has no rename that spares what is there.
        struct stat status = {};
        if (::lstat(aside.c_str(), &status) == 0) continue;
        if (::rename(file.c_str(), aside.c_str()) == 0) return aside;
        return systemError(errno, "cannot rename");
    }
    return systemError(EEXIST, "cannot rename");
}

bool bringToDisk(const fs::path& file) {
    return syncPath(file, O_NONBLOCK) && syncPath(folderOf(file), O_DIRECTORY);
}

}  // namespace pintle
