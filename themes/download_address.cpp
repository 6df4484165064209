#include "themes/download_address.h"

#include <algorithm>

namespace pintle {
namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

struct Parts {
    /// "https://host:port", empty for an address without both.
    std::string_view origin;
    /// Path, query and fragment.
    std::string_view rest;
};

Parts split(std::string_view address) {
    const auto colon = address.find("://");
    if (colon == std::string_view::npos || colon == 0) return {{}, address};
    for (const char c : address.substr(0, colon))
        if (!isLetter(c) && !isDigit(c) && c != '+' && c != '-' && c != '.') return {{}, address};
    const auto end = std::min(address.find_first_of("/?#", colon + 3), address.size());
    return {address.substr(0, end), address.substr(end)};
}

bool hasGoodPort(std::string_view origin) {
    const auto colon = origin.rfind(':');
    const auto bracket = origin.rfind(']');
    if (colon == origin.find("://")) return true;
    if (bracket != std::string_view::npos && bracket > colon) return true;
    unsigned long port = 0;
    for (const char c : origin.substr(colon + 1)) {
        if (!isDigit(c)) return false;
        port = port * 10 + static_cast<unsigned long>(c - '0');
        if (port > 65535) return false;
    }
    return true;
}

}  // namespace

bool isAddress(std::string_view text) {
    if (text.empty()) return false;
    bool inFragment = false;
    const auto [origin, rest] = split(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%') {
            if (i + 2 >= text.size() || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2])) return false;
            continue;
        }
        if (c == '#') {
            if (inFragment) return false;
            inFragment = true;
            continue;
        }
        // Brackets stand around a numeric host only.
        if ((c == '[' || c == ']') && i >= origin.size()) return false;
        if (!isLetter(c) && !isDigit(c) &&
            std::string_view("-._~:/?[]@!$&'()*+,;=").find(c) == std::string_view::npos)
            return false;
    }
    if (text.front() == ':') return false;
    return origin.empty() || hasGoodPort(origin);
}

std::optional<std::string> downloadAddress(const std::string& catalogAddress,
                                           const std::optional<std::string>& mirror) {
    if (!isAddress(catalogAddress)) return std::nullopt;
    if (!mirror) return catalogAddress;
    if (!isAddress(*mirror)) return std::nullopt;
    const auto there = split(*mirror);
    const bool isOrigin = !there.origin.empty() && (there.rest.empty() || there.rest == "/");
    if (!isOrigin) return std::nullopt;
    return std::string(there.origin) + std::string(split(catalogAddress).rest);
}

}  // namespace pintle
