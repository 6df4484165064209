#include "app/quick/announcement.h"

#include <QAccessible>

namespace pintle {

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

bool hasAnnouncements() { return true; }

void announce(QObject& view, const QString& text) {
    QAccessibleAnnouncementEvent event(&view, text);
    QAccessible::updateAccessibility(&event);
}

#else

bool hasAnnouncements() { return false; }

void announce(QObject& /*view*/, const QString& /*text*/) {}

#endif

}  // namespace pintle
