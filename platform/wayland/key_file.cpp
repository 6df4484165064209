#include "platform/wayland/key_file.h"

#include <algorithm>
#include <vector>

namespace pintle::wayland {
namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r";
    const auto first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

/// Each with its line end, where it has one.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

std::string_view contentOf(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    return trimmed(line);
}

bool isHeader(std::string_view line) { return contentOf(line).starts_with('['); }

bool isHeaderOf(std::string_view line, std::string_view group) {
    const auto content = contentOf(line);
    return content.size() == group.size() + 2 && content.starts_with('[') && content.ends_with(']') &&
           content.substr(1, group.size()) == group;
}

std::optional<std::string_view> valueIn(std::string_view line, std::string_view key) {
    const auto content = contentOf(line);
    const auto equals = content.find('=');
    if (equals == std::string_view::npos || trimmed(content.substr(0, equals)) != key) return std::nullopt;
    return trimmed(content.substr(equals + 1));
}

/// [first, end) of a group's lines with its header; false when there is none.
bool findGroup(const std::vector<std::string_view>& lines, std::string_view group, std::size_t from,
               std::size_t& first, std::size_t& end) {
    first = from;
    while (first < lines.size() && !isHeaderOf(lines[first], group)) ++first;
    if (first >= lines.size()) return false;
    end = first + 1;
    while (end < lines.size() && !isHeader(lines[end])) ++end;
    return true;
}

std::string joined(const std::vector<std::string_view>& lines) {
    std::string text;
    for (const auto line : lines) text += line;
    return text;
}

std::string withoutKey(std::vector<std::string_view> lines, std::string_view group, std::string_view key) {
    std::size_t first = 0;
    std::size_t end = 0;
    for (std::size_t from = 0; findGroup(lines, group, from, first, end);) {
        const auto begin = lines.begin() + static_cast<std::ptrdiff_t>(first) + 1;
        const auto behind = lines.begin() + static_cast<std::ptrdiff_t>(end);
        const auto kept =
            std::remove_if(begin, behind, [&](auto line) { return valueIn(line, key).has_value(); });
        const bool removed = kept != behind;
        const bool isEmpty = std::all_of(begin, kept, [](auto line) { return contentOf(line).empty(); });
        lines.erase(kept, behind);
        from = first + 1;
        if (!removed || !isEmpty) continue;
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(first));
        // The empty line that was put before it.
        if (first > 0 && first == lines.size() && contentOf(lines.back()).empty()) lines.pop_back();
        from = first;
    }
    return joined(lines);
}

}  // namespace

std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key) {
    std::optional<std::string> value;
    bool inside = false;
    for (const auto line : linesOf(text)) {
        if (isHeader(line)) {
            inside = isHeaderOf(line, group);
        } else if (inside) {
            if (const auto found = valueIn(line, key)) value = std::string(*found);
        }
    }
    return value;
}

std::string withKeyFileValue(std::string_view text, std::string_view group, std::string_view key,
                             const std::optional<std::string>& value) {
    auto lines = linesOf(text);
    if (!value) return withoutKey(std::move(lines), group, key);
    const auto entry = std::string(key) + "=" + *value + "\n";

    std::size_t last = lines.size();
    std::size_t groupEnd = lines.size();
    std::size_t first = 0;
    std::size_t end = 0;
    bool hasGroup = false;
    for (std::size_t from = 0; findGroup(lines, group, from, first, end); from = end) {
        hasGroup = true;
        groupEnd = end;
        for (auto i = first + 1; i < end; ++i)
            if (valueIn(lines[i], key)) last = i;
    }
    if (last < lines.size()) {
        lines[last] = entry;
        return joined(lines);
    }
    const std::string missingEnd = !lines.empty() && !lines.back().ends_with('\n') ? "\n" : "";
    if (!hasGroup) {
        const std::string gap = lines.empty() ? "" : "\n";
        return joined(lines) + missingEnd + gap + "[" + std::string(group) + "]\n" + entry;
    }
    while (contentOf(lines[groupEnd - 1]).empty()) --groupEnd;
    const std::string start = groupEnd == lines.size() ? missingEnd + entry : entry;
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(groupEnd), start);
    return joined(lines);
}

}  // namespace pintle::wayland
