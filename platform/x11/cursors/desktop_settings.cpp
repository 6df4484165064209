#include "platform/x11/cursors/desktop_settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace pintle::x11 {
namespace {

constexpr int kLargestSize = 512;
constexpr double kUsualDpi = 96;
constexpr double kHighestDensity = 4;

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

double pixelsPerPoint(const std::optional<CursorXSettings>& published, std::string_view resources) {
    // With a manager the dots per inch hold the user's own size of texts too, which is no density.
    if (published)
        return std::clamp(static_cast<double>(published->windowScalingFactor.value_or(1)), 1.0,
                          kHighestDensity);
    const auto text = resourceValue(resources, "Xft", "dpi").value_or("");
    double dpi = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), dpi);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(dpi)) return 1;
    return std::clamp(std::round(dpi / kUsualDpi * 4) / 4, 1.0, kHighestDensity);
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
