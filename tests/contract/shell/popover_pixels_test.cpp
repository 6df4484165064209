// The real popover on a real screen, with and without a compositor, by its pixels.
#include <QQuickView>
#include <QScreen>

#include "app/quick/shell_views_quick.h"
#include "tests/app/model_world.h"
#include "tests/contract/shell/shell_fixture.h"

namespace pintle {
namespace {

constexpr Rect kPanelFrame{{900, 200}, {340, 520}};
/// The panel's upper left corner, in pixels of the screen.
constexpr QPoint kCorner(900, 80);
constexpr QRgb kDesktop = 0xFF3060C0;

class PopoverPixels : public ShellTest {
  protected:
    PopoverPixels() {
        world.start();
        model = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log});
        (void)!::system("xsetroot -solid '#3060c0'");
    }
    void makeViews() {
        realViews = std::make_unique<ShellViewsQuick>(ShellViewsQuick::Dependencies{
            [this]() -> PopoverModel& { return *model; }, appearance, world.settings, {}, {}});
        realPopovers = makeQtPopovers(*realViews, appearance, desktop);
    }
    void show() {
        if (!realViews) makeViews();
        popover = realPopovers->makePopover({.contentSize = {340, 520}, .animates = false});
        makeItem();
        popover->show(*item, kPanelFrame);
        ASSERT_TRUE(until([this] { return QGuiApplication::focusWindow() == realViews->popover(); }));
    }
    QRgb pixel(int across, int down) const {
        auto* const screen = QGuiApplication::primaryScreen();
        return screen->grabWindow(0, kCorner.x() + across, kCorner.y() + down, 1, 1).toImage().pixel(0, 0) |
               0xFF000000;
    }
    bool becomes(int across, int down, QRgb colour) {
        return until([&] { return pixel(across, down) == colour; });
    }

    ModelWorld world;
    std::unique_ptr<PopoverModel> model;
    std::unique_ptr<ShellViewsQuick> realViews;
    std::unique_ptr<Popovers> realPopovers;
    std::unique_ptr<Popover> popover;
};

TEST_F(PopoverPixels, WithoutACompositorTheEdgeFollowsTheSteps) {
    show();
    const QRgb ground = 0xFFF7F8F8;
    ASSERT_TRUE(becomes(170, 10, ground));
    EXPECT_EQ(pixel(0, 0), kDesktop);
    const QRgb edge = pixel(170, 0);
    EXPECT_NE(edge, ground);
    for (int row = 0; row < 12; ++row) {
        int first = 0;
        while (first < 20 && pixel(first, row) == kDesktop) ++first;
        EXPECT_EQ(pixel(first, row), edge) << "the first pixel of row " << row;
    }
}

TEST_F(PopoverPixels, ACompositorThatStartsAfterTheFirstShowingBlendsTheShadow) {
    // One that ran when the view was made has been on its way out: a window takes its depth when it is shown.
    appearance.become({.blendsWindows = true});
    makeViews();
    realViews->setComposited(true);
    ASSERT_NE(realViews->popover(), nullptr);
    appearance.become({});
    realViews->setComposited(false);
    show();
    const QRgb ground = 0xFFF7F8F8;
    ASSERT_TRUE(becomes(170, 10, ground));
    const QuietChild compositor(
        std::vector<std::string>{"picom", "--backend", "xrender", "--config", "/dev/null"});
    appearance.become({.blendsWindows = true});
    // Beyond the shadow's reach.
    for (const int across : {-24, 363})
        for (const int down : {-24, 543})
            EXPECT_TRUE(becomes(across, down, kDesktop)) << across << ", " << down;
    EXPECT_TRUE(becomes(170, 10, ground));
    // Where it is strongest, and outside the panel's round corners.
    for (const auto [across, down] : {QPoint(170, 522), QPoint(0, 519), QPoint(339, 519)})
        EXPECT_TRUE(until([&] {
            const QRgb shaded = pixel(across, down);
            return qBlue(shaded) < qBlue(kDesktop) - 10 && qBlue(shaded) > qRed(shaded) && qRed(shaded) > 0;
        })) << across
            << ", " << down << ": " << std::hex << pixel(across, down);
    appearance.become({});
}

}  // namespace
}  // namespace pintle
