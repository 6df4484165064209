#include "platform/freedesktop/look_rules.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace pintle {
namespace {

constexpr double kUsualDpi = 96;
constexpr double kSmallestTextScale = 0.5;
constexpr double kLargestTextScale = 4;

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& character : result)
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    return result;
}

bool isWordCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
}

double legibleTextScale(double scale) {
    if (!std::isfinite(scale) || scale <= 0) return 1;
    return std::clamp(scale, kSmallestTextScale, kLargestTextScale);
}

}  // namespace

bool isDarkThemeName(std::string_view name) {
    constexpr std::string_view kDark = "dark";
    const std::string lower = lowerCase(name);
    if (lower.ends_with(kDark) || lower == "highcontrastinverse") return true;
    for (auto at = lower.find(kDark); at != std::string::npos; at = lower.find(kDark, at + 1)) {
        const auto after = at + kDark.size();
        if ((at == 0 || !isWordCharacter(lower[at - 1])) &&
            (after == lower.size() || !isWordCharacter(lower[after])))
            return true;
    }
    return false;
}

PublishedLook publishedLook(const std::vector<XSetting>& settings) {
    PublishedLook look;
    std::optional<double> xftDpi;
    std::optional<double> unscaledDpi;
    double windowScale = 1;
    bool preferDark = false;
    for (const auto& [name, value] : settings) {
        if (const auto* text = std::get_if<std::string>(&value)) {
            if (name != "Net/ThemeName" || text->empty()) continue;
            look.dark = isDarkThemeName(*text);
            look.highContrast = lowerCase(*text).starts_with("highcontrast");
        } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
            if (name == "Gtk/ApplicationPreferDarkTheme")
                preferDark = *number != 0;
            else if (name == "Gtk/EnableAnimations")
                look.animations = *number != 0;
            // In 1024ths; -1 stands for none.
            else if (name == "Xft/DPI" && *number > 0)
                xftDpi = *number / 1024.0;
            else if (name == "Gdk/UnscaledDPI" && *number > 0)
                unscaledDpi = *number / 1024.0;
            else if (name == "Gdk/WindowScalingFactor" && *number > 0)
                windowScale = *number;
        }
    }
    if (preferDark) look.dark = true;
    if (unscaledDpi)
        look.dpi = unscaledDpi;
    else if (xftDpi)
        look.dpi = *xftDpi / windowScale;
    return look;
}

DesktopLook desktopLook(const PortalLook& portal, const PublishedLook& published, bool blendsWindows,
                        bool toolkitScalesByDpi) {
    DesktopLook look;
    const auto scheme = portal.colorScheme.value_or(0);
    look.dark = scheme == 1 || (scheme != 2 && published.dark.value_or(false));
    // A portal passes on its desktop's defaults too, so a "yes" to motion overrules nobody's "no".
    look.reducedMotion = portal.reducedMotion.value_or(0) == 1 || !portal.animations.value_or(true) ||
                         !published.animations.value_or(true);
    look.highContrast = portal.contrast.value_or(0) == 1 || portal.highContrast.value_or(false) ||
                        published.highContrast.value_or(false);
    // Settings managers put the factor for texts into the dots per inch.
    if (published.dpi)
        look.textScale = toolkitScalesByDpi ? 1 : legibleTextScale(*published.dpi / kUsualDpi);
    else
        look.textScale = legibleTextScale(portal.textScale.value_or(1));
    look.blendsWindows = blendsWindows;
    return look;
}

}  // namespace pintle
