// The drawings of themes without a picture, as the views' images.
#pragma once

#include <QQuickImageProvider>

#include <QImage>
#include <QSize>
#include <QString>
#include <memory>

#include "app/theme_drawing.h"

namespace pintle {

class ThemeDrawings {
  public:
    static constexpr const char* providerName = "drawings";

    /// Empty for letters, which the view writes itself.
    static QString address(const ThemeDrawing& drawing);

    /// The pointer on clear ground. `size` in pixels, neither side below 1. Any thread.
    static QImage paint(const ThemeDrawing& drawing, const QSize& size);

    /// Answers what address() gives, on any thread; other addresses get an empty image.
    static std::unique_ptr<QQuickImageProvider> makeProvider();
};

}  // namespace pintle
