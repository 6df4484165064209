// How much what a view draws stands out from what lies behind it, by its pixels.
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QRectF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace pintle {

inline constexpr double kText = 4.5;
inline constexpr double kMark = 3.0;

/// As the guidelines for web content define it.
inline double luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

inline double contrast(QRgb one, QRgb other) {
    const auto [darker, lighter] = std::minmax(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

/// Between the most frequent colour, which is the ground, and the one that stands out most.
inline double contrastIn(const QImage& picture, const QRect& part) {
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

/// What a view may stand on.
struct Ground {
    const char* name;
    bool dark = false;
    bool glass = false;
    QRgb wallpaper = 0xFF000000;
};

inline const std::vector<Ground>& grounds() {
    static const std::vector<Ground> all = {
        {.name = "Light"},
        {.name = "Dark", .dark = true},
        {.name = "LightGlassOnWhite", .glass = true, .wallpaper = 0xFFFFFFFF},
        {.name = "LightGlassOnBlack", .glass = true},
        {.name = "DarkGlassOnWhite", .dark = true, .glass = true, .wallpaper = 0xFFFFFFFF},
        {.name = "DarkGlassOnBlack", .dark = true, .glass = true}};
    return all;
}

struct DrawnContrast {
    int texts = 0;
    std::vector<std::string> tooWeak;
};

/// Of the texts and drawings at `at` and below that are not faded. `picture` has a pixel for each point of
/// the scene; `isSeen` tells whether all of an item's box is.
inline void measureContrast(const QImage& picture, QQuickItem* at,
                            const std::function<bool(QQuickItem*, const QRectF&)>& isSeen,
                            DrawnContrast& measured) {
    if (!at->isVisible() || at->opacity() < 1) return;
    const bool isText = at->inherits("QQuickText") && !at->property("text").toString().isEmpty();
    const bool isIcon = at->property("glyph").isValid() && at->inherits("QQuickImage");
    const auto box = at->mapRectToScene(QRectF(0, 0, at->width(), at->height()));
    if ((isText || isIcon) && isSeen(at, box)) {
        const auto has = contrastIn(picture, box.toAlignedRect());
        if (has < (isText ? kText : kMark))
            measured.tooWeak.push_back(at->property(isText ? "text" : "glyph").toString().toStdString() +
                                       " has " + std::to_string(has));
        measured.texts += isText;
    }
    for (auto* child : at->childItems()) measureContrast(picture, child, isSeen, measured);
}

}  // namespace pintle
