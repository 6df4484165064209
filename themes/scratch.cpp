#include "themes/scratch.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

#include "themes/folder_tree.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFolderPrefix = ".extract-";
constexpr std::string_view kFilePrefix = "pintle-";
constexpr std::string_view kArriving = ".part";
constexpr std::string_view kArrived = ".download";

std::error_code lastError() { return {errno, std::generic_category()}; }

/// Fails when another run holds the lock, or when there is nothing of this user at the path.
Lock tryLock(const fs::path& path, int flags) {
    const int fd = ::open(path.c_str(), flags | O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    Lock lock(fd);
    struct stat info = {};
    if (fd < 0 || ::fstat(fd, &info) != 0 || info.st_uid != ::geteuid() ||
        ::flock(fd, LOCK_EX | LOCK_NB) != 0)
        return {};
    return lock;
}

bool isUuid(std::string_view text) {
    if (text.size() != 36) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        const bool digit = (text[i] >= '0' && text[i] <= '9') || (text[i] >= 'A' && text[i] <= 'F');
        if (dash ? text[i] != '-' : !digit) return false;
    }
    return true;
}

bool isNamed(std::string_view name, std::string_view prefix, std::string_view suffix) {
    return name.size() == prefix.size() + 36 + suffix.size() && name.starts_with(prefix) &&
           name.ends_with(suffix) && isUuid(name.substr(prefix.size(), 36));
}

std::vector<fs::path> entries(const fs::path& folder) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    while (!error && entry != fs::directory_iterator{}) {
        found.push_back(entry->path());
        entry.increment(error);
    }
    return found;
}

}  // namespace

std::string freshUuid() {
    std::random_device random;
    std::string uuid;
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (int i = 0; i < 36; ++i) {
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            uuid += '-';
            continue;
        }
        unsigned digit = random() % 16;
        if (i == 14) digit = 4;
        if (i == 19) digit = 8 | (digit & 3);
        uuid += digits[digit];
    }
    return uuid;
}

Error fileError(const std::error_code& code) { return {"Pintle", code.value(), code.message()}; }

Lock::~Lock() {
    if (fd_ >= 0) ::close(fd_);
}

Result<std::shared_ptr<ScratchFolder>> ScratchFolder::create(const fs::path& parent) {
    std::error_code error;
    fs::create_directories(parent, error);
    if (error) return fileError(error);
    auto path = parent / (std::string(kFolderPrefix) + freshUuid());
    if (::mkdir(path.c_str(), S_IRWXU) != 0) return fileError(lastError());
    auto lock = tryLock(path, O_DIRECTORY);
    return std::shared_ptr<ScratchFolder>(new ScratchFolder(std::move(path), std::move(lock)));
}

void ScratchFolder::remove() {
    std::call_once(removed_, [this] { removeTree(path_); });
}

ArchiveFile::ArchiveFile(const fs::path& temporary)
    : path_(temporary / (std::string(kFilePrefix) + freshUuid() + std::string(kArriving))),
      lock_(tryLock(path_, O_CREAT | O_EXCL)) {}

std::error_code ArchiveFile::complete(const fs::path& arrived) {
    auto target = path_;
    target.replace_extension(kArrived);
    std::error_code error;
    fs::rename(arrived, target, error);
    if (!error) path_ = std::move(target);
    return error;
}

void ArchiveFile::remove() {
    std::error_code ignored;
    fs::remove(path_, ignored);
}

std::error_code removeWhole(const fs::path& folder) {
    // Looked for first: a scratch folder is not made for nothing.
    struct stat info = {};
    if (::lstat(folder.c_str(), &info) != 0) return lastError();
    // A folder that its owner may not write to cannot move to another parent.
    if (S_ISDIR(info.st_mode)) ::chmod(folder.c_str(), (info.st_mode & 07777) | S_IRWXU);
    const auto scratch = ScratchFolder::create(folder.parent_path());
    if (!scratch) return {scratch.error().code, std::generic_category()};
    const auto moved = scratch.value()->path() / folder.filename();
    std::error_code error;
    fs::rename(folder, moved, error);
    if (error) return error;
    if (const auto failed = removeTree(moved)) {
        fs::rename(moved, folder, error);
        return failed;
    }
    return {};
}

void removeLeftovers(const fs::path& themesDirectory, const fs::path& temporary) {
    for (const auto& path : entries(themesDirectory)) {
        if (!isNamed(path.filename().string(), kFolderPrefix, "")) continue;
        if (const auto lock = tryLock(path, O_DIRECTORY)) removeTree(path);
    }
    for (const auto& path : entries(temporary)) {
        const auto name = path.filename().string();
        if (!isNamed(name, kFilePrefix, kArriving) && !isNamed(name, kFilePrefix, kArrived)) continue;
        std::error_code ignored;
        if (fs::symlink_status(path, ignored).type() != fs::file_type::regular) continue;
        if (const auto lock = tryLock(path, 0)) fs::remove(path, ignored);
    }
}

}  // namespace pintle
