#include "cursor/xcursor_parser.h"

#include <new>

#include "cursor/byte_source.h"
#include "cursor/xcursor_reader.h"

namespace pintle {

// A file may ask for more memory than there is; it is then one that cannot be read.

std::optional<std::vector<XCursorParser::TocEntry>> XCursorParser::parseTOC(
    std::span<const std::uint8_t> data) try {
    MemorySource source(data);
    return readToc(source);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<std::vector<XCursorImage>> XCursorParser::parse(
    std::span<const std::uint8_t> data, std::optional<std::int64_t> maxNominalSize) try {
    MemorySource source(data);
    PixelPool pool;
    return readImages(source, maxNominalSize, pool);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<std::vector<XCursorImage>> XCursorParser::parseFile(
    const std::filesystem::path& file, std::optional<std::int64_t> maxNominalSize) try {
    PixelPool pool;
    FileSource source(file);
    return readImages(source, maxNominalSize, pool);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<XCursorImage> XCursorParser::parseNearest(const std::filesystem::path& file,
                                                        std::int64_t nominalSize,
                                                        std::int64_t maxNominalSize) try {
    PixelPool pool;
    FileSource source(file);
    return readNearestImage(source, nominalSize, maxNominalSize, pool);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<std::vector<XCursorParser::Header>> XCursorParser::parseHeaders(
    const std::filesystem::path& file) try {
    FileSource source(file);
    return readHeaders(source);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

}  // namespace pintle
