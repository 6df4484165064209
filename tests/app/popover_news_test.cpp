#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/popover_model.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

constexpr auto kIce = ModelWorld::ice;
constexpr auto kBanana = ModelWorld::banana;

struct PopoverNewsTest : testing::Test {
    ModelWorld world;
    std::unique_ptr<PopoverModel> model;

    PopoverNewsTest() {
        world.start();
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log});
        model->onAppear();
    }
    void failDownload(const char* id, int code) {
        model->buttonAction(id);
        world.scheduler.runUntilIdle();
        world.http.fail(world.http.requests.size() - 1, "Host themes.test not found", code);
        world.scheduler.runUntilIdle();
    }
    void arrive(const char* id) {
        world.changeRow(id, [](auto& row) { row.isDownloading = true; });
        world.changeRow(id, [](auto& row) {
            row.isDownloading = false;
            row.isDownloaded = true;
        });
    }
};

TEST_F(PopoverNewsTest, ADownloadedThemeIsMarkedUntilTheNextOpening) {
    arrive(kIce);
    EXPECT_TRUE(model->row(kIce).isNew);
    EXPECT_FALSE(model->row(kBanana).isNew);
    EXPECT_EQ(model->row(kIce).accessibleDescription.back().english(), "new");
    std::vector<std::string> changed;
    const auto observer = model->rowsChanged.observe([&](const auto& ids) { changed = ids; });
    model->onDisappear();
    model->onAppear();
    EXPECT_FALSE(model->row(kIce).isNew);
    EXPECT_EQ(changed, std::vector<std::string>{kIce});
}

TEST_F(PopoverNewsTest, AThemeThatCameWhileThePopoverWasClosedIsMarkedForOneShowing) {
    model->onDisappear();
    arrive(kIce);
    model->onAppear();
    EXPECT_TRUE(model->row(kIce).isNew);
}

TEST_F(PopoverNewsTest, OneLineSaysThatThereIsNoNetworkAndRetryStartsThoseDownloadsAgain) {
    EXPECT_FALSE(model->networkLine());
    failDownload(kIce, kNoNetwork);
    failDownload(kBanana, kNoNetwork);
    ASSERT_TRUE(model->networkLine());
    EXPECT_EQ(model->networkLine()->english(), "There is no network");
    EXPECT_EQ(model->row(kIce).statusText.english(), "Error - Tap to retry");
    const auto before = world.http.requests.size();
    model->retryDownloads();
    world.scheduler.runUntilIdle();
    EXPECT_EQ(world.http.requests.size(), before + 2);
    EXPECT_FALSE(model->networkLine());
}

TEST_F(PopoverNewsTest, AnotherErrorIsNoMatterOfTheNetwork) {
    failDownload(kIce, -1);
    EXPECT_FALSE(model->networkLine());
}

TEST_F(PopoverNewsTest, TheLineGoesWhenItsRowsHaveBeenTriedByHand) {
    failDownload(kIce, kNoNetwork);
    int changes = 0;
    const auto observer = model->changed.observe([&] { ++changes; });
    model->buttonAction(kIce);
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(model->networkLine());
    EXPECT_GT(changes, 0);
}

TEST_F(PopoverNewsTest, AnErrorHasAPlainSentenceBesideItsOwnText) {
    world.changeRow(kIce, [](auto& row) { row.downloadError = "HTTP 404"; });
    const auto row = model->row(kIce);
    EXPECT_EQ(row.errorSentence.english(), "The server has no such file");
    EXPECT_EQ(row.errorTooltip, "HTTP 404");
}

}  // namespace
}  // namespace pintle
