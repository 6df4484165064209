// An input as a file on disk, for what is read by path.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "tests/support/temporary_folder.h"

namespace pintle {

/// The same path each time, holding `data` until the next call.
inline const std::filesystem::path& inputFile(std::span<const std::uint8_t> data) {
    static const TemporaryFolder folder;
    static const std::filesystem::path path = folder.path() / "input";
    writeFile(path, data);
    return path;
}

}  // namespace pintle
