// Core Foundation's values.
#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <cmath>
#include <cstring>

#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_values.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle::mac_fake {

std::optional<std::u16string> utf16(std::string_view text) {
    std::u16string wide;
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const std::size_t more = first < 0x80   ? 0
                                 : first < 0xc2 ? 9
                                 : first < 0xe0 ? 1
                                 : first < 0xf0 ? 2
                                                : 3;
        if (more == 9 || first > 0xf4 || more > text.size() - i - 1) return std::nullopt;
        char32_t character = more == 0 ? first : first & (0x3fU >> more);
        for (std::size_t k = 1; k <= more; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xc0U) != 0x80) return std::nullopt;
            character = (character << 6) | (next & 0x3fU);
        }
        if ((more == 2 && character < 0x800) || (more == 3 && character < 0x10000) || character > 0x10ffff ||
            (character >= 0xd800 && character < 0xe000))
            return std::nullopt;
        if (character < 0x10000) {
            wide.push_back(static_cast<char16_t>(character));
        } else {
            wide.push_back(static_cast<char16_t>(0xd7c0 + (character >> 10)));
            wide.push_back(static_cast<char16_t>(0xdc00 + (character & 0x3ffU)));
        }
        i += 1 + more;
    }
    return wide;
}

namespace {

/// Half a surrogate pair becomes `loss`; with no such byte the conversion ends before it.
std::string converted(std::u16string_view text, unsigned char loss, bool& complete) {
    std::string narrow;
    complete = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        const bool high = character >= 0xd800 && character < 0xdc00;
        const bool paired = high && i + 1 < text.size() && text[i + 1] >= 0xdc00 && text[i + 1] < 0xe000;
        if (paired) {
            character = 0x10000 + ((character - 0xd800) << 10) + (text[i + 1] - 0xdc00U);
            ++i;
        } else if (character >= 0xd800 && character < 0xe000) {
            complete = false;
            if (!loss) return narrow;
            narrow.push_back(static_cast<char>(loss));
            continue;
        }
        if (character < 0x80) {
            narrow.push_back(static_cast<char>(character));
            continue;
        }
        const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
        narrow.push_back(static_cast<char>((0xff00U >> (more + 1)) | (character >> (6 * more))));
        for (int k = more - 1; k >= 0; --k)
            narrow.push_back(static_cast<char>(0x80U | ((character >> (6 * k)) & 0x3fU)));
    }
    return narrow;
}

CFTypeID idOf(Kind kind) { return static_cast<CFTypeID>(kind); }

template <typename Ref>
Ref immortal(Object* object) {
    return (Ref)object->ref();
}

}  // namespace

std::optional<std::string> utf8(std::u16string_view text) {
    bool complete = false;
    auto narrow = converted(text, 0, complete);
    return complete ? std::optional(std::move(narrow)) : std::nullopt;
}

CFStringRef newString(std::string_view text) { return make<CFStringRef, String>(utf16(text).value()); }
CFStringRef constantString(std::string_view text) {
    return immortal<CFStringRef>(new String(utf16(text).value(), Object::Life::immortal));
}
std::string textOf(CFStringRef ref) { return utf8(objectAs<String>(ref, "textOf").text).value_or("?"); }

CFTypeRef newProperty(const PropertyValue& value) {
    struct Maker {
        CFTypeRef operator()(bool flag) const { return flag ? kCFBooleanTrue : kCFBooleanFalse; }
        CFTypeRef operator()(std::int64_t number) const { return make<CFTypeRef, Number>(number); }
        CFTypeRef operator()(double number) const { return make<CFTypeRef, Number>(number); }
        CFTypeRef operator()(const std::string& text) const { return newString(text); }
        CFTypeRef operator()(const PropertyData& bytes) const { return make<CFTypeRef, Data>(bytes); }
        CFTypeRef operator()(const PropertyDate& date) const { return make<CFTypeRef, Date>(date.seconds); }
        CFTypeRef operator()(const PropertyArray& values) const {
            auto* array = new Array;
            for (const auto& entry : values) array->values.push_back(newProperty(entry));
            return array->ref();
        }
        CFTypeRef operator()(const PropertyDictionary& entries) const {
            auto* dictionary = new Dictionary;
            for (const auto& [key, entry] : entries)
                dictionary->entries.emplace_back(newString(key), newProperty(entry));
            return dictionary->ref();
        }
    };
    return std::visit(Maker{}, value.storage());
}

std::optional<PropertyValue> propertyOf(CFTypeRef ref) {
    const Object& object = objectOf(ref, "propertyOf");
    if (const auto* boolean = dynamic_cast<const BooleanObject*>(&object))
        return PropertyValue(boolean->value);
    if (const auto* number = dynamic_cast<const Number*>(&object))
        return std::visit([](auto value) { return PropertyValue(value); }, number->value);
    if (const auto* data = dynamic_cast<const Data*>(&object)) return PropertyValue(data->bytes);
    if (const auto* date = dynamic_cast<const Date*>(&object))
        return PropertyValue(PropertyDate{date->seconds});
    if (const auto* string = dynamic_cast<const String*>(&object)) {
        auto text = utf8(string->text);
        return text ? std::optional<PropertyValue>(std::move(*text)) : std::nullopt;
    }
    if (const auto* array = dynamic_cast<const Array*>(&object)) {
        PropertyArray values;
        for (const void* entry : array->values) {
            auto value = propertyOf(entry);
            if (!value) return std::nullopt;
            values.push_back(std::move(*value));
        }
        return PropertyValue(std::move(values));
    }
    if (const auto* dictionary = dynamic_cast<const Dictionary*>(&object)) {
        PropertyDictionary entries;
        for (const auto& [key, entry] : dictionary->entries) {
            const auto* name = dynamic_cast<const String*>(&objectOf(key, "propertyOf"));
            const auto text = name ? utf8(name->text) : std::nullopt;
            auto value = propertyOf(entry);
            if (!text || !value) return std::nullopt;
            entries.insert_or_assign(*text, std::move(*value));
        }
        return PropertyValue(std::move(entries));
    }
    return std::nullopt;
}

}  // namespace pintle::mac_fake

using namespace pintle::mac_fake;

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = immortal<CFBooleanRef>(new BooleanObject(true));
const CFBooleanRef kCFBooleanFalse = immortal<CFBooleanRef>(new BooleanObject(false));
// The containers of the fake always keep references, as these callbacks ask for.
const CFArrayCallBacks kCFTypeArrayCallBacks = {};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeRef CFRetain(CFTypeRef cf) { return retain(cf, "CFRetain"); }
void CFRelease(CFTypeRef cf) { release(cf, "CFRelease"); }
CFTypeID CFGetTypeID(CFTypeRef cf) { return idOf(objectOf(cf, "CFGetTypeID").kind()); }

CFTypeID CFStringGetTypeID() { return idOf(Kind::string); }
CFTypeID CFNumberGetTypeID() { return idOf(Kind::number); }
CFTypeID CFBooleanGetTypeID() { return idOf(Kind::boolean); }
CFTypeID CFDataGetTypeID() { return idOf(Kind::data); }
CFTypeID CFDateGetTypeID() { return idOf(Kind::date); }
CFTypeID CFArrayGetTypeID() { return idOf(Kind::array); }
CFTypeID CFDictionaryGetTypeID() { return idOf(Kind::dictionary); }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternal) {
    if (encoding != kCFStringEncodingUTF8 || isExternal) misuse("CFStringCreateWithBytes: not plain UTF-8");
    if (count < 0 || (count > 0 && !bytes)) misuse("CFStringCreateWithBytes: no bytes");
    auto text = utf16({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    return text ? make<CFStringRef, String>(std::move(*text)) : nullptr;
}
CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(objectAs<String>(string, "CFStringGetLength").text.size());
}
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternal, UInt8* buffer, CFIndex capacity, CFIndex* used) {
    const auto& text = objectAs<String>(string, "CFStringGetBytes").text;
    if (encoding != kCFStringEncodingUTF8 || isExternal) misuse("CFStringGetBytes: not plain UTF-8");
    if (range.location != 0 || range.length != static_cast<CFIndex>(text.size()))
        misuse("CFStringGetBytes: only whole strings are known here");
    bool complete = false;
    const auto narrow = converted(text, lossByte, complete);
    if (buffer && capacity < static_cast<CFIndex>(narrow.size()))
        misuse("CFStringGetBytes: the buffer is too small");
    if (buffer) std::memcpy(buffer, narrow.data(), narrow.size());
    if (used) *used = static_cast<CFIndex>(narrow.size());
    return range.length;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    if (type == kCFNumberSInt64Type)
        return make<CFNumberRef, Number>(*static_cast<const std::int64_t*>(value));
    if (type == kCFNumberDoubleType || type == kCFNumberFloat64Type)
        return make<CFNumberRef, Number>(*static_cast<const double*>(value));
    misuse("CFNumberCreate: type " + std::to_string(type));
}
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const auto& content = objectAs<Number>(number, "CFNumberGetValue").value;
    const auto* integer = std::get_if<std::int64_t>(&content);
    const auto* real = std::get_if<double>(&content);
    if (type == kCFNumberSInt64Type) {
        auto& target = *static_cast<std::int64_t*>(value);
        if (integer) target = *integer;
        // Out of range the framework saturates.
        else if (!(*real < 0x1p63))
            target = INT64_MAX;
        else if (*real < -0x1p63)
            target = INT64_MIN;
        else
            target = static_cast<std::int64_t>(*real);
        return integer || static_cast<double>(target) == *real;
    }
    if (type == kCFNumberDoubleType || type == kCFNumberFloat64Type) {
        auto& target = *static_cast<double*>(value);
        target = integer ? static_cast<double>(*integer) : *real;
        return !integer || (std::abs(target) < 0x1p63 && static_cast<std::int64_t>(target) == *integer);
    }
    misuse("CFNumberGetValue: type " + std::to_string(type));
}
Boolean CFNumberIsFloatType(CFNumberRef number) {
    return std::holds_alternative<double>(objectAs<Number>(number, "CFNumberIsFloatType").value);
}
Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return objectAs<BooleanObject>(boolean, "CFBooleanGetValue").value;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    if (length < 0 || (length > 0 && !bytes)) misuse("CFDataCreate: no bytes");
    return make<CFDataRef, Data>(std::vector<std::uint8_t>(bytes, bytes + length));
}
CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex) {
    return make<CFMutableDataRef, Data>(std::vector<std::uint8_t>());
}
const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return objectAs<Data>(data, "CFDataGetBytePtr").bytes.data();
}
CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(objectAs<Data>(data, "CFDataGetLength").bytes.size());
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime at) { return make<CFDateRef, Date>(at); }
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
    return objectAs<Date>(date, "CFDateGetAbsoluteTime").seconds;
}
CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
    // From 2001-01-01.
    constexpr double kSecondsBefore2001 = 978307200;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count() - kSecondsBefore2001;
}

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef, CFIndex, const CFArrayCallBacks* callBacks) {
    if (callBacks != &kCFTypeArrayCallBacks)
        misuse("CFArrayCreateMutable: an array that keeps no references");
    return make<CFMutableArrayRef, Array>();
}
CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(objectAs<Array>(array, "CFArrayGetCount").values.size());
}
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const auto& values = objectAs<Array>(array, "CFArrayGetValueAtIndex").values;
    if (index < 0 || index >= static_cast<CFIndex>(values.size()))
        misuse("CFArrayGetValueAtIndex: beyond the end");
    return values[static_cast<std::size_t>(index)];
}
void CFArrayAppendValue(CFMutableArrayRef array, const void* value) {
    objectAs<Array>(array, "CFArrayAppendValue").append(value);
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex,
                                                 const CFDictionaryKeyCallBacks* keys,
                                                 const CFDictionaryValueCallBacks* values) {
    if (keys != &kCFTypeDictionaryKeyCallBacks || values != &kCFTypeDictionaryValueCallBacks)
        misuse("CFDictionaryCreateMutable: a dictionary that keeps no references");
    return make<CFMutableDictionaryRef, Dictionary>();
}
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return static_cast<CFIndex>(objectAs<Dictionary>(dictionary, "CFDictionaryGetCount").entries.size());
}
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    return objectAs<Dictionary>(dictionary, "CFDictionaryGetValue").find(key);
}
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
    std::size_t i = 0;
    for (const auto& [key, value] :
         objectAs<Dictionary>(dictionary, "CFDictionaryGetKeysAndValues").entries) {
        if (keys) keys[i] = key;
        if (values) values[i] = value;
        ++i;
    }
}
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
    objectAs<Dictionary>(dictionary, "CFDictionarySetValue").put(key, value);
}

}  // extern "C"
