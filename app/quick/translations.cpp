#include "app/quick/translations.h"

#include <QGuiApplication>
#include <QLocale>
#include <string>
#include <vector>

#include "app/languages.h"

namespace pintle {

std::unique_ptr<QTranslator> installTranslation(const QStringList& wanted) {
    std::vector<std::string> names;
    for (const auto& each : wanted) names.push_back(each.toStdString());
    const auto language = languageFor(names);
    if (!language) return nullptr;
    const auto name = QString::fromUtf8(language->data(), static_cast<qsizetype>(language->size()));
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(":/pintle/translations/pintle_" + name + ".qm")) return nullptr;
    QCoreApplication::installTranslator(translator.get());
    QGuiApplication::setLayoutDirection(QLocale(name).textDirection());
    return translator;
}

}  // namespace pintle
