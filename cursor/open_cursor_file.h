// A cursor file that was read in part, for what is shown first, and stays open for the rest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "cursor/byte_source.h"
#include "cursor/density_source.h"
#include "cursor/pixel_pool.h"

namespace pintle {

/// What the files of one folder share.
struct FolderPixels {
    /// Guards the pool and the files: a frame that was not read at first is read where it is asked for.
    std::mutex mutex;
    PixelPool pool;
};

/// One of the files that the whole program may keep open for later. Any thread.
class OpenFileShare {
  public:
    /// Fewer where the system grants few: the rest of the program needs descriptors as well.
    static constexpr std::size_t kMost = 256;

    /// Absent when all are taken.
    static std::optional<OpenFileShare> take();
    ~OpenFileShare();
    OpenFileShare(OpenFileShare&& other) noexcept : taken_(std::exchange(other.taken_, false)) {}
    OpenFileShare(const OpenFileShare&) = delete;
    OpenFileShare& operator=(const OpenFileShare&) = delete;
    OpenFileShare& operator=(OpenFileShare&&) = delete;

  private:
    OpenFileShare() = default;
    bool taken_ = true;
};

/// Any thread.
class OpenCursorFile {
  public:
    OpenCursorFile(std::unique_ptr<FileSource> source, OpenFileShare share, std::int64_t maxNominalSize,
                   std::shared_ptr<FolderPixels> pixels);

    /// All images up to the limit, with their pixels; null when the file has been changed since. The first
    /// call reads them and closes the file.
    XCursorImages all();

  private:
    const std::int64_t maxNominalSize_;
    const std::shared_ptr<FolderPixels> pixels_;
    std::optional<OpenFileShare> share_;
    std::unique_ptr<FileSource> source_;
    XCursorImages all_;
};

}  // namespace pintle
