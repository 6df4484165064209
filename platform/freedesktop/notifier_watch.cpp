#include "platform/freedesktop/notifier_watch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <utility>

#include "platform/freedesktop/rejoined_bus.h"

namespace pintle {
namespace {

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kPath = QStringLiteral("/StatusNotifierWatcher");

}  // namespace

class NotifierWatch::Receiver : public QObject {
    Q_OBJECT

  public:
    explicit Receiver(std::function<void()> changed) : changed_(std::move(changed)) {
        bus_.start();
        if (!bus_.connection().isConnected()) state_ = State::absent;
    }
    State state() const { return state_; }

  private Q_SLOTS:
    void ask() {
        auto call = QDBusMessage::createMethodCall(
            kWatcher, kPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call << kWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
        call.setAutoStartService(false);
        auto* const answer = new QDBusPendingCallWatcher(bus_.connection().asyncCall(call), this);
        const auto question = ++questions_;
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question] {
            answer->deleteLater();
            // What a bus that has gone still says is not about the next one.
            if (question != questions_) return;
            const QDBusPendingReply<QDBusVariant> registered = *answer;
            become(registered.isError()                    ? State::absent
                   : registered.value().variant().toBool() ? State::present
                                                           : State::withoutHost);
        });
    }

  private:
    void joined() {
        auto bus = bus_.connection();
        owner_ =
            std::make_unique<QDBusServiceWatcher>(kWatcher, bus, QDBusServiceWatcher::WatchForOwnerChange);
        connect(owner_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, &Receiver::ask);
        for (const auto* const signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            bus.connect(kWatcher, kPath, kWatcher, QLatin1String(signal), this, SLOT(ask()));
        ask();
    }
    void lost() {
        ++questions_;
        become(State::absent);
    }
    void become(State state) {
        if (std::exchange(state_, state) != state) changed_();
    }

    const std::function<void()> changed_;
    RejoinedBus bus_{BusKind::session, [this] { joined(); }, [this] { lost(); }};
    std::unique_ptr<QDBusServiceWatcher> owner_;
    State state_ = State::asking;
    int questions_ = 0;
};

NotifierWatch::NotifierWatch(std::function<void()> changed)
    : receiver_(std::make_unique<Receiver>(std::move(changed))) {}
NotifierWatch::~NotifierWatch() = default;

NotifierWatch::State NotifierWatch::state() const { return receiver_->state(); }

}  // namespace pintle

#include "notifier_watch.moc"
