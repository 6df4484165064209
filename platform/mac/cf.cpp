#include "platform/mac/cf.h"

namespace pintle {

CfRef<CFStringRef> cfString(std::string_view text) {
    return CfRef<CFStringRef>::adopt(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, Boolean{0}));
}

std::string fromCfString(CFTypeRef text) {
    if (!text || CFGetTypeID(text) != CFStringGetTypeID()) return {};
    const auto string = static_cast<CFStringRef>(text);
    const CFRange whole = CFRangeMake(0, CFStringGetLength(string));
    // Half of a surrogate pair has no UTF-8 and becomes a question mark.
    constexpr UInt8 kLossByte = '?';
    CFIndex size = 0;
    CFStringGetBytes(string, whole, kCFStringEncodingUTF8, kLossByte, Boolean{0}, nullptr, 0, &size);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, whole, kCFStringEncodingUTF8, kLossByte, Boolean{0},
                     reinterpret_cast<UInt8*>(bytes.data()), size, nullptr);
    return bytes;
}

}  // namespace pintle
