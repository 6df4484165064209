#include "platform/freedesktop/desktop_entry.h"

namespace pintle {
namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The escapes of every string value, which are undone before the command's own quoting is looked at.
std::string unescaped(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i]) {
            case 's':
                text += ' ';
                break;
            case 'n':
                text += '\n';
                break;
            case 't':
                text += '\t';
                break;
            case 'r':
                text += '\r';
                break;
            case '\\':
                text += '\\';
                break;
            default:
                text += '\\';
                text += value[i];
        }
    }
    return text;
}

}  // namespace

std::string execValue(std::string_view program) {
    std::string value = "\"";
    for (const char c : program) switch (c) {
            case '"':
                value += "\\\\\"";
                break;
            case '`':
                value += "\\\\`";
                break;
            case '$':
                value += "\\\\$";
                break;
            case '\\':
                value += "\\\\\\\\";
                break;
            case '%':
                value += "%%";
                break;
            case '\n':
                value += "\\n";
                break;
            case '\t':
                value += "\\t";
                break;
            case '\r':
                value += "\\r";
                break;
            default:
                value += c;
        }
    return value + "\"";
}

std::optional<std::string> execProgram(std::string_view value) {
    const std::string command = unescaped(value);
    std::size_t at = command.find_first_not_of(' ');
    if (at == std::string::npos) return std::nullopt;
    const bool quoted = command[at] == '"';
    if (quoted) ++at;
    std::string program;
    for (; at < command.size(); ++at) {
        const char c = command[at];
        if (quoted ? c == '"' : c == ' ') break;
        if (quoted && c == '\\') {
            if (++at == command.size()) return std::nullopt;
            program += command[at];
        } else if (c == '%') {
            // A single percent sign begins a field code, which is no part of a program's path.
            if (at + 1 == command.size() || command[at + 1] != '%') return std::nullopt;
            program += command[++at];
        } else {
            program += c;
        }
    }
    if ((quoted && at == command.size()) || program.empty()) return std::nullopt;
    return program;
}

std::optional<std::string> desktopEntryValue(std::string_view text, std::string_view key) {
    bool inside = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('[')) {
            inside = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (!inside || line.starts_with('#') || equals == std::string_view::npos) continue;
        if (trimmed(line.substr(0, equals)) == key) return std::string(trimmed(line.substr(equals + 1)));
    }
    return std::nullopt;
}

}  // namespace pintle
