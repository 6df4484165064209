#include "cursor/preloaded_cursor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <utility>

#include "cursor/image_drawer.h"
#include "cursor/pixel_pool.h"
#include "cursor/scaled_size.h"

namespace pintle {
namespace {

constexpr std::int64_t kNominalSizeAtScaleOne = 32;

std::uint64_t distance(std::int64_t a, std::int64_t b) {
    return a > b ? static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b)
                 : static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
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

/// Makes the bitmaps of a set. Each step is one cursor.
class SetBuilder {
  public:
    SetBuilder(double scale, double density)
        : scale_(scale), density_(density), target_(truncatedProduct(kNominalSizeAtScaleOne, scale)) {}

    std::optional<PreloadedCursor> build(const std::string& name, const CursorFileImages& file) {
        const auto& images = file.images;
        // The first of the nearest is what a stable sort by distance would put first.
        const auto chosen = std::min_element(images.begin(), images.end(), [&](const auto& a, const auto& b) {
            return distance(a.size, target_) < distance(b.size, target_);
        });
        if (chosen == images.end()) return std::nullopt;

        std::vector<const XCursorImage*> sameSize;
        for (const auto& candidate : images)
            if (candidate.size == chosen->size) sameSize.push_back(&candidate);
        const auto sources = sourcesOf(sameSize, file);

        drawn_.clear();
        auto image = bitmapOf(*chosen, *sources.front());
        if (!image) return std::nullopt;
        const Point hotspot = {static_cast<double>(chosen->xhot) * scale_,
                               static_cast<double>(chosen->yhot) * scale_};
        PreloadedCursor cursor{name, *std::move(image), hotspot, {}, 0, density_};
        if (density_ != 1) cursor.pointSize = sizeInPoints(*chosen);
        if (sameSize.size() < 2) return cursor;

        cursor.frameDuration = meanDelay(sameSize);
        cursor.frames.reserve(sameSize.size());
        for (std::size_t i = 0; i < sameSize.size(); ++i)
            if (auto bitmap = bitmapOf(*sameSize[i], *sources[i]))
                cursor.frames.push_back(*std::move(bitmap));
        if (cursor.frames.size() < 2) cursor.frames.clear();
        return cursor;
    }

  private:
    /// What each frame's pixels are drawn from: itself, where nothing sharper was read.
    std::vector<const XCursorImage*> sourcesOf(const std::vector<const XCursorImage*>& frames,
                                               const CursorFileImages& file) const {
        const auto sharper = std::find_if(file.sources.begin(), file.sources.end(), [&](const auto& source) {
            return source.of == frames.front()->size;
        });
        if (density_ == 1 || sharper == file.sources.end() || sharper->frames.size() != frames.size())
            return frames;
        std::vector<const XCursorImage*> sources;
        sources.reserve(frames.size());
        for (const auto& frame : sharper->frames) sources.push_back(&frame);
        return sources;
    }

    /// A file may refer to the same chunk many times; its frames then share one bitmap as they share pixels.
    std::optional<Bitmap> bitmapOf(const XCursorImage& image, const XCursorImage& source) {
        const auto [known, isNew] = drawn_.try_emplace(
            {source.pixels.values().data(), source.width, source.height, image.width, image.height});
        if (isNew) known->second = draw(image, source);
        return known->second;
    }

    Size sizeInPoints(const XCursorImage& image) const {
        const auto sides = ImageDrawer::sides(image, scale_).value_or(ImageDrawer::Sides{});
        return {static_cast<double>(sides.width), static_cast<double>(sides.height)};
    }

    std::optional<Bitmap> draw(const XCursorImage& image, const XCursorImage& source) {
        constexpr std::int64_t kMostPixels = PixelPool::kUsualLimit / 4;
        auto sides = ImageDrawer::sides(image, scale_);
        if (!sides || sides->width < 1 || sides->height < 1) return std::nullopt;
        if (sides->width > kMostPixels || sides->height > kMostPixels) return std::nullopt;
        if (density_ != 1) {
            sides->width = std::llround(static_cast<double>(sides->width) * density_);
            sides->height = std::llround(static_cast<double>(sides->height) * density_);
        }
        if (sides->width > kMostPixels / sides->height) return std::nullopt;
        const auto count = static_cast<std::size_t>(sides->width * sides->height);
        const auto words = pool_.allocate(count);
        if (!words) return std::nullopt;
        std::shared_ptr<std::uint8_t> bytes(words, reinterpret_cast<std::uint8_t*>(words.get()));
        drawer_.draw(source, *sides, {bytes.get(), count * 4});
        return Bitmap::sharing(sides->width, sides->height, std::move(bytes));
    }

    const double scale_;
    const double density_;
    const std::int64_t target_;
    PixelPool pool_;
    ImageDrawer drawer_;
    /// Of the cursor being built, by the source's first pixel and sides and the image's own sides.
    std::map<std::tuple<const std::uint32_t*, std::int64_t, std::int64_t, std::int64_t, std::int64_t>,
             std::optional<Bitmap>>
        drawn_;
};

}  // namespace

std::optional<PreloadedCursor> makePreloaded(const std::string& name, const std::vector<XCursorImage>& images,
                                             double scale) {
    return SetBuilder(scale, 1).build(name, {images});
}

std::vector<PreloadedCursor> makePreloadedSet(
    const std::vector<std::pair<std::string, XCursorImages>>& cursors, double scale, double density) {
    SetBuilder builder(scale, density);
    std::vector<PreloadedCursor> set;
    std::map<XCursorImages, std::optional<PreloadedCursor>> built;
    for (const auto& [name, images] : cursors) {
        if (!images) continue;
        const auto [entry, isNew] = built.try_emplace(images);
        if (isNew) entry->second = builder.build(name, *images);
        if (!entry->second) continue;
        set.push_back(*entry->second);
        set.back().name = name;
    }
    return set;
}

}  // namespace pintle
