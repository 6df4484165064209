#include "cursor/xcursor_parser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace pintle {
namespace {

constexpr std::uint32_t kMagic = 0x72756358;
constexpr std::uint32_t kImageType = 0xFFFD0002;
constexpr std::uint64_t kTocStart = 16;
constexpr std::uint64_t kTocEntryBytes = 12;
constexpr std::uint64_t kChunkHeaderBytes = 36;
constexpr std::uint64_t kMaxPixels = 4096 * 4096;

/// Needs offset + 4 <= data.size().
std::uint32_t littleEndian32(std::span<const std::uint8_t> data, std::uint64_t offset) {
    const auto bytes = data.subspan(static_cast<std::size_t>(offset), 4);
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

std::optional<std::vector<std::uint8_t>> wholeFile(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    std::optional<std::vector<std::uint8_t>> bytes;
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        bytes.emplace(static_cast<std::size_t>(status.st_size));
        std::size_t filled = 0;
        while (filled < bytes->size()) {
            const auto got = ::pread(descriptor, bytes->data() + filled, bytes->size() - filled,
                                     static_cast<off_t>(filled));
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) break;
            filled += static_cast<std::size_t>(got);
        }
        bytes->resize(filled);
    }
    ::close(descriptor);
    return bytes;
}

}  // namespace

std::optional<std::vector<XCursorParser::TocEntry>> XCursorParser::parseTOC(
    std::span<const std::uint8_t> data) {
    if (data.size() < kTocStart) return std::nullopt;
    const auto count = littleEndian32(data, 12);
    if (littleEndian32(data, 0) != kMagic || littleEndian32(data, 4) < kTocStart || count == 0)
        return std::nullopt;
    std::vector<TocEntry> entries;
    std::uint64_t offset = kTocStart;
    for (std::uint32_t i = 0; i < count && offset + kTocEntryBytes <= data.size(); ++i) {
        if (littleEndian32(data, offset) == kImageType)
            entries.push_back({littleEndian32(data, offset + 4), littleEndian32(data, offset + 8)});
        offset += kTocEntryBytes;
    }
    return entries;
}

std::optional<std::vector<XCursorImage>> XCursorParser::parse(std::span<const std::uint8_t> data,
                                                              std::optional<std::int64_t> maxNominalSize) {
    const auto toc = parseTOC(data);
    if (!toc) return std::nullopt;
    std::uint32_t smallest = toc->empty() ? 0 : toc->front().subtype;
    for (const auto& entry : *toc) smallest = std::min(smallest, entry.subtype);

    std::vector<XCursorImage> images;
    for (const auto& entry : *toc) {
        if (maxNominalSize && *maxNominalSize < entry.subtype && entry.subtype != smallest) continue;
        const std::uint64_t position = entry.position;
        if (position + kChunkHeaderBytes > data.size()) continue;
        XCursorImage image;
        image.size = entry.subtype;
        image.width = littleEndian32(data, position + 16);
        image.height = littleEndian32(data, position + 20);
        image.xhot = littleEndian32(data, position + 24);
        image.yhot = littleEndian32(data, position + 28);
        image.delay = littleEndian32(data, position + 32);
        const auto count = static_cast<std::uint64_t>(image.width) * static_cast<std::uint64_t>(image.height);
        if (count < 1 || count > kMaxPixels) continue;
        if (position + kChunkHeaderBytes + 4 * count > data.size()) continue;
        auto pixels = std::make_shared<std::vector<std::uint32_t>>(static_cast<std::size_t>(count));
        for (std::uint64_t i = 0; i < count; ++i)
            (*pixels)[static_cast<std::size_t>(i)] =
                littleEndian32(data, position + kChunkHeaderBytes + 4 * i);
        image.pixels = SharedPixels({pixels, pixels->data()}, pixels->size());
        images.push_back(std::move(image));
    }
    if (images.empty()) return std::nullopt;
    return images;
}

std::optional<std::vector<XCursorImage>> XCursorParser::parseFile(
    const std::filesystem::path& file, std::optional<std::int64_t> maxNominalSize) {
    const auto bytes = wholeFile(file);
    return bytes ? parse(*bytes, maxNominalSize) : std::nullopt;
}

std::optional<std::vector<XCursorParser::Header>> XCursorParser::parseHeaders(
    const std::filesystem::path& file) {
    const auto bytes = wholeFile(file);
    if (!bytes) return std::nullopt;
    const auto toc = parseTOC(*bytes);
    if (!toc) return std::nullopt;
    std::vector<Header> headers;
    for (const auto& entry : *toc) {
        const std::uint64_t position = entry.position;
        if (position + kChunkHeaderBytes > bytes->size()) continue;
        headers.push_back({entry.subtype, littleEndian32(*bytes, position + 32)});
    }
    if (headers.empty()) return std::nullopt;
    return headers;
}

}  // namespace pintle
