// Texts and marks of the popover against what lies behind them, by the pixels that are drawn: light, dark,
// and glass over the brightest and the darkest wallpaper.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

constexpr double kText = 4.5;
constexpr double kMark = 3.0;

/// As the guidelines for web content define it.
double luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other) {
    const auto [darker, lighter] = std::minmax(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

/// Between the most frequent colour, which is the ground, and the one that stands out most.
double contrastIn(const QImage& picture, const QRect& part) {
    std::map<QRgb, int> counts;
    const QRect inside = part.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x) ++counts[picture.pixel(x, y)];
    if (counts.empty()) return 0;
    const auto ground = std::ranges::max_element(counts, {}, [](const auto& each) { return each.second; });
    double most = 1;
    for (const auto& [colour, count] : counts) most = std::max(most, contrast(colour, ground->first));
    return most;
}

struct Ground {
    const char* name;
    bool dark = false;
    bool glass = false;
    QRgb wallpaper = 0xFF000000;
};

struct ContrastTest : PopoverWorld, testing::WithParamInterface<Ground> {
    /// Pictures of the window here have no alpha; what lies behind it is its own ground.
    QImage drawnOver(QRgb wallpaper) const {
        view->setColor(QColor(wallpaper));
        settle();
        return view->grabWindow();
    }
    /// Texts and drawings that are wholly seen, on their own way through no fading parent.
    static void collect(QQuickItem* at, std::vector<QQuickItem*>& all) {
        if (!at->isVisible() || at->opacity() < 1) return;
        const bool isText = at->inherits("QQuickText") && !at->property("text").toString().isEmpty();
        const bool isIcon = at->property("glyph").isValid() && at->inherits("QQuickImage");
        if (isText || isIcon) all.push_back(at);
        for (auto* child : at->childItems()) collect(child, all);
    }
    struct Measured {
        int texts = 0;
        std::vector<std::string> tooWeak;
    };
    Measured measureOnce() const {
        const auto picture = drawnOver(GetParam().wallpaper);
        std::vector<QQuickItem*> items;
        collect(view->rootObject(), items);
        Measured measured;
        const auto* const list = item("themeList");
        const auto listed = list->mapRectToScene(QRectF(0, 0, list->width(), list->height()));
        for (auto* each : items) {
            const auto box = each->mapRectToScene(QRectF(0, 0, each->width(), each->height()));
            const bool isRow = list->isAncestorOf(each);
            if (!(isRow ? listed : QRectF(picture.rect())).contains(box)) continue;
            const bool isText = each->inherits("QQuickText");
            const auto has = contrastIn(picture, box.toAlignedRect());
            if (has < (isText ? kText : kMark))
                measured.tooWeak.push_back(
                    each->property(isText ? "text" : "glyph").toString().toStdString() + " has " +
                    std::to_string(has));
            measured.texts += isText;
        }
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

INSTANTIATE_TEST_SUITE_P(
    Grounds, ContrastTest,
    testing::Values(Ground{.name = "Light"}, Ground{.name = "Dark", .dark = true},
                    Ground{.name = "LightGlassOnWhite", .glass = true, .wallpaper = 0xFFFFFFFF},
                    Ground{.name = "LightGlassOnBlack", .glass = true},
                    Ground{.name = "DarkGlassOnWhite", .dark = true, .glass = true, .wallpaper = 0xFFFFFFFF},
                    Ground{.name = "DarkGlassOnBlack", .dark = true, .glass = true}),
    [](const auto& ground) { return ground.param.name; });

}  // namespace
}  // namespace pintle
