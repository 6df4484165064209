#include "platform/mac/cg_image.h"

#include <cstring>
#include <memory>
#include <span>

namespace pintle {
namespace {

constexpr std::size_t kBitsPerComponent = 8;
constexpr std::size_t kBytesPerPixel = 4;

CfRef<CGColorSpaceRef> deviceRgb() { return CfRef<CGColorSpaceRef>::adopt(CGColorSpaceCreateDeviceRGB()); }

extern "C" void releasePixels(void* info, const void*, std::size_t) { delete static_cast<Bitmap*>(info); }

}  // namespace

CfRef<CGImageRef> toCgImage(const Bitmap& bitmap) {
    const auto bytes = bitmap.bytes();
    auto keeper = std::make_unique<Bitmap>(bitmap);
    const auto provider = CfRef<CGDataProviderRef>::adopt(
        CGDataProviderCreateWithData(keeper.get(), bytes.data(), bytes.size(), releasePixels));
    if (!provider) return {};
    // From here on the provider owns it.
    static_cast<void>(keeper.release());
    const auto width = static_cast<std::size_t>(bitmap.width());
    return CfRef<CGImageRef>::adopt(CGImageCreate(
        width, static_cast<std::size_t>(bitmap.height()), kBitsPerComponent,
        kBitsPerComponent * kBytesPerPixel, width * kBytesPerPixel, deviceRgb().get(),
        kCGImageAlphaPremultipliedLast, provider.get(), nullptr, true, kCGRenderingIntentDefault));
}

std::optional<Bitmap> fromCgImage(CGImageRef image, std::size_t width, std::size_t height) {
    bool drawn = false;
    auto bitmap = Bitmap::create(
        static_cast<std::int64_t>(width), static_cast<std::int64_t>(height),
        [&](std::span<std::uint8_t> pixels) {
            std::memset(pixels.data(), 0, pixels.size());
            const auto context = CfRef<CGContextRef>::adopt(
                CGBitmapContextCreate(pixels.data(), width, height, kBitsPerComponent, width * kBytesPerPixel,
                                      deviceRgb().get(), kCGImageAlphaPremultipliedLast));
            if (!context) return;
            CGContextSetInterpolationQuality(context.get(), kCGInterpolationHigh);
            CGContextDrawImage(context.get(),
                               CGRectMake(0, 0, static_cast<CGFloat>(width), static_cast<CGFloat>(height)),
                               image);
            drawn = true;
        });
    return drawn ? bitmap : std::nullopt;
}

std::optional<Bitmap> fromCgImage(CGImageRef image) {
    return fromCgImage(image, CGImageGetWidth(image), CGImageGetHeight(image));
}

}  // namespace pintle
