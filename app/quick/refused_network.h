// No view asks a server for anything: what a view shows is ours or has been downloaded already.
#pragma once

#include <QQmlNetworkAccessManagerFactory>

namespace pintle {

/// Makes access managers for an engine of views that answer each request with an error, without sending
/// anything. Must outlive the engine. May be called on any thread.
class RefusedNetwork : public QQmlNetworkAccessManagerFactory {
  public:
    QNetworkAccessManager* create(QObject* parent) override;
};

}  // namespace pintle
