#include "platform/x11/cursors/index_theme.h"

#include <algorithm>

namespace pintle::x11 {

std::vector<std::string> inheritedThemes(std::string_view text) {
    constexpr std::string_view kKey = "Inherits";
    std::vector<std::string> names;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.starts_with(kKey)) continue;
        line.remove_prefix(kKey.size());
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with('=')) continue;
        line.remove_prefix(1);
        while (!line.empty()) {
            line.remove_prefix(std::min(line.find_first_not_of(" \t\r;,"), line.size()));
            const auto length = std::min(line.find_first_of(" \t\r;,"), line.size());
            if (length > 0) names.emplace_back(line.substr(0, length));
            line.remove_prefix(length);
        }
        break;
    }
    return names;
}

}  // namespace pintle::x11
