#include "bench/library_anchor.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <system_error>

#define STB_IMAGE_RESIZE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_STATIC
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#include <stb/stb_image_resize.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace pintle::bench {

std::vector<AnchorFile> anchorFiles(const std::filesystem::path& folder, std::uint32_t limit) {
    std::vector<AnchorFile> files;
    std::set<std::pair<dev_t, ino_t>> seen;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        struct stat status {};
        if (::stat(entry.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
        if (!seen.emplace(status.st_dev, status.st_ino).second) continue;
        const auto all = loadAllWithLibrary(entry.path());
        if (!all) continue;
        std::set<std::uint32_t> sizes;
        for (int i = 0; i < all->nimage; ++i) sizes.insert(all->images[i]->size);
        AnchorFile file{entry.path().filename().string(), entry.path(), {}};
        for (const auto size : sizes)
            if (size <= limit || size == *sizes.begin()) file.sizes.push_back(size);
        files.push_back(std::move(file));
    }
    return files;
}

LoadedFile loadWithLibrary(const AnchorFile& file) {
    LoadedFile loaded;
    std::unique_ptr<FILE, int (*)(FILE*)> stream(std::fopen(file.path.c_str(), "r"), std::fclose);
    if (!stream) return loaded;
    for (const auto size : file.sizes) {
        std::rewind(stream.get());
        loaded.emplace_back(XcursorFileLoadImages(stream.get(), static_cast<int>(size)));
    }
    return loaded;
}

LibraryImages loadAllWithLibrary(const std::filesystem::path& path) {
    return LibraryImages(XcursorFilenameLoadAllImages(path.c_str()));
}

std::unique_ptr<std::uint8_t[]> bitmapOfLibrary(const XcursorImage& image) {
    const auto count = std::size_t{image.width} * image.height;
    std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[count * 4]);
    auto* out = bytes.get();
    for (std::size_t i = 0; i < count; ++i, out += 4) {
        const auto pixel = image.pixels[i];
        out[0] = static_cast<std::uint8_t>(pixel >> 16);
        out[1] = static_cast<std::uint8_t>(pixel >> 8);
        out[2] = static_cast<std::uint8_t>(pixel);
        out[3] = static_cast<std::uint8_t>(pixel >> 24);
    }
    return bytes;
}

void scaleWithLibrary(const std::uint8_t* from, int width, int height, std::uint8_t* to, int newWidth,
                      int newHeight) {
    if (!stbir_resize_uint8_generic(from, width, height, 0, to, newWidth, newHeight, 0, 4, 3,
                                    STBIR_FLAG_ALPHA_PREMULTIPLIED, STBIR_EDGE_CLAMP, STBIR_FILTER_CATMULLROM,
                                    STBIR_COLORSPACE_LINEAR, nullptr))
        std::abort();
}

std::unique_ptr<std::uint8_t[]> scaledBitmapOfLibrary(const XcursorImage& image, double scale) {
    const auto source = bitmapOfLibrary(image);
    const auto width = static_cast<int>(image.width * scale);
    const auto height = static_cast<int>(image.height * scale);
    std::unique_ptr<std::uint8_t[]> bytes(
        new std::uint8_t[static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4]);
    scaleWithLibrary(source.get(), static_cast<int>(image.width), static_cast<int>(image.height), bytes.get(),
                     width, height);
    return bytes;
}

std::optional<LibraryCursor> buildWithLibrary(const LoadedFile& file, double scale) {
    const auto target = static_cast<int>(32 * scale);
    const XcursorImages* chosen = nullptr;
    int chosenDistance = 0;
    for (const auto& images : file) {
        if (!images || images->nimage < 1) continue;
        const int distance = std::abs(static_cast<int>(images->images[0]->size) - target);
        if (chosen && distance >= chosenDistance) continue;
        chosen = images.get();
        chosenDistance = distance;
    }
    if (!chosen) return std::nullopt;
    LibraryCursor cursor;
    double sum = 0;
    int counted = 0;
    for (int i = 0; i < chosen->nimage; ++i) {
        const auto& image = *chosen->images[i];
        cursor.frames.push_back(scale == 1.0 ? bitmapOfLibrary(image) : scaledBitmapOfLibrary(image, scale));
        if (image.delay > 0) {
            sum += image.delay;
            ++counted;
        }
    }
    cursor.xhot = chosen->images[0]->xhot * scale;
    cursor.yhot = chosen->images[0]->yhot * scale;
    cursor.frameDuration = counted == 0 ? 0 : sum / counted / 1000;
    return cursor;
}

}  // namespace pintle::bench
