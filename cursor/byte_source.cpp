#include "cursor/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace pintle {
namespace {

// Without O_NONBLOCK a named pipe that someone left in a theme would be waited for.
constexpr int kReadOnly = O_RDONLY | O_NONBLOCK | O_CLOEXEC;

/// The field has two names.
template <typename Status>
std::pair<std::int64_t, std::int64_t> modifiedOf(const Status& status) {
    if constexpr (requires { status.st_mtimespec; })
        return {status.st_mtimespec.tv_sec, status.st_mtimespec.tv_nsec};
    else
        return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

}  // namespace

std::size_t ByteSource::read(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (offset >= length_) return 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), length_ - offset));
    const auto got = readInside(offset, out.first(wanted));
    if (got < wanted) length_ = offset + got;
    return got;
}

std::size_t MemorySource::readInside(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (!out.empty()) std::memcpy(out.data(), data_.data() + offset, out.size());
    return out.size();
}

FileSource::FileSource(const std::filesystem::path& file)
    : ByteSource(0), descriptor_(::open(file.c_str(), kReadOnly)) {
    examine();
}

FileSource::FileSource(int folder, const std::string& name)
    : ByteSource(0), descriptor_(::openat(folder, name.c_str(), kReadOnly)) {
    examine();
}

void FileSource::examine() {
    struct stat status {};
    if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return;
    identity_ = {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
    modified_ = modifiedOf(status);
    if (status.st_size > 0) setLength(static_cast<std::uint64_t>(status.st_size));
}

bool FileSource::isUnchanged() const {
    struct stat status {};
    return ::fstat(descriptor_, &status) == 0 && static_cast<std::uint64_t>(status.st_size) == length() &&
           modifiedOf(status) == modified_;
}

FileSource::~FileSource() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::size_t FileSource::readInside(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (headBytes_ == 0)
        headBytes_ = readFromFile(0, std::span(head_).first(static_cast<std::size_t>(
                                         std::min<std::uint64_t>(length(), head_.size()))));
    if (offset + out.size() <= headBytes_) {
        std::copy_n(head_.begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
        return out.size();
    }
    return readFromFile(offset, out);
}

std::size_t FileSource::readFromFile(std::uint64_t offset, std::span<std::uint8_t> out) const {
    std::size_t filled = 0;
    while (filled < out.size()) {
        const auto got = ::pread(descriptor_, out.data() + filled, out.size() - filled,
                                 static_cast<off_t>(offset + filled));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

}  // namespace pintle
