#include "themes/theme_extractor.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/lifetime.h"
#include "themes/archive_layout.h"
#include "themes/folder_tree.h"
#include "themes/scratch.h"
#include "themes/unpack_error.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

using Scratch = std::shared_ptr<ScratchFolder>;

constexpr int kNoCursors = -2;

fs::path unpackRoot(const ScratchFolder& scratch) { return scratch.path() / "x"; }
fs::path errorFile(const ScratchFolder& scratch) { return scratch.path() / "stderr.txt"; }

std::optional<std::string> excess(const TreeSize& size, const ExtractionLimits& limits) {
    if (size.bytes > limits.bytes)
        return fmt::format("the archive unpacks to more than {} bytes", limits.bytes);
    if (size.entries > limits.entries)
        return fmt::format("the archive holds more than {} entries", limits.entries);
    if (size.depth > limits.depth)
        return fmt::format("the archive nests folders deeper than {}", limits.depth);
    return std::nullopt;
}

TreeSize mostOf(const ExtractionLimits& limits) { return {limits.entries, limits.bytes, limits.depth}; }

Error extractionError(int code, const std::string& text) {
    return {"Pintle", code, "Extraction failed: " + text};
}

Result<Scratch> prepare(const fs::path& parent) {
    auto scratch = ScratchFolder::create(parent);
    if (!scratch) return scratch.error();
    std::error_code error;
    fs::create_directories(unpackRoot(*scratch.value()), error);
    if (error) return fileError(error);
    const int file =
        ::open(errorFile(*scratch.value()).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0) return fileError({errno, std::generic_category()});
    ::close(file);
    return scratch;
}

/// The folder to install, or why there is none.
Result<fs::path> judge(const ScratchFolder& scratch, int status, const std::string& themeId,
                       const ExtractionLimits& limits) {
    if (status == SIGXCPU)
        return extractionError(-1, fmt::format("the archive takes more than {} seconds of processor time",
                                               limits.processorTime.count()));
    if (status != 0) return extractionError(status, unpackErrorText(errorFile(scratch), status));
    // The last look: a small archive is unpacked before the first one.
    if (const auto text = excess(measureTree(unpackRoot(scratch), mostOf(limits)), limits))
        return extractionError(-1, *text);
    const auto chosen = ThemeExtractor::pickCursorDirectory(unpackRoot(scratch), themeId);
    if (!chosen) return Error{"Pintle", kNoCursors, "No XCursor files in archive"};
    return *chosen;
}

Status moveIntoPlace(const ScratchFolder& scratch, const fs::path& chosen, const fs::path& destination,
                     const ExtractionLimits& limits) {
    if (auto secured = makeSelfContained(chosen, unpackRoot(scratch), limits.entries); !secured)
        return secured;
    // What was there goes by one rename, so that no half of it is ever seen as a theme.
    struct stat old = {};
    std::error_code error;
    if (::lstat(destination.c_str(), &old) == 0) {
        if (S_ISDIR(old.st_mode)) ::chmod(destination.c_str(), (old.st_mode & 0777) | S_IRWXU);
        fs::rename(destination, scratch.path() / "replaced", error);
        if (error) return fileError(error);
    }
    fs::create_directories(destination, error);
    if (error) return fileError(error);
    fs::rename(chosen, destination / "cursors", error);
    if (error) return fileError(error);
    return Done{};
}

}  // namespace

struct ThemeExtractor::Extraction {
    fs::path archive;
    std::string themeId;
    fs::path destination;
    Completion done;
    std::shared_ptr<DiskPermit> permit;
    Scratch scratch;
    std::unique_ptr<ChildProcess> child;
    Timer watching;
    Timer deadline;
    bool measuring = false;
    /// Why the archiver was killed.
    std::optional<std::string> excess;
    Lifetime lifetime;
};

ThemeExtractor::ThemeExtractor(const Neighbours& neighbours, ExtractionLimits limits)
    : to_(neighbours),
      limits_(limits),
      workEnded_(to_.work.ended.observe([this] { extractions_.clear(); })) {}

ThemeExtractor::~ThemeExtractor() = default;

std::optional<fs::path> ThemeExtractor::pickCursorDirectory(const fs::path& root,
                                                            const std::string& themeId) {
    return pintle::pickCursorDirectory(root, themeId);
}

void ThemeExtractor::extract(const fs::path& archive, const std::string& themeId, const fs::path& destination,
                             Completion done) {
    auto created = std::make_unique<Extraction>();
    created->archive = archive;
    created->themeId = themeId;
    created->destination = destination;
    created->done = std::move(done);
    created->permit = to_.work.permit();
    const auto entry = extractions_.insert(extractions_.end(), std::move(created));
    auto& extraction = **entry;
    runInBackground(
        to_.background, to_.mainQueue, extraction.lifetime, Priority::userInitiated,
        [permit = extraction.permit, parent = destination.parent_path()]() -> Result<Scratch> {
            Result<Scratch> prepared = Scratch();
            permit->use([&] { prepared = prepare(parent); });
            return prepared;
        },
        [this, entry](const Result<Scratch>& prepared) {
            if (!prepared) return finish(entry, prepared.error());
            (*entry)->scratch = prepared.value();
            unpack(entry);
        });
}

void ThemeExtractor::unpack(Entry entry) {
    auto& extraction = **entry;
    ProcessRequest request;
    request.executable = "/usr/bin/tar";
    request.arguments = {"-xf", extraction.archive.string(), "-C", unpackRoot(*extraction.scratch).string()};
    request.standardError = errorFile(*extraction.scratch);
    request.largestFile = limits_.bytes;
    request.processorTime = limits_.processorTime;
    extraction.child = to_.processes.start(
        std::move(request),
        extraction.lifetime.weakly([this, entry](const Result<int>& status) { examine(entry, status); }));
    extraction.watching = to_.mainQueue.every(limits_.interval, [this, entry] { watch(entry); });
    extraction.deadline = to_.mainQueue.after(limits_.deadline, [this, entry] {
        end(entry, fmt::format("the archive takes longer than {} seconds", limits_.deadline.count()));
    });
}

void ThemeExtractor::watch(Entry entry) {
    auto& extraction = **entry;
    if (extraction.measuring) return;
    extraction.measuring = true;
    runInBackground(
        to_.background, to_.mainQueue, extraction.lifetime, Priority::utility,
        [root = unpackRoot(*extraction.scratch), limits = limits_] {
            return excess(measureTree(root, mostOf(limits)), limits);
        },
        [this, entry](const std::optional<std::string>& found) {
            (*entry)->measuring = false;
            if (found) end(entry, *found);
        });
}

void ThemeExtractor::end(Entry entry, const std::string& why) {
    auto& extraction = **entry;
    if (!extraction.child || extraction.excess) return;
    extraction.excess = why;
    extraction.child->kill();
}

void ThemeExtractor::examine(Entry entry, const Result<int>& status) {
    auto& extraction = **entry;
    extraction.watching.end();
    extraction.deadline.end();
    extraction.child.reset();
    runInBackground(
        to_.background, to_.mainQueue, extraction.lifetime, Priority::userInitiated,
        [scratch = std::exchange(extraction.scratch, nullptr), status, why = extraction.excess,
         id = extraction.themeId, limits = limits_]() -> Result<std::pair<Scratch, fs::path>> {
            const auto chosen = !status ? Result<fs::path>(status.error())
                                : why   ? Result<fs::path>(extractionError(-1, *why))
                                        : judge(*scratch, status.value(), id, limits);
            if (chosen) return std::pair(scratch, chosen.value());
            scratch->remove();
            return chosen.error();
        },
        [this, entry](const Result<std::pair<Scratch, fs::path>>& found) {
            if (!found) return finish(entry, found.error());
            (*entry)->scratch = found.value().first;
            install(entry, found.value().second);
        });
}

void ThemeExtractor::install(Entry entry, const fs::path& chosen) {
    auto& extraction = **entry;
    auto work = [this, entry, chosen](ThemeWork::Turn turn) {
        auto& beginning = **entry;
        runInBackground(
            to_.background, to_.mainQueue, beginning.lifetime, Priority::userInitiated,
            [scratch = std::exchange(beginning.scratch, nullptr), permit = beginning.permit, chosen,
             destination = beginning.destination, limits = limits_]() -> Status {
                Status status = Done{};
                permit->use([&] { status = moveIntoPlace(*scratch, chosen, destination, limits); });
                scratch->remove();
                return status;
            },
            // The turn ends after the completion, on this thread.
            [this, entry, turn = std::move(turn)](const Status& status) mutable {
                const auto held = std::exchange(turn, nullptr);
                finish(entry, status);
            });
    };
    to_.work.begin(extraction.themeId, extraction.lifetime.weakly(std::move(work)));
}

void ThemeExtractor::finish(Entry entry, const Status& status) {
    const auto finished = std::move(*entry);
    extractions_.erase(entry);
    finished->done(status);
}

}  // namespace pintle
