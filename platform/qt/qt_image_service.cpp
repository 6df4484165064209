#include "platform/qt/qt_image_service.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

namespace pintle {
namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr std::size_t kLargestFile = std::size_t{64} << 20;
constexpr int kLongestSide = 65535;
constexpr std::int64_t kMostPixels = std::int64_t{32} << 20;
/// 72 pixels per inch: one point is one pixel.
constexpr int kDotsPerMeter = 2835;

/// The chunks that make the pixels, without comments, profiles and the rest: those change no pixel here and
/// can be made to unpack into any amount of memory. Absent when the bytes are not a row of whole chunks from
/// IHDR to IEND.
std::optional<QByteArray> pixelChunks(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kSignature.size() || bytes.size() > kLargestFile ||
        std::memcmp(bytes.data(), kSignature.data(), kSignature.size()) != 0)
        return std::nullopt;
    QByteArray kept;
    const auto keep = [&](std::size_t from, std::size_t size) {
        kept.append(reinterpret_cast<const char*>(bytes.data() + from), static_cast<qsizetype>(size));
    };
    keep(0, kSignature.size());
    std::size_t at = kSignature.size();
    constexpr std::size_t kFrame = 12;  // length, type, checksum
    while (bytes.size() - at >= kFrame) {
        const std::size_t length = (std::size_t{bytes[at]} << 24) | (std::size_t{bytes[at + 1]} << 16) |
                                   (std::size_t{bytes[at + 2]} << 8) | std::size_t{bytes[at + 3]};
        if (length > bytes.size() - at - kFrame) return std::nullopt;
        const std::string_view type(reinterpret_cast<const char*>(bytes.data() + at + 4), 4);
        if (at == kSignature.size() && type != "IHDR") return std::nullopt;
        if (type == "IHDR" || type == "PLTE" || type == "tRNS" || type == "IDAT" || type == "IEND")
            keep(at, length + kFrame);
        if (type == "IEND") return kept;
        at += length + kFrame;
    }
    return std::nullopt;
}

class QtImageService : public ImageService {
  public:
    std::optional<std::vector<std::uint8_t>> encodePng(const Bitmap& image) override {
        // Shares the pixels; `pixels` outlives no line of this function.
        QImage pixels(image.bytes().data(), image.width(), image.height(), qsizetype{4} * image.width(),
                      QImage::Format_RGBA8888_Premultiplied);
        if (pixels.isNull()) return std::nullopt;
        QImage straight = pixels.convertToFormat(QImage::Format_RGBA8888);
        if (straight.isNull()) return std::nullopt;
        straight.setDotsPerMeterX(kDotsPerMeter);
        straight.setDotsPerMeterY(kDotsPerMeter);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        if (!QImageWriter(&file, "png").write(straight)) return std::nullopt;
        const auto* data = reinterpret_cast<const std::uint8_t*>(file.data().constData());
        return std::vector<std::uint8_t>(data, data + file.data().size());
    }

    std::optional<Bitmap> decodePng(std::span<const std::uint8_t> bytes) override {
        auto chunks = pixelChunks(bytes);
        if (!chunks) return std::nullopt;
        QBuffer file(&*chunks);
        file.open(QIODevice::ReadOnly);
        QImageReader reader(&file, "png");
        reader.setAutoDetectImageFormat(false);
        const QSize size = reader.size();
        if (size.width() < 1 || size.height() < 1 || size.width() > kLongestSide ||
            size.height() > kLongestSide ||
            std::int64_t{size.width()} * std::int64_t{size.height()} > kMostPixels)
            return std::nullopt;
        QImage read;
        if (!reader.read(&read) || read.size() != size) return std::nullopt;
        read.convertTo(QImage::Format_RGBA8888_Premultiplied);
        if (read.isNull()) return std::nullopt;
        return Bitmap::create(size.width(), size.height(), [&](std::span<std::uint8_t> out) {
            const std::size_t row = std::size_t{4} * static_cast<std::size_t>(size.width());
            for (int y = 0; y < size.height(); ++y)
                std::memcpy(out.data() + row * static_cast<std::size_t>(y), read.constScanLine(y), row);
        });
    }
};

}  // namespace

std::unique_ptr<ImageService> makeQtImageService() { return std::make_unique<QtImageService>(); }

}  // namespace pintle
