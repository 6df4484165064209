#include "platform/plist/plist_coder.h"

#include <locale.h>
#include <plist/plist.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "platform/plist/plist_guard.h"

namespace pintle {
namespace {

struct NodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

/// Frees what the library's writers return. Its version 2.3 has one function for that; earlier ones have one
/// a format, which do the same.
template <typename Text>
void freeWritten(Text* text) {
    if constexpr (requires { plist_mem_free(text); })
        plist_mem_free(text);
    else
        plist_to_bin_free(text);
}

/// Version 2.3 of the library distinguishes negative integers from those above the signed range; earlier ones
/// have one function for both, which is the unsigned one.
template <typename Integer>
plist_t newInteger(Integer value) {
    if constexpr (requires { plist_new_int(value); })
        return plist_new_int(value);
    else
        return plist_new_uint(static_cast<std::uint64_t>(value));
}

/// The library reads and writes reals by the locale of the thread; under a locale with a decimal comma "0.85"
/// would read as 0.
class PlainNumbers {
  public:
    PlainNumbers() : own_(newlocale(LC_ALL_MASK, "C", nullptr)) {
        if (own_) before_ = uselocale(own_);
    }
    ~PlainNumbers() {
        if (!own_) return;
        uselocale(before_);
        freelocale(own_);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

  private:
    locale_t own_;
    locale_t before_ = nullptr;
};

/// Whether the text is UTF-8 of characters that the format can hold.
bool isWritable(std::string_view text, PropertyListFormat format) {
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        std::uint32_t character = first;
        std::size_t more = 0;
        if (first >= 0xf0 && first < 0xf5) {
            character = first & 0x07U;
            more = 3;
        } else if (first >= 0xe0 && first < 0xf0) {
            character = first & 0x0fU;
            more = 2;
        } else if (first >= 0xc2 && first < 0xe0) {
            character = first & 0x1fU;
            more = 1;
        } else if (first >= 0x80) {
            return false;
        }
        if (more > text.size() - i - 1) return false;
        for (std::size_t k = 1; k <= more; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xc0U) != 0x80) return false;
            character = (character << 6) | (next & 0x3fU);
        }
        const bool overlong = (more == 2 && character < 0x800) || (more == 3 && character < 0x10000);
        if (character == 0 || overlong || character > 0x10ffff || (character >= 0xd800 && character < 0xe000))
            return false;
        if (format == PropertyListFormat::xml) {
            const bool blank = character == '\t' || character == '\n';
            if ((character < 0x20 && !blank) || character == 0xfffe || character == 0xffff) return false;
        }
        i += 1 + more;
    }
    return true;
}

/// The text of a scalar's element as the library writes it.
std::string xmlText(plist_t node) {
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &xml, &length);
    if (!xml) return {};
    const std::string all(xml, length);
    freeWritten(xml);
    const auto begin = all.find('>', all.find("<plist"));
    const auto open = begin == std::string::npos ? begin : all.find('>', begin + 1);
    const auto close = open == std::string::npos ? open : all.find('<', open);
    return close == std::string::npos ? std::string() : all.substr(open + 1, close - open - 1);
}

/// Days from 2001-01-01 to a date of the Gregorian calendar.
std::int64_t daysSince2001(std::int64_t year, unsigned month, unsigned day) {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const auto yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<std::int64_t>(dayOfEra) - 730791;
}

std::optional<double> secondsFromText(const std::string& text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    if (std::sscanf(text.c_str(), "%5d-%2u-%2uT%2u:%2u:%2uZ", &year, &month, &day, &hour, &minute, &second) !=
        6)
        return std::nullopt;
    if (month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
    return static_cast<double>(daysSince2001(year, month, day)) * 86400.0 + hour * 3600.0 + minute * 60.0 +
           second;
}

/// The library's date calls count in 32 bits; dates further away go through their text.
constexpr double kNearDates = 2147483000.0;

bool isExpressibleDate(double seconds) { return seconds >= kEarliestDate && seconds <= kLatestDate; }

/// The library hands out the parts of a date without its sign when the whole seconds are none; its binary
/// form has it.
bool isBeforeTheEpoch(plist_t date) {
    // Behind the mark and the type of the only object.
    constexpr std::uint32_t kHighestByte = 9;
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(date, &bytes, &length);
    if (!bytes) return false;
    const bool negative =
        length > kHighestByte && (static_cast<unsigned char>(bytes[kHighestByte]) & 0x80U) != 0;
    freeWritten(bytes);
    return negative;
}

std::optional<PropertyValue> readDate(plist_t node) {
    const auto whole = secondsFromText(xmlText(node));
    // The library takes a text such as the day 0 of the year 1, which is a date before all that can be
    // written.
    if (!whole || !isExpressibleDate(*whole)) return std::nullopt;
    if (std::abs(*whole) >= kNearDates) return PropertyDate{*whole};
    std::int32_t seconds = 0;
    std::int32_t micros = 0;
    plist_get_date_val(node, &seconds, &micros);
    const double part = micros / 1e6;
    const bool isEarlier = seconds < 0 || (seconds == 0 && isBeforeTheEpoch(node));
    return PropertyDate{isEarlier ? seconds - part : seconds + part};
}

Node writeDate(double seconds) {
    if (!isExpressibleDate(seconds)) return nullptr;
    if (std::abs(seconds) < kNearDates) {
        const double whole = std::trunc(seconds);
        return Node(plist_new_date(static_cast<std::int32_t>(whole),
                                   static_cast<std::int32_t>(std::lround((seconds - whole) * 1e6))));
    }
    const auto total = static_cast<std::int64_t>(std::floor(seconds));
    std::int64_t days = total / 86400 - (total % 86400 < 0 ? 1 : 0);
    const std::int64_t rest = total - days * 86400;
    // Gregorian date of `days`, counted from 0000-03-01 in eras of 400 years.
    days += 730791;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t shifted = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = shifted < 10 ? shifted + 3 : shifted - 9;
    char xml[96];
    const int length = std::snprintf(
        xml, sizeof xml, "<plist version=\"1.0\"><date>%04d-%02d-%02dT%02d:%02d:%02dZ</date></plist>",
        static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0)), static_cast<int>(month),
        static_cast<int>(dayOfYear - (153 * shifted + 2) / 5 + 1), static_cast<int>(rest / 3600),
        static_cast<int>(rest / 60 % 60), static_cast<int>(rest % 60));
    plist_t node = nullptr;
    plist_from_xml(xml, static_cast<std::uint32_t>(length), &node);
    return Node(node);
}

Node write(const PropertyValue& value, PropertyListFormat format, int depth) {
    if (const auto* flag = value.as<bool>()) return Node(plist_new_bool(*flag ? 1 : 0));
    if (const auto* integer = value.as<std::int64_t>()) return Node(newInteger(*integer));
    if (const auto* real = value.as<double>()) return Node(plist_new_real(*real));
    if (const auto* text = value.as<std::string>())
        return isWritable(*text, format) ? Node(plist_new_string(text->c_str())) : nullptr;
    if (const auto* data = value.as<PropertyData>())
        return Node(plist_new_data(reinterpret_cast<const char*>(data->data()), data->size()));
    if (const auto* date = value.as<PropertyDate>()) return writeDate(date->seconds);
    if (depth >= kDeepestPropertyList) return nullptr;
    if (const auto* array = value.as<PropertyArray>()) {
        Node list(plist_new_array());
        for (const auto& item : *array) {
            Node node = write(item, format, depth + 1);
            if (!node) return nullptr;
            plist_array_append_item(list.get(), node.release());
        }
        return list;
    }
    Node dictionary(plist_new_dict());
    for (const auto& [key, item] : *value.as<PropertyDictionary>()) {
        Node node = isWritable(key, format) ? write(item, format, depth + 1) : nullptr;
        if (!node) return nullptr;
        plist_dict_set_item(dictionary.get(), key.c_str(), node.release());
    }
    return dictionary;
}

std::optional<PropertyValue> readInteger(plist_t node) {
    std::uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    // The library returns negative numbers and numbers above the signed range alike; only its text
    // distinguishes them.
    if (bits > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) &&
        !xmlText(node).starts_with('-'))
        return PropertyValue(static_cast<double>(bits));
    return PropertyValue(static_cast<std::int64_t>(bits));
}

std::optional<PropertyValue> read(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t flag = 0;
            plist_get_bool_val(node, &flag);
            return PropertyValue(flag != 0);
        }
        case PLIST_UINT:
            return readInteger(node);
        case PLIST_REAL: {
            double real = 0;
            plist_get_real_val(node, &real);
            return PropertyValue(real);
        }
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* text = plist_get_string_ptr(node, &length);
            std::string copy(text ? text : "", text ? length : 0);
            if (!isWritable(copy, PropertyListFormat::binary)) return std::nullopt;
            return PropertyValue(std::move(copy));
        }
        case PLIST_DATA: {
            std::uint64_t length = 0;
            const auto* data = reinterpret_cast<const std::uint8_t*>(plist_get_data_ptr(node, &length));
            return PropertyValue(data ? PropertyData(data, data + length) : PropertyData());
        }
        case PLIST_DATE:
            return readDate(node);
        case PLIST_UID: {
            std::uint64_t uid = 0;
            plist_get_uid_val(node, &uid);
            return PropertyValue(PropertyDictionary{{"CF$UID", static_cast<std::int64_t>(uid)}});
        }
        case PLIST_ARRAY: {
            PropertyArray array;
            plist_array_iter iterator = nullptr;
            plist_array_new_iter(node, &iterator);
            const std::unique_ptr<void, Free> owned(iterator);
            for (std::uint32_t left = plist_array_get_size(node); left > 0; --left) {
                plist_t item = nullptr;
                plist_array_next_item(node, iterator, &item);
                auto value = item ? read(item) : std::nullopt;
                if (!value) return std::nullopt;
                array.push_back(std::move(*value));
            }
            return PropertyValue(std::move(array));
        }
        case PLIST_DICT: {
            PropertyDictionary dictionary;
            plist_dict_iter iterator = nullptr;
            plist_dict_new_iter(node, &iterator);
            const std::unique_ptr<void, Free> owned(iterator);
            for (std::uint32_t left = plist_dict_get_size(node); left > 0; --left) {
                char* key = nullptr;
                plist_t item = nullptr;
                plist_dict_next_item(node, iterator, &key, &item);
                const std::unique_ptr<char, Free> ownedKey(key);
                const bool sound = key && item && isWritable(key, PropertyListFormat::binary);
                auto value = sound ? read(item) : std::nullopt;
                if (!value) return std::nullopt;
                dictionary.insert_or_assign(key, std::move(*value));
            }
            return PropertyValue(std::move(dictionary));
        }
        default:
            return std::nullopt;
    }
}

class PlistCoder : public PropertyListCoder {
  public:
    std::optional<std::vector<std::uint8_t>> encode(const PropertyValue& value,
                                                    PropertyListFormat format) override {
        const PlainNumbers numbers;
        const Node node = write(value, format, 0);
        if (!node) return std::nullopt;
        char* bytes = nullptr;
        std::uint32_t length = 0;
        if (format == PropertyListFormat::binary)
            plist_to_bin(node.get(), &bytes, &length);
        else
            plist_to_xml(node.get(), &bytes, &length);
        if (!bytes) return std::nullopt;
        std::vector<std::uint8_t> copy(bytes, bytes + length);
        freeWritten(bytes);
        return copy;
    }

    std::optional<PropertyValue> decode(std::span<const std::uint8_t> bytes) override {
        const PlainNumbers numbers;
        constexpr std::string_view kBinaryMark = "bplist";
        plist_t raw = nullptr;
        if (bytes.size() >= kBinaryMark.size() &&
            std::memcmp(bytes.data(), kBinaryMark.data(), kBinaryMark.size()) == 0) {
            if (!isSoundBinaryPropertyList(bytes)) return std::nullopt;
            plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                           static_cast<std::uint32_t>(bytes.size()), &raw);
        } else {
            const auto xml = plainXmlPropertyList(bytes);
            if (!xml) return std::nullopt;
            plist_from_xml(xml->data(), static_cast<std::uint32_t>(xml->size()), &raw);
        }
        const Node node(raw);
        return node ? read(node.get()) : std::nullopt;
    }
};

}  // namespace

std::unique_ptr<PropertyListCoder> makePlistCoder() { return std::make_unique<PlistCoder>(); }

}  // namespace pintle
