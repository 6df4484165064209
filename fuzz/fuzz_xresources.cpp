// The input is the text of the resource manager, behind what the environment says.
#include <optional>
#include <sstream>
#include <string>

#include "fuzz/choices.h"
#include "platform/x11/cursors/desktop_settings.h"

namespace pintle {
namespace {

std::string plainTrimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

std::optional<std::string> plainValue(const std::string& text, const std::string& application,
                                      const std::string& resource) {
    std::optional<std::string> value;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const auto colon = line.find(':');
        if (colon == std::string::npos) continue;
        const auto key = plainTrimmed(line.substr(0, colon));
        if (key != application + "." + resource && key != application + "*" + resource) continue;
        if (const auto found = plainTrimmed(line.substr(colon + 1)); !found.empty()) value = found;
    }
    return value;
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    Choices choices({bytes, count});
    CursorXSettings settings;
    if (choices.flag()) settings.themeName = choices.text();
    if (choices.flag()) settings.themeSize = static_cast<int>(1 + choices.number(3));
    const auto sizeText = choices.flag() ? std::optional(choices.text()) : std::nullopt;
    const auto width = static_cast<int>(choices.number(2));
    const auto height = static_cast<int>(choices.number(2));
    const auto text = textOf(choices.rest());

    for (const auto& [application, resource] :
         {std::pair("Xcursor", "theme"), std::pair("Xcursor", "size"), std::pair("Xft", "dpi")})
        require(x11::resourceValue(text, application, resource) ==
                plainValue(std::string(text), application, resource));

    const auto environment = [&](const std::string& name) {
        return name == "XCURSOR_SIZE" ? sizeText : std::nullopt;
    };
    const auto choice = x11::chooseCursorTheme(settings, environment, text, width, height);
    require(choice.size >= 1 && choice.size <= 512);
    require(choice.theme == (settings.themeName
                                 ? *settings.themeName
                                 : plainValue(std::string(text), "Xcursor", "theme").value_or("")));
    if (settings.themeSize) require(choice.size == std::min(*settings.themeSize, 512));
    return 0;
}
