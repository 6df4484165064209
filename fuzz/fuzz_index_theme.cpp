// The input is the index file of a cursor theme.
#include <string>
#include <vector>

#include "fuzz/choices.h"
#include "platform/x11/cursors/index_theme.h"

namespace pintle {
namespace {

std::vector<std::string> plainNames(const std::string& text) {
    const std::string key = "Inherits";
    for (std::size_t start = 0; start < text.size(); ++start) {
        if (start > 0 && text[start - 1] != '\n') continue;
        if (text.compare(start, key.size(), key) != 0) continue;
        std::size_t at = start + key.size();
        while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
        if (at >= text.size() || text[at] != '=') continue;
        std::vector<std::string> names(1);
        for (++at; at < text.size() && text[at] != '\n'; ++at) {
            if (std::string(" \t\r;,").find(text[at]) == std::string::npos)
                names.back() += text[at];
            else if (!names.back().empty())
                names.emplace_back();
        }
        if (names.back().empty()) names.pop_back();
        return names;
    }
    return {};
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    const auto text = textOf({bytes, count});
    require(x11::inheritedThemes(text) == plainNames(std::string(text)));
    return 0;
}
