#include "app/row_search.h"

#include <algorithm>

#include "app/folded_text.h"

namespace pintle {
namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

bool canBeSeen(std::string_view text) {
    return !text.empty() && std::ranges::none_of(text, [](char byte) {
        const auto character = static_cast<unsigned char>(byte);
        return character < 0x20 || character == 0x7F;
    });
}

}  // namespace

std::optional<std::size_t> firstContaining(const std::vector<std::string>& names, std::string_view typed) {
    if (typed.empty()) return std::nullopt;
    const auto wanted = foldedText(typed);
    const auto found = std::ranges::find_if(
        names, [&](const std::string& name) { return foldedText(name).find(wanted) != std::string::npos; });
    if (found == names.end()) return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

bool RowSearch::type(std::string_view text) {
    if (!canBeSeen(text) || (typed_.empty() && text == " ")) return false;
    const auto characters = static_cast<std::size_t>(
        std::ranges::count_if(text, [](char byte) { return !isContinuation(byte); }));
    if (length_ + characters > longest) return true;
    typed_ += text;
    length_ += characters;
    return true;
}

bool RowSearch::shorten() {
    if (typed_.empty()) return false;
    while (isContinuation(typed_.back()) && typed_.size() > 1) typed_.pop_back();
    typed_.pop_back();
    --length_;
    // A search does not begin with a blank, so blanks alone do not keep it.
    if (typed_.find_first_not_of(' ') == std::string::npos) clear();
    return true;
}

bool RowSearch::clear() {
    if (typed_.empty()) return false;
    typed_.clear();
    length_ = 0;
    return true;
}

}  // namespace pintle
