// A theme's folder of cursor files. A file that stands behind several names (links) is read once in the life
// of the reader. Use from one thread at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "cursor/pixel_pool.h"
#include "cursor/xcursor_image.h"

namespace pintle {

class CursorFolder {
  public:
    explicit CursorFolder(std::filesystem::path folder);

    /// The names of all entries in the file system's order; empty when the folder cannot be listed.
    std::vector<std::string> names() const;

    /// The images of one cursor file up to the limit; null when it cannot be read or holds none.
    XCursorImages read(const std::string& name, std::int64_t maxNominalSize);

  private:
    std::filesystem::path folder_;
    PixelPool pixels_;
    /// By device, inode and limit.
    std::map<std::tuple<std::uint64_t, std::uint64_t, std::int64_t>, XCursorImages> known_;
};

}  // namespace pintle
