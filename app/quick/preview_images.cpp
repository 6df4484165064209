#include "app/quick/preview_images.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>

#include "base/resample.h"

namespace pintle {
namespace {

struct Offered {
    std::uint64_t revision = 0;
    Bitmap bitmap;
};

/// In the layout that the software renderer draws without converting.
QImage forDrawing(const QImage& image) { return image.convertToFormat(QImage::Format_ARGB32_Premultiplied); }

QImage scaled(const Bitmap& bitmap, const QSize& room) {
    const double factor =
        std::min(double(room.width()) / bitmap.width(), double(room.height()) / bitmap.height());
    const QSize size(std::max(1, static_cast<int>(std::lround(bitmap.width() * factor))),
                     std::max(1, static_cast<int>(std::lround(bitmap.height() * factor))));
    if (size == QSize(bitmap.width(), bitmap.height())) return forDrawing(imageOf(bitmap));
    Resampler resampler;
    const auto drawn = Bitmap::create(size.width(), size.height(), [&](std::span<std::uint8_t> target) {
        resampler.draw(bitmap.bytes(), bitmap.width(), bitmap.height(), target, size.width(), size.height());
    });
    return drawn ? forDrawing(imageOf(*drawn)) : QImage();
}

}  // namespace

struct PreviewImages::Store {
    std::mutex lock;
    std::uint64_t revisions = 0;
    std::map<std::string, Offered> offered;
};

namespace {

class Provider : public QQuickImageProvider {
  public:
    using Find = std::function<std::optional<Bitmap>(const std::string&)>;
    explicit Provider(Find find) : QQuickImageProvider(QQuickImageProvider::Image), find_(std::move(find)) {}

    QImage requestImage(const QString& address, QSize* size, const QSize& room) override {
        const auto bitmap = find_(address.section('/', 0, 0).toStdString());
        if (!bitmap) return {};
        const auto own = QSize(bitmap->width(), bitmap->height());
        auto image = scaled(*bitmap, room.isEmpty() ? own : room);
        if (size) *size = image.size();
        return image;
    }

  private:
    Find find_;
};

}  // namespace

QImage imageOf(const Bitmap& bitmap) {
    auto kept = std::make_unique<Bitmap>(bitmap);
    const auto* bytes = kept->bytes().data();
    return {bytes,
            bitmap.width(),
            bitmap.height(),
            static_cast<qsizetype>(bitmap.width()) * 4,
            QImage::Format_RGBA8888_Premultiplied,
            [](void* pixels) { delete static_cast<Bitmap*>(pixels); },
            kept.release()};
}

PreviewImages::PreviewImages() : store_(std::make_shared<Store>()) {}
PreviewImages::~PreviewImages() = default;

QString PreviewImages::offer(const std::string& themeId, const std::optional<Bitmap>& preview) {
    const std::lock_guard held(store_->lock);
    const auto known = store_->offered.find(themeId);
    if (!preview) {
        if (known != store_->offered.end()) store_->offered.erase(known);
        return {};
    }
    auto revision = known == store_->offered.end() ? 0 : known->second.revision;
    if (known == store_->offered.end() || !(known->second.bitmap == *preview)) {
        revision = ++store_->revisions;
        store_->offered.insert_or_assign(themeId, Offered{revision, *preview});
    }
    return QString("image://%1/%2/%3")
        .arg(QLatin1String(providerName), QString::fromStdString(themeId))
        .arg(revision);
}

std::unique_ptr<QQuickImageProvider> PreviewImages::makeProvider() const {
    return std::make_unique<Provider>([store = store_](const std::string& themeId) -> std::optional<Bitmap> {
        const std::lock_guard held(store->lock);
        const auto found = store->offered.find(themeId);
        if (found == store->offered.end()) return std::nullopt;
        return found->second.bitmap;
    });
}

}  // namespace pintle
