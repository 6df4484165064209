// The interface in the user's language.
#pragma once

#include <QStringList>
#include <QTranslator>
#include <memory>

namespace pintle {

/// Makes the toolkit's application object speak the language for `wanted`, see languageFor(), until the
/// answer ends, and read in its direction. Null where the texts stay English. Main thread; before the first
/// view.
std::unique_ptr<QTranslator> installTranslation(const QStringList& wanted);

}  // namespace pintle
