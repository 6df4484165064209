// A connection to a message bus that is made again after the bus was lost. Main thread.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

#include "platform/freedesktop/bus_address.h"

namespace pintle {

class RejoinedBus : public QObject {
    Q_OBJECT

  public:
    /// `joined` runs each time there is a connection, the first time within start(): what is observed on the
    /// bus is subscribed to there. `lost` runs when it has gone. Neither runs after the end. A bus that is
    /// not there at the start is joined when it comes.
    RejoinedBus(BusKind kind, std::function<void()> joined, std::function<void()> lost);
    ~RejoinedBus() override;
    RejoinedBus(const RejoinedBus&) = delete;
    RejoinedBus& operator=(const RejoinedBus&) = delete;

    void start();
    /// The present connection, which may be broken. Valid until the next joining.
    QDBusConnection connection() const;

  private Q_SLOTS:
    void gone();

  private:
    void follow(QDBusConnection bus);
    void lookFor(std::chrono::seconds wait);
    void leave();
    QString name() const;

    const BusKind kind_;
    const std::function<void()> joined_;
    const std::function<void()> lost_;
    /// Counts connections: what a slow one still says is not about the next one.
    int joins_ = 0;
    std::chrono::seconds wait_ = kFirstBusRetry;
    QTimer retry_;
};

}  // namespace pintle
