#include "platform/freedesktop/desktop_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace pintle {

void showDesktopNotification(const std::string& title, const std::string& text) {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    constexpr int kDesktopsOwnTime = -1;
    call << QStringLiteral("Pintle") << 0u << QStringLiteral("com.pintle.app")
         << QString::fromStdString(title)
         // The text may be marked up; here nothing is.
         << QString::fromStdString(text).toHtmlEscaped() << QStringList()
         << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("com.pintle.app")}}
         << kDesktopsOwnTime;
    QDBusConnection::sessionBus().asyncCall(call);
}

}  // namespace pintle
