// The font of everything that the program draws. Main thread only.
#pragma once

#include <QFontDatabase>
#include <QGuiApplication>
#include <QString>

namespace pintle::shell {

/// The desktop's own font; where it names none that is installed, one that is drawn well at small sizes.
inline QString interfaceFont() {
    auto asked = QGuiApplication::font().family();
    if (QFontDatabase::hasFamily(asked)) return asked;
    for (const char* family : {"Inter", "Noto Sans", "DejaVu Sans"})
        if (QFontDatabase::hasFamily(QString::fromLatin1(family))) return QString::fromLatin1(family);
    return asked;
}

}  // namespace pintle::shell
