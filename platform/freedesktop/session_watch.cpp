#include "platform/freedesktop/session_watch.h"

#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>
#include <optional>
#include <utility>
#include <vector>

#include "platform/freedesktop/rejoined_bus.h"

namespace pintle {
namespace {

const QString kLogin = QStringLiteral("org.freedesktop.login1");
const QString kLoginPath = QStringLiteral("/org/freedesktop/login1");
const QString kManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString kSession = QStringLiteral("org.freedesktop.login1.Session");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

}  // namespace

class SessionWatch::Receiver : public QObject {
    Q_OBJECT

  public:
    Receiver(SessionListener listener, std::chrono::milliseconds patience) : listener_(std::move(listener)) {
        requested_.setSingleShot(true);
        requested_.setInterval(patience);
        connect(&requested_, &QTimer::timeout, this, &Receiver::askWhetherLocked);
        system_.start();
        session_.start();
    }

  private Q_SLOTS:
    void prepareForSleep(bool sleeping) { listener_.sleep(sleeping); }
    // The signal asks for a lock screen, and there may be none to answer it.
    void lock() {
        if (!locked_) requested_.start();
        setLocked(true);
    }
    void unlock() { setLocked(false); }
    void screenSaverChanged(bool active) {
        requested_.stop();
        lockedByScreenSaver_ = active;
        setLocked(active);
    }
    void sessionChanged(const QString& interface, const QVariantMap& changed, const QStringList&) {
        const auto active = changed.constFind(QStringLiteral("Active"));
        if (interface == kSession && active != changed.constEnd()) setActive(active->toBool());
        const auto locked = changed.constFind(QStringLiteral("LockedHint"));
        if (interface == kSession && locked != changed.constEnd()) setLocked(locked->toBool());
    }

  private:
    void joinedSystem() {
        system_.connection().connect(kLogin, kLoginPath, kManager, QStringLiteral("PrepareForSleep"), this,
                                     SLOT(prepareForSleep(bool)));
        findSession();
    }
    void joinedSession() {
        auto bus = session_.connection();
        for (const auto* interface :
             {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
              "org.mate.ScreenSaver", "org.xfce.ScreenSaver"})
            bus.connect(QString(), QString(), QLatin1String(interface), QStringLiteral("ActiveChanged"), this,
                        SLOT(screenSaverChanged(bool)));
    }
    /// A lock screen that went with its bus cannot say when it ends; a session manager may know better.
    void lostSession() {
        if (!std::exchange(lockedByScreenSaver_, false)) return;
        if (path_.isEmpty())
            setLocked(false);
        else
            askWhetherLocked();
    }
    // The ways to learn the path of this process's session, each tried when the one before it failed.
    void findSession() {
        ++searches_;
        questions_.clear();
        asked_ = 0;
        path_.clear();
        if (const auto id = qEnvironmentVariable("XDG_SESSION_ID"); !id.isEmpty())
            questions_.push_back(managerCall(QStringLiteral("GetSession"), id));
        questions_.push_back(
            managerCall(QStringLiteral("GetSessionByPID"), static_cast<quint32>(::getpid())));
        askNext();
    }
    static QDBusMessage managerCall(const QString& method, const QVariant& argument) {
        auto call = QDBusMessage::createMethodCall(kLogin, kLoginPath, kManager, method);
        call << argument;
        return call;
    }
    void askNext() {
        if (asked_ == questions_.size()) {
            // The session of a program that was started outside of any: whatever session there is.
            followSession(QString());
            return;
        }
        auto* answer =
            new QDBusPendingCallWatcher(system_.connection().asyncCall(questions_[asked_++]), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, search = searches_] {
            answer->deleteLater();
            // What a bus that has gone still says is not about the next one.
            if (search != searches_) return;
            const QDBusPendingReply<QDBusObjectPath> path = *answer;
            if (path.isError())
                askNext();
            else
                followSession(path.value().path());
        });
    }
    void followSession(const QString& path) {
        auto bus = system_.connection();
        bus.connect(kLogin, path, kSession, QStringLiteral("Lock"), this, SLOT(lock()));
        bus.connect(kLogin, path, kSession, QStringLiteral("Unlock"), this, SLOT(unlock()));
        bus.connect(kLogin, path, kProperties, QStringLiteral("PropertiesChanged"), this,
                    SLOT(sessionChanged(QString, QVariantMap, QStringList)));
        path_ = path;
        const bool again = searches_ > 1;
        ask(QStringLiteral("Active"), [this, again](bool active) {
            if (again)
                setActive(active);
            else if (!active_)
                active_ = active;
        });
        // What happened while there was no bus, or before the start.
        if (lockedByScreenSaver_) return;
        ask(QStringLiteral("LockedHint"), [this, again](bool locked) {
            if (locked || again) setLocked(locked);
        });
    }
    void askWhetherLocked() {
        ask(QStringLiteral("LockedHint"), [this](bool locked) {
            if (!locked) setLocked(false);
        });
    }
    /// Asks for a property of this process's session, when it has one.
    template <typename Answered>
    void ask(const QString& property, Answered answered) {
        if (path_.isEmpty()) return;
        auto call = QDBusMessage::createMethodCall(kLogin, path_, kProperties, QStringLiteral("Get"));
        call << kSession << property;
        auto* answer = new QDBusPendingCallWatcher(system_.connection().asyncCall(call), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this,
                [this, answer, answered, search = searches_] {
                    answer->deleteLater();
                    if (search != searches_) return;
                    const QDBusPendingReply<QDBusVariant> value = *answer;
                    if (!value.isError()) answered(value.value().variant().toBool());
                });
    }
    void setActive(bool active) {
        if (active_ != active) {
            active_ = active;
            if (active) listener_.sessionActive();
        }
    }
    // The session manager and the lock screen both report the same lock.
    void setLocked(bool locked) {
        if (!locked) requested_.stop();
        if (std::exchange(locked_, locked) != locked) listener_.lock(locked);
    }

    SessionListener listener_;
    RejoinedBus system_{BusKind::system, [this] { joinedSystem(); }, [this] { ++searches_; }};
    RejoinedBus session_{BusKind::session, [this] { joinedSession(); }, [this] { lostSession(); }};
    /// Counts the searches for the session, one for each joining of the bus.
    int searches_ = 0;
    std::vector<QDBusMessage> questions_;
    std::size_t asked_ = 0;
    QString path_;
    std::optional<bool> active_;
    bool locked_ = false;
    bool lockedByScreenSaver_ = false;
    QTimer requested_;
};

SessionWatch::SessionWatch(SessionListener listener, std::chrono::milliseconds patience)
    : receiver_(std::make_unique<Receiver>(std::move(listener), patience)) {}
SessionWatch::~SessionWatch() = default;

}  // namespace pintle

#include "session_watch.moc"
