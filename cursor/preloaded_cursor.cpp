#include "cursor/preloaded_cursor.h"

#include <algorithm>
#include <cstdint>

#include "cursor/scaled_size.h"

namespace pintle {
namespace {

constexpr std::int64_t kNominalSizeAtScaleOne = 32;

std::uint64_t distance(std::int64_t a, std::int64_t b) {
    return a > b ? static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b)
                 : static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
}

std::optional<Bitmap> bitmapOf(const XCursorImage& image, double scale) {
    return scale == 1.0 ? image.nsImage() : image.scaledNSImage(scale);
}

/// The mean of the positive delays in seconds; 0 when there is none.
double meanDelay(const std::vector<const XCursorImage*>& images) {
    double sum = 0;
    double count = 0;
    for (const auto* image : images) {
        if (image->delay == 0) continue;
        sum += image->delay;
        count += 1;
    }
    return count == 0 ? 0 : sum / count / 1000;
}

}  // namespace

std::optional<PreloadedCursor> makePreloaded(const std::string& name, const std::vector<XCursorImage>& images,
                                             double scale) {
    const auto target = truncatedProduct(kNominalSizeAtScaleOne, scale);
    // The first of the nearest is what a stable sort by distance would put first.
    const auto chosen = std::min_element(images.begin(), images.end(), [&](const auto& a, const auto& b) {
        return distance(a.size, target) < distance(b.size, target);
    });
    if (chosen == images.end()) return std::nullopt;

    auto image = bitmapOf(*chosen, scale);
    if (!image) return std::nullopt;
    PreloadedCursor cursor{
        name,
        *image,
        {static_cast<double>(chosen->xhot) * scale, static_cast<double>(chosen->yhot) * scale},
        {},
        0};

    std::vector<const XCursorImage*> sameSize;
    for (const auto& candidate : images)
        if (candidate.size == chosen->size) sameSize.push_back(&candidate);
    if (sameSize.size() < 2) return cursor;

    cursor.frameDuration = meanDelay(sameSize);
    for (const auto* frame : sameSize) {
        if (frame == &*chosen)
            cursor.frames.push_back(*image);
        else if (auto bitmap = bitmapOf(*frame, scale))
            cursor.frames.push_back(*std::move(bitmap));
    }
    if (cursor.frames.size() < 2) cursor.frames.clear();
    return cursor;
}

std::vector<PreloadedCursor> makePreloadedSet(
    const std::vector<std::pair<std::string, XCursorImages>>& cursors, double scale) {
    std::vector<PreloadedCursor> set;
    std::map<const std::vector<XCursorImage>*, std::optional<PreloadedCursor>> built;
    for (const auto& [name, images] : cursors) {
        if (!images) continue;
        const auto [entry, isNew] = built.try_emplace(images.get());
        if (isNew) entry->second = makePreloaded(name, *images, scale);
        if (!entry->second) continue;
        set.push_back(*entry->second);
        set.back().name = name;
    }
    return set;
}

}  // namespace pintle
