#include "settings/typed_defaults.h"

#include <fmt/format.h>

#include <cmath>
#include <locale>
#include <sstream>

namespace pintle {
namespace {

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (auto& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

/// How many characters from the start form a decimal number; 0 when none do.
std::size_t numberLength(std::string_view text) {
    std::size_t at = 0;
    const auto digits = [&] {
        const auto start = at;
        while (at < text.size() && isDigit(text[at])) ++at;
        return at - start;
    };
    const auto sign = [&] {
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    };
    sign();
    auto mantissa = digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        mantissa += digits();
    }
    if (mantissa == 0) return 0;
    const auto withoutExponent = at;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        sign();
        if (digits() == 0) return withoutExponent;
    }
    return at;
}

}  // namespace

std::optional<double> leadingDouble(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    const auto length = numberLength(text);
    if (length == 0) return std::nullopt;
    // A stream with the classic locale, because strtod and stod follow the locale of the process.
    std::istringstream stream{std::string(text.substr(0, length))};
    stream.imbue(std::locale::classic());
    double value = 0;
    stream >> value;
    // The stream also calls a number too close to 0 an error, but then has the nearest value.
    const bool tooLarge = stream.fail() && std::abs(value) > 1;
    if (tooLarge) return std::nullopt;
    return value;
}

bool boolValue(const KeyValueStore& store, const std::string& key) {
    const auto value = store.object(key);
    if (!value) return false;
    if (const auto* flag = value->as<bool>()) return *flag;
    if (const auto* number = value->as<std::int64_t>()) return *number != 0;
    if (const auto* number = value->as<double>()) return *number != 0;
    if (const auto* text = value->as<std::string>()) {
        const auto lower = lowerCase(*text);
        return lower == "yes" || lower == "true" || lower == "1";
    }
    return false;
}

double doubleValue(const KeyValueStore& store, const std::string& key) {
    const auto value = store.object(key);
    if (!value) return 0;
    if (const auto* flag = value->as<bool>()) return *flag ? 1 : 0;
    if (const auto* number = value->as<std::int64_t>()) return static_cast<double>(*number);
    if (const auto* number = value->as<double>()) return *number;
    if (const auto* text = value->as<std::string>()) return leadingDouble(*text).value_or(0);
    return 0;
}

std::optional<std::string> stringValue(const KeyValueStore& store, const std::string& key) {
    const auto value = store.object(key);
    if (!value) return std::nullopt;
    if (const auto* text = value->as<std::string>()) return *text;
    if (const auto* flag = value->as<bool>()) return *flag ? "1" : "0";
    if (const auto* number = value->as<std::int64_t>()) return std::to_string(*number);
    if (const auto* number = value->as<double>()) return fmt::format("{}", *number);
    return std::nullopt;
}

std::optional<std::vector<std::string>> stringArrayValue(const KeyValueStore& store, const std::string& key) {
    const auto value = store.object(key);
    const auto* array = value ? value->as<PropertyArray>() : nullptr;
    if (!array) return std::nullopt;
    std::vector<std::string> texts;
    for (const auto& element : *array) {
        const auto* text = element.as<std::string>();
        if (!text) return std::nullopt;
        texts.push_back(*text);
    }
    return texts;
}

std::optional<std::map<std::string, std::string>> stringDictionaryValue(const KeyValueStore& store,
                                                                        const std::string& key) {
    const auto value = store.object(key);
    const auto* dictionary = value ? value->as<PropertyDictionary>() : nullptr;
    if (!dictionary) return std::nullopt;
    std::map<std::string, std::string> texts;
    for (const auto& [name, element] : *dictionary) {
        const auto* text = element.as<std::string>();
        if (!text) return std::nullopt;
        texts.emplace(name, *text);
    }
    return texts;
}

}  // namespace pintle
