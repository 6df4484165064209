// The pictures of the themes' arrows for the views. The rows offer their bitmaps on the main thread; the
// toolkit's reader thread asks for them by address and gets them at the very size they are drawn at, so that
// no drawing scales them again.
#pragma once

#include <QImage>
#include <QQuickImageProvider>
#include <QString>

#include <memory>
#include <optional>
#include <string>

#include "base/bitmap.h"

namespace pintle {

/// The same pixels; they stay shared.
QImage imageOf(const Bitmap& bitmap);

class PreviewImages {
  public:
    /// The name under which the views' engine knows the pictures.
    static constexpr const char* providerName = "previews";

    PreviewImages();
    ~PreviewImages();
    PreviewImages(const PreviewImages&) = delete;
    PreviewImages& operator=(const PreviewImages&) = delete;

    /// The address of the picture, another one for other pixels; empty without a picture, which is forgotten.
    QString offer(const std::string& themeId, const std::optional<Bitmap>& preview);

    /// A provider for an engine, which takes it over. It may outlive this object.
    std::unique_ptr<QQuickImageProvider> makeProvider() const;

  private:
    struct Store;
    std::shared_ptr<Store> store_;
};

}  // namespace pintle
