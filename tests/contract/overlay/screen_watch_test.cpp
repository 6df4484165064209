#include "platform/x11/overlay/screen_watch.h"

#include <gtest/gtest.h>

#include "platform/fake/virtual_scheduler.h"
#include "tests/support/temporary_folder.h"

namespace pintle::overlay {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

TEST(ScreenWatch, AServerOfThisDesktopWatchesItAndAnEditorDoesNot) {
    EXPECT_TRUE(watchesTheScreen("x11vnc", ""));
    EXPECT_TRUE(watchesTheScreen("x0tigervncserve", "")) << "as long as the kernel keeps a name";
    EXPECT_FALSE(watchesTheScreen("vncviewer", ""));
    EXPECT_FALSE(watchesTheScreen("editor", "editor\0x11vnc\0"s));
}

TEST(ScreenWatch, AConverterWatchesOnlyWhenItReadsTheScreen) {
    EXPECT_TRUE(watchesTheScreen("ffmpeg", "ffmpeg\0-f\0x11grab\0-i\0:0\0"s));
    EXPECT_FALSE(watchesTheScreen("ffmpeg", "ffmpeg\0-i\0x11grab.mp4\0out.webm\0"s));
    EXPECT_FALSE(watchesTheScreen("ffmpeg", ""));
}

TEST(ScreenWatch, TheAnswerComesFromTheBackgroundAndIsAskedAnewAfterFiveSeconds) {
    const TemporaryFolder processes;
    VirtualScheduler scheduler;
    writeFile(processes.path() / "12" / "comm", "editor\n");
    writeFile(processes.path() / "version", "x11vnc");
    const auto isWatched =
        makeScreenWatch(scheduler.mainQueue(), scheduler.backgroundTasks(), processes.path());
    EXPECT_FALSE(isWatched());
    scheduler.advance(1s);
    writeFile(processes.path() / "13" / "comm", "x11vnc\n");
    EXPECT_FALSE(isWatched());
    scheduler.advance(3s);
    EXPECT_FALSE(isWatched());
    scheduler.advance(2s);
    EXPECT_FALSE(isWatched()) << "what is known, while it is being looked";
    scheduler.advance(1s);
    EXPECT_TRUE(isWatched());
    std::filesystem::remove_all(processes.path() / "13");
    scheduler.advance(6s);
    isWatched();
    scheduler.advance(1s);
    EXPECT_FALSE(isWatched());
}

TEST(ScreenWatch, WithoutAFolderOfProcessesNobodyWatches) {
    VirtualScheduler scheduler;
    const auto isWatched = makeScreenWatch(scheduler.mainQueue(), scheduler.backgroundTasks(), "/nowhere");
    isWatched();
    scheduler.advance(1s);
    EXPECT_FALSE(isWatched());
}

}  // namespace
}  // namespace pintle::overlay
