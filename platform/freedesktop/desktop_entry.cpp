#include "platform/freedesktop/desktop_entry.h"

#include <algorithm>

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

/// What starts a program whose name the reader of the entry cannot look up.
constexpr std::string_view kShell = "sh";
constexpr std::string_view kShellOption = "-c";
constexpr std::string_view kShellScript = "exec \"$0\"";

std::string quoted(std::string_view argument) {
    std::string value = "\"";
    for (const char c : argument) switch (c) {
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

/// Takes the first argument from the command, whose string escapes are undone. Absent without a sound one.
std::optional<std::string> takeArgument(std::string_view& command) {
    command.remove_prefix(std::min(command.find_first_not_of(' '), command.size()));
    const bool isQuoted = command.starts_with('"');
    std::string argument;
    std::size_t at = isQuoted ? 1 : 0;
    for (; at < command.size(); ++at) {
        const char c = command[at];
        if (isQuoted ? c == '"' : c == ' ') break;
        if (isQuoted && c == '\\') {
            if (++at == command.size()) return std::nullopt;
            argument += command[at];
        } else if (c == '%') {
            // A single percent sign begins a field code, which is no part of a program's path.
            if (at + 1 == command.size() || command[at + 1] != '%') return std::nullopt;
            argument += command[++at];
        } else {
            argument += c;
        }
    }
    if ((isQuoted && at == command.size()) || argument.empty()) return std::nullopt;
    command.remove_prefix(std::min(at + 1, command.size()));
    return argument;
}

}  // namespace

std::string execValue(std::string_view program) {
    if (program.find('%') == std::string_view::npos) return quoted(program);
    // A common reader looks the program up before it undoes the doubling of percent signs, finds none and
    // drops the whole entry.
    return std::string(kShell) + ' ' + std::string(kShellOption) + ' ' + quoted(kShellScript) + ' ' +
           quoted(program);
}

std::optional<std::string> execProgram(std::string_view value) {
    const std::string command = unescaped(value);
    std::string_view rest = command;
    auto program = takeArgument(rest);
    if (program != kShell) return program;
    if (takeArgument(rest) == kShellOption && takeArgument(rest) == kShellScript) return takeArgument(rest);
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
