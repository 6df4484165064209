// What most files of the views use, those that the toolkit's compiler makes from QML included.
#pragma once

#include <QtQml/qqmlprivate.h>
#include <QAbstractListModel>
#include <QAccessible>
#include <QJSEngine>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>

#include "cmake/precompiled/toolkit.h"
