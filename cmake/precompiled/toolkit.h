// What most files over the toolkit use.
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDateTime>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QVariant>
#include <QWindow>

#include "cmake/precompiled/standard.h"
