// What a download leaves of itself in its row when it fails: nothing.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QImage>

#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

struct FailedRowTest : PopoverWorld, testing::WithParamInterface<bool> {
    void fail() {
        world.changeRow(ModelWorld::ice, [](auto& row) {
            row.isDownloading = false;
            row.downloadStatus = "";
            row.downloadProgress = 0;
            row.downloadError = "HTTP 404";
        });
    }
    void run(const char* status, double progress) {
        world.changeRow(ModelWorld::ice, [&](auto& row) {
            row.isDownloading = true;
            row.downloadStatus = status;
            row.downloadProgress = progress;
            row.downloadError.reset();
        });
    }
    QImage drawn() const {
        settle();
        return view->grabWindow();
    }
    bool becomes(const QImage& wanted) const {
        QElapsedTimer clock;
        clock.start();
        while (drawn() != wanted)
            if (clock.elapsed() > 10'000) return false;
        return true;
    }
};

TEST_P(FailedRowTest, ItLooksAsIfNothingHadRunBefore) {
    appearance.become({.reducedMotion = GetParam()});
    show();
    const auto quiet = drawn();
    appearance.become({.reducedMotion = true});
    fail();
    const auto failed = drawn();
    EXPECT_NE(failed, quiet);
    appearance.become({.reducedMotion = GetParam()});
    run("", 0);
    EXPECT_FALSE(drawn() == failed);
    fail();
    EXPECT_TRUE(becomes(failed)) << "before the first text";
    run("Downloading 40%", 0.4);
    EXPECT_FALSE(drawn() == failed);
    fail();
    EXPECT_TRUE(becomes(failed)) << "at 40 percent";
}

INSTANTIATE_TEST_SUITE_P(Motion, FailedRowTest, testing::Bool(),
                         [](const auto& motion) { return motion.param ? "Reduced" : "Full"; });

}  // namespace
}  // namespace pintle
