#include "themes/download.h"

#include <fmt/format.h>

#include <chrono>
#include <utility>

#include "themes/animation_detection.h"
#include "themes/download_address.h"
#include "themes/scratch.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

constexpr auto kUserAgent = "Mozilla/5.0";
constexpr std::chrono::seconds kTimeout{60};
constexpr int kStatusOk = 200;
/// The part of the bar that the transfer fills, and where the bar stands during the unpacking.
constexpr double kTransferShare = 0.8;
constexpr double kExtractingShare = 0.85;

double seconds(std::chrono::nanoseconds duration) { return std::chrono::duration<double>(duration).count(); }

}  // namespace

struct ThemeDownloads::Download {
    CursorThemeInfo theme;
    std::string address;
    std::chrono::nanoseconds start{0};
    std::optional<fs::path> destination;
    std::unique_ptr<ArchiveFile> archive;
    Subscription transfer;
    Lifetime lifetime;
};

ThemeDownloads::ThemeDownloads(const Neighbours& neighbours, fs::path temporary,
                               std::optional<std::string> mirror)
    : to_(neighbours),
      temporary_(std::move(temporary)),
      mirror_(std::move(mirror)),
      workEnded_(to_.work.ended.observe([this] { downloads_.clear(); })) {}

ThemeDownloads::~ThemeDownloads() = default;

void ThemeDownloads::line(const Download& download, const std::string& text) {
    to_.log.system("[DOWNLOAD] [" + download.theme.id + text);
}

template <typename Change>
void ThemeDownloads::changeRow(const std::string& id, Change change) {
    const auto* found = to_.themes.find(id);
    if (!found) return;
    auto row = *found;
    change(row);
    to_.themes.replace(std::move(row));
}

void ThemeDownloads::downloadTheme(const CursorThemeInfo& theme) {
    to_.log.system("[DOWNLOAD] downloadTheme() CALLED for theme: " + theme.id);
    to_.log.system("[DOWNLOAD] Creating Task.detached...");
    auto alive = std::make_shared<bool>(false);
    // Weak by hand: the task says so when it finds nobody any more, and a reset takes it back without a word.
    auto begin = lifetime_.weakly([this, alive, theme, permit = to_.work.permit()] {
        *alive = true;
        if (permit != to_.work.permit()) return;
        to_.log.system("[DOWNLOAD] Calling downloadThemeAsync...");
        downloadThemeAsync(theme);
    });
    to_.mainQueue.post([alive, begin = std::move(begin), &log = to_.log]() mutable {
        log.system("[DOWNLOAD] Task.detached STARTED");
        begin();
        if (!*alive) log.system("[DOWNLOAD] ERROR: self is nil in Task.detached");
    });
    to_.log.system("[DOWNLOAD] Task.detached created, exiting downloadTheme()");
}

void ThemeDownloads::downloadThemeAsync(const CursorThemeInfo& theme) {
    to_.log.system("[DOWNLOAD] downloadThemeAsync() STARTED for theme: " + theme.id);
    auto address = downloadAddress(theme.downloadURL, mirror_);
    if (!address) {
        to_.log.system("[DOWNLOAD] ERROR: Invalid URL for theme " + theme.id);
        changeRow(theme.id, [](auto& row) { row.downloadError = "Invalid URL"; });
        return;
    }

    to_.log.system("[DOWNLOAD] Valid URL, marking as downloading...");
    to_.log.system("[DOWNLOAD] Inside MainActor.run - updating UI state");
    changeRow(theme.id, [](auto& row) {
        row.isDownloading = true;
        row.downloadProgress = 0;
        row.downloadStatus = "Connecting...";
        row.downloadError.reset();
    });
    to_.log.system("[DOWNLOAD] UI state updated: isDownloading=true, status=Connecting...");

    auto download = std::make_unique<Download>();
    download->theme = theme;
    download->address = std::move(*address);
    fetch(downloads_.insert(downloads_.end(), std::move(download)));
}

void ThemeDownloads::fetch(Entry entry) {
    auto& download = **entry;
    line(download, "] Starting download (async nonisolated)");
    download.destination = to_.store.themeDirectory(download.theme.id);
    download.start = to_.mainQueue.now();
    line(download, "] START - URL: " + download.address);
    HttpRequest request;
    request.url = download.address;
    request.headers = {{"User-Agent", kUserAgent}};
    request.timeout = kTimeout;
    request.bodyLimit = archiveLimit;
    line(download, "] URLSession.download START");
    line(download, "] Creating downloadTask...");

    line(download, "] Inside continuation");
    download.archive = std::make_unique<ArchiveFile>(temporary_);
    request.file = download.archive->path();
    line(download, "] Setting up progress observation...");
    auto progress = [this, entry](double fraction) {
        line(**entry, fmt::format("] Progress: {:.0f}%", fraction * 100));
        changeRow((*entry)->theme.id, [fraction](auto& row) {
            row.downloadProgress = fraction * kTransferShare;
            row.downloadStatus = fmt::format("Downloading {:.0f}%", fraction * 100);
        });
    };
    line(download, "] Calling task.resume()...");
    download.transfer =
        to_.http.start(std::move(request), download.lifetime.weakly(std::move(progress)),
                       download.lifetime.weakly(
                           [this, entry](const Result<HttpResponse>& result) { received(entry, result); }));
    line(download, "] task.resume() DONE");
}

void ThemeDownloads::received(Entry entry, const Result<HttpResponse>& result) {
    auto& download = **entry;
    line(download, "] downloadTask completion called");
    if (!result) {
        line(download, "] downloadTask ERROR: " + result.error().description);
        return fail(entry, result.error());
    }
    const auto& response = result.value();
    if (!response.file || !response.status) {
        line(download, "] downloadTask: no location or response");
        return fail(entry, {"Pintle", -1, "No response"});
    }
    if (const auto error = download.archive->complete(*response.file)) {
        line(download, "] Failed to secure temp file: " + error.message());
        return fail(entry, fileError(error));
    }
    line(download, "] downloadTask SUCCESS: " + download.archive->path().string());

    line(download,
         fmt::format("] URLSession.download DONE in {:.2f}s", seconds(to_.mainQueue.now() - download.start)));
    if (*response.status != kStatusOk)
        return fail(entry, {"Pintle", *response.status, fmt::format("HTTP {}", *response.status)});
    extract(entry);
}

void ThemeDownloads::extract(Entry entry) {
    auto& download = **entry;
    line(download, "] Setting status: Extracting...");
    changeRow(download.theme.id, [](auto& row) {
        row.downloadProgress = kExtractingShare;
        row.downloadStatus = "Extracting...";
    });
    line(download, "] Extraction START");
    if (!download.destination)
        return fail(entry, fileError(std::make_error_code(std::errc::invalid_argument)));
    to_.extractor.extract(
        download.archive->path(), download.theme.id, *download.destination,
        download.lifetime.weakly([this, entry, began = to_.mainQueue.now()](const Status& status) {
            auto& extracted = **entry;
            if (!status) return fail(entry, status.error());
            const auto now = to_.mainQueue.now();
            line(extracted, fmt::format("] Extraction DONE in {:.2f}s", seconds(now - began)));
            line(extracted, fmt::format("] SUCCESS - total time: {:.2f}s", seconds(now - extracted.start)));
            extracted.archive->remove();
            markDownloaded(entry);
        }));
}

void ThemeDownloads::markDownloaded(Entry entry) {
    auto& download = **entry;
    const auto& id = download.theme.id;
    line(download, "] Marking as DOWNLOADED");
    to_.settings.clearThemeError(id);
    changeRow(id, [](auto& row) {
        row.isDownloading = false;
        row.isDownloaded = true;
        row.downloadProgress = 0;
        row.downloadStatus.clear();
    });
    forgetAnimationAnswer(id, to_.preferences);
    downloaded.emit();
    line(download, "] UI updated: isDownloaded=true");
    loadPreview(entry);
}

void ThemeDownloads::loadPreview(Entry entry) {
    const auto& id = (*entry)->theme.id;
    to_.store.loadPreviewImageAsync(
        id, to_.background, to_.mainQueue, (*entry)->lifetime,
        [this, entry, id, began = to_.mainQueue.now()](std::optional<Bitmap> preview) {
            changeRow(id, [&](auto& row) {
                // It may have been deleted in the meantime.
                if (row.isDownloaded) row.previewImage = std::move(preview);
            });
            line(**entry, fmt::format("] Preview loaded in {:.2f}s", seconds(to_.mainQueue.now() - began)));
            downloads_.erase(entry);
        });
}

void ThemeDownloads::fail(Entry entry, const Error& error) {
    auto& download = **entry;
    line(download, "] ERROR: " + error.description);
    download.archive->remove();
    auto cleanUp = [this, entry, text = error.description](ThemeWork::Turn turn) {
        auto& failed = **entry;
        runInBackground(
            to_.background, to_.mainQueue, failed.lifetime, Priority::userInitiated,
            [permit = to_.work.permit(), destination = failed.destination] {
                bool removed = false;
                permit->use([&] {
                    std::error_code missing;
                    removed = destination && fs::exists(fs::symlink_status(*destination, missing)) &&
                              !removeWhole(*destination);
                });
                return removed;
            },
            [this, entry, text, turn = std::move(turn)](bool removed) mutable {
                const auto held = std::exchange(turn, nullptr);
                auto& ended = **entry;
                const auto& id = ended.theme.id;
                if (removed) line(ended, "] Cleaned up broken theme directory");
                to_.settings.setThemeError(id, text);
                changeRow(id, [&](auto& row) {
                    row.isDownloading = false;
                    row.isDownloaded = false;
                    row.downloadProgress = 0;
                    row.downloadStatus.clear();
                    row.downloadError = text;
                });
                line(ended, "] UI updated: error shown + persisted");
                downloads_.erase(entry);
            });
    };
    to_.work.begin(download.theme.id, download.lifetime.weakly(std::move(cleanUp)));
}

}  // namespace pintle
