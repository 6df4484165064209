#include "platform/qt/http_address.h"

#include <QHostAddress>
#include <QString>

namespace pintle {

bool isLoopback(const QUrl& url) {
    const auto host = url.host();
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
           QHostAddress(host).isLoopback();
}

bool mayFetch(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty()) return false;
    if (url.scheme() == QLatin1String("https")) return true;
    return url.scheme() == QLatin1String("http") && isLoopback(url);
}

bool mayRedirect(const QUrl& from, const QUrl& to) {
    const bool weaker = from.scheme() == QLatin1String("https") && to.scheme() != QLatin1String("https");
    return mayFetch(to) && !weaker;
}

}  // namespace pintle
