// Reader of the Xcursor file format (the format that libXcursor's manual page xcursor(3) describes).
// Stateless; any thread. A defect is answered by an absent result or by skipping the entry, never by an error
// or a log line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cursor/xcursor_image.h"

namespace pintle {

struct XCursorParser {
    struct TocEntry {
        std::uint32_t subtype = 0;
        std::uint32_t position = 0;
        friend bool operator==(const TocEntry&, const TocEntry&) = default;
    };
    struct Header {
        std::int64_t size = 0;
        std::uint32_t delay = 0;
        friend bool operator==(const Header&, const Header&) = default;
    };

    /// The image entries of the table of contents, possibly none; absent when the file header is rejected.
    static std::optional<std::vector<TocEntry>> parseTOC(std::span<const std::uint8_t> data);

    /// The images of nominal sizes up to `maxNominalSize` (absent: of all sizes) and those of the smallest
    /// size. Absent when there is no acceptable image.
    static std::optional<std::vector<XCursorImage>> parse(std::span<const std::uint8_t> data,
                                                          std::optional<std::int64_t> maxNominalSize);

    /// The same answer as parse() on the content of the file, reading only what is needed. Absent also when
    /// the file cannot be read. Only regular files are opened.
    static std::optional<std::vector<XCursorImage>> parseFile(const std::filesystem::path& file,
                                                              std::optional<std::int64_t> maxNominalSize);

    /// The image of parseFile() whose nominal size is nearest to `nominalSize`, the first of equals, reading
    /// the table of contents and that image. One of more than a million pixels is passed over, and nothing
    /// beyond the first 65,536 entries of the table is looked at.
    static std::optional<XCursorImage> parseNearest(const std::filesystem::path& file,
                                                    std::int64_t nominalSize, std::int64_t maxNominalSize);

    /// Size and delay of every image chunk whose header is whole, without reading pixels. Absent when there
    /// is none or the file cannot be read.
    static std::optional<std::vector<Header>> parseHeaders(const std::filesystem::path& file);
};

}  // namespace pintle
