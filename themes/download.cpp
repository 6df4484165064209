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

ThemeDownloads::ThemeDownloads(const Dependencies& dependencies, fs::path temporary,
                               std::optional<std::string> mirror)
    : deps_(dependencies),
      temporary_(std::move(temporary)),
      mirror_(std::move(mirror)),
      workEnded_(deps_.work.ended.observe([this] { downloads_.clear(); })) {}

ThemeDownloads::~ThemeDownloads() = default;

void ThemeDownloads::line(const std::string& id, const std::string& text) {
    deps_.log.system("[DOWNLOAD] [" + id + "] " + text);
}

template <typename Change>
void ThemeDownloads::changeRow(const std::string& id, Change change) {
    const auto* found = deps_.themes.find(id);
    if (!found) return;
    auto row = *found;
    change(row);
    deps_.themes.replace(std::move(row));
}

void ThemeDownloads::downloadTheme(const CursorThemeInfo& theme) {
    deps_.log.system("[DOWNLOAD] downloadTheme() CALLED for theme: " + theme.id);
    deps_.log.system("[DOWNLOAD] Creating Task.detached...");
    auto alive = std::make_shared<bool>(false);
    // Weak by hand, because the task logs that its owner is gone; a reset drops the task without a log line.
    auto begin = lifetime_.weakly([this, alive, theme, permit = deps_.work.permit()] {
        *alive = true;
        if (permit != deps_.work.permit()) return;
        deps_.log.system("[DOWNLOAD] Calling downloadThemeAsync...");
        downloadThemeAsync(theme);
    });
    deps_.mainQueue.post([alive, begin = std::move(begin), &log = deps_.log]() mutable {
        log.system("[DOWNLOAD] Task.detached STARTED");
        begin();
        if (!*alive) log.system("[DOWNLOAD] ERROR: self is nil in Task.detached");
    });
    deps_.log.system("[DOWNLOAD] Task.detached created, exiting downloadTheme()");
}

void ThemeDownloads::downloadThemeAsync(const CursorThemeInfo& theme) {
    deps_.log.system("[DOWNLOAD] downloadThemeAsync() STARTED for theme: " + theme.id);
    auto address = downloadAddress(theme.downloadURL, mirror_);
    if (!address) {
        deps_.log.system("[DOWNLOAD] ERROR: Invalid URL for theme " + theme.id);
        changeRow(theme.id, [](auto& row) { row.downloadError = "Invalid URL"; });
        return;
    }

    deps_.log.system("[DOWNLOAD] Valid URL, marking as downloading...");
    deps_.log.system("[DOWNLOAD] Inside MainActor.run - updating UI state");
    changeRow(theme.id, [](auto& row) {
        row.isDownloading = true;
        row.downloadProgress = 0;
        row.downloadStatus = "Connecting...";
        row.downloadError.reset();
    });
    deps_.log.system("[DOWNLOAD] UI state updated: isDownloading=true, status=Connecting...");

    const auto entry = downloads_.insert(downloads_.end(), run(theme.id, std::move(*address)));
    entry->start([this, entry] { downloads_.erase(entry); });
}

Flow ThemeDownloads::run(std::string id, std::string address) {
    line(id, "Starting download (async nonisolated)");
    const auto destination = deps_.store.themeDirectory(id);
    const auto start = deps_.mainQueue.now();
    line(id, "START - URL: " + address);
    HttpRequest request;
    request.url = address;
    request.headers = {{"User-Agent", kUserAgent}};
    request.timeout = kTimeout;
    request.bodyLimit = archiveLimit;
    line(id, "URLSession.download START");
    line(id, "Creating downloadTask...");

    line(id, "Inside continuation");
    ArchiveFile archive(temporary_);
    request.file = archive.path();
    line(id, "Setting up progress observation...");
    const auto progress = [this, &id](double fraction) {
        line(id, fmt::format("Progress: {:.0f}%", fraction * 100));
        changeRow(id, [fraction](auto& row) {
            row.downloadProgress = fraction * kTransferShare;
            row.downloadStatus = fmt::format("Downloading {:.0f}%", fraction * 100);
        });
    };
    line(id, "Calling task.resume()...");
    Answer<Result<HttpResponse>> arrived;
    const auto transfer = deps_.http.start(std::move(request), progress, arrived.resolver());
    line(id, "task.resume() DONE");

    const auto response = co_await arrived;
    Status outcome = received(id, archive, response);
    if (outcome) {
        line(id, fmt::format("URLSession.download DONE in {:.2f}s", seconds(deps_.mainQueue.now() - start)));
        const int status = *response.value().status;
        if (status != kStatusOk) outcome = Error{"Pintle", status, fmt::format("HTTP {}", status)};
    }

    if (outcome) {
        line(id, "Setting status: Extracting...");
        changeRow(id, [](auto& row) {
            row.downloadProgress = kExtractingShare;
            row.downloadStatus = "Extracting...";
        });
        line(id, "Extraction START");
        if (!destination) outcome = fileError(std::make_error_code(std::errc::invalid_argument));
    }
    if (outcome) {
        const auto began = deps_.mainQueue.now();
        Answer<Status> extracted;
        deps_.extractor.extract(archive.path(), id, *destination, extracted.resolver());
        outcome = co_await extracted;
        const auto now = deps_.mainQueue.now();
        if (outcome) {
            line(id, fmt::format("Extraction DONE in {:.2f}s", seconds(now - began)));
            line(id, fmt::format("SUCCESS - total time: {:.2f}s", seconds(now - start)));
        }
    }

    if (!outcome) {
        const auto& text = outcome.error().description;
        line(id, "ERROR: " + text);
        archive.remove();
        Answer<ThemeWork::Turn> next;
        deps_.work.begin(id, next.resolver());
        const auto turn = co_await next;
        auto cleaned = inBackground(deps_.background, deps_.mainQueue, Priority::userInitiated,
                                    [permit = deps_.work.permit(), destination] {
                                        bool removed = false;
                                        permit->use([&] {
                                            std::error_code missing;
                                            removed = destination &&
                                                      fs::exists(fs::symlink_status(*destination, missing)) &&
                                                      !removeWhole(*destination);
                                        });
                                        return removed;
                                    });
        const bool removed = co_await cleaned;
        if (removed) line(id, "Cleaned up broken theme directory");
        deps_.settings.setThemeError(id, text);
        changeRow(id, [&](auto& row) {
            row.isDownloading = false;
            row.isDownloaded = false;
            row.downloadProgress = 0;
            row.downloadStatus.clear();
            row.downloadError = text;
        });
        line(id, "UI updated: error shown + persisted");
        if (outcome.error().domain == "network" && outcome.error().code == kNoNetwork) wantedNetwork.emit(id);
        co_return;
    }

    archive.remove();
    line(id, "Marking as DOWNLOADED");
    deps_.settings.clearThemeError(id);
    changeRow(id, [](auto& row) {
        row.isDownloading = false;
        row.isDownloaded = true;
        row.downloadProgress = 0;
        row.downloadStatus.clear();
    });
    forgetAnimationAnswer(id, deps_.preferences);
    downloaded.emit();
    line(id, "UI updated: isDownloaded=true");

    const auto previewStart = deps_.mainQueue.now();
    Answer<std::optional<Bitmap>> loaded;
    const Lifetime here;
    deps_.store.loadPreviewImageAsync(id, deps_.background, deps_.mainQueue, here, loaded.resolver());
    auto preview = co_await loaded;
    changeRow(id, [&](auto& row) {
        // It may have been deleted in the meantime.
        if (row.isDownloaded) row.previewImage = std::move(preview);
    });
    line(id, fmt::format("Preview loaded in {:.2f}s", seconds(deps_.mainQueue.now() - previewStart)));
}

Status ThemeDownloads::received(const std::string& id, ArchiveFile& archive,
                                const Result<HttpResponse>& result) {
    line(id, "downloadTask completion called");
    if (!result) {
        line(id, "downloadTask ERROR: " + result.error().description);
        return result.error();
    }
    const auto& response = result.value();
    if (!response.file || !response.status) {
        line(id, "downloadTask: no location or response");
        return Error{"Pintle", -1, "No response"};
    }
    if (const auto error = archive.complete(*response.file)) {
        line(id, "Failed to secure temp file: " + error.message());
        return fileError(error);
    }
    line(id, "downloadTask SUCCESS: " + archive.path().string());
    return Done{};
}

}  // namespace pintle
