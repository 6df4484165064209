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
    // Measured once more at the end: a small archive is unpacked before the first measurement.
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

ThemeExtractor::ThemeExtractor(const Dependencies& dependencies, ExtractionLimits limits)
    : deps_(dependencies),
      limits_(limits),
      workEnded_(deps_.work.ended.observe([this] { extractions_.clear(); })) {}

ThemeExtractor::~ThemeExtractor() = default;

std::optional<fs::path> ThemeExtractor::pickCursorDirectory(const fs::path& root,
                                                            const std::string& themeId) {
    return pintle::pickCursorDirectory(root, themeId);
}

void ThemeExtractor::extract(const fs::path& archive, const std::string& themeId, const fs::path& destination,
                             Completion done) {
    const auto entry = extractions_.emplace(extractions_.end());
    entry->flow = run(archive, themeId, destination, entry->status, entry->turn);
    entry->flow.start([this, entry, done = std::move(done)] {
        const auto status = entry->status;
        const auto turn = std::move(entry->turn);
        extractions_.erase(entry);
        done(status);
    });
}

Flow ThemeExtractor::run(fs::path archive, std::string themeId, fs::path destination, Status& status,
                         ThemeWork::Turn& turn) {
    const auto inBackground = [this](auto work) {
        return pintle::inBackground(deps_.background, deps_.mainQueue, Priority::userInitiated,
                                    std::move(work));
    };
    const auto permit = deps_.work.permit();
    auto prepared = inBackground([permit, parent = destination.parent_path()] {
        Result<Scratch> made = Scratch();
        permit->use([&] { made = prepare(parent); });
        return made;
    });
    const auto made = co_await prepared;
    if (!made) {
        status = made.error();
        co_return;
    }
    const auto& scratch = made.value();

    ProcessRequest request;
    request.executable = "/usr/bin/tar";
    request.arguments = {"-xf", archive.string(), "-C", unpackRoot(*scratch).string()};
    request.standardError = errorFile(*scratch);
    request.largestFile = limits_.bytes;
    request.processorTime = limits_.processorTime;
    Answer<Result<int>> exited;
    const auto child = deps_.processes.start(std::move(request), exited.resolver());
    // The scratch folder is measured while the archiver runs.
    std::optional<std::string> tooMuch;
    const auto end = [&](const std::string& why) {
        if (tooMuch) return;
        tooMuch = why;
        child->kill();
    };
    std::optional<Lifetime> running(std::in_place);
    bool measuring = false;
    auto watching = deps_.mainQueue.every(limits_.interval, [&] {
        if (std::exchange(measuring, true)) return;
        runInBackground(
            deps_.background, deps_.mainQueue, *running, Priority::utility,
            [root = unpackRoot(*scratch), limits = limits_] {
                return excess(measureTree(root, mostOf(limits)), limits);
            },
            [&](const std::optional<std::string>& found) {
                measuring = false;
                if (found) end(*found);
            });
    });
    auto deadline = deps_.mainQueue.after(limits_.deadline, [&] {
        end(fmt::format("the archive takes longer than {} seconds", limits_.deadline.count()));
    });
    const auto exit = co_await exited;
    running.reset();
    watching.end();
    deadline.end();

    auto judged = inBackground([scratch, exit, tooMuch, themeId, limits = limits_]() -> Result<fs::path> {
        auto chosen = !exit     ? Result<fs::path>(exit.error())
                      : tooMuch ? Result<fs::path>(extractionError(-1, *tooMuch))
                                : judge(*scratch, exit.value(), themeId, limits);
        if (!chosen) scratch->remove();
        return chosen;
    });
    const auto chosen = co_await judged;
    if (!chosen) {
        status = chosen.error();
        co_return;
    }

    Answer<ThemeWork::Turn> next;
    deps_.work.begin(themeId, next.resolver());
    turn = co_await next;
    auto installed = inBackground([scratch, permit, folder = chosen.value(), destination, limits = limits_] {
        Status moved = Done{};
        permit->use([&] { moved = moveIntoPlace(*scratch, folder, destination, limits); });
        scratch->remove();
        return moved;
    });
    status = co_await installed;
}

}  // namespace pintle
