#include "platform/freedesktop/rejoined_bus.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QString>
#include <QThreadPool>
#include <algorithm>
#include <string>
#include <utility>

namespace pintle {

RejoinedBus::RejoinedBus(BusKind kind, std::function<void()> joined, std::function<void()> lost)
    : kind_(kind), joined_(std::move(joined)), lost_(std::move(lost)) {
    retry_.setSingleShot(true);
    retry_.callOnTimeout(this, [this] {
        const auto address = busAddress(kind_);
        if (!address) {
            lookFor(wait_ * 2);
            return;
        }
        // Asking takes up to a second.
        QThreadPool::globalInstance()->start([self = QPointer(this), address = *address] {
            const bool alive = busAnswers(address);
            auto* const application = QCoreApplication::instance();
            if (!application) return;
            QMetaObject::invokeMethod(application, [self, address, alive] {
                if (!self) return;
                if (alive)
                    self->follow(
                        QDBusConnection::connectToBus(QString::fromStdString(address), self->name()));
                else
                    self->lookFor(self->wait_ * 2);
            });
        });
    });
}

RejoinedBus::~RejoinedBus() { leave(); }

void RejoinedBus::start() {
    const auto type = kind_ == BusKind::session ? QDBusConnection::SessionBus : QDBusConnection::SystemBus;
    follow(QDBusConnection::connectToBus(type, name()));
}

QDBusConnection RejoinedBus::connection() const { return QDBusConnection(name()); }

void RejoinedBus::follow(QDBusConnection bus) {
    if (!bus.isConnected()) {
        leave();
        lookFor(wait_ * 2);
        return;
    }
    wait_ = kFirstBusRetry;
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(gone()));
    joined_();
}

void RejoinedBus::gone() {
    leave();
    lost_();
    lookFor(kFirstBusRetry);
}

void RejoinedBus::lookFor(std::chrono::seconds wait) {
    wait_ = std::min(wait, kLastBusRetry);
    retry_.start(wait_);
}

void RejoinedBus::leave() {
    QDBusConnection::disconnectFromBus(name());
    ++joins_;
}

QString RejoinedBus::name() const {
    return QStringLiteral("watch %1 %2").arg(reinterpret_cast<quintptr>(this), 0, 16).arg(joins_);
}

}  // namespace pintle
