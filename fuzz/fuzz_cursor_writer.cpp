// The input describes a registered picture and the sizes of a file. What is written reads back as it was.
#include <limits>
#include <vector>

#include "cursor/xcursor_parser.h"
#include "fuzz/choices.h"
#include "platform/wayland/cursor_file.h"

namespace pintle {
namespace {

Bitmap bitmapFrom(Choices& choices, int mostRows) {
    const auto width = static_cast<std::int64_t>(1 + choices.below(40));
    const auto height = static_cast<std::int64_t>(1 + choices.below(static_cast<std::size_t>(mostRows)));
    auto value = choices.byte();
    return *Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        for (auto& byte : out) byte = value += 7;
    });
}

/// Any number, and mostly a usual one.
double numberFrom(Choices& choices) {
    switch (choices.byte() % 8) {
        case 0:
            return static_cast<double>(static_cast<std::int64_t>(choices.number(8)));
        case 1:
            return static_cast<double>(choices.number(2)) / 256 - 64;
        case 2:
            return std::numeric_limits<double>::quiet_NaN();
        case 3:
            return std::numeric_limits<double>::infinity();
        default:
            return static_cast<double>(choices.byte());
    }
}

void checkFile(const std::vector<wayland::FileImage>& images) {
    const auto file = wayland::cursorFile(images);
    require(file.has_value());
    const auto read = XCursorParser::parse(*file, std::nullopt);
    require(read && read->size() == images.size());
    for (std::size_t i = 0; i < images.size(); ++i) {
        const auto& image = (*read)[i];
        const auto& written = images[i];
        require(image.size == written.nominal && image.width == written.width &&
                image.height == written.height && image.xhot == written.hotspotX &&
                image.yhot == written.hotspotY && image.delay == written.delay);
        require(std::ranges::equal(image.pixels.values(), written.argb));
    }
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    Choices choices({bytes, count});
    RegisteredCursor cursor;
    cursor.size = {numberFrom(choices), numberFrom(choices)};
    cursor.hotspot = {numberFrom(choices), numberFrom(choices)};
    cursor.frameCount = choices.flag() ? choices.number(8) : choices.below(8);
    cursor.frameDuration = numberFrom(choices);
    const auto pictures = choices.below(6);
    for (std::size_t i = 0; i < pictures; ++i) cursor.images.push_back(bitmapFrom(choices, 200));
    const int base = static_cast<int>(choices.below(64)) - 2;
    std::vector<double> scales;
    const auto outputs = choices.below(4);
    for (std::size_t i = 0; i < outputs; ++i)
        scales.push_back(choices.flag() ? numberFrom(choices) : 1 + choices.byte() / 64.0);
    auto nominals = wayland::nominalsFor(std::max(base, 1), scales);
    require(std::ranges::is_sorted(nominals) &&
            std::ranges::find(nominals, std::max(base, 1)) != nominals.end());
    if (choices.byte() % 8 == 0) nominals.push_back(static_cast<int>(choices.below(64)) - 8);

    const auto images = wayland::imagesOf(cursor, base, nominals);
    require(!images || wayland::holdsItsFrames(cursor));
    if (!images) return 0;
    require(images->size() == nominals.size() * cursor.frameCount);
    std::size_t total = 0;
    for (const auto& image : *images) {
        require(image.width >= 1 && image.width <= 2048 && image.height >= 1 && image.height <= 2048);
        require(image.width % 2 == 0 && image.height % 2 == 0);
        require(image.hotspotX < image.width && image.hotspotY < image.height);
        require((image.delay == 0) == (cursor.frameCount == 1));
        total += image.argb.size();
    }
    if (total < (std::size_t{4} << 20)) checkFile(*images);
    return 0;
}
