#include "platform/linux/x11/desktop_settings.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace pintle::x11 {
namespace {

constexpr int kLargestSize = 512;

/// Reads numbers of either byte order from bytes that may end anywhere.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    void readBigEndian(bool big) { big_ = big; }
    std::optional<std::uint64_t> number(std::size_t bytes) {
        const auto raw = take(bytes);
        if (!raw) return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value |= std::uint64_t{(*raw)[i]} << (8 * (big_ ? bytes - 1 - i : i));
        return value;
    }
    std::optional<std::span<const std::uint8_t>> take(std::size_t bytes) {
        if (bytes > rest_.size()) return std::nullopt;
        const auto taken = rest_.first(bytes);
        rest_ = rest_.subspan(bytes);
        return taken;
    }
    /// A text and the padding behind it.
    std::optional<std::string> text(std::size_t bytes) {
        const auto raw = take(bytes);
        if (!raw || !take((4 - bytes % 4) % 4)) return std::nullopt;
        return std::string(raw->begin(), raw->end());
    }

  private:
    std::span<const std::uint8_t> rest_;
    bool big_ = false;
};

std::optional<int> positiveNumber(std::string_view text) {
    int value = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end.ec != std::errc() || value <= 0) return std::nullopt;
    return value;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace

std::vector<XSetting> readXSettings(std::span<const std::uint8_t> property) {
    enum { integer = 0, string = 1, color = 2 };
    std::vector<XSetting> result;
    Reader reader(property);
    const auto order = reader.number(4);
    if (!order) return result;
    reader.readBigEndian((*order & 0xFF) == 1);
    if (!reader.number(4)) return result;
    const auto count = reader.number(4);
    for (std::uint64_t i = 0; count && i < *count; ++i) {
        const auto type = reader.number(1);
        if (!type || !reader.take(1)) break;
        const auto nameLength = reader.number(2);
        if (!nameLength) break;
        auto name = reader.text(*nameLength);
        if (!name || !reader.number(4)) break;
        if (*type == integer) {
            const auto value = reader.number(4);
            if (!value) break;
            result.push_back(
                {std::move(*name), static_cast<std::int32_t>(static_cast<std::uint32_t>(*value))});
        } else if (*type == string) {
            const auto length = reader.number(4);
            if (!length) break;
            auto value = reader.text(*length);
            if (!value) break;
            result.push_back({std::move(*name), std::move(*value)});
        } else if (*type == color) {
            if (!reader.take(8)) break;
        } else {
            break;
        }
    }
    return result;
}

CursorXSettings parseXSettings(std::span<const std::uint8_t> property) {
    CursorXSettings result;
    for (auto& [name, value] : readXSettings(property)) {
        const auto* const size = std::get_if<std::int32_t>(&value);
        auto* const theme = std::get_if<std::string>(&value);
        if (size && name == "Gtk/CursorThemeSize" && *size > 0) result.themeSize = *size;
        if (theme && name == "Gtk/CursorThemeName" && !theme->empty()) result.themeName = std::move(*theme);
    }
    return result;
}

std::optional<std::string> resourceValue(std::string_view resources, std::string_view application,
                                         std::string_view resource) {
    std::optional<std::string> result;
    while (!resources.empty()) {
        const auto lineEnd = resources.find('\n');
        const auto line = resources.substr(0, lineEnd);
        resources = lineEnd == std::string_view::npos ? std::string_view() : resources.substr(lineEnd + 1);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        const auto key = trimmed(line.substr(0, colon));
        if (key.size() != application.size() + 1 + resource.size()) continue;
        const char separator = key[application.size()];
        if (!key.starts_with(application) || !key.ends_with(resource)) continue;
        if (separator != '.' && separator != '*') continue;
        const auto value = trimmed(line.substr(colon + 1));
        if (!value.empty()) result = std::string(value);
    }
    return result;
}

CursorThemeChoice chooseCursorTheme(const CursorXSettings& settings, const Environment& environment,
                                    std::string_view resources, int screenWidth, int screenHeight) {
    CursorThemeChoice choice;
    const auto environmentTheme = environment("XCURSOR_THEME");
    if (settings.themeName)
        choice.theme = *settings.themeName;
    else if (environmentTheme && !environmentTheme->empty())
        choice.theme = *environmentTheme;
    else
        choice.theme = resourceValue(resources, "Xcursor", "theme").value_or("");

    const auto number = [](const std::optional<std::string>& text) {
        return text ? positiveNumber(*text) : std::nullopt;
    };
    auto size = settings.themeSize;
    if (!size) size = number(environment("XCURSOR_SIZE"));
    if (!size) size = number(resourceValue(resources, "Xcursor", "size"));
    if (!size) {
        if (const auto dpi = number(resourceValue(resources, "Xft", "dpi")))
            size = static_cast<int>(std::int64_t{*dpi} * 16 / 72);
    }
    if (!size) size = std::min(screenWidth, screenHeight) / 48;
    choice.size = std::clamp(*size, 1, kLargestSize);
    return choice;
}

}  // namespace pintle::x11
