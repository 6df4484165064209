#include "app/quick/about_adapter.h"

#include "app/quick/translated.h"

namespace pintle {
namespace {

QString text(std::string_view characters) {
    return QString::fromUtf8(characters.data(), static_cast<qsizetype>(characters.size()));
}

}  // namespace

AboutAdapter::AboutAdapter(AboutWindowModel& model)
    : model_(model), observer_(model.changed.observe([this] { Q_EMIT changed(); })) {}

QString AboutAdapter::name() { return translated(AboutWindowModel::name()); }
QString AboutAdapter::versionText() const { return translated(model_.versionText()); }
QString AboutAdapter::tagline() { return translated(AboutWindowModel::tagline()); }
QString AboutAdapter::featuresTitle() { return translated(AboutWindowModel::featuresTitle()); }
QString AboutAdapter::featuresSymbol() { return text(AboutWindowModel::featuresSymbol); }
QString AboutAdapter::contactText() { return translated(AboutWindowModel::contactText()); }
QString AboutAdapter::contactSymbol() { return text(symbol::mail); }

QVariantList AboutAdapter::features() const {
    QVariantList list;
    for (const auto& row : model_.features())
        list.append(QVariantMap{{QStringLiteral("symbol"), text(row.symbol)},
                                {QStringLiteral("text"), translated(row.text)},
                                {QStringLiteral("delay"), static_cast<int>(row.delay.count())}});
    return list;
}

}  // namespace pintle
