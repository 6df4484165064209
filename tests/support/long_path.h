// Folders that only a program which works from inside them can make.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace pintle {

/// Makes folders in each other in `top`, an absolute path, and in the innermost the link "out" to "/". Its
/// path from `top` on can still be used, the absolute one is too long. False when that fails.
inline bool makeBeyondPaths(const std::filesystem::path& top) {
    int at = ::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < 16 && at >= 0; ++i) {
        const std::string name(i < 15 ? 255 : 250, 'n');
        const int inner =
            ::mkdirat(at, name.c_str(), 0755) == 0 ? ::openat(at, name.c_str(), O_RDONLY | O_CLOEXEC) : -1;
        ::close(at);
        at = inner;
    }
    if (at < 0) return false;
    const bool made = ::symlinkat("/", at, "out") == 0;
    ::close(at);
    return made;
}

}  // namespace pintle
