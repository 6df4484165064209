#include "app/quick/strip_images.h"

#include <QImage>
#include <QPainter>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <vector>

#include "app/quick/preview_images.h"
#include "base/resample.h"

namespace pintle {
namespace {

constexpr int mostSide = 256;

QImage scaled(Resampler& resampler, const Bitmap& frame, int side) {
    const double factor = double(side) / std::max(frame.width(), frame.height());
    const auto length = [factor](int whole) {
        return std::max(1, static_cast<int>(std::lround(whole * factor)));
    };
    const int width = length(frame.width());
    const int height = length(frame.height());
    const auto drawn = Bitmap::create(width, height, [&](std::span<std::uint8_t> target) {
        resampler.draw(frame.bytes(), frame.width(), frame.height(), target, width, height);
    });
    return drawn ? imageOf(*drawn) : QImage();
}

QImage stripOf(const std::vector<Bitmap>& frames, int side) {
    QImage strip(side, side * static_cast<int>(frames.size()), QImage::Format_ARGB32_Premultiplied);
    strip.fill(Qt::transparent);
    QPainter painter(&strip);
    Resampler resampler;
    int top = 0;
    for (const auto& frame : frames) {
        const auto image = scaled(resampler, frame, side);
        painter.drawImage((side - image.width()) / 2, top + (side - image.height()) / 2, image);
        top += side;
    }
    return strip;
}

}  // namespace

struct StripImages::Store {
    std::mutex lock;
    int revision = 0;
    std::vector<StripCursor> strip;

    std::optional<StripCursor> find(const QString& address) {
        const auto place = address.section('/', 1, 1).toUInt();
        const std::lock_guard held(lock);
        if (address.section('/', 0, 0).toInt() != revision || place >= strip.size()) return std::nullopt;
        return strip[place];
    }
};

StripImages::StripImages(PopoverModel& popover, QObject* parent)
    : QObject(parent),
      display_(popover, popover.viewModel(), popover.mainQueue()),
      store_(std::make_shared<Store>()),
      changed_(display_.changed.observe([this] { follow(); })) {}

StripImages::~StripImages() = default;

void StripImages::follow() {
    {
        const std::lock_guard held(store_->lock);
        ++store_->revision;
        store_->strip = display_.strip();
    }
    Q_EMIT changed();
}

QString StripImages::themeId() const { return QString::fromStdString(display_.id()); }

QVariantList StripImages::cursors() const {
    QVariantList list;
    int place = 0;
    for (const auto& cursor : display_.strip())
        list.append(QVariantMap{
            {"source",
             QString("image://%1/%2/%3").arg(QLatin1String(providerName)).arg(store_->revision).arg(place++)},
            {"frames", static_cast<int>(cursor.frames.size())},
            {"interval", static_cast<int>(std::lround(cursor.frameDuration * 1000))}});
    return list;
}

std::unique_ptr<QQuickImageProvider> StripImages::makeProvider() const {
    class Provider : public QQuickImageProvider {
      public:
        explicit Provider(std::shared_ptr<Store> store)
            : QQuickImageProvider(QQuickImageProvider::Image), store_(std::move(store)) {}

        QImage requestImage(const QString& address, QSize* size, const QSize& asked) override {
            const auto cursor = store_->find(address);
            if (!cursor) return {};
            const int side = std::clamp(asked.width(), 1, mostSide);
            auto image = stripOf(cursor->frames, side);
            if (size) *size = image.size();
            return image;
        }

      private:
        std::shared_ptr<Store> store_;
    };
    return std::make_unique<Provider>(store_);
}

}  // namespace pintle
