#include "platform/freedesktop/notifier_watch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <utility>

namespace pintle {
namespace {

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kPath = QStringLiteral("/StatusNotifierWatcher");

}  // namespace

class NotifierWatch::Receiver : public QObject {
    Q_OBJECT

  public:
    explicit Receiver(std::function<void()> changed) : changed_(std::move(changed)) {
        if (!bus_.isConnected()) {
            state_ = State::absent;
            return;
        }
        auto* const owner =
            new QDBusServiceWatcher(kWatcher, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
        connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &Receiver::ask);
        for (const auto* const signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            bus_.connect(kWatcher, kPath, kWatcher, QLatin1String(signal), this, SLOT(ask()));
        ask();
    }
    State state() const { return state_; }

  private Q_SLOTS:
    void ask() {
        auto call = QDBusMessage::createMethodCall(
            kWatcher, kPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call << kWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
        call.setAutoStartService(false);
        auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
            answer->deleteLater();
            const QDBusPendingReply<QDBusVariant> registered = *answer;
            become(registered.isError()                    ? State::absent
                   : registered.value().variant().toBool() ? State::present
                                                           : State::withoutHost);
        });
    }

  private:
    void become(State state) {
        if (std::exchange(state_, state) != state) changed_();
    }

    const std::function<void()> changed_;
    QDBusConnection bus_ = QDBusConnection::sessionBus();
    State state_ = State::asking;
};

NotifierWatch::NotifierWatch(std::function<void()> changed)
    : receiver_(std::make_unique<Receiver>(std::move(changed))) {}
NotifierWatch::~NotifierWatch() = default;

NotifierWatch::State NotifierWatch::state() const { return receiver_->state(); }

}  // namespace pintle

#include "notifier_watch.moc"
