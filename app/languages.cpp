#include "app/languages.h"

#include <algorithm>

namespace pintle {
namespace {

std::vector<std::string_view> partsOf(std::string_view locale) {
    locale = locale.substr(0, locale.find_first_of(".@"));
    std::vector<std::string_view> parts;
    while (!locale.empty()) {
        const auto end = locale.find_first_of("-_");
        parts.push_back(locale.substr(0, end));
        locale = end == std::string_view::npos ? std::string_view() : locale.substr(end + 1);
    }
    return parts;
}

/// Where the traditional characters are read, the simplified ones are another language.
bool isTraditional(const std::vector<std::string_view>& parts) {
    const auto has = [&](std::string_view part) { return std::ranges::find(parts, part) != parts.end(); };
    if (has("Hans")) return false;
    return has("Hant") || has("TW") || has("HK") || has("MO");
}

}  // namespace

std::optional<std::string_view> languageFor(const std::vector<std::string>& wanted) {
    for (const auto& locale : wanted) {
        const auto parts = partsOf(locale);
        if (parts.empty()) continue;
        if (parts.front() == "en") return std::nullopt;
        const auto known = std::ranges::find(languages, parts.front());
        if (known == languages.end() || (*known == "zh" && isTraditional(parts))) continue;
        return *known;
    }
    return std::nullopt;
}

}  // namespace pintle
