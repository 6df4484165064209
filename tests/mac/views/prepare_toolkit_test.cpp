#include "app/root/prepare_toolkit_mac.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

#include "app/root/root.h"
#include "tests/contract/queue_worlds.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

TEST(PrepareToolkit, TheProgramStaysInTheBackgroundAndOutlivesItsLastWindow) {
    qunsetenv(kStayInBackground);
    QGuiApplication::setQuitOnLastWindowClosed(true);
    EXPECT_FALSE(prepareToolkit());
    EXPECT_EQ(qgetenv(kStayInBackground), "1");
    EXPECT_FALSE(QGuiApplication::quitOnLastWindowClosed());
}

TEST(PrepareToolkit, AChildProcessInheritsEverythingButThat) {
    TemporaryFolder folder;
    QtWorld world;
    ASSERT_FALSE(prepareToolkit());
    qputenv("PINTLE_INHERITED", "yes");
    const auto runner = makeRunnerForForeignPrograms(world.queue());
    const auto exitOf = [&](const std::string& script) {
        std::optional<Result<int>> ended;
        ProcessRequest request{"/bin/sh", {"-c", script}, folder.path() / "errors", {}};
        const auto child =
            runner->start(std::move(request), [&](Result<int> status) { ended = std::move(status); });
        EXPECT_TRUE(world.runUntil([&] { return ended.has_value(); }));
        return ended && *ended ? ended->value() : -1;
    };
    EXPECT_EQ(exitOf("test \"$PINTLE_INHERITED\" = yes"), 0);
    EXPECT_EQ(exitOf(std::string("test -z \"${") + kStayInBackground + "+set}\""), 0);
    // This process keeps it, because the toolkit looks again later.
    EXPECT_EQ(qgetenv(kStayInBackground), "1");
}

}  // namespace
}  // namespace pintle
