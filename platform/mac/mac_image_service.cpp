#include "platform/mac/mac_image_service.h"

#include <ImageIO/ImageIO.h>

#include "platform/mac/cg_image.h"

namespace pintle {
namespace {

/// A side or an area beyond these is damage or an attack, not a cursor.
constexpr std::size_t kLargestSide = 32767;
constexpr std::size_t kLargestArea = std::size_t{1} << 26;

class MacImageService : public ImageService {
  public:
    std::optional<std::vector<std::uint8_t>> encodePng(const Bitmap& bitmap) override {
        const auto image = toCgImage(bitmap);
        const auto data = CfRef<CFMutableDataRef>::adopt(CFDataCreateMutable(kCFAllocatorDefault, 0));
        if (!image || !data) return std::nullopt;
        const auto destination = CfRef<CGImageDestinationRef>::adopt(
            CGImageDestinationCreateWithData(data.get(), cfString("public.png").get(), 1, nullptr));
        if (!destination) return std::nullopt;
        CGImageDestinationAddImage(destination.get(), image.get(), nullptr);
        if (!CGImageDestinationFinalize(destination.get())) return std::nullopt;
        const UInt8* const bytes = CFDataGetBytePtr(data.get());
        return std::vector<std::uint8_t>(bytes, bytes + CFDataGetLength(data.get()));
    }

    std::optional<Bitmap> decodePng(std::span<const std::uint8_t> bytes) override {
        const auto data = CfRef<CFDataRef>::adopt(
            CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size())));
        if (!data) return std::nullopt;
        const auto source = CfRef<CGImageSourceRef>::adopt(CGImageSourceCreateWithData(data.get(), nullptr));
        if (!source) return std::nullopt;
        const auto image =
            CfRef<CGImageRef>::adopt(CGImageSourceCreateImageAtIndex(source.get(), 0, nullptr));
        // A file that ends too early still gives an image, of what was there.
        if (!image || CGImageSourceGetStatusAtIndex(source.get(), 0) != kCGImageStatusComplete)
            return std::nullopt;
        const std::size_t width = CGImageGetWidth(image.get());
        const std::size_t height = CGImageGetHeight(image.get());
        if (width > kLargestSide || height > kLargestSide || width * height > kLargestArea)
            return std::nullopt;
        return fromCgImage(image.get());
    }
};

}  // namespace

std::unique_ptr<ImageService> makeMacImageService() { return std::make_unique<MacImageService>(); }

}  // namespace pintle
