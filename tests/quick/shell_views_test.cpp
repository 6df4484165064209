#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <memory>
#include <optional>

#include "app/quick/panel_edge.h"
#include "app/quick/shell_views_quick.h"
#include "base/round_corner.h"
#include "platform/fake/fake_appearance.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

struct ShellViewsTest : testing::Test {
    ModelWorld world;
    FakeAppearance appearance;
    std::optional<PopoverModel> model;
    int asked = 0;
    std::unique_ptr<ShellViewsQuick> views;

    ShellViewsTest() {
        world.start();
        views = std::make_unique<ShellViewsQuick>(ShellViewsQuick::Dependencies{
            [this]() -> PopoverModel& {
                ++asked;
                return model.emplace(PopoverModel::Dependencies{
                    *world.viewModel, world.updates, world.settings, world.notifications,
                    world.scheduler.mainQueue(), world.application, world.log});
            },
            appearance,
            world.settings,
            {},
            {}});
        views->setComposited(false);
    }
};

TEST_F(ShellViewsTest, HoweverOftenThePopoverIsShownItsModelIsMadeOnceAndTheViewFollowsIt) {
    ASSERT_NE(views->popover(), nullptr);
    views->popoverWillShow(false);
    views->popoverDidHide();
    views->popoverWillShow(false);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(world.log.count("[POPOVER] ON APPEAR CALLED!!!"), 2u);

    const auto* view = qobject_cast<QQuickView*>(views->popover());
    const QSignalSpy changes(view->rootObject()->property("popover").value<QObject*>(), SIGNAL(changed()));
    model->select(CursorHandedness::leftHanded);
    EXPECT_GT(changes.count(), 0);
}

TEST_F(ShellViewsTest, ThePopoversWindowHasAnAlphaChannelBeforeThereIsACompositor) {
    EXPECT_EQ(views->popover()->requestedFormat().alphaBufferSize(), 8);
    views->setComposited(true);
    views->setComposited(false);
    EXPECT_EQ(views->popover()->requestedFormat().alphaBufferSize(), 8);
}

TEST(PanelEdge, TheLineIsTheOutermostOfEachRowAtEveryScale) {
    for (const int scale : {1, 2, 3}) {
        const auto edge = PanelEdge::draw(Qt::red, scale, 12);
        const auto insets = cornerInsets(12 * scale);
        for (int row = 0; row < 12 * scale; ++row) {
            const int first = insets[static_cast<std::size_t>(row)];
            for (int x = 0; x < first; ++x) EXPECT_EQ(qAlpha(edge.pixel(x, row)), 0) << row;
            for (int x = first; x < first + scale; ++x) EXPECT_EQ(edge.pixel(x, row), 0xFFFF0000) << row;
        }
        EXPECT_EQ(qAlpha(edge.pixel(edge.width() / 2, edge.height() / 2)), 0);
    }
}

}  // namespace
}  // namespace pintle
