#include "platform/mac/mac_window_server.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <memory>
#include <string>

#include "platform/mac/cf.h"
#include "platform/mac/cg_image.h"
#include "platform/mac/private_functions.h"

namespace pintle {
namespace {

using MainConnectionId = std::uint32_t();
using RegisterCursorWithImages = CGError(std::uint32_t connection, const char* identifier, bool setGlobally,
                                         bool takeEffectNow, CGSize frameSize, CGPoint hotspot,
                                         unsigned long frameCount, CGFloat frameDuration, CFArrayRef images,
                                         std::int32_t* seed);
using UnregisterAll = CGError(std::uint32_t connection);
using CopyRegisteredCursorImages = CGError(std::uint32_t connection, const char* identifier,
                                           CGSize* frameSize, CGPoint* hotspot, unsigned long* frameCount,
                                           CGFloat* frameDuration, CFArrayRef* images);

MainConnectionId* mainConnection() {
    static auto* const function = privateFunction<MainConnectionId>("CGSMainConnectionID");
    return function;
}
RegisterCursorWithImages* registerCursor() {
    static auto* const function = privateFunction<RegisterCursorWithImages>("CGSRegisterCursorWithImages");
    return function;
}
UnregisterAll* unregisterAll() {
    static auto* const function = privateFunction<UnregisterAll>("CoreCursorUnregisterAll");
    return function;
}
CopyRegisteredCursorImages* copyRegistered() {
    static auto* const function =
        privateFunction<CopyRegisteredCursorImages>("CGSCopyRegisteredCursorImages");
    return function;
}

CfRef<CFArrayRef> imageArray(const std::vector<Bitmap>& bitmaps) {
    const auto array =
        CfRef<CFMutableArrayRef>::adopt(CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));
    for (const Bitmap& bitmap : bitmaps)
        if (const auto image = toCgImage(bitmap)) CFArrayAppendValue(array.get(), image.get());
    return CfRef<CFArrayRef>::retain(array.get());
}

std::vector<Bitmap> bitmapsOf(CFTypeRef images) {
    std::vector<Bitmap> bitmaps;
    if (!images || CFGetTypeID(images) != CFArrayGetTypeID()) return bitmaps;
    const auto array = static_cast<CFArrayRef>(images);
    for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
        const auto* const entry = CFArrayGetValueAtIndex(array, i);
        if (CFGetTypeID(entry) != CGImageGetTypeID()) continue;
        const auto image = static_cast<CGImageRef>(const_cast<void*>(entry));
        if (auto bitmap = fromCgImage(image)) bitmaps.push_back(std::move(*bitmap));
    }
    return bitmaps;
}

class MacWindowServer : public WindowServer {
  public:
    bool provides(WindowServerFunction function) override {
        switch (function) {
            case WindowServerFunction::mainConnectionID:
                return mainConnection() != nullptr;
            case WindowServerFunction::registerCursorWithImages:
                return registerCursor() != nullptr;
            case WindowServerFunction::coreCursorUnregisterAll:
                return unregisterAll() != nullptr;
            case WindowServerFunction::copyRegisteredCursorImages:
                return copyRegistered() != nullptr;
        }
        return false;
    }

    ConnectionId mainConnectionID() override { return mainConnection()(); }

    RegistrationAnswer registerCursorWithImages(ConnectionId connection, const RegisteredCursor& cursor,
                                                RegistrationPurpose) override {
        const auto images = imageArray(cursor.images);
        if (CFArrayGetCount(images.get()) == 0) return kRegistrationSkipped;
        std::int32_t seed = 0;
        return registerCursor()(connection, cursor.identifier.c_str(), true, true,
                                CGSizeMake(cursor.size.width, cursor.size.height),
                                CGPointMake(cursor.hotspot.x, cursor.hotspot.y),
                                static_cast<unsigned long>(cursor.frameCount), cursor.frameDuration,
                                images.get(), &seed);
    }

    int coreCursorUnregisterAll(ConnectionId connection) override { return unregisterAll()(connection); }

    CopiedCursor copyRegisteredCursorImages(ConnectionId connection, const std::string& identifier) override {
        CGSize size = {0, 0};
        CGPoint hotspot = {0, 0};
        unsigned long frameCount = 0;
        CGFloat frameDuration = 0;
        CFArrayRef copied = nullptr;
        const CGError error = copyRegistered()(connection, identifier.c_str(), &size, &hotspot, &frameCount,
                                               &frameDuration, &copied);
        const auto images = CfRef<CFArrayRef>::adopt(copied);
        if (error != kCGErrorSuccess) return {error, {}};
        return {0,
                {identifier,
                 bitmapsOf(images.get()),
                 {size.width, size.height},
                 {hotspot.x, hotspot.y},
                 frameCount,
                 frameDuration}};
    }

    void flush() override {}
};

}  // namespace

std::unique_ptr<WindowServer> makeMacWindowServer() { return std::make_unique<MacWindowServer>(); }

}  // namespace pintle
