#include "platform/mac/cf_property.h"

#include <type_traits>
#include <vector>

namespace pintle {
namespace {

CfRef<CFTypeRef> encode(const PropertyValue& value, int depth);
std::optional<PropertyValue> decode(CFTypeRef value, int depth);

CfRef<CFTypeRef> encodeLeaf(bool value) {
    return CfRef<CFTypeRef>::retain(value ? kCFBooleanTrue : kCFBooleanFalse);
}
CfRef<CFTypeRef> encodeLeaf(std::int64_t value) {
    return CfRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &value));
}
CfRef<CFTypeRef> encodeLeaf(double value) {
    return CfRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value));
}
CfRef<CFTypeRef> encodeLeaf(const std::string& value) {
    return CfRef<CFTypeRef>::retain(cfString(value).get());
}
CfRef<CFTypeRef> encodeLeaf(const PropertyData& value) {
    return CfRef<CFTypeRef>::adopt(
        CFDataCreate(kCFAllocatorDefault, value.data(), static_cast<CFIndex>(value.size())));
}
CfRef<CFTypeRef> encodeLeaf(const PropertyDate& value) {
    return CfRef<CFTypeRef>::adopt(CFDateCreate(kCFAllocatorDefault, value.seconds));
}

CfRef<CFTypeRef> encodeArray(const PropertyArray& values, int depth) {
    const auto array =
        CfRef<CFMutableArrayRef>::adopt(CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));
    for (const PropertyValue& value : values) {
        const auto entry = encode(value, depth + 1);
        if (!entry) return {};
        CFArrayAppendValue(array.get(), entry.get());
    }
    return CfRef<CFTypeRef>::retain(array.get());
}

CfRef<CFTypeRef> encodeDictionary(const PropertyDictionary& values, int depth) {
    const auto dictionary = CfRef<CFMutableDictionaryRef>::adopt(CFDictionaryCreateMutable(
        kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    for (const auto& [key, value] : values) {
        const auto name = cfString(key);
        const auto entry = encode(value, depth + 1);
        if (!name || !entry) return {};
        CFDictionarySetValue(dictionary.get(), name.get(), entry.get());
    }
    return CfRef<CFTypeRef>::retain(dictionary.get());
}

CfRef<CFTypeRef> encode(const PropertyValue& value, int depth) {
    if (depth > kDeepestCfProperty) return {};
    return std::visit(
        [depth](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, PropertyArray>)
                return encodeArray(held, depth);
            else if constexpr (std::is_same_v<Held, PropertyDictionary>)
                return encodeDictionary(held, depth);
            else
                return encodeLeaf(held);
        },
        value.storage());
}

PropertyValue decodeNumber(CFNumberRef number) {
    if (CFNumberIsFloatType(number)) {
        double real = 0;
        CFNumberGetValue(number, kCFNumberDoubleType, &real);
        return real;
    }
    std::int64_t integer = 0;
    CFNumberGetValue(number, kCFNumberSInt64Type, &integer);
    return integer;
}

PropertyValue decodeData(CFDataRef data) {
    const UInt8* const bytes = CFDataGetBytePtr(data);
    return PropertyData(bytes, bytes + CFDataGetLength(data));
}

std::optional<PropertyValue> decodeArray(CFArrayRef array, int depth) {
    PropertyArray values;
    for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
        auto value = decode(CFArrayGetValueAtIndex(array, i), depth + 1);
        if (!value) return std::nullopt;
        values.push_back(std::move(*value));
    }
    return values;
}

std::optional<PropertyValue> decodeDictionary(CFDictionaryRef dictionary, int depth) {
    const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
    std::vector<const void*> keys(count);
    std::vector<const void*> entries(count);
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), entries.data());
    PropertyDictionary values;
    for (std::size_t i = 0; i < count; ++i) {
        if (CFGetTypeID(keys[i]) != CFStringGetTypeID()) return std::nullopt;
        auto value = decode(entries[i], depth + 1);
        if (!value) return std::nullopt;
        values.insert_or_assign(fromCfString(keys[i]), std::move(*value));
    }
    return values;
}

std::optional<PropertyValue> decode(CFTypeRef value, int depth) {
    if (!value || depth > kDeepestCfProperty) return std::nullopt;
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFBooleanGetTypeID()) return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
    if (type == CFNumberGetTypeID()) return decodeNumber(static_cast<CFNumberRef>(value));
    if (type == CFStringGetTypeID()) return fromCfString(value);
    if (type == CFDataGetTypeID()) return decodeData(static_cast<CFDataRef>(value));
    if (type == CFDateGetTypeID()) return PropertyDate{CFDateGetAbsoluteTime(static_cast<CFDateRef>(value))};
    if (type == CFArrayGetTypeID()) return decodeArray(static_cast<CFArrayRef>(value), depth);
    if (type == CFDictionaryGetTypeID()) return decodeDictionary(static_cast<CFDictionaryRef>(value), depth);
    return std::nullopt;
}

}  // namespace

CfRef<CFTypeRef> toCfProperty(const PropertyValue& value) { return encode(value, 1); }

std::optional<PropertyValue> fromCfProperty(CFTypeRef value) { return decode(value, 1); }

}  // namespace pintle
