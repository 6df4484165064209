#include "themes/download.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/themes/library_world.h"
#include "themes/animation_detection.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct DownloadTest : testing::Test {
    LibraryWorld world;

    /// Up to the running request.
    void begin(const std::string& id = "banana") {
        world.downloads->downloadTheme(world.row(id));
        world.scheduler.runUntilIdle();
    }
    void run() { world.scheduler.runUntilIdle(); }
    void succeed(std::size_t which = 0) {
        world.unpack({{"T/cursors/left_ptr", LibraryWorld::cursorFile()}});
        world.http.answer(which, 200, "archive");
        run();
    }
    void expectFailed(const std::string& text, const std::string& id = "banana") {
        const auto& row = world.row(id);
        EXPECT_FALSE(row.isDownloading);
        EXPECT_FALSE(row.isDownloaded);
        EXPECT_EQ(row.downloadProgress, 0);
        EXPECT_EQ(row.downloadStatus, "");
        EXPECT_EQ(row.downloadError, text);
        EXPECT_EQ(world.settings.themeError(id), text);
        EXPECT_THAT(world.onDisk(), IsEmpty());
    }
};

TEST_F(DownloadTest, LogsItsStepsInTheirOrder) {
    begin();
    world.scheduler.advance(std::chrono::milliseconds(1230));
    world.http.progress(0, 0.5);
    succeed();
    const auto address = world.row("banana").downloadURL;
    auto lines = world.log.systemLines;
    std::string archive;
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("[FIND_CURSORS]"); });
    for (auto& line : lines)
        if (line.starts_with("[DOWNLOAD] [banana] downloadTask SUCCESS: ")) {
            archive = line.substr(line.find(": ") + 2);
            line.resize(line.find(": ") + 2);
        }
    EXPECT_THAT(
        lines,
        ElementsAre(
            "[DOWNLOAD] downloadTheme() CALLED for theme: banana", "[DOWNLOAD] Creating Task.detached...",
            "[DOWNLOAD] Task.detached created, exiting downloadTheme()", "[DOWNLOAD] Task.detached STARTED",
            "[DOWNLOAD] Calling downloadThemeAsync...",
            "[DOWNLOAD] downloadThemeAsync() STARTED for theme: banana",
            "[DOWNLOAD] Valid URL, marking as downloading...",
            "[DOWNLOAD] Inside MainActor.run - updating UI state",
            "[DOWNLOAD] UI state updated: isDownloading=true, status=Connecting...",
            "[DOWNLOAD] [banana] Starting download (async nonisolated)",
            "[DOWNLOAD] [banana] START - URL: " + address, "[DOWNLOAD] [banana] URLSession.download START",
            "[DOWNLOAD] [banana] Creating downloadTask...", "[DOWNLOAD] [banana] Inside continuation",
            "[DOWNLOAD] [banana] Setting up progress observation...",
            "[DOWNLOAD] [banana] Calling task.resume()...", "[DOWNLOAD] [banana] task.resume() DONE",
            "[DOWNLOAD] [banana] Progress: 50%", "[DOWNLOAD] [banana] downloadTask completion called",
            "[DOWNLOAD] [banana] downloadTask SUCCESS: ",
            "[DOWNLOAD] [banana] URLSession.download DONE in 1.23s",
            "[DOWNLOAD] [banana] Setting status: Extracting...", "[DOWNLOAD] [banana] Extraction START",
            "[DOWNLOAD] [banana] Extraction DONE in 0.00s", "[DOWNLOAD] [banana] SUCCESS - total time: 1.23s",
            "[DOWNLOAD] [banana] Marking as DOWNLOADED", "[DOWNLOAD] [banana] UI updated: isDownloaded=true",
            "[DOWNLOAD] [banana] Preview loaded in 0.00s"));
    EXPECT_EQ(fs::path(archive).parent_path(), world.directories.temporary);
    EXPECT_TRUE(fs::path(archive).filename().string().starts_with("pintle-"));
    EXPECT_EQ(fs::path(archive).extension(), ".download");
}

TEST_F(DownloadTest, AsksForTheRowsAddressWithItsHeaderAndTimeout) {
    begin();
    ASSERT_EQ(world.http.requests.size(), 1u);
    const auto& request = world.http.requests[0];
    EXPECT_EQ(request.url, world.row("banana").downloadURL);
    EXPECT_THAT(request.headers,
                ElementsAre(std::pair<std::string, std::string>("User-Agent", "Mozilla/5.0")));
    EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    EXPECT_EQ(request.cachePolicy, CachePolicy::protocolDefault);
    EXPECT_TRUE(request.file);
}

TEST_F(DownloadTest, TheRowGoesThroughItsStates) {
    world.settings.setThemeError("banana", "old");
    world.themes.loadThemes();
    EXPECT_EQ(world.row("banana").downloadError, "old");
    begin();
    EXPECT_TRUE(world.row("banana").isDownloading);
    EXPECT_EQ(world.row("banana").downloadStatus, "Connecting...");
    EXPECT_EQ(world.row("banana").downloadError, std::nullopt);
    EXPECT_EQ(world.settings.themeError("banana"), "old") << "it stays stored until the download succeeds";

    world.http.progress(0, 0.5);
    run();
    EXPECT_DOUBLE_EQ(world.row("banana").downloadProgress, 0.4);
    EXPECT_EQ(world.row("banana").downloadStatus, "Downloading 50%");

    world.http.answer(0, 200, "archive");
    run();
    EXPECT_DOUBLE_EQ(world.row("banana").downloadProgress, 0.85);
    EXPECT_EQ(world.row("banana").downloadStatus, "Extracting...");
    EXPECT_TRUE(world.row("banana").isDownloading);

    writeFile(fs::path(world.processes.requests[0].arguments[3]) / "cursors/default",
              LibraryWorld::cursorFile());
    world.processes.end(0, 0);
    bool markedBeforePreview = false;
    const auto observer = world.themes.changed.observe([&] {
        const auto& row = world.row("banana");
        if (row.isDownloaded && !row.previewImage) markedBeforePreview = true;
    });
    run();
    const auto& row = world.row("banana");
    EXPECT_TRUE(row.isDownloaded);
    EXPECT_FALSE(row.isDownloading);
    EXPECT_EQ(row.downloadProgress, 0);
    EXPECT_EQ(row.downloadStatus, "");
    EXPECT_TRUE(row.previewImage);
    EXPECT_TRUE(markedBeforePreview);
    EXPECT_EQ(world.settings.themeError("banana"), std::nullopt);
    EXPECT_THAT(world.onDisk(), ElementsAre("banana")) << "the archive is gone";
}

TEST_F(DownloadTest, EveryReportOfProgressCounts) {
    begin();
    for (int i = 0; i < 5; ++i) world.http.progress(0, 0.1);
    run();
    EXPECT_EQ(world.log.count("[DOWNLOAD] [banana] Progress: 10%"), 5u);
    EXPECT_DOUBLE_EQ(world.row("banana").downloadProgress, 0.08);
}

TEST_F(DownloadTest, WithoutReportsTheRowStaysAtConnecting) {
    begin();
    world.scheduler.advance(std::chrono::seconds(10));
    EXPECT_EQ(world.row("banana").downloadStatus, "Connecting...");
    EXPECT_EQ(world.row("banana").downloadProgress, 0);
}

TEST_F(DownloadTest, AnAddressThatDoesNotParseIsShownAndNotStored) {
    auto theme = world.row("banana");
    theme.downloadURL = "not an address";
    auto row = theme;
    row.downloadProgress = 0.3;
    row.downloadStatus = "as before";
    world.themes.replace(row);
    world.downloads->downloadTheme(theme);
    run();
    EXPECT_EQ(world.row("banana").downloadError, "Invalid URL");
    EXPECT_FALSE(world.row("banana").isDownloading);
    EXPECT_EQ(world.row("banana").downloadProgress, 0.3);
    EXPECT_EQ(world.row("banana").downloadStatus, "as before");
    EXPECT_EQ(world.settings.themeError("banana"), std::nullopt);
    EXPECT_TRUE(world.log.has("[DOWNLOAD] ERROR: Invalid URL for theme banana"));
    EXPECT_THAT(world.http.requests, IsEmpty());
    EXPECT_THAT(world.onDisk(), IsEmpty());
}

TEST_F(DownloadTest, AnErrorOfTheConnectionIsShownAndStored) {
    begin();
    world.log.systemLines.clear();
    world.http.fail(0, "The network is unreachable");
    run();
    expectFailed("The network is unreachable");
    EXPECT_THAT(world.log.systemLines,
                ElementsAre("[DOWNLOAD] [banana] downloadTask completion called",
                            "[DOWNLOAD] [banana] downloadTask ERROR: The network is unreachable",
                            "[DOWNLOAD] [banana] ERROR: The network is unreachable",
                            "[DOWNLOAD] [banana] UI updated: error shown + persisted"));
}

TEST_F(DownloadTest, AnAnswerWithoutAFileOrAStatusIsNoResponse) {
    begin();
    world.http.answer(0, HttpResponse{200, std::nullopt, ""});
    run();
    expectFailed("No response");
    EXPECT_TRUE(world.log.has("[DOWNLOAD] [banana] downloadTask: no location or response"));
    begin();
    world.http.answer(1, HttpResponse{std::nullopt, world.http.requests[1].file, ""});
    run();
    expectFailed("No response");
}

TEST_F(DownloadTest, AFileThatCannotBeMovedIsAnsweredWithTheErrorOfTheMove) {
    begin();
    fs::remove(*world.http.requests[0].file);
    world.http.answer(0, HttpResponse{200, world.http.requests[0].file, ""});
    run();
    expectFailed("No such file or directory");
    EXPECT_TRUE(world.log.has("[DOWNLOAD] [banana] Failed to secure temp file: No such file or directory"));
}

TEST_F(DownloadTest, AnyStatusBut200Fails) {
    std::size_t request = 0;
    for (const int status : {204, 404, 500, 201, 206, 301}) {
        begin();
        world.http.answer(request++, status, "text");
        run();
        expectFailed("HTTP " + std::to_string(status));
    }
    EXPECT_THAT(world.processes.requests, IsEmpty());
}

TEST_F(DownloadTest, AFailedExtractionLeavesNothingAndItsErrorIsShownAtTheNextStart) {
    begin();
    world.http.answer(0, 200, "no archive");
    run();
    world.processes.end(0, 1, "Unrecognized archive format");
    run();
    expectFailed("Extraction failed: Unrecognized archive format");
    EXPECT_FALSE(world.log.has("[DOWNLOAD] [banana] Cleaned up broken theme directory"));
    world.themes.loadThemes();
    EXPECT_EQ(world.row("banana").downloadError, "Extraction failed: Unrecognized archive format");
}

TEST_F(DownloadTest, AFailureRemovesTheThemesFolderAndSaysSo) {
    begin();
    writeFile(world.themeFolder("banana") / "cursors/left_ptr", "Xcur");
    world.http.fail(0, "gone");
    run();
    expectFailed("gone");
    EXPECT_TRUE(world.log.has("[DOWNLOAD] [banana] Cleaned up broken theme directory"));
}

TEST_F(DownloadTest, AFolderThatCannotBeRemovedIsNotSaidToBe) {
    begin();
    writeFile(world.themeFolder("banana") / "cursors/left_ptr", "Xcur");
    for (auto around = world.themesDirectory(); around != world.folder.path(); around = around.parent_path())
        fs::permissions(around, fs::perms(0555));
    fs::permissions(world.folder.path(), fs::perms(0555));
    world.http.fail(0, "gone");
    // The rights of root remove anything.
    constexpr uid_t nobody = 65534;
    const bool root = ::geteuid() == 0;
    ASSERT_TRUE(!root || ::seteuid(nobody) == 0);
    run();
    ASSERT_TRUE(!root || ::seteuid(0) == 0);
    for (auto around = world.themesDirectory(); around != world.folder.path(); around = around.parent_path())
        fs::permissions(around, fs::perms(0755));
    fs::permissions(world.folder.path(), fs::perms(0755));
    EXPECT_EQ(world.row("banana").downloadError, "gone");
    EXPECT_TRUE(fs::exists(world.themeFolder("banana")));
    EXPECT_FALSE(world.log.has("[DOWNLOAD] [banana] Cleaned up broken theme directory"));
}

TEST_F(DownloadTest, AFailureWaitsUntilNobodyElseWorksOnTheTheme) {
    begin();
    ThemeWork::Turn held;
    world.work.begin("banana", [&](ThemeWork::Turn turn) { held = std::move(turn); });
    world.http.fail(0, "gone");
    run();
    EXPECT_TRUE(world.row("banana").isDownloading);
    held = nullptr;
    run();
    expectFailed("gone");
}

TEST_F(DownloadTest, ARetryIsANewDownload) {
    begin();
    world.http.fail(0, "gone");
    run();
    begin();
    EXPECT_EQ(world.row("banana").downloadError, std::nullopt);
    succeed(1);
    EXPECT_TRUE(world.row("banana").isDownloaded);
    EXPECT_EQ(world.settings.themeError("banana"), std::nullopt);
}

TEST_F(DownloadTest, DownloadingOneVariantDoesNotMarkTheOthersOfTheArchive) {
    begin("phinger-cursors-dark");
    succeed();
    EXPECT_TRUE(world.row("phinger-cursors-dark").isDownloaded);
    for (const char* id :
         {"phinger-cursors-light", "phinger-cursors-light-left", "phinger-cursors-dark-left"})
        EXPECT_FALSE(world.row(id).isDownloaded) << id;
    EXPECT_THAT(world.onDisk(), ElementsAre("phinger-cursors-dark"));
}

TEST_F(DownloadTest, ARowThatIsNoMoreIsDroppedSilently) {
    auto theme = world.row("banana");
    theme.id = "of-no-row";
    world.downloads->downloadTheme(theme);
    run();
    world.http.progress(0, 0.5);
    world.http.fail(0, "gone");
    run();
    EXPECT_EQ(world.settings.themeError("of-no-row"), "gone");
    EXPECT_EQ(world.themes.themes().size(), 77u);
}

TEST_F(DownloadTest, TheRecordOfItsAnimationIsDroppedBeforeTheNextDetection) {
    world.store.set(animatedThemesKey, PropertyDictionary{{"banana", true}, {"fuchsia", true}});
    bool notified = false;
    const auto observer = world.downloads->downloaded.observe([&] {
        notified = true;
        EXPECT_EQ(animationAnswers(world.store), (AnimationAnswers{{"fuchsia", true}}));
        EXPECT_TRUE(world.row("banana").isDownloaded);
    });
    begin();
    succeed();
    EXPECT_TRUE(notified);
}

TEST_F(DownloadTest, TheOneWhoIsGoneIsMissedByItsTask) {
    world.downloads->downloadTheme(world.row("banana"));
    world.downloads.reset();
    run();
    EXPECT_THAT(world.log.systemLines, Contains("[DOWNLOAD] ERROR: self is nil in Task.detached"));
    EXPECT_FALSE(world.log.has("[DOWNLOAD] Calling downloadThemeAsync..."));
    EXPECT_FALSE(world.row("banana").isDownloading);
}

/// One download that is left to itself after so many pieces of work. False when it had ended before.
template <typename LeaveAlone>
bool interruptedAfter(int steps, bool succeeds, LeaveAlone leaveAlone) {
    LibraryWorld world;
    world.unpack({{"T/cursors/left_ptr", LibraryWorld::cursorFile()}});
    world.downloads->downloadTheme(world.row("banana"));
    bool answered = false;
    bool underWay = true;
    for (int step = 0; step < steps && underWay; ++step) {
        underWay = world.scheduler.step();
        if (underWay || answered || world.http.requests.empty()) continue;
        world.http.answer(0, succeeds ? 200 : 404, "archive");
        underWay = answered = true;
    }
    leaveAlone(world);
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.scheduler.pendingTimers(), 0u) << steps;
    for (const auto& name : world.onDisk()) EXPECT_EQ(name, "banana") << steps;
    if (fs::exists(world.themeFolder("banana"))) {
        EXPECT_TRUE(fs::exists(world.themeFolder("banana") / "cursors/left_ptr")) << steps;
    }
    return underWay;
}

TEST_F(DownloadTest, WhoeverIsGoneInTheMiddleLeavesAWholeThemeOrNoneAndNoScratch) {
    for (const bool succeeds : {true, false}) {
        int steps = 0;
        while (interruptedAfter(steps, succeeds, [](LibraryWorld& each) { each.downloads.reset(); })) ++steps;
        EXPECT_GT(steps, 5);
    }
}

TEST_F(DownloadTest, AResetInTheMiddleLeavesAWholeThemeOrNoneAndNoScratch) {
    for (const bool succeeds : {true, false}) {
        int steps = 0;
        while (interruptedAfter(steps, succeeds, [](LibraryWorld& each) { each.work.endAll(); })) ++steps;
        EXPECT_GT(steps, 5);
    }
}

TEST_F(DownloadTest, AResetByAnObserverOfTheDownloadEndsTheDownloadThere) {
    const auto observer = world.downloads->downloaded.observe([this] { world.work.endAll(); });
    begin();
    succeed();
    EXPECT_TRUE(world.row("banana").isDownloaded);
    EXPECT_FALSE(world.log.has("[DOWNLOAD] [banana] Preview loaded in 0.00s"));
    EXPECT_EQ(world.scheduler.pendingBackground(), 0u);
}

TEST_F(DownloadTest, AMirrorTakesThePlaceOfTheHost) {
    LibraryWorld mirrored("http://127.0.0.1:8080");
    mirrored.downloads->downloadTheme(mirrored.row("banana"));
    mirrored.scheduler.runUntilIdle();
    EXPECT_THAT(mirrored.http.requests.at(0).url, testing::StartsWith("http://127.0.0.1:8080/"));
    EXPECT_TRUE(mirrored.log.has("[DOWNLOAD] [banana] START - URL: " + mirrored.http.requests.at(0).url));
}

TEST_F(DownloadTest, TwoDownloadsOfOneRowInAnyOrderLeaveAWholeThemeOrNone) {
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        LibraryWorld each;
        each.scheduler.shuffle(seed);
        each.unpack({{"cursors/left_ptr", LibraryWorld::cursorFile()}, {"cursors/xterm", "Xcur"}});
        each.downloads->downloadTheme(each.row("banana"));
        each.downloads->downloadTheme(each.row("banana"));
        each.downloads->downloadTheme(each.row("fuchsia"));
        each.scheduler.runUntilIdle();
        ASSERT_EQ(each.http.requests.size(), 3u);
        each.http.answer(0, 200, "a");
        for (std::uint64_t i = 0; i < seed % 12; ++i) each.scheduler.step();
        if (seed % 2)
            each.http.answer(1, 200, "b");
        else
            each.http.fail(1, "gone");
        for (std::uint64_t i = 0; i < seed % 7; ++i) each.scheduler.step();
        each.http.answer(2, 200, "c");
        each.scheduler.runUntilIdle();

        const bool there = fs::exists(each.themeFolder("banana"));
        EXPECT_EQ(each.row("banana").isDownloaded, there) << seed;
        EXPECT_TRUE(there || each.row("banana").downloadError == "gone") << seed;
        EXPECT_EQ(fs::exists(each.themeFolder("banana") / "cursors/xterm"), there) << seed;
        EXPECT_TRUE(fs::exists(each.themeFolder("fuchsia") / "cursors/xterm")) << seed;
        EXPECT_EQ(each.onDisk().size(), there ? 2u : 1u) << seed;
    }
}

}  // namespace
}  // namespace pintle
