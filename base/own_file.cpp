#include "base/own_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace pintle {
namespace {

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

}  // namespace

Status replaceOwnFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes) {
    auto neighbour = file;
    neighbour += ".new";
    // What an interrupted attempt has left, or anything else: nothing is ever written through it.
    ::unlink(neighbour.c_str());
    const int fd = ::open(neighbour.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0) return errorOf(errno);
    if (!writeAndSync(fd, bytes) || ::rename(neighbour.c_str(), file.c_str()) != 0) {
        const int code = errno;
        ::unlink(neighbour.c_str());
        return errorOf(code);
    }
    syncFolder(file.has_parent_path() ? file.parent_path() : ".");
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
