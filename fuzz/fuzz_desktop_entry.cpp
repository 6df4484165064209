// The input is an autostart entry that somebody wrote, and the path of a program that is written to one.
#include <optional>
#include <string>

#include "fuzz/choices.h"
#include "platform/freedesktop/desktop_entry.h"

namespace pintle {
namespace {

std::string plainTrimmed(std::string text) {
    constexpr auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.back())) text.pop_back();
    while (!text.empty() && isBlank(text.front())) text.erase(0, 1);
    return text;
}

std::optional<std::string> plainValue(const std::string& text, const std::string& key) {
    bool inside = false;
    std::string line;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] != '\n') {
            line += text[i];
            continue;
        }
        line = plainTrimmed(line);
        const auto equals = line.find('=');
        if (!line.empty() && line[0] == '[')
            inside = line == "[Desktop Entry]";
        else if (inside && !line.empty() && line[0] != '#' && equals != std::string::npos &&
                 plainTrimmed(line.substr(0, equals)) == key)
            return plainTrimmed(line.substr(equals + 1));
        line.clear();
    }
    return std::nullopt;
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    const auto text = textOf({bytes, count});
    for (const char* key : {"Exec", "Hidden", "a"}) {
        const auto value = desktopEntryValue(text, key);
        require(value == plainValue(std::string(text), key));
        if (value) static_cast<void>(execProgram(*value));
    }
    static_cast<void>(execProgram(text));

    // No path is empty or holds a NUL.
    if (text.empty() || text.find('\0') != std::string_view::npos) return 0;
    const auto entry = "[Desktop Entry]\nType=Application\nExec=" + execValue(text) + "\nTerminal=false\n";
    const auto value = desktopEntryValue(entry, "Exec");
    require(value && execProgram(*value) == text);
    require(desktopEntryValue(entry, "Terminal") == "false");
    return 0;
}
