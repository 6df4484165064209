// Core Graphics and Image I/O: displays, windows, images; and the accessibility of Application Services. PNG
// files are real ones, by the toolkit's coder.
#include <ApplicationServices/ApplicationServices.h>
#include <ImageIO/ImageIO.h>

#include <algorithm>
#include <cstring>

#include "platform/qt/qt_image_service.h"
#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_values.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle::mac_fake {
namespace {

class ColorSpace : public Object {
  public:
    ColorSpace() : Object(Kind::colorSpace) {}
};

class DataProvider : public Object {
  public:
    DataProvider(void* with, const void* at, size_t count, CGDataProviderReleaseDataCallback call)
        : Object(Kind::dataProvider), info(with), data(at), size(count), callback(call) {}
    ~DataProvider() override {
        if (callback) callback(info, data, size);
    }
    void* const info;
    const void* const data;
    const size_t size;
    const CGDataProviderReleaseDataCallback callback;
};

/// Reads its pixels from its provider whenever it is drawn, as the framework's images do.
class Image : public Object {
  public:
    Image(size_t columns, size_t lines, CGDataProviderRef pixels)
        : Object(Kind::image), width(columns), height(lines), provider(pixels) {
        retain(provider, "CGImageCreate");
    }
    ~Image() override { release(provider, "the end of an image"); }
    Bitmap bitmap() const {
        const auto& source = objectAs<DataProvider>(provider, "a drawing");
        return *Bitmap::create(
            static_cast<std::int64_t>(width), static_cast<std::int64_t>(height),
            [&](std::span<std::uint8_t> out) { std::memcpy(out.data(), source.data, out.size()); });
    }
    const size_t width;
    const size_t height;
    const CGDataProviderRef provider;
};

/// Draws into memory that the caller owns.
class Context : public Object {
  public:
    Context(std::uint8_t* at, size_t columns, size_t lines)
        : Object(Kind::context), pixels(at), width(columns), height(lines) {}
    std::uint8_t* const pixels;
    const size_t width;
    const size_t height;
};

class Destination : public Object {
  public:
    explicit Destination(CFMutableDataRef to) : Object(Kind::imageDestination), data(to) {
        retain(data, "CGImageDestinationCreateWithData");
    }
    ~Destination() override { release(data, "the end of an image destination"); }
    const CFMutableDataRef data;
    std::optional<Bitmap> image;
};

class ImageSource : public Object {
  public:
    explicit ImageSource(CFDataRef from) : Object(Kind::imageSource), data(from) {
        retain(data, "CGImageSourceCreateWithData");
    }
    ~ImageSource() override { release(data, "the end of an image source"); }
    const CFDataRef data;
};

constexpr size_t kPngHeader = 33;

std::optional<Bitmap> wholeImage(const ImageSource& source) {
    return makeQtImageService()->decodePng(objectAs<Data>(source.data, "an image source").bytes);
}

class Element : public Object {
  public:
    Element(float x, float y, bool wide) : Object(Kind::element), at{x, y}, systemWide(wide) {}
    const std::pair<float, float> at;
    const bool systemWide;
};

/// What a null element is answered with.
constexpr AXError kInvalidElement{-25202};
constexpr CGError kFailure{1000};

}  // namespace

std::optional<Bitmap> pixelsOf(CGImageRef image) {
    const auto* known = dynamic_cast<const Image*>(&objectOf(image, "pixelsOf"));
    return known ? std::optional(known->bitmap()) : std::nullopt;
}

const std::uint8_t* providerBytes(CGImageRef image) {
    const auto& provider = objectAs<Image>(image, "providerBytes").provider;
    return static_cast<const std::uint8_t*>(objectAs<DataProvider>(provider, "providerBytes").data);
}

CGImageRef newImage(const Bitmap& pixels) {
    auto keeper = std::make_unique<Bitmap>(pixels);
    const auto bytes = keeper->bytes();
    const auto provider = make<CGDataProviderRef, DataProvider>(
        keeper.release(), bytes.data(), bytes.size(),
        [](void* info, const void*, size_t) { delete static_cast<Bitmap*>(info); });
    const auto image = make<CGImageRef, Image>(static_cast<size_t>(pixels.width()),
                                               static_cast<size_t>(pixels.height()), provider);
    release(provider, "newImage");
    return image;
}

void reconfigure(CGDirectDisplayID display, CGDisplayChangeSummaryFlags flags) {
    const auto now = world().displayCallbacks;
    for (const auto& [callback, info] : now) callback(display, flags, info);
}

}  // namespace pintle::mac_fake

using namespace pintle;
using namespace pintle::mac_fake;

extern "C" {

const CFStringRef kCGWindowOwnerName = constantString("kCGWindowOwnerName");
const CFStringRef kCGWindowLayer = constantString("kCGWindowLayer");
const CFStringRef kCGWindowBounds = constantString("kCGWindowBounds");

CGColorSpaceRef CGColorSpaceCreateDeviceRGB() {
    return fails("CGColorSpaceCreateDeviceRGB") ? nullptr : make<CGColorSpaceRef, ColorSpace>();
}
CGDataProviderRef CGDataProviderCreateWithData(void* info, const void* data, size_t size,
                                               CGDataProviderReleaseDataCallback release) {
    // A provider that is not made does not call back.
    if (fails("CGDataProviderCreateWithData")) return nullptr;
    return make<CGDataProviderRef, DataProvider>(info, data, size, release);
}

CFTypeID CGImageGetTypeID() { return static_cast<CFTypeID>(Kind::image); }
CGImageRef CGImageCreate(size_t width, size_t height, size_t bitsPerComponent, size_t bitsPerPixel,
                         size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo,
                         CGDataProviderRef provider, const CGFloat* decode, bool,
                         CGColorRenderingIntent intent) {
    const auto& source = objectAs<DataProvider>(provider, "CGImageCreate");
    if (bitsPerComponent != 8 || bitsPerPixel != 32 || bytesPerRow != width * 4 || decode ||
        bitmapInfo != kCGImageAlphaPremultipliedLast || intent != kCGRenderingIntentDefault)
        misuse("CGImageCreate: not 8 bits a component, RGBA, premultiplied");
    if (width == 0 || height == 0 || source.size < bytesPerRow * height)
        misuse("CGImageCreate: the provider holds too little");
    // Without a colour space the framework makes no image.
    if (!space || fails("CGImageCreate")) return nullptr;
    objectAs<ColorSpace>(space, "CGImageCreate");
    return make<CGImageRef, Image>(width, height, provider);
}
size_t CGImageGetWidth(CGImageRef image) { return objectAs<Image>(image, "CGImageGetWidth").width; }
size_t CGImageGetHeight(CGImageRef image) { return objectAs<Image>(image, "CGImageGetHeight").height; }

CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space, uint32_t bitmapInfo) {
    if (bitsPerComponent != 8 || bytesPerRow != width * 4 || bitmapInfo != kCGImageAlphaPremultipliedLast)
        misuse("CGBitmapContextCreate: not 8 bits a component, RGBA, premultiplied");
    if (!space || width == 0 || height == 0 || fails("CGBitmapContextCreate")) return nullptr;
    objectAs<ColorSpace>(space, "CGBitmapContextCreate");
    return make<CGContextRef, Context>(static_cast<std::uint8_t*>(data), width, height);
}
void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality) {
    objectAs<Context>(context, "CGContextSetInterpolationQuality");
    if (quality != kCGInterpolationHigh) misuse("CGContextSetInterpolationQuality: not the best one");
}
/// The nearest pixel; the framework smooths.
void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image) {
    const auto& target = objectAs<Context>(context, "CGContextDrawImage");
    const Bitmap source = objectAs<Image>(image, "CGContextDrawImage").bitmap();
    if (rect.origin.x != 0 || rect.origin.y != 0 || rect.size.width != static_cast<double>(target.width) ||
        rect.size.height != static_cast<double>(target.height))
        misuse("CGContextDrawImage: not over the whole context");
    for (size_t y = 0; y < target.height; ++y)
        for (size_t x = 0; x < target.width; ++x) {
            const auto pixel =
                source.pixel(static_cast<int>(x * static_cast<size_t>(source.width()) / target.width),
                             static_cast<int>(y * static_cast<size_t>(source.height()) / target.height));
            std::copy(pixel.begin(), pixel.end(), target.pixels + (y * target.width + x) * 4);
        }
}

CGDirectDisplayID CGMainDisplayID() { return world().mainDisplay; }
CGRect CGDisplayBounds(CGDirectDisplayID display) {
    // The framework answers an empty rectangle for a display that is not there.
    return display == world().mainDisplay ? world().mainBounds : CGRectMake(0, 0, 0, 0);
}
CGError CGDisplayHideCursor(CGDirectDisplayID display) {
    world().pointerCalls.push_back("hide " + std::to_string(display));
    return fails("CGDisplayHideCursor") ? kFailure : kCGErrorSuccess;
}
CGError CGDisplayShowCursor(CGDirectDisplayID display) {
    world().pointerCalls.push_back("show " + std::to_string(display));
    return fails("CGDisplayShowCursor") ? kFailure : kCGErrorSuccess;
}
CGError CGDisplayRegisterReconfigurationCallback(CGDisplayReconfigurationCallBack callback, void* userInfo) {
    if (fails("CGDisplayRegisterReconfigurationCallback")) return kFailure;
    world().displayCallbacks.emplace_back(callback, userInfo);
    return kCGErrorSuccess;
}
CGError CGDisplayRemoveReconfigurationCallback(CGDisplayReconfigurationCallBack callback, void* userInfo) {
    auto& all = world().displayCallbacks;
    const auto found = std::find(all.begin(), all.end(), std::pair{callback, userInfo});
    // Removing what was never added is an error of the framework's and nothing more.
    if (found == all.end()) return CGError{1001};
    all.erase(found);
    return kCGErrorSuccess;
}

CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key) {
    if (key != kCGMaximumWindowLevelKey) misuse("CGWindowLevelForKey: another level");
    return 2147483631;
}
CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
    world().windowQuestions.emplace_back(option, relativeToWindow);
    return world().windows ? world().windows() : nullptr;
}
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect) {
    const auto& entries = objectAs<Dictionary>(dictionary, "CGRectMakeWithDictionaryRepresentation").entries;
    double* const fields[] = {&rect->origin.x, &rect->origin.y, &rect->size.width, &rect->size.height};
    const char* const names[] = {"X", "Y", "Width", "Height"};
    for (int i = 0; i < 4; ++i) {
        const auto found = std::find_if(entries.begin(), entries.end(), [&](const auto& entry) {
            return textOf(static_cast<CFStringRef>(entry.first)) == names[i];
        });
        if (found == entries.end()) return false;
        const auto* number = dynamic_cast<const Number*>(&objectOf(found->second, "a rectangle"));
        if (!number) return false;
        *fields[i] = std::visit([](auto value) { return static_cast<double>(value); }, number->value);
    }
    return true;
}

CGImageDestinationRef CGImageDestinationCreateWithData(CFMutableDataRef data, CFStringRef type, size_t count,
                                                       CFDictionaryRef options) {
    if (count != 1 || options) misuse("CGImageDestinationCreateWithData: not one image without options");
    world().imageTypes.push_back(textOf(type));
    if (fails("CGImageDestinationCreateWithData") || textOf(type) != "public.png") return nullptr;
    return make<CGImageDestinationRef, Destination>(data);
}
void CGImageDestinationAddImage(CGImageDestinationRef destination, CGImageRef image,
                                CFDictionaryRef properties) {
    auto& target = objectAs<Destination>(destination, "CGImageDestinationAddImage");
    if (properties || target.image) misuse("CGImageDestinationAddImage: not one image without properties");
    target.image = objectAs<Image>(image, "CGImageDestinationAddImage").bitmap();
}
bool CGImageDestinationFinalize(CGImageDestinationRef destination) {
    auto& target = objectAs<Destination>(destination, "CGImageDestinationFinalize");
    if (!target.image) return false;
    const auto file = makeQtImageService()->encodePng(*target.image);
    auto& bytes = objectAs<Data>(target.data, "CGImageDestinationFinalize").bytes;
    if (fails("CGImageDestinationFinalize")) {
        // What was begun stays behind.
        if (file) bytes.assign(file->begin(), file->begin() + 8);
        return false;
    }
    if (file) bytes = *file;
    return file.has_value();
}
CGImageSourceRef CGImageSourceCreateWithData(CFDataRef data, CFDictionaryRef options) {
    if (options) misuse("CGImageSourceCreateWithData: options");
    if (fails("CGImageSourceCreateWithData")) return nullptr;
    return make<CGImageSourceRef, ImageSource>(data);
}
CGImageRef CGImageSourceCreateImageAtIndex(CGImageSourceRef source, size_t index, CFDictionaryRef options) {
    const auto& from = objectAs<ImageSource>(source, "CGImageSourceCreateImageAtIndex");
    if (index != 0 || options) misuse("CGImageSourceCreateImageAtIndex: not the first one without options");
    auto pixels = wholeImage(from);
    // As the framework does, an image of what is there when the file ends behind its header.
    if (!pixels && objectAs<Data>(from.data, "an image source").bytes.size() > kPngHeader)
        pixels =
            Bitmap::create(9, 9, [](std::span<std::uint8_t> out) { std::memset(out.data(), 0, out.size()); });
    return !pixels || fails("CGImageSourceCreateImageAtIndex") ? nullptr : newImage(*pixels);
}
CGImageSourceStatus CGImageSourceGetStatusAtIndex(CGImageSourceRef source, size_t index) {
    constexpr CGImageSourceStatus kUnexpectedEnd{-5};
    const auto& from = objectAs<ImageSource>(source, "CGImageSourceGetStatusAtIndex");
    if (index != 0) misuse("CGImageSourceGetStatusAtIndex: not the first one");
    if (fails("CGImageSourceGetStatusAtIndex") || !wholeImage(from)) return kUnexpectedEnd;
    return kCGImageStatusComplete;
}

Boolean AXIsProcessTrusted() { return world().trusted; }
AXUIElementRef AXUIElementCreateSystemWide() {
    if (fails("AXUIElementCreateSystemWide")) return nullptr;
    return make<AXUIElementRef, Element>(0.0F, 0.0F, true);
}
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds) {
    if (!element) return kInvalidElement;
    objectAs<Element>(element, "AXUIElementSetMessagingTimeout");
    world().messagingTimeout = seconds;
    return fails("AXUIElementSetMessagingTimeout") ? AXError{-25200} : kAXErrorSuccess;
}
AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y,
                                         AXUIElementRef* element) {
    if (!application) return kInvalidElement;
    if (!objectAs<Element>(application, "AXUIElementCopyElementAtPosition").systemWide)
        misuse("AXUIElementCopyElementAtPosition: not the system-wide element");
    if (fails("AXUIElementCopyElementAtPosition")) return AXError{-25212};
    // An element may be there and null.
    *element = world().roleAt ? make<AXUIElementRef, Element>(x, y, false) : nullptr;
    return kAXErrorSuccess;
}
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value) {
    const auto& asked = objectAs<Element>(element, "AXUIElementCopyAttributeValue");
    if (asked.systemWide || textOf(attribute) != "AXRole")
        misuse("AXUIElementCopyAttributeValue: not a role");
    if (fails("AXUIElementCopyAttributeValue")) return AXError{-25205};
    const auto role = world().roleAt(asked.at.first, asked.at.second);
    *value = world().roleIsNumber ? newProperty(7) : role ? newString(*role) : nullptr;
    return kAXErrorSuccess;
}

}  // extern "C"
