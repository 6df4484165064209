// The input is an Xcursor file that may be stretched by bytes in its middle, so that what is read lies behind
// the block that is read first. Reading it as a file must give what reading its bytes gives.
#include <optional>
#include <vector>

#include "cursor/xcursor_parser.h"
#include "fuzz/choices.h"
#include "fuzz/input_file.h"
#include "tests/support/plain_xcursor_reader.h"

namespace pintle {
namespace {

/// The rule of the preview written plainly; the bounds of parseNearest() are out of an input's reach except
/// for the number of pixels.
std::optional<PlainImage> nearest(const PlainXCursorReader& plain, std::int64_t size, std::int64_t limit) {
    const auto images = plain.images(limit);
    if (!images) return std::nullopt;
    std::optional<PlainImage> best;
    for (const auto& image : *images) {
        if (image.width * image.height > 1024 * 1024) continue;
        if (!best || std::abs(image.size - size) < std::abs(best->size - size)) best = image;
    }
    return best;
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    Choices choices({bytes, count});
    const auto at = choices.number(2);
    const auto inserted = choices.number(2) % 20'000;
    const auto nominal = static_cast<std::int64_t>(choices.byte());
    const auto limit = static_cast<std::int64_t>(choices.byte());
    const auto rest = choices.rest();
    std::vector<std::uint8_t> data(rest.begin(), rest.end());
    const auto place = std::min<std::size_t>(at, data.size());
    data.insert(data.begin() + static_cast<std::ptrdiff_t>(place), inserted, 0x10);

    const PlainXCursorReader plain(data);
    const auto& file = inputFile(data);
    for (const std::optional<std::int64_t> each :
         {std::optional<std::int64_t>(), std::optional<std::int64_t>(limit)}) {
        const auto read = XCursorParser::parseFile(file, each);
        require(plain.agreesWith(read, each));
        const auto parsed = XCursorParser::parse(data, each);
        require(parsed.has_value() == read.has_value());
        if (!read) continue;
        require(parsed->size() == read->size());
        for (std::size_t i = 0; i < read->size(); ++i)
            require(std::ranges::equal((*parsed)[i].pixels.values(), (*read)[i].pixels.values()));
    }
    require(XCursorParser::parseHeaders(file) == plain.headers());

    const auto preview = XCursorParser::parseNearest(file, nominal, limit);
    const auto expected = nearest(plain, nominal, limit);
    require(preview.has_value() == expected.has_value());
    if (preview)
        require(preview->size == expected->size && preview->width == expected->width &&
                preview->height == expected->height && preview->delay == expected->delay);
    return 0;
}
