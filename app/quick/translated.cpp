#include "app/quick/translated.h"

#include <QCoreApplication>
#include <QStringList>

namespace pintle {

QString translated(const UserText& text) {
    auto argument = QString::fromStdString(text.argument);
    if (text.source.empty()) return argument;
    const auto words = QCoreApplication::translate("Pintle", text.source.c_str());
    return words.contains(QLatin1String("%1")) ? words.arg(argument) : words;
}

QString joined(const std::vector<UserText>& texts) {
    QStringList list;
    for (const auto& text : texts) list.append(translated(text));
    return list.join(QLatin1String(", "));
}

QString translated(std::string_view source) { return translated(UserText(source)); }

}  // namespace pintle
