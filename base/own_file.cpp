#include "base/own_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <string>
#include <system_error>
#include <utility>

namespace pintle {
namespace {

constexpr int kMostNames = 100;

Error errorOf(int code) { return {"errno", code, std::generic_category().message(code)}; }

Result<OwnFile> readDescriptor(int fd, std::size_t most) {
    OwnFile file;
    if (::fstat(fd, &file.status) != 0) return errorOf(errno);
    if (!S_ISREG(file.status.st_mode)) return errorOf(S_ISDIR(file.status.st_mode) ? EISDIR : ENXIO);
    if (static_cast<std::uint64_t>(file.status.st_size) > most) return errorOf(EFBIG);
    file.bytes.resize(static_cast<std::size_t>(file.status.st_size));
    std::size_t filled = 0;
    while (filled < file.bytes.size()) {
        const auto got = ::read(fd, file.bytes.data() + filled, file.bytes.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errorOf(errno);
        // It has become shorter.
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    file.bytes.resize(filled);
    return file;
}

/// Ends with its file closed.
bool writeAndSync(int fd, std::span<const std::uint8_t> bytes) {
    bool good = true;
    while (good && !bytes.empty()) {
        const auto wrote = ::write(fd, bytes.data(), bytes.size());
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote == 0) errno = ENOSPC;
        good = wrote > 0;
        if (good) bytes = bytes.subspan(static_cast<std::size_t>(wrote));
    }
    good = good && ::fsync(fd) == 0;
    const int code = errno;
    // Network file systems report a failed write here.
    if (::close(fd) != 0) return false;
    errno = code;
    return good;
}

void syncFolder(const std::filesystem::path& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

/// A new file, its name begun with `start` and found at random, because two programs may write at the same
/// time; nothing that is there is opened or removed. Not mkostemp: the mode is that of any new file of this
/// user, and nothing but making one applies the umask in a program of several threads.
int createBeside(const std::filesystem::path& start, mode_t mode, std::filesystem::path& name) {
    std::random_device random;
    int fd = -1;
    for (int i = 0; i < kMostNames; ++i) {
        name = start;
        name += std::to_string(random());
        fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
        if (fd >= 0 || errno != EEXIST) break;
    }
    return fd;
}

}  // namespace

Status replaceOwnFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes, mode_t mode) {
    const auto folder = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
    std::filesystem::path beside;
    const int fd = createBeside(folder / ("." + file.filename().string() + ".new-"), mode, beside);
    if (fd < 0) return errorOf(errno);
    if (!writeAndSync(fd, bytes) || ::rename(beside.c_str(), file.c_str()) != 0) {
        const int code = errno;
        ::unlink(beside.c_str());
        return errorOf(code);
    }
    syncFolder(folder);
    return Done{};
}

Result<OwnFile> readOwnFile(const std::filesystem::path& file, std::size_t most) {
    // Non-blocking: a FIFO would wait for a writer.
    const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return errorOf(errno);
    auto result = readDescriptor(fd, most);
    ::close(fd);
    return result;
}

}  // namespace pintle
