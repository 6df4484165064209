#include "cursor/xcursor_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <set>
#include <utility>

#include "cursor/frame_list.h"
#include "cursor/scaled_size.h"
#include "cursor/xcursor_format.h"

namespace pintle {
namespace {

using TocEntry = XCursorParser::TocEntry;
using xcursor::field;
using xcursor::kChunkHeaderBytes;

/// A chunk that is wanted and the bytes to read for it.
struct Chunk {
    std::uint32_t subtype = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    /// The run that holds it.
    std::size_t run = 0;
};

/// Bytes that are read together. Chunks whose positions differ by no multiple of four never share a run, so
/// that each one's pixels stand at a word.
struct Run {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::uint32_t* words = nullptr;
};

struct Runs {
    std::vector<Run> list;
    /// Keeps the words of all runs.
    std::shared_ptr<std::uint32_t> memory;
};

bool inReadingOrder(const Chunk* a, const Chunk* b) {
    return std::pair(a->begin % 4, a->begin) < std::pair(b->begin % 4, b->begin);
}

/// Groups the chunks into runs, reads them, and notes each chunk's run in it. Absent when memory is short.
std::optional<Runs> readRuns(ByteSource& source, std::span<Chunk* const> chunks, PixelPool& pool) {
    Runs runs;
    for (auto* chunk : chunks) {
        const bool joins = !runs.list.empty() && chunk->begin <= runs.list.back().end &&
                           chunk->begin % 4 == runs.list.back().begin % 4;
        if (joins)
            runs.list.back().end = std::max(runs.list.back().end, chunk->end);
        else
            runs.list.push_back({chunk->begin, chunk->end});
        chunk->run = runs.list.size() - 1;
    }

    std::uint64_t wordsNeeded = 0;
    for (const auto& run : runs.list) wordsNeeded += (run.end - run.begin + 3) / 4;
    if (wordsNeeded > std::numeric_limits<std::size_t>::max() / 4) return std::nullopt;
    runs.memory = pool.allocate(static_cast<std::size_t>(wordsNeeded));
    if (!runs.memory) return std::nullopt;
    auto* words = runs.memory.get();
    for (auto& run : runs.list) {
        const auto bytes = static_cast<std::size_t>(run.end - run.begin);
        const auto got = source.read(run.begin, {reinterpret_cast<std::uint8_t*>(words), bytes});
        if constexpr (std::endian::native == std::endian::big)
            for (std::size_t i = 0; i < got / 4; ++i) words[i] = xcursor::fromFile(words[i]);
        run.end = run.begin + got;
        run.words = words;
        words += (bytes + 3) / 4;
    }
    return runs;
}

/// The fields of a chunk's header, as words of the file in this machine's byte order.
void takeHeader(std::uint32_t subtype, std::span<const std::uint32_t, kChunkHeaderBytes / 4> words,
                XCursorImage& image) {
    image.size = subtype;
    image.width = words[4];
    image.height = words[5];
    image.xhot = words[6];
    image.yhot = words[7];
    image.delay = words[8];
}

enum class Verdict { accepted, rejected, notWholeInRun };

/// Reads one chunk out of its run.
Verdict takeImage(const Chunk& chunk, const Runs& runs, std::uint64_t length, XCursorImage& image,
                  std::uint64_t& trueEnd) {
    const auto& run = runs.list[chunk.run];
    if (run.end < chunk.begin + kChunkHeaderBytes) return Verdict::rejected;
    const auto offset = static_cast<std::size_t>((chunk.begin - run.begin) / 4);
    const auto* words = run.words + offset;
    const auto count = std::uint64_t{words[4]} * words[5];
    if (count < 1 || count > xcursor::kMaxPixels) return Verdict::rejected;
    trueEnd = chunk.begin + kChunkHeaderBytes + 4 * count;
    if (trueEnd > length) return Verdict::rejected;
    if (trueEnd > run.end) return Verdict::notWholeInRun;
    takeHeader(chunk.subtype, std::span<const std::uint32_t, kChunkHeaderBytes / 4>(words, 9), image);
    image.pixels =
        SharedPixels(std::shared_ptr<const std::uint32_t>(runs.memory, words + kChunkHeaderBytes / 4),
                     static_cast<std::size_t>(count));
    return Verdict::accepted;
}

/// Whether the chunk is one that takeImage() would accept; gives all but its pixels.
bool readHeader(ByteSource& source, const Chunk& chunk, XCursorImage& image) {
    std::array<std::uint8_t, kChunkHeaderBytes> header;
    if (source.read(chunk.begin, header) < header.size()) return false;
    std::array<std::uint32_t, kChunkHeaderBytes / 4> words;
    for (std::size_t i = 0; i < words.size(); ++i) words[i] = field(header, 4 * i);
    takeHeader(chunk.subtype, words, image);
    const auto count = std::uint64_t{words[4]} * words[5];
    return count >= 1 && count <= xcursor::kMaxPixels &&
           chunk.begin + kChunkHeaderBytes + 4 * count <= source.length();
}

/// Of one image where a single one is wanted.
constexpr std::uint64_t kMostPixelsAtOnce = std::uint64_t{1024} * 1024;

/// More than a chunk of this nominal size usually takes, so that a wide gap behind it is not read.
std::uint64_t usualBytes(std::uint32_t nominalSize) {
    const std::uint64_t side = 2 * std::uint64_t{std::min(nominalSize, std::uint32_t{4096})};
    return kChunkHeaderBytes + 4 * side * side + 1024;
}

/// The wanted chunks in table order. A chunk's end is guessed as the next position of the table, which saves
/// reading each header before its pixels; most files are written so.
std::vector<Chunk> wantedChunks(const std::vector<TocEntry>& toc, std::optional<std::int64_t> maxNominalSize,
                                std::uint64_t length) {
    std::uint32_t smallest = std::numeric_limits<std::uint32_t>::max();
    bool ascending = true;
    for (std::size_t i = 0; i < toc.size(); ++i) {
        smallest = std::min(smallest, toc[i].subtype);
        ascending = ascending && (i == 0 || toc[i - 1].position < toc[i].position);
    }
    std::vector<std::uint32_t> positions;
    if (!ascending) {
        for (const auto& entry : toc) positions.push_back(entry.position);
        std::sort(positions.begin(), positions.end());
    }
    const auto nextPosition = [&](std::size_t i) -> std::uint64_t {
        if (ascending) return i + 1 < toc.size() ? toc[i + 1].position : length;
        const auto next = std::upper_bound(positions.begin(), positions.end(), toc[i].position);
        return next == positions.end() ? length : *next;
    };

    std::vector<Chunk> chunks;
    for (std::size_t i = 0; i < toc.size(); ++i) {
        const auto& [subtype, position] = toc[i];
        if (maxNominalSize && *maxNominalSize < subtype && subtype != smallest) continue;
        const std::uint64_t begin = position;
        if (begin + kChunkHeaderBytes > length) continue;
        const auto guess = std::min({nextPosition(i), begin + usualBytes(subtype), length});
        chunks.push_back({subtype, begin, std::max(guess, begin + kChunkHeaderBytes), 0});
    }
    return chunks;
}

std::vector<Chunk*> inReadingOrder(std::vector<Chunk>& chunks) {
    std::vector<Chunk*> ordered;
    ordered.reserve(chunks.size());
    for (auto& chunk : chunks) ordered.push_back(&chunk);
    const auto before = [](const Chunk* a, const Chunk* b) { return inReadingOrder(a, b); };
    if (!std::is_sorted(ordered.begin(), ordered.end(), before))
        std::sort(ordered.begin(), ordered.end(), before);
    return ordered;
}

}  // namespace

std::optional<std::vector<TocEntry>> readToc(ByteSource& source, std::optional<std::uint32_t> most) {
    std::array<std::uint8_t, xcursor::kHeaderBytes> header;
    if (source.read(0, header) < header.size()) return std::nullopt;
    const std::uint32_t count = field(header, 12);
    if (field(header, 0) != xcursor::kMagic || field(header, 4) < xcursor::kHeaderBytes || count == 0)
        return std::nullopt;

    std::vector<TocEntry> entries;
    std::array<std::uint8_t, 340 * xcursor::kTocEntryBytes> block;
    std::uint64_t offset = xcursor::kHeaderBytes;
    for (std::uint64_t left = most ? std::min(count, *most) : count; left > 0;) {
        const auto wanted = std::min<std::uint64_t>(left, block.size() / xcursor::kTocEntryBytes);
        const auto got = source.read(
            offset, std::span(block).first(static_cast<std::size_t>(wanted * xcursor::kTocEntryBytes)));
        const auto whole = got / xcursor::kTocEntryBytes;
        for (std::size_t i = 0; i < whole; ++i) {
            const auto entry = std::span(block).subspan(i * xcursor::kTocEntryBytes, xcursor::kTocEntryBytes);
            if (field(entry, 0) == xcursor::kImageType) entries.push_back({field(entry, 4), field(entry, 8)});
        }
        if (whole < wanted) break;
        offset += got;
        left -= wanted;
    }
    return entries;
}

std::optional<std::vector<XCursorImage>> readImages(ByteSource& source,
                                                    std::optional<std::int64_t> maxNominalSize,
                                                    PixelPool& pool) {
    const auto toc = readToc(source);
    if (!toc) return std::nullopt;
    auto chunks = wantedChunks(*toc, maxNominalSize, source.length());
    if (chunks.empty()) return std::nullopt;
    const auto runs = readRuns(source, inReadingOrder(chunks), pool);
    if (!runs) return std::nullopt;

    std::vector<XCursorImage> images;
    images.reserve(chunks.size());
    /// Chunks that reach beyond the next position, and the place of their image among the others.
    std::vector<std::pair<Chunk, std::size_t>> longer;
    for (const auto& chunk : chunks) {
        XCursorImage image;
        std::uint64_t trueEnd = 0;
        const auto verdict = takeImage(chunk, *runs, source.length(), image, trueEnd);
        if (verdict == Verdict::accepted) images.push_back(std::move(image));
        if (verdict != Verdict::notWholeInRun) continue;
        longer.push_back({{chunk.subtype, chunk.begin, trueEnd, 0}, images.size()});
    }
    if (!longer.empty()) {
        std::vector<Chunk> again;
        again.reserve(longer.size());
        for (const auto& [chunk, place] : longer) again.push_back(chunk);
        const auto longRuns = readRuns(source, inReadingOrder(again), pool);
        if (!longRuns) return std::nullopt;
        std::vector<XCursorImage> all;
        std::size_t taken = 0;
        for (std::size_t i = 0; i < again.size(); ++i) {
            const auto place = longer[i].second;
            for (; taken < place; ++taken) all.push_back(std::move(images[taken]));
            XCursorImage image;
            std::uint64_t trueEnd = 0;
            // A chunk that still does not fit belongs to a file that is being changed.
            if (takeImage(again[i], *longRuns, source.length(), image, trueEnd) == Verdict::accepted)
                all.push_back(std::move(image));
        }
        for (; taken < images.size(); ++taken) all.push_back(std::move(images[taken]));
        images = std::move(all);
    }
    if (images.empty()) return std::nullopt;
    return images;
}

std::optional<std::vector<XCursorImage>> readNearestSize(ByteSource& source, std::int64_t nominalSize,
                                                         std::int64_t maxNominalSize, PixelPool& pool) try {
    // Far beyond any animation; each frame's header is a read of its own.
    constexpr std::size_t kMostFrames = 4096;
    const auto toc = readToc(source);
    if (!toc) return std::nullopt;
    const auto length = source.length();
    auto chunks = wantedChunks(*toc, maxNominalSize, length);
    const auto nearest = std::min_element(chunks.begin(), chunks.end(), [&](const auto& a, const auto& b) {
        return distanceOf(a.subtype, nominalSize) < distanceOf(b.subtype, nominalSize);
    });
    if (nearest == chunks.end()) return std::nullopt;
    const auto subtype = nearest->subtype;
    std::erase_if(chunks, [&](const auto& chunk) { return chunk.subtype != subtype; });
    // Entries whose header is beyond the end are no chunks.
    const auto listed =
        std::count_if(toc->begin(), toc->end(), [&](const auto& entry) { return entry.subtype == subtype; });
    if (chunks.size() != static_cast<std::size_t>(listed) || chunks.size() > kMostFrames) return std::nullopt;
    // Frames that share a chunk share one picture, which only their pixels tell.
    std::set<std::uint64_t> begins;
    for (const auto& chunk : chunks)
        if (!begins.insert(chunk.begin).second) return std::nullopt;

    std::vector<XCursorImage> images(chunks.size());
    const auto sent = sentFrames(chunks.size());
    std::vector<Chunk*> ordered;
    ordered.reserve(sent.size());
    for (const auto i : sent) ordered.push_back(&chunks[i]);
    std::sort(ordered.begin(), ordered.end(),
              [](const Chunk* a, const Chunk* b) { return inReadingOrder(a, b); });
    const auto runs = readRuns(source, ordered, pool);
    if (!runs) return std::nullopt;
    auto next = sent.begin();
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        std::uint64_t trueEnd = 0;
        if (next != sent.end() && *next == i) {
            ++next;
            if (takeImage(chunks[i], *runs, source.length(), images[i], trueEnd) != Verdict::accepted)
                return std::nullopt;
        } else if (!readHeader(source, chunks[i], images[i])) {
            return std::nullopt;
        }
    }
    // A file that is being cut short may have lost what was found in it before.
    if (source.length() != length) return std::nullopt;
    return images;
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<XCursorImage> readNearestImage(ByteSource& source, std::int64_t nominalSize,
                                             std::int64_t maxNominalSize, PixelPool& pool) {
    // Far beyond what any theme holds, and read in a few milliseconds.
    constexpr std::uint32_t kMostEntries = 1 << 16;
    constexpr int kMostTries = 1000;
    const auto toc = readToc(source, kMostEntries);
    if (!toc) return std::nullopt;
    auto chunks = wantedChunks(*toc, maxNominalSize, source.length());
    std::stable_sort(chunks.begin(), chunks.end(), [&](const Chunk& a, const Chunk& b) {
        return std::abs(a.subtype - nominalSize) < std::abs(b.subtype - nominalSize);
    });
    if (chunks.size() > kMostTries) chunks.resize(kMostTries);
    for (auto& chunk : chunks) {
        std::array<std::uint8_t, kChunkHeaderBytes> header;
        if (source.read(chunk.begin, header) < header.size()) continue;
        const auto count = std::uint64_t{field(header, 16)} * field(header, 20);
        if (count < 1 || count > kMostPixelsAtOnce) continue;
        chunk.end = chunk.begin + kChunkHeaderBytes + 4 * count;
        if (chunk.end > source.length()) continue;
        Chunk* const alone[] = {&chunk};
        const auto runs = readRuns(source, alone, pool);
        if (!runs) return std::nullopt;
        XCursorImage image;
        std::uint64_t trueEnd = 0;
        if (takeImage(chunk, *runs, source.length(), image, trueEnd) == Verdict::accepted) return image;
    }
    return std::nullopt;
}

std::optional<std::vector<XCursorParser::Header>> readHeaders(ByteSource& source) {
    const auto toc = readToc(source);
    if (!toc) return std::nullopt;
    std::vector<XCursorParser::Header> headers;
    headers.reserve(toc->size());
    for (const auto& entry : *toc) {
        std::array<std::uint8_t, 4> delay;
        const std::uint64_t end = std::uint64_t{entry.position} + kChunkHeaderBytes;
        if (end > source.length()) continue;
        if (source.read(end - delay.size(), delay) < delay.size()) continue;
        headers.push_back({entry.subtype, field(delay, 0)});
    }
    if (headers.empty()) return std::nullopt;
    return headers;
}

std::optional<std::vector<XCursorImage>> readImageHeaders(ByteSource& source,
                                                          std::span<const TocEntry> entries) {
    std::vector<XCursorImage> images;
    images.reserve(entries.size());
    for (const auto& [subtype, position] : entries) {
        std::array<std::uint8_t, kChunkHeaderBytes> header;
        if (source.read(position, header) < header.size()) return std::nullopt;
        const std::uint64_t width = field(header, 16);
        const std::uint64_t height = field(header, 20);
        const auto count = width * height;
        if (count < 1 || count > kMostPixelsAtOnce) return std::nullopt;
        if (position + kChunkHeaderBytes + 4 * count > source.length()) return std::nullopt;
        XCursorImage image;
        image.size = subtype;
        image.width = static_cast<std::int64_t>(width);
        image.height = static_cast<std::int64_t>(height);
        images.push_back(std::move(image));
    }
    return images;
}

std::optional<std::vector<XCursorImage>> readWholeImages(ByteSource& source,
                                                         std::span<const TocEntry> entries,
                                                         std::span<const XCursorImage> headers,
                                                         PixelPool& pool) {
    std::vector<Chunk> chunks;
    chunks.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto pixels = static_cast<std::uint64_t>(headers[i].width * headers[i].height);
        const std::uint64_t begin = entries[i].position;
        chunks.push_back({entries[i].subtype, begin, begin + kChunkHeaderBytes + 4 * pixels, 0});
    }
    const auto runs = readRuns(source, inReadingOrder(chunks), pool);
    if (!runs) return std::nullopt;
    std::vector<XCursorImage> images(chunks.size());
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        std::uint64_t trueEnd = 0;
        if (takeImage(chunks[i], *runs, source.length(), images[i], trueEnd) != Verdict::accepted ||
            images[i].width != headers[i].width || images[i].height != headers[i].height)
            return std::nullopt;
    }
    return images;
}

}  // namespace pintle
