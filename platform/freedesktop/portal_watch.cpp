#include "platform/freedesktop/portal_watch.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <utility>

#include "platform/freedesktop/rejoined_bus.h"

namespace pintle {
namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");

const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kInterface = QStringLiteral("org.gnome.desktop.interface");
const QString kAccessibleInterface = QStringLiteral("org.gnome.desktop.a11y.interface");

/// The answer of a portal that is started for this question takes its time.
constexpr int kAnswerMilliseconds = 60'000;

template <typename T>
std::optional<T> valueOf(const QVariant& value) {
    if (!value.canConvert<T>()) return std::nullopt;
    return value.value<T>();
}

}  // namespace

class PortalWatch::Receiver : public QObject {
    Q_OBJECT

  public:
    explicit Receiver(std::function<void(const PortalLook&)> changed) : changed_(std::move(changed)) {
        // Else the slot's argument is not known by its name yet, and the connection is refused.
        qRegisterMetaType<QDBusVariant>();
        bus_.start();
    }

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
        auto look = look_;
        take(look, group, key, value.variant());
        update(look);
    }

  private:
    void joined() {
        auto bus = bus_.connection();
        bus.connect(kPortal, kPath, kSettings, QStringLiteral("SettingChanged"), this,
                    SLOT(settingChanged(QString, QString, QDBusVariant)));
        presence_ =
            std::make_unique<QDBusServiceWatcher>(kPortal, bus, QDBusServiceWatcher::WatchForOwnerChange);
        connect(presence_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString&, const QString& owner) {
                    if (owner.isEmpty())
                        update({});
                    else
                        ask();
                });
        ask();
    }
    /// The portal went with its bus.
    void lost() {
        ++questions_;
        update({});
    }
    void ask() {
        auto call = QDBusMessage::createMethodCall(kPortal, kPath, kSettings, QStringLiteral("ReadAll"));
        call << QStringList{kAppearance, kInterface, kAccessibleInterface};
        const auto question = ++questions_;
        auto* answer =
            new QDBusPendingCallWatcher(bus_.connection().asyncCall(call, kAnswerMilliseconds), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question] {
            answer->deleteLater();
            const auto reply = answer->reply();
            // Of a portal that has gone meanwhile, or none at all.
            if (question != questions_ || reply.type() != QDBusMessage::ReplyMessage ||
                reply.signature() != QLatin1String("a{sa{sv}}"))
                return;
            const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
            PortalLook look;
            for (auto group = groups.cbegin(); group != groups.cend(); ++group)
                for (auto entry = group->cbegin(); entry != group->cend(); ++entry)
                    take(look, group.key(), entry.key(), entry.value());
            update(look);
        });
    }
    static void take(PortalLook& look, const QString& group, const QString& key, QVariant value) {
        // Some portals wrap a value twice.
        while (value.metaType() == QMetaType::fromType<QDBusVariant>())
            value = value.value<QDBusVariant>().variant();
        if (group == kAppearance) {
            if (key == QLatin1String("color-scheme")) look.colorScheme = valueOf<quint32>(value);
            if (key == QLatin1String("contrast")) look.contrast = valueOf<quint32>(value);
            if (key == QLatin1String("reduced-motion")) look.reducedMotion = valueOf<quint32>(value);
        } else if (group == kInterface) {
            if (key == QLatin1String("enable-animations")) look.animations = valueOf<bool>(value);
            if (key == QLatin1String("text-scaling-factor")) look.textScale = valueOf<double>(value);
        } else if (group == kAccessibleInterface) {
            if (key == QLatin1String("high-contrast")) look.highContrast = valueOf<bool>(value);
        }
    }
    void update(const PortalLook& look) {
        if (std::exchange(look_, look) != look) changed_(look);
    }

    std::function<void(const PortalLook&)> changed_;
    RejoinedBus bus_{BusKind::session, [this] { joined(); }, [this] { lost(); }};
    std::unique_ptr<QDBusServiceWatcher> presence_;
    PortalLook look_;
    int questions_ = 0;
};

PortalWatch::PortalWatch(std::function<void(const PortalLook&)> changed)
    : receiver_(std::make_unique<Receiver>(std::move(changed))) {}
PortalWatch::~PortalWatch() = default;

}  // namespace pintle

#include "portal_watch.moc"
