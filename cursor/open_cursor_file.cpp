#include "cursor/open_cursor_file.h"

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <new>

#include "cursor/xcursor_reader.h"

namespace pintle {
namespace {

std::atomic<std::size_t> sharesTaken{0};

std::size_t mostShares() {
    struct rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 0;
    return static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur / 4, OpenFileShare::kMost));
}

}  // namespace

std::optional<OpenFileShare> OpenFileShare::take() {
    if (sharesTaken.fetch_add(1) < mostShares()) return OpenFileShare();
    sharesTaken.fetch_sub(1);
    return std::nullopt;
}

OpenFileShare::~OpenFileShare() {
    if (taken_) sharesTaken.fetch_sub(1);
}

OpenCursorFile::OpenCursorFile(std::unique_ptr<FileSource> source, OpenFileShare share,
                               std::int64_t maxNominalSize, std::shared_ptr<FolderPixels> pixels)
    : maxNominalSize_(maxNominalSize),
      pixels_(std::move(pixels)),
      share_(std::move(share)),
      source_(std::move(source)) {}

XCursorImages OpenCursorFile::all() {
    const std::lock_guard lock(pixels_->mutex);
    if (!source_) return all_;
    try {
        if (auto images = readImages(*source_, maxNominalSize_, pixels_->pool))
            if (source_->isUnchanged())
                all_ = std::make_shared<const CursorFileImages>(CursorFileImages{*std::move(images)});
    } catch (const std::bad_alloc&) {
        all_.reset();
    }
    source_.reset();
    share_.reset();
    return all_;
}

}  // namespace pintle
