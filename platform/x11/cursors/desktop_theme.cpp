#include "platform/x11/cursors/desktop_theme.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <system_error>

#include "platform/x11/cursors/cursor_names.h"
#include "platform/x11/cursors/index_theme.h"
#include "platform/x11/x_headers.h"

namespace pintle::x11 {
namespace {

namespace fs = std::filesystem;

constexpr off_t kLargestFile = off_t{64} << 20;
constexpr std::size_t kMostThemes = 64;
constexpr off_t kLargestIndexFile = off_t{1} << 20;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
struct DestroyImages {
    void operator()(XcursorImages* images) const { XcursorImagesDestroy(images); }
};

/// Only ordinary files: opening a pipe would wait for a writer.
std::unique_ptr<std::FILE, CloseFile> openOrdinary(const fs::path& path, off_t largest) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return nullptr;
    struct stat facts {};
    std::FILE* file = nullptr;
    if (::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_size <= largest)
        file = ::fdopen(descriptor, "rb");
    if (!file) ::close(descriptor);
    return std::unique_ptr<std::FILE, CloseFile>(file);
}

std::optional<Bitmap> bitmapOf(std::span<const XcursorPixel> pixels, std::int64_t width,
                               std::int64_t height) {
    return Bitmap::create(width, height, [&](std::span<std::uint8_t> bytes) {
        std::size_t at = 0;
        for (const XcursorPixel pixel : pixels) {
            bytes[at++] = static_cast<std::uint8_t>(pixel >> 16);
            bytes[at++] = static_cast<std::uint8_t>(pixel >> 8);
            bytes[at++] = static_cast<std::uint8_t>(pixel);
            bytes[at++] = static_cast<std::uint8_t>(pixel >> 24);
        }
    });
}

PicturePtr load(const fs::path& path, int size) {
    const auto file = openOrdinary(path, kLargestFile);
    if (!file) return nullptr;
    const std::unique_ptr<XcursorImages, DestroyImages> images(XcursorFileLoadImages(file.get(), size));
    if (!images) return nullptr;
    std::vector<CursorFrame> frames;
    for (int i = 0; i < images->nimage; ++i) {
        const XcursorImage& image = *images->images[i];
        const auto count = std::size_t{image.width} * image.height;
        auto bitmap = bitmapOf({image.pixels, count}, image.width, image.height);
        if (!bitmap) return nullptr;
        CursorFrame frame{std::move(*bitmap)};
        frame.width = static_cast<int>(image.width);
        frame.height = static_cast<int>(image.height);
        frame.hotspotX = static_cast<int>(image.xhot);
        frame.hotspotY = static_cast<int>(image.yhot);
        frame.delay = image.delay;
        frames.push_back(std::move(frame));
    }
    return CursorPicture::of(std::move(frames));
}

/// The themes an index file names.
std::vector<std::string> inherited(const fs::path& indexFile) {
    const auto file = openOrdinary(indexFile, kLargestIndexFile);
    if (!file) return {};
    std::string text;
    std::array<char, 4096> block;
    while (const auto count = std::fread(block.data(), 1, block.size(), file.get()))
        text.append(block.data(), count);
    return inheritedThemes(text);
}

}  // namespace

void DesktopTheme::choose(const CursorThemeChoice& choice) {
    choice_ = choice;
    folders_ = cursorFolders();
    pictures_.clear();
    index_.clear();
    indexed_ = false;
}

std::vector<fs::path> DesktopTheme::searchPath() const {
    const auto fromEnvironment = environment_("XCURSOR_PATH");
    const char* const builtIn = fromEnvironment ? nullptr : XcursorLibraryPath();
    const std::string all = fromEnvironment ? *fromEnvironment : builtIn ? builtIn : "";
    std::vector<fs::path> folders;
    for (std::size_t start = 0; start <= all.size();) {
        const auto end = std::min(all.find(':', start), all.size());
        std::string folder = all.substr(start, end - start);
        start = end + 1;
        if (folder.starts_with('~')) {
            const auto home = environment_("HOME");
            if (!home) continue;
            folder.replace(0, 1, *home);
        }
        if (!folder.empty()) folders.emplace_back(folder);
    }
    return folders;
}

std::vector<fs::path> DesktopTheme::cursorFolders() const {
    const auto folders = searchPath();
    // Depth first as the cursor library does it, but each theme once: themes may inherit each other.
    std::deque<std::string> themes = {choice_.theme, "default"};
    std::set<std::string> seen = {""};
    std::vector<fs::path> result;
    while (!themes.empty() && seen.size() <= kMostThemes) {
        const auto current = themes.front();
        themes.pop_front();
        if (!seen.insert(current).second) continue;
        std::vector<std::string> parents;
        for (const auto& folder : folders) {
            result.push_back(folder / current / "cursors");
            if (parents.empty()) parents = inherited(folder / current / "index.theme");
        }
        themes.insert(themes.begin(), parents.begin(), parents.end());
    }
    return result;
}

PicturePtr DesktopTheme::exact(std::string_view name) {
    const auto known = pictures_.find(name);
    if (known != pictures_.end()) return known->second;
    PicturePtr picture;
    for (const auto& folder : folders_) {
        std::error_code error;
        if (!fs::is_regular_file(folder / name, error)) continue;
        picture = load(folder / name, choice_.size);
        break;
    }
    pictures_.emplace(name, picture);
    return picture;
}

PicturePtr DesktopTheme::picture(std::string_view name) {
    if (auto own = exact(name)) return own;
    const auto* const row = rowOf(name);
    if (!row) return nullptr;
    // Where a theme draws one of the names as its arrow, a name that it lacks is better drawn as another one.
    const auto arrow = exact(kRootCursorName);
    PicturePtr onlyArrow;
    for (const auto alias : row->names)
        if (auto other = exact(alias)) {
            if (!arrow || !other->equals(*arrow)) return other;
            onlyArrow = std::move(other);
        }
    return onlyArrow;
}

std::string_view DesktopTheme::nameOf(Fingerprint fingerprint) {
    if (!indexed_) {
        indexed_ = true;
        const auto add = [this](std::string_view name) {
            if (const auto own = exact(name))
                for (const auto each : own->fingerprints()) index_.emplace(each, name);
        };
        // Themes use one picture for several shapes; programs mean the pointing hand more often than others.
        add(kRootCursorName);
        for (const auto name : namesOf("com.apple.coregraphics.IBeam")) add(name);
        for (const auto name : namesOf("com.apple.cursor.13")) add(name);
        for (const auto name : allCursorNames()) add(name);
    }
    const auto found = index_.find(fingerprint);
    return found == index_.end() ? std::string_view() : found->second;
}

}  // namespace pintle::x11
