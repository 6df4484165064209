// Texts and marks of the popover against what lies behind them, by the pixels that are drawn: light, dark,
// and glass over the brightest and the darkest wallpaper.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QImage>

#include "tests/popover/popover_world.h"
#include "tests/quick/drawn_contrast.h"

namespace pintle {
namespace {

struct ContrastTest : PopoverWorld, testing::WithParamInterface<Ground> {
    /// Pictures of the window here have no alpha; what lies behind it is its own ground.
    QImage drawnOver(QRgb wallpaper) const {
        view->setColor(QColor(wallpaper));
        settle();
        return view->grabWindow();
    }
    DrawnContrast measureOnce() const {
        const auto picture = drawnOver(GetParam().wallpaper);
        const auto* const list = item("themeList");
        const auto listed = list->mapRectToScene(QRectF(0, 0, list->width(), list->height()));
        DrawnContrast measured;
        measureContrast(
            picture, view->rootObject(),
            [&](QQuickItem* each, const QRectF& box) {
                return (list->isAncestorOf(each) ? listed : QRectF(picture.rect())).contains(box);
            },
            measured);
        return measured;
    }
    /// Rows are laid out and symbols drawn some frames after what they show has changed.
    void measure(const char* state) const {
        QElapsedTimer clock;
        clock.start();
        auto measured = measureOnce();
        while (!measured.tooWeak.empty() && clock.elapsed() < 5'000) measured = measureOnce();
        EXPECT_THAT(measured.tooWeak, testing::IsEmpty()) << state;
        EXPECT_GT(measured.texts, 12) << state;
    }
};

TEST_P(ContrastTest, EveryTextAndMarkStandsOutFromItsGround) {
    const auto& ground = GetParam();
    appearance.become({.dark = ground.dark, .reducedMotion = true});
    world.settings.setGlassMode(ground.glass);
    world.settings.setGlassOpacity(0.75);
    install(ModelWorld::ice);
    install(ModelWorld::banana);
    world.start();
    world.publishVersion("1.4.0");
    world.applyNow(ModelWorld::ice);
    show();
    views->setComposited(ground.glass);
    // Strokes of the usual size have no pixel of their colour alone.
    appearance.become({.dark = ground.dark, .reducedMotion = true, .textScale = 1.25});
    world.changeRow("bibata-modern-classic", [](auto& row) { row.downloadError = "HTTP 404"; });
    world.changeRow("bibata-modern-amber", [](auto& row) {
        row.isDownloading = true;
        row.downloadStatus = "Downloading 40%";
        row.downloadProgress = 0.4;
    });
    settle();
    const QPoint bare(view->width() / 2, 4);
    EXPECT_EQ(drawnOver(0xFFFFFFFF).pixel(bare) != drawnOver(0xFF000000).pixel(bare), ground.glass);
    measure("its first rows");
    press(Qt::Key_Down);
    measure("a row with the keyboard");
    world.viewModel->resetToDefault();
    settle();
    measure("System Default in force");
}

INSTANTIATE_TEST_SUITE_P(Grounds, ContrastTest, testing::ValuesIn(grounds()),
                         [](const auto& ground) { return ground.param.name; });

}  // namespace
}  // namespace pintle
