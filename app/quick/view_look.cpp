#include "app/quick/view_look.h"

#include <QtQml>

#include "app/quick/symbol_icons.h"

namespace pintle {

void ViewLook::setLook(const Look& look) {
    if (look == look_) return;
    look_ = look;
    Q_EMIT changed();
}

QString ViewLook::iconOf(const QString& symbol) {
    const auto icon = iconOfSymbol(symbol.toStdString());
    return QString::fromUtf8(icon.data(), static_cast<qsizetype>(icon.size()));
}

void offerToViews(ViewLook& look) { qmlRegisterSingletonInstance("Pintle.Shell", 1, 0, "Appearance", &look); }

}  // namespace pintle
