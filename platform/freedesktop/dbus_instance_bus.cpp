#include "platform/freedesktop/dbus_instance_bus.h"

#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

#include "base/lifetime.h"
#include "base/signal.h"
#include "platform/freedesktop/bus_address.h"

namespace pintle {
namespace {

constexpr int kCallMilliseconds = 2000;
constexpr int kReleaseMilliseconds = 500;
/// Flags of RequestName.
constexpr unsigned kWaitForIt = 0;
constexpr unsigned kDoNotQueue = 4;
/// Answers to RequestName.
constexpr unsigned kInQueue = 2;
constexpr unsigned kExists = 3;

/// When a process started, in ticks since the system did, and its id: earlier processes are less. Absent for
/// one that cannot be seen.
using Age = std::pair<unsigned long long, unsigned>;
std::optional<Age> ageOf(unsigned pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(file, line)) return std::nullopt;
    // The program's name, in parentheses, may hold anything.
    const auto name = line.rfind(')');
    if (name == std::string::npos) return std::nullopt;
    std::istringstream rest(line.substr(name + 1));
    constexpr int kFieldsBetween = 19;
    std::string skipped;
    for (int i = 0; i < kFieldsBetween; ++i) rest >> skipped;
    unsigned long long start = 0;
    if (!(rest >> start)) return std::nullopt;
    return Age{start, pid};
}

/// The object behind the name. Other copies call its two methods: with the name of their message, or to have
/// the name.
class Mailbox : public QDBusVirtualObject {
  public:
    explicit Mailbox(QString interface) : interface_(std::move(interface)) {}
    QString introspect(const QString&) const override {
        return QStringLiteral(
                   "<interface name=\"%1\"><method name=\"Post\"><arg name=\"name\" type=\"s\" "
                   "direction=\"in\"/></method><method name=\"GiveWay\"/></interface>")
            .arg(interface_);
    }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() != interface_) return false;
        if (message.member() == QLatin1String("GiveWay") && message.signature().isEmpty()) {
            bus.send(message.createReply());
            wanted.emit(message.service());
            return true;
        }
        if (message.member() != QLatin1String("Post") || message.signature() != QLatin1String("s"))
            return false;
        // The sender waits for this before it ends.
        bus.send(message.createReply());
        posted.emit(message.arguments().constFirst().toString().toStdString());
        return true;
    }
    Signal<const std::string&> posted;
    /// With the name of the connection that asks.
    Signal<const QString&> wanted;

  private:
    const QString interface_;
};

class DbusInstanceBus : public InstanceBus {
  public:
    DbusInstanceBus(const std::string& name, MainQueue& queue, BackgroundTasks& background)
        : name_(QString::fromStdString(name)),
          path_(QLatin1Char('/') + QString(name_).replace(QLatin1Char('.'), QLatin1Char('/'))),
          mailbox_(name_),
          queue_(queue),
          background_(background) {
        disconnected_.setSingleShot(true);
        disconnected_.callOnTimeout([this] { lookForTheBus(kFirstBusRetry); });
        wanted_ = mailbox_.wanted.observe([this](const QString& sender) {
            if (isOlderThanThis(sender)) olderCopies_.emit();
        });
    }
    ~DbusInstanceBus() override {
        if (!connected_) return;
        QDBusConnection(connectionName()).unregisterObject(path_);
        // The bus notices a closed connection when it comes to it; a program that is started again right away
        // must not find this one. The reply is the sign that it has let go.
        ask("ReleaseName", {name_}, kReleaseMilliseconds);
        QDBusConnection::disconnectFromBus(connectionName());
    }

    bool anotherCopyRuns() override {
        if (!connected_) {
            const auto address = busAddress(BusKind::session);
            if (!address || !busAnswers(*address)) {
                lookForTheBus(kFirstBusRetry);
                return false;
            }
            connectTo(*address);
        }
        const auto answer = ask("RequestName", {name_, kDoNotQueue}, kCallMilliseconds);
        return answer == kExists || answer == kInQueue;
    }

    void post(const std::string& message) override {
        const QDBusConnection bus(connectionName());
        if (!bus.isConnected()) return;
        auto call = QDBusMessage::createMethodCall(name_, path_, name_, QStringLiteral("Post"));
        call.setArguments({QString::fromStdString(message)});
        bus.call(call, QDBus::Block, kCallMilliseconds);
    }

    Subscription observe(const std::string& message, std::function<void()> received) override {
        return mailbox_.posted.observe([message, received = std::move(received)](const std::string& name) {
            if (name == message) received();
        });
    }

    Subscription observeOlderCopy(std::function<void()> found) override {
        return olderCopies_.observe(std::move(found));
    }

  private:
    void connectTo(const std::string& address) {
        connected_ = true;
        // The object is there before the name is, so that no message finds the name without it.
        auto bus = QDBusConnection::connectToBus(QString::fromStdString(address), connectionName());
        bus.registerVirtualObject(path_, &mailbox_);
        bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                    QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                    &disconnected_, SLOT(start()));
        if (!bus.isConnected()) lookForTheBus(kFirstBusRetry);
    }

    /// Looks after a while, and again after longer ones until there is one.
    void lookForTheBus(std::chrono::seconds wait) {
        retry_ = queue_.after(wait, [this, wait] {
            const auto again = [this, wait] { lookForTheBus(std::min(wait * 2, kLastBusRetry)); };
            const auto address = busAddress(BusKind::session);
            if (!address) {
                again();
                return;
            }
            runInBackground(
                background_, queue_, lifetime_, Priority::utility, [address] { return busAnswers(*address); },
                [this, again, address](bool alive) {
                    if (alive)
                        joinAgain(*address);
                    else
                        again();
                });
        });
    }

    void joinAgain(const std::string& address) {
        if (connected_) QDBusConnection::disconnectFromBus(connectionName());
        connectTo(address);
        const auto answer = ask("RequestName", {name_, kWaitForIt}, kCallMilliseconds);
        if (answer != kInQueue && answer != kExists) return;
        // An owner of unknown age stays: it would not believe that this one is older.
        if (isOlderThanThis(name_, true)) {
            olderCopies_.emit();
            return;
        }
        const auto giveWay = QDBusMessage::createMethodCall(name_, path_, name_, QStringLiteral("GiveWay"));
        QDBusConnection(connectionName()).send(giveWay);
    }

    /// Of the process behind a name on the bus.
    bool isOlderThanThis(const QString& name, bool unknown = false) const {
        const auto pid = ask("GetConnectionUnixProcessID", {name}, kCallMilliseconds);
        const auto other = pid ? ageOf(*pid) : std::nullopt;
        const auto own = ageOf(static_cast<unsigned>(::getpid()));
        return other && own ? *other < *own : unknown;
    }

    /// A call to the bus itself; absent without an answer in time.
    std::optional<unsigned> ask(const char* method, const QVariantList& arguments, int milliseconds) const {
        const QDBusConnection bus(connectionName());
        if (!bus.isConnected()) return std::nullopt;
        auto call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(method));
        call.setArguments(arguments);
        const auto reply = bus.call(call, QDBus::Block, milliseconds);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return std::nullopt;
        return reply.arguments().constFirst().toUInt();
    }
    QString connectionName() const { return QStringLiteral("instance ") + name_ + suffix_; }

    const QString name_;
    const QString path_;
    Mailbox mailbox_;
    MainQueue& queue_;
    BackgroundTasks& background_;
    /// Several of these in one process each have a connection of their own.
    const QString suffix_ = QStringLiteral(" ") + QString::number(reinterpret_cast<quintptr>(this), 16);
    bool connected_ = false;
    /// Started by the connection when it breaks.
    QTimer disconnected_;
    Signal<> olderCopies_;
    Subscription wanted_;
    Timer retry_;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<InstanceBus> makeDbusInstanceBus(const std::string& name, MainQueue& queue,
                                                 BackgroundTasks& background) {
    return std::make_unique<DbusInstanceBus>(name, queue, background);
}

}  // namespace pintle
