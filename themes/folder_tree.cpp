#include "themes/folder_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

namespace pintle {
namespace {

namespace fs = std::filesystem;

std::error_code lastError() { return {errno, std::generic_category()}; }

class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    int get() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }

  private:
    int fd_;
};

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// Opens a folder for listing and changing, giving its owner the right to do so first.
int openFolder(int parent, const char* name) {
    struct stat info = {};
    if (::fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode) &&
        (info.st_mode & S_IRWXU) != S_IRWXU)
        ::fchmodat(parent, name, S_IRWXU, 0);
    return ::openat(parent, name, kFolderFlags);
}

std::vector<std::string> list(int folder) {
    std::vector<std::string> names;
    const int copy = ::openat(folder, ".", kFolderFlags);
    if (copy < 0) return names;
    DIR* stream = ::fdopendir(copy);
    if (!stream) {
        ::close(copy);
        return names;
    }
    while (const dirent* entry = ::readdir(stream)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(std::move(name));
    }
    ::closedir(stream);
    return names;
}

bool isFolder(int parent, const std::string& name) {
    struct stat info = {};
    return ::fstatat(parent, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode);
}

/// Empties folders by lifting what is in their sub-folders up into the top one, so that a tree deeper than
/// the longest path or the number of open files goes as well.
class Remover {
  public:
    explicit Remover(int top) : top_(top) {}

    /// Everything inside; false when something stays.
    bool empty() {
        while (true) {
            const auto names = list(top_);
            if (names.empty()) return true;
            bool progress = false;
            for (const auto& name : names) progress = remove(name) || progress;
            if (!progress) return false;
        }
    }
    std::error_code error() const { return error_; }

  private:
    /// True when something has changed.
    bool remove(const std::string& name) {
        if (!isFolder(top_, name)) return unlink(top_, name, 0);
        bool progress = false;
        if (const Descriptor folder(openFolder(top_, name.c_str())); folder) {
            for (const auto& entry : list(folder.get()))
                progress = (isFolder(folder.get(), entry) ? lift(folder.get(), entry)
                                                          : unlink(folder.get(), entry, 0)) ||
                           progress;
        } else {
            error_ = lastError();
        }
        return unlink(top_, name, AT_REMOVEDIR) || progress;
    }
    bool unlink(int folder, const std::string& name, int flags) {
        if (::unlinkat(folder, name.c_str(), flags) == 0) return true;
        error_ = lastError();
        return false;
    }
    bool lift(int folder, const std::string& name) {
        // A folder that its owner may not write to cannot change its parent.
        ::fchmodat(folder, name.c_str(), S_IRWXU, 0);
        for (int attempt = 0; attempt < 1000; ++attempt) {
            const auto lifted = ".lifted-" + std::to_string(next_++);
            if (::faccessat(top_, lifted.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) continue;
            if (::renameat(folder, name.c_str(), top_, lifted.c_str()) == 0) return true;
            error_ = lastError();
            return false;
        }
        return false;
    }

    const int top_;
    std::uint64_t next_ = 0;
    std::error_code error_;
};

}  // namespace

std::error_code removeTree(const fs::path& path) {
    struct stat info = {};
    if (::lstat(path.c_str(), &info) != 0) return lastError();
    if (!S_ISDIR(info.st_mode)) return ::unlink(path.c_str()) == 0 ? std::error_code() : lastError();
    const Descriptor top(openFolder(AT_FDCWD, path.c_str()));
    if (!top) return lastError();
    Remover remover(top.get());
    if (!remover.empty()) return remover.error();
    return ::rmdir(path.c_str()) == 0 ? std::error_code() : lastError();
}

TreeSize measureTree(const fs::path& folder, const TreeSize& most) {
    struct Open {
        fs::path path;
        int depth;
    };
    TreeSize size;
    // The process that makes the tree may work inside it with relative paths and go deeper than any path from
    // here reaches.
    const auto tooDeep = [&] {
        size.depth = most.depth + 1;
        return size;
    };
    std::vector<Open> folders{{folder, 0}};
    while (!folders.empty()) {
        const auto current = std::move(folders.back());
        folders.pop_back();
        std::error_code error;
        fs::directory_iterator entry(current.path, error);
        while (!error && entry != fs::directory_iterator{}) {
            ++size.entries;
            struct stat info = {};
            if (::lstat(entry->path().c_str(), &info) != 0) {
                if (errno == ENAMETOOLONG) return tooDeep();
            } else if (S_ISDIR(info.st_mode)) {
                folders.push_back({entry->path(), current.depth + 1});
            } else {
                size.bytes += static_cast<std::uint64_t>(info.st_blocks) * 512 / info.st_nlink;
            }
            size.depth = std::max(size.depth, current.depth);
            if (size.entries > most.entries || size.bytes > most.bytes || size.depth > most.depth)
                return size;
            entry.increment(error);
        }
        if (error == std::errc::filename_too_long) return tooDeep();
    }
    return size;
}

}  // namespace pintle
