// The anchors of the benches: what a program gets that reads themes with libXcursor and scales with a
// packaged resampler. Each file is read once, and only the images that the product keeps, which is the
// strongest use.
#pragma once

#include <X11/Xcursor/Xcursor.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pintle::bench {

struct DestroyImages {
    void operator()(XcursorImages* images) const { XcursorImagesDestroy(images); }
};
using LibraryImages = std::unique_ptr<XcursorImages, DestroyImages>;

/// One cursor file, and the nominal sizes to load from it. Found out before any clock runs.
struct AnchorFile {
    std::string name;
    std::filesystem::path path;
    std::vector<std::uint32_t> sizes;
};

/// The images of one file, one list per size of AnchorFile::sizes.
using LoadedFile = std::vector<LibraryImages>;

/// Each regular file of the folder once, however many names it has, with its sizes up to `limit` and its
/// smallest. Files that the library refuses are left out.
std::vector<AnchorFile> anchorFiles(const std::filesystem::path& folder, std::uint32_t limit);

LoadedFile loadWithLibrary(const AnchorFile& file);
/// XcursorFilenameLoadAllImages on the path.
LibraryImages loadAllWithLibrary(const std::filesystem::path& path);

/// RGBA bytes of one image at its own size.
std::unique_ptr<std::uint8_t[]> bitmapOfLibrary(const XcursorImage& image);
/// The same redrawn at `scale` with the packaged resampler (Catmull-Rom on premultiplied pixels).
std::unique_ptr<std::uint8_t[]> scaledBitmapOfLibrary(const XcursorImage& image, double scale);
void scaleWithLibrary(const std::uint8_t* from, int width, int height, std::uint8_t* to, int newWidth,
                      int newHeight);

struct LibraryCursor {
    std::vector<std::unique_ptr<std::uint8_t[]>> frames;
    double xhot = 0;
    double yhot = 0;
    double frameDuration = 0;
};
std::optional<LibraryCursor> buildWithLibrary(const LoadedFile& file, double scale);

}  // namespace pintle::bench
