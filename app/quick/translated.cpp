#include "app/quick/translated.h"

#include <QCoreApplication>

namespace pintle {

QString translated(const UserText& text) {
    auto argument = QString::fromStdString(text.argument);
    if (text.source.empty()) return argument;
    const auto words = QCoreApplication::translate("Pintle", text.source.c_str());
    return words.contains(QLatin1String("%1")) ? words.arg(argument) : words;
}

QString translated(std::string_view source) { return translated(UserText(source)); }

}  // namespace pintle
