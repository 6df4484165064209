#include "app/row_announcement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/popover_model.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kIce = ModelWorld::ice;

struct RowAnnouncementTest : testing::Test {
    ModelWorld world;
    std::unique_ptr<PopoverModel> model;
    std::vector<std::string> said;
    Subscription observer;

    void make() {
        world.start();
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log});
        model->onAppear();
        observer = model->announced.observe([this](const std::vector<UserText>& texts) {
            std::string sentence;
            for (const auto& text : texts) sentence += (sentence.empty() ? "" : ", ") + text.english();
            said.push_back(sentence);
        });
    }
    void arrive() {
        world.changeRow(kIce, [](auto& row) { row.isDownloading = true; });
        world.changeRow(kIce, [](auto& row) {
            row.isDownloading = false;
            row.isDownloaded = true;
        });
    }
};

TEST_F(RowAnnouncementTest, AThemeThatHasComeIsAnnouncedOnce) {
    make();
    arrive();
    EXPECT_THAT(said, ElementsAre("Bibata Modern Ice, Downloaded"));
}

TEST_F(RowAnnouncementTest, AThemeThatIsShownIsAnnouncedOnce) {
    world.writeTheme(kIce, 0x102030);
    make();
    world.applyNow(kIce);
    EXPECT_THAT(said, ElementsAre("Bibata Modern Ice, Applied"));
}

TEST_F(RowAnnouncementTest, AnErrorIsAnnouncedWithTheSentenceOrElseWithItsOwnText) {
    make();
    world.changeRow(kIce, [](auto& row) { row.downloadError = "HTTP 404"; });
    world.changeRow(kIce, [](auto& row) { row.downloadError.reset(); });
    world.changeRow(kIce, [](auto& row) { row.downloadError = "of a kind that nobody knows"; });
    EXPECT_THAT(said, ElementsAre("Bibata Modern Ice, Error - Tap to retry, The server has no such file",
                                  "Bibata Modern Ice, Error - Tap to retry, of a kind that nobody knows"));
}

TEST_F(RowAnnouncementTest, NothingIsSaidOfStepsAndDeletions) {
    world.writeTheme(kIce, 0x102030);
    make();
    model->deleteTheme(kIce);
    world.scheduler.runUntilIdle();
    world.changeRow(kIce, [](auto& row) { row.isDownloading = true; });
    world.changeRow(kIce, [](auto& row) { row.downloadStatus = "Downloading 10%"; });
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(RowAnnouncementTest, NothingIsSaidWhileThePopoverIsClosed) {
    make();
    model->onDisappear();
    arrive();
    EXPECT_THAT(said, IsEmpty());
}

}  // namespace
}  // namespace pintle
