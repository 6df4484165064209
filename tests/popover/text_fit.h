// Finds texts of a view that are not shown whole.
#pragma once

#include <QQuickItem>
#include <QRectF>
#include <set>
#include <string>
#include <vector>

namespace pintle {

/// What a text paints, in its own coordinates.
inline QRectF painted(const QQuickItem& text) {
    const auto width = text.property("contentWidth").toReal();
    const auto alignment = text.property("effectiveHorizontalAlignment").toInt();
    qreal left = 0;
    if (alignment == Qt::AlignRight) left = text.width() - width;
    if (alignment == Qt::AlignHCenter) left = (text.width() - width) / 2;
    return {left, 0, width, text.property("contentHeight").toReal()};
}

/// Whether the item lies wholly outside of something that shows no more than what is inside of it.
inline bool isScrolledAway(const QQuickItem& item) {
    for (auto* around = item.parentItem(); around; around = around->parentItem()) {
        if (!around->clip() || item.height() <= 0) continue;
        const auto place = item.mapRectToItem(around, QRectF(0, 0, item.width(), item.height()));
        if (place.bottom() <= 0 || place.top() >= around->height()) return true;
    }
    return false;
}

/// The texts that are elided or that reach out of something around them sideways, without those in
/// `mayBeCut`.
inline void collectCut(QQuickItem* item, const std::set<std::string>& mayBeCut,
                       std::vector<std::string>& cut) {
    if (!item->isVisible() || item->opacity() == 0 || isScrolledAway(*item)) return;
    const auto words = item->property("text").toString().toStdString();
    if (item->inherits("QQuickText") && !words.empty() && !mayBeCut.contains(words)) {
        bool whole = !item->property("truncated").toBool();
        for (auto* around = item->parentItem(); around && whole; around = around->parentItem()) {
            if (around->width() <= 0) continue;
            const auto place = item->mapRectToItem(around, painted(*item));
            constexpr qreal kSlack = 1.5;
            whole = place.left() >= -kSlack && place.right() <= around->width() + kSlack;
        }
        if (!whole) cut.push_back(words);
    }
    for (auto* child : item->childItems()) collectCut(child, mayBeCut, cut);
}

inline std::vector<std::string> cutTexts(QQuickItem* root, const std::set<std::string>& mayBeCut = {}) {
    std::vector<std::string> cut;
    collectCut(root, mayBeCut, cut);
    return cut;
}

}  // namespace pintle
