#include "cursor/density_source.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <new>
#include <optional>
#include <utility>

#include "cursor/xcursor_reader.h"

namespace pintle {
namespace {

using TocEntry = XCursorParser::TocEntry;

// All far beyond what any theme holds, and for one file together read in a few milliseconds.
constexpr std::uint32_t kMostEntries = 1 << 16;
constexpr std::size_t kMostHeaders = 4096;
constexpr std::int64_t kMostPixels = std::int64_t{4096} * 4096;

/// Both sides fit the other picture's within a pixel of it once one of them is made equal.
bool hasProportionsOf(const XCursorImage& own, const XCursorImage& other) {
    const auto difference = std::abs(other.height * own.width - own.height * other.width);
    return difference <= other.width || difference <= other.height;
}

bool haveProportionsOf(const std::vector<XCursorImage>& own, const std::vector<XCursorImage>& others) {
    for (std::size_t i = 0; i < own.size(); ++i)
        if (!hasProportionsOf(own[i], others[i])) return false;
    return true;
}

class SourceFinder {
  public:
    SourceFinder(ByteSource& source, const std::vector<XCursorImage>& images, double density, PixelPool& pool)
        : source_(source), density_(density), pool_(pool) {
        for (const auto& image : images) known_[image.size].push_back(image);
        if (const auto toc = readToc(source, kMostEntries))
            for (const auto& entry : *toc) listed_[entry.subtype].push_back(entry);
    }

    std::vector<DensitySource> findAll() {
        std::vector<DensitySource> found;
        const auto sizes = known_;
        for (const auto& [size, frames] : sizes)
            if (auto sharper = find(size, frames)) found.push_back({size, *std::move(sharper)});
        return found;
    }

  private:
    std::optional<std::vector<XCursorImage>> find(std::int64_t size, const std::vector<XCursorImage>& own) {
        const double wanted = static_cast<double>(size) * density_;
        auto above = listed_.lower_bound(static_cast<std::int64_t>(std::ceil(wanted)));
        auto below = above;
        while (above != listed_.end() || below != listed_.begin()) {
            const bool upwards =
                below == listed_.begin() ||
                (above != listed_.end() && static_cast<double>(above->first) - wanted <=
                                               wanted - static_cast<double>(std::prev(below)->first));
            const auto& [other, entries] = *(upwards ? above++ : --below);
            if (other == size) return std::nullopt;
            if (entries.size() != own.size()) continue;
            const auto known = known_.find(other);
            const auto headers =
                known != known_.end() ? std::optional(known->second) : readHeadersOf(entries);
            if (!headers || headers->size() != own.size()) return std::nullopt;
            if (!haveProportionsOf(own, *headers)) continue;
            if (known != known_.end()) return known->second;
            auto frames = readPixelsOf(entries, *headers);
            if (frames) known_.emplace(other, *frames);
            return frames;
        }
        return std::nullopt;
    }

    std::optional<std::vector<XCursorImage>> readHeadersOf(const std::vector<TocEntry>& entries) {
        if (entries.size() > headersLeft_) return std::nullopt;
        headersLeft_ -= entries.size();
        return readImageHeaders(source_, entries);
    }

    std::optional<std::vector<XCursorImage>> readPixelsOf(const std::vector<TocEntry>& entries,
                                                          const std::vector<XCursorImage>& headers) {
        for (const auto& header : headers) pixelsLeft_ -= header.width * header.height;
        if (pixelsLeft_ < 0) return std::nullopt;
        return readWholeImages(source_, entries, headers, pool_);
    }

    ByteSource& source_;
    const double density_;
    PixelPool& pool_;
    /// By nominal size.
    std::map<std::int64_t, std::vector<XCursorImage>> known_;
    std::map<std::int64_t, std::vector<TocEntry>> listed_;
    std::size_t headersLeft_ = kMostHeaders;
    std::int64_t pixelsLeft_ = kMostPixels;
};

}  // namespace

std::vector<DensitySource> readDensitySources(ByteSource& source, const std::vector<XCursorImage>& images,
                                              double density, PixelPool& pool) try {
    return SourceFinder(source, images, density, pool).findAll();
} catch (const std::bad_alloc&) {
    // The pictures are then drawn from what is there.
    return {};
}

}  // namespace pintle
