// Inputs as files, for what is read by path. They lie in memory where the system has a place for that.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>

#include "tests/support/temporary_folder.h"

namespace pintle {

/// A folder of this process, removed at its end.
inline const std::filesystem::path& inputFolder() {
    static const bool isInMemory = [] {
        const bool possible = ::access("/dev/shm", W_OK | X_OK) == 0;
        if (possible) ::setenv("TMPDIR", "/dev/shm", 1);
        return possible;
    }();
    static_cast<void>(isInMemory);
    static const TemporaryFolder folder;
    return folder.path();
}

/// The same path each time, holding `data` until the next call.
inline const std::filesystem::path& inputFile(std::span<const std::uint8_t> data) {
    static const std::filesystem::path path = inputFolder() / "input";
    writeFile(path, data);
    return path;
}

}  // namespace pintle
