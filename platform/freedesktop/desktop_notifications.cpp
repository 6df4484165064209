#include "platform/freedesktop/desktop_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <optional>
#include <utility>

#include "platform/freedesktop/rejoined_bus.h"

namespace pintle {
namespace {

QDBusMessage callFor(const std::string& title, const std::string& text) {
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
    return call;
}

}  // namespace

class DesktopNotifications::Sender {
  public:
    void show(QDBusMessage call) {
        waiting_ = std::move(call);
        if (!std::exchange(started_, true))
            bus_.start();
        else if (bus_.connection().isConnected())
            send();
    }

  private:
    void send() {
        if (const auto call = std::exchange(waiting_, std::nullopt)) bus_.connection().asyncCall(*call);
    }

    RejoinedBus bus_{BusKind::session, [this] { send(); }, [] {}};
    std::optional<QDBusMessage> waiting_;
    bool started_ = false;
};

DesktopNotifications::DesktopNotifications() : sender_(std::make_unique<Sender>()) {}
DesktopNotifications::~DesktopNotifications() = default;

void DesktopNotifications::show(const std::string& title, const std::string& text) {
    sender_->show(callFor(title, text));
}

}  // namespace pintle
