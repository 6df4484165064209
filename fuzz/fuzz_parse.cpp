// The input is an Xcursor file. Reading it from memory, from a file and by the rules written plainly must
// give the same images, whatever the limit.

#include <cstdlib>
#include <optional>

#include "cursor/xcursor_parser.h"
#include "fuzz/input_file.h"
#include "tests/support/plain_xcursor_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using pintle::XCursorParser;
    const std::span data(bytes, count);
    const pintle::PlainXCursorReader plain(data);
    const auto& file = pintle::inputFile(data);
    for (const std::optional<std::int64_t> limit :
         {std::optional<std::int64_t>(), std::optional<std::int64_t>(48)}) {
        const auto images = XCursorParser::parse(data, limit);
        if (!plain.agreesWith(images, limit)) std::abort();
        if (!plain.agreesWith(XCursorParser::parseFile(file, limit), limit)) std::abort();
        // What the pixels are for: they can be turned into a bitmap of any usual scale.
        if (images && images->front().width <= 64 && images->front().height <= 64) {
            if (!images->front().nsImage()) std::abort();
            static_cast<void>(images->front().scaledNSImage(1.25));
            static_cast<void>(images->front().scaledNSImage(0.75));
        }
    }
    return 0;
}
