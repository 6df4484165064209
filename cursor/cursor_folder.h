// A theme's folder of cursor files. A file that stands behind several names (links) is read once in the life
// of the reader. Use from one thread at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "cursor/byte_source.h"
#include "cursor/density_source.h"
#include "cursor/open_cursor_file.h"
#include "cursor/pixel_pool.h"

namespace pintle {

class CursorFolder {
  public:
    /// `density`: the pixels that a point has each way, at least 1; above 1 the sources for it are read too.
    explicit CursorFolder(const std::filesystem::path& folder, double density = 1);
    ~CursorFolder();
    CursorFolder(const CursorFolder&) = delete;
    CursorFolder& operator=(const CursorFolder&) = delete;

    /// The names of all entries in the file system's order; empty when the folder cannot be listed.
    std::vector<std::string> names();

    /// The images of one cursor file up to the limit; null when it cannot be read or holds none.
    XCursorImages read(const std::string& name, std::int64_t maxNominalSize);

    /// Of the images that read() answers, as far as that can be told without reading them all, those that are
    /// shown where `nominalSize` is looked for; the file stays open for the rest. Else what read() answers.
    /// One nominal size and limit in the life of the folder.
    XCursorImages readShown(const std::string& name, std::int64_t nominalSize, std::int64_t maxNominalSize);

  private:
    using Identity = FileSource::Identity;

    /// Of the file behind a name, which is mostly known already where it is a link: asking costs less than
    /// opening. Absent when it is no regular file.
    std::optional<Identity> identityOfLink(const std::string& name);
    XCursorImages readWhole(FileSource& source, std::int64_t maxNominalSize);

    static constexpr std::size_t kMostSourceBytes = std::size_t{256} << 20;
    static constexpr std::size_t kMostShownBytes = std::size_t{256} << 20;

    int descriptor_;
    const double density_;
    const std::shared_ptr<FolderPixels> wholePixels_ = std::make_shared<FolderPixels>();
    /// For what is shown first.
    PixelPool shownPixels_{kMostShownBytes};
    /// Of its own, so that no file loses its images to the sources of others.
    PixelPool sourcePixels_{kMostSourceBytes};
    /// Entries known to be no links, which need not be looked at before they are opened.
    std::unordered_set<std::string> plainFiles_;
    /// By file and limit.
    std::map<std::pair<Identity, std::int64_t>, XCursorImages> known_;
    std::map<Identity, XCursorImages> shown_;
};

/// All images of a file of which readShown() answered some; null when it has been damaged since. Any thread.
XCursorImages allImagesOf(const XCursorImages& shown);

}  // namespace pintle
