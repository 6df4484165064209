// Which addresses the HTTP client fetches. Pure functions; any thread.
#pragma once

#include <QUrl>

namespace pintle {

/// The host names this machine itself: localhost, 127.0.0.0/8 or ::1.
bool isLoopback(const QUrl& url);

/// https anywhere, plain http on this machine.
bool mayFetch(const QUrl& url);

/// The same, and no way back from https to http.
bool mayRedirect(const QUrl& from, const QUrl& to);

}  // namespace pintle
