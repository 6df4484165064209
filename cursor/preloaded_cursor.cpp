#include "cursor/preloaded_cursor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <tuple>
#include <utility>

#include "cursor/image_drawer.h"
#include "cursor/open_cursor_file.h"
#include "cursor/pixel_pool.h"
#include "cursor/scaled_size.h"

namespace pintle {
namespace {

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

/// Of the picture of `image` in pixels; absent when it has none or too many.
std::optional<ImageDrawer::Sides> pixelSides(const XCursorImage& image, double scale, double density) {
    constexpr std::int64_t kMostPixels = PixelPool::kUsualLimit / 4;
    auto sides = ImageDrawer::sides(image, scale);
    if (!sides || sides->width < 1 || sides->height < 1) return std::nullopt;
    if (sides->width > kMostPixels || sides->height > kMostPixels) return std::nullopt;
    if (density != 1) {
        sides->width = std::llround(static_cast<double>(sides->width) * density);
        sides->height = std::llround(static_cast<double>(sides->height) * density);
    }
    if (sides->width > kMostPixels / sides->height) return std::nullopt;
    return sides;
}

/// Makes the bitmaps of a set. Each step is one cursor.
class SetBuilder {
  public:
    SetBuilder(double scale, double density)
        : scale_(scale), density_(density), target_(nominalSizeAt(scale)) {}

    std::optional<PreloadedCursor> build(const std::string& name, const CursorFileImages& file) {
        const auto& images = file.images;
        // The first of the nearest is what a stable sort by distance would put first.
        const auto chosen = std::min_element(images.begin(), images.end(), [&](const auto& a, const auto& b) {
            return distanceOf(a.size, target_) < distanceOf(b.size, target_);
        });
        if (chosen == images.end()) return std::nullopt;

        std::vector<const XCursorImage*> sameSize;
        for (const auto& candidate : images)
            if (candidate.size == chosen->size) sameSize.push_back(&candidate);
        const auto sources = sourcesOf(sameSize, file);

        drawn_.clear();
        unread_.clear();
        auto image = draw(reserve(*chosen, *sources.front()), *chosen, *sources.front());
        if (!image) return std::nullopt;
        const Point hotspot = {static_cast<double>(chosen->xhot) * scale_,
                               static_cast<double>(chosen->yhot) * scale_};
        PreloadedCursor cursor{name, *std::move(image), hotspot, {}, 0, density_};
        if (density_ != 1) cursor.pointSize = sizeInPoints(*chosen);
        if (sameSize.size() < 2) return cursor;

        cursor.frameDuration = meanDelay(sameSize);
        auto frames = framesOf(sameSize, sources, file, cursor.image);
        if (!frames) {
            giveBackUndrawn();
            const auto all = file.file->all();
            return all ? build(name, *all) : std::nullopt;
        }
        cursor.frames = *std::move(frames);
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

    struct Picture {
        /// Of what was taken off the pool's limit, in pixels.
        std::size_t reserved = 0;
        bool fits = false;
        std::optional<Bitmap> drawn;
    };

    /// What frames that are drawn later need, without this builder.
    struct Undrawn {
        struct Frame {
            XCursorImage image;
            XCursorImage source;
        };
        std::vector<Frame> frames;
        double scale;
        double density;
        /// Reads the pixels that are not there.
        std::shared_ptr<OpenCursorFile> file;
        Bitmap instead;
    };

    struct Frame {
        const XCursorImage* image;
        const XCursorImage* source;
        Picture* picture;
    };

    /// Those that cannot be made are left out, before it is decided which ones are sent and so drawn now.
    /// Absent when that leaves others to be sent than were read.
    std::optional<FrameList> framesOf(const std::vector<const XCursorImage*>& images,
                                      const std::vector<const XCursorImage*>& sources,
                                      const CursorFileImages& file, const Bitmap& first) {
        std::vector<Frame> frames;
        for (std::size_t i = 0; i < images.size(); ++i) {
            // Without a file there is nothing to read them from.
            if (!file.file && sources[i]->pixels.values().empty()) continue;
            if (auto& picture = reserve(*images[i], *sources[i]); picture.fits)
                frames.push_back({images[i], sources[i], &picture});
        }
        if (file.file && frames.size() < images.size()) return std::nullopt;
        // Again only when the system has no more memory.
        while (!drawSent(frames)) {
            if (file.file) return std::nullopt;
            std::erase_if(frames, [](const Frame& frame) { return !frame.picture->fits; });
        }
        if (frames.size() < 2) return FrameList();

        std::vector<std::optional<Bitmap>> drawn;
        drawn.reserve(frames.size());
        for (const auto& frame : frames) drawn.push_back(frame.picture->drawn);
        if (std::all_of(drawn.begin(), drawn.end(), [](const auto& bitmap) { return bitmap.has_value(); }))
            return FrameList(std::move(drawn), nullptr);
        auto undrawn = std::make_shared<Undrawn>(Undrawn{{}, scale_, density_, file.file, first});
        for (const auto& frame : frames) undrawn->frames.push_back({*frame.image, *frame.source});
        return FrameList(std::move(drawn), [undrawn = std::shared_ptr<const Undrawn>(std::move(undrawn))](
                                               std::size_t i) { return drawLater(*undrawn, i); });
    }

    /// False when one of them cannot be drawn, which is then noted.
    bool drawSent(const std::vector<Frame>& frames) {
        for (const auto i : sentFrames(frames.size()))
            if (!draw(*frames[i].picture, *frames[i].image, *frames[i].source)) return false;
        return true;
    }

    /// The place of a picture among those of this cursor. A file may refer to the same chunk many times; its
    /// frames then share one bitmap as they share pixels.
    Picture& reserve(const XCursorImage& image, const XCursorImage& source) {
        const auto* pixels = source.pixels.values().data();
        if (!pixels) {
            reserveNew(unread_.emplace_back(), image);
            return unread_.back();
        }
        const auto [known, isNew] =
            drawn_.try_emplace({pixels, source.width, source.height, image.width, image.height});
        if (isNew) reserveNew(known->second, image);
        return known->second;
    }

    void reserveNew(Picture& picture, const XCursorImage& image) {
        const auto sides = pixelSides(image, scale_, density_);
        const auto count = sides ? static_cast<std::size_t>(sides->width * sides->height) : 0;
        picture.fits = sides && pool_.reserve(count);
        picture.reserved = picture.fits ? count : 0;
    }

    void giveBackUndrawn() {
        const auto giveBack = [this](Picture& picture) {
            if (!picture.drawn) pool_.giveBack(std::exchange(picture.reserved, 0));
        };
        for (auto& picture : unread_) giveBack(picture);
        for (auto& [key, picture] : drawn_) giveBack(picture);
    }

    Size sizeInPoints(const XCursorImage& image) const {
        const auto sides = ImageDrawer::sides(image, scale_).value_or(ImageDrawer::Sides{});
        return {static_cast<double>(sides.width), static_cast<double>(sides.height)};
    }

    /// Absent when it does not fit or the memory cannot be had.
    const std::optional<Bitmap>& draw(Picture& picture, const XCursorImage& image,
                                      const XCursorImage& source) {
        if (!picture.fits || picture.drawn || source.pixels.values().empty()) return picture.drawn;
        const auto sides = *pixelSides(image, scale_, density_);
        const auto count = static_cast<std::size_t>(sides.width * sides.height);
        const auto words = pool_.allocateReserved(count);
        picture.fits = words != nullptr;
        if (!words) return picture.drawn;
        std::shared_ptr<std::uint8_t> bytes(words, reinterpret_cast<std::uint8_t*>(words.get()));
        drawer_.draw(source, sides, {bytes.get(), count * 4});
        picture.drawn = Bitmap::sharing(sides.width, sides.height, std::move(bytes));
        return picture.drawn;
    }

    static Bitmap drawLater(const Undrawn& undrawn, std::size_t i) {
        const auto& image = undrawn.frames[i].image;
        auto source = undrawn.frames[i].source;
        if (source.pixels.values().empty()) {
            const auto all = undrawn.file->all();
            if (!all) return undrawn.instead;
            // Frames without pixels stand for all of their nominal size, in the same order.
            std::size_t left = i;
            for (const auto& read : all->images)
                if (read.size == image.size && left-- == 0) source = read;
            if (source.pixels.values().empty() || source.width != image.width ||
                source.height != image.height)
                return undrawn.instead;
        }
        const auto sides = pixelSides(image, undrawn.scale, undrawn.density);
        if (!sides) return undrawn.instead;
        return Bitmap::create(sides->width, sides->height,
                              [&](std::span<std::uint8_t> out) { ImageDrawer().draw(source, *sides, out); })
            .value_or(undrawn.instead);
    }

    const double scale_;
    const double density_;
    const std::int64_t target_;
    PixelPool pool_;
    ImageDrawer drawer_;
    /// Of the cursor being built, by the source's first pixel and sides and the image's own sides.
    std::map<std::tuple<const std::uint32_t*, std::int64_t, std::int64_t, std::int64_t, std::int64_t>,
             Picture>
        drawn_;
    std::deque<Picture> unread_;
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
