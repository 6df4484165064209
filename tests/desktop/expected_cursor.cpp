// Says how each cursor of a theme must look on the screen, from what the reader decodes and what the loader
// makes of it. Used by the desktop tour to compare pixels.
//
//   expected_cursor CURSORS_FOLDER SCALE DENSITY  with one list of file names a line on standard input:
//   NAME,NAME,... answers a line each: FILE LOOK...     the first name that the folder has, and its frames
//   (word of look.h)
//                        -                when it has none
//   expected_cursor CURSORS_FOLDER SCALE DENSITY pixels
//   answers instead: FILE WIDTHxHEIGHT+X+Y HEX     hotspot and premultiplied RGBA of the first frame
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cursor/cursor_folder.h"
#include "cursor/preloaded_cursor.h"
#include "tests/desktop/look.h"

namespace {

constexpr std::int64_t kLargestNominalSize = 48;
constexpr std::size_t kMostFrames = 24;

std::string lookOf(const pintle::Bitmap& bitmap, const pintle::PreloadedCursor& cursor) {
    const auto bytes = bitmap.bytes();
    const auto hash = look::hashPixels(bytes.size() / 4, [bytes](std::size_t i) {
        const auto at = [bytes, i](std::size_t channel) { return std::uint32_t{bytes[i * 4 + channel]}; };
        return at(3) << 24 | at(0) << 16 | at(1) << 8 | at(2);
    });
    const auto inside = [](double value, int side) {
        return static_cast<int>(std::clamp(std::llround(value), 0LL, static_cast<long long>(side) - 1));
    };
    return look::word(bitmap.width(), bitmap.height(),
                      inside(cursor.hotspot.x * cursor.pixelsPerPoint, bitmap.width()),
                      inside(cursor.hotspot.y * cursor.pixelsPerPoint, bitmap.height()), hash);
}

std::string pixelsOf(const pintle::PreloadedCursor& cursor) {
    static constexpr char kDigits[] = "0123456789abcdef";
    const auto inside = [](double value, int side) {
        return static_cast<int>(std::clamp(std::llround(value), 0LL, static_cast<long long>(side) - 1));
    };
    const auto& image = cursor.image;
    std::string text = std::to_string(image.width()) + "x" + std::to_string(image.height()) + "+" +
                       std::to_string(inside(cursor.hotspot.x * cursor.pixelsPerPoint, image.width())) + "+" +
                       std::to_string(inside(cursor.hotspot.y * cursor.pixelsPerPoint, image.height())) + " ";
    for (const std::uint8_t byte : image.bytes()) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string answer(pintle::CursorFolder& folder, double scale, double density, bool pixels,
                   const std::string& names) {
    std::istringstream list(names);
    for (std::string name; std::getline(list, name, ',');) {
        const auto set =
            pintle::makePreloadedSet({{name, folder.read(name, kLargestNominalSize)}}, scale, density);
        if (set.empty()) continue;
        const auto* const cursor = &set.front();
        if (pixels) return name + " " + pixelsOf(*cursor);
        std::string line = name;
        if (cursor->frames.size() < 2) return line + " " + lookOf(cursor->image, *cursor);
        const std::size_t count = std::min(cursor->frames.size(), kMostFrames);
        for (std::size_t i = 0; i < count; ++i) {
            const double step = static_cast<double>(cursor->frames.size()) / static_cast<double>(count);
            const auto frame = static_cast<std::size_t>(step * static_cast<double>(i));
            line += " " + lookOf(cursor->frames[frame], *cursor);
        }
        return line;
    }
    return "-";
}

}  // namespace

int main(int argc, char** argv) {
    const bool pixels = argc == 5 && std::string_view(argv[4]) == "pixels";
    if (argc != 4 && !pixels) {
        std::cerr << "expected_cursor CURSORS_FOLDER SCALE DENSITY [pixels]\n";
        return 2;
    }
    const double scale = std::strtod(argv[2], nullptr);
    const double density = std::strtod(argv[3], nullptr);
    pintle::CursorFolder folder(argv[1], density);
    for (std::string names; std::getline(std::cin, names);)
        std::cout << answer(folder, scale, density, pixels, names) << std::endl;
}
