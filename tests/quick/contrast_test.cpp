// Texts and marks of the windows against what lies behind them, by the pixels that are drawn: light, dark,
// and glass over the brightest and the darkest wallpaper.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QtMath>

#include "tests/quick/drawn_contrast.h"
#include "tests/quick/window_world.h"

namespace pintle {
namespace {

struct WindowContrast : testing::TestWithParam<Ground> {
    /// Strokes of the usual size have no pixel of their colour alone.
    WindowWorld world{{.dark = GetParam().dark,
                       .glassMode = GetParam().glass,
                       .glassOpacity = 0.75,
                       .blendsWindows = GetParam().glass,
                       .reducedMotion = true,
                       .textScale = 1.25,
                       .fontFamily = "Inter"}};

    /// Pictures of the window here have no alpha; what lies behind it is its own ground.
    static QImage drawnOver(QQuickView& view, QRgb wallpaper) {
        view.setColor(QColor(wallpaper));
        return view.grabWindow();
    }
    /// At each place that a page can be scrolled to, a page at a time.
    int measure(QQuickView& view) const {
        int texts = 0;
        QQuickItem* page = nullptr;
        for (auto* item : view.rootObject()->findChildren<QQuickItem*>())
            if (item->inherits("QQuickFlickable")) page = item;
        const qreal most = page ? page->property("contentHeight").toReal() - page->height() : 0;
        for (qreal at = 0;; at += page->height() / 2) {
            if (page) page->setProperty("contentY", qMin(at, qMax(most, 0.0)));
            DrawnContrast measured;
            const auto once = [&] {
                const auto picture = drawnOver(view, GetParam().wallpaper);
                const auto shown = page ? page->mapRectToScene(QRectF(0, 0, page->width(), page->height()))
                                        : QRectF(picture.rect());
                measured = {};
                measureContrast(
                    picture, view.rootObject(),
                    [&](QQuickItem* each, const QRectF& box) {
                        return (page && page->isAncestorOf(each) ? shown : QRectF(picture.rect()))
                            .contains(box);
                    },
                    measured);
                return measured.tooWeak.empty();
            };
            WindowWorld::until(once, 5'000);
            EXPECT_THAT(measured.tooWeak, testing::IsEmpty()) << "scrolled by " << at;
            texts += measured.texts;
            if (!page || at >= most) return texts;
        }
    }
};

TEST_P(WindowContrast, EveryTextAndMarkOfTheSettingsStandsOut) {
    world.world.settings.addExcludedApp("Safari");
    world.settings.toggleAddAppField();
    auto* const view = world.show(WindowContent::settings);
    ASSERT_NE(view, nullptr);
    const QPoint bare(view->width() / 2, view->height() - 3);
    EXPECT_EQ(drawnOver(*view, 0xFFFFFFFF).pixel(bare) != drawnOver(*view, 0xFF000000).pixel(bare),
              GetParam().glass);
    EXPECT_GT(measure(*view), 12);
}

TEST_P(WindowContrast, EveryTextAndMarkOfTheAboutWindowStandsOut) {
    auto* const view = world.show(WindowContent::about);
    ASSERT_NE(view, nullptr);
    EXPECT_GT(measure(*view), 6);
}

TEST_P(WindowContrast, EveryTextOfAnAlertStandsOut) {
    auto* const view =
        world.show({AlertStyle::warning,
                    std::string(settings_text::resetQuestion),
                    std::string(settings_text::resetQuestionText),
                    {std::string(settings_text::resetAndQuit), std::string(settings_text::cancel)}});
    ASSERT_NE(view, nullptr);
    EXPECT_GE(measure(*view), 3);
}

INSTANTIATE_TEST_SUITE_P(Grounds, WindowContrast, testing::ValuesIn(grounds()),
                         [](const auto& ground) { return ground.param.name; });

}  // namespace
}  // namespace pintle
