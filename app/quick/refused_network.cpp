#include "app/quick/refused_network.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace pintle {
namespace {

class RefusingManager : public QNetworkAccessManager {
  public:
    using QNetworkAccessManager::QNetworkAccessManager;

  protected:
    QNetworkReply* createRequest(Operation, const QNetworkRequest&, QIODevice*) override {
        // An address without a scheme is answered with an error at once, local files included.
        return QNetworkAccessManager::createRequest(GetOperation, QNetworkRequest(), nullptr);
    }
};

}  // namespace

QNetworkAccessManager* RefusedNetwork::create(QObject* parent) { return new RefusingManager(parent); }

}  // namespace pintle
