#include "apply/exclusion_rules.h"

#include <algorithm>

namespace pintle {
namespace {

// The entries are plain ASCII names of products, so folding ASCII letters compares them as every locale would
// read them; the process locale never decides.
char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    // An empty part is contained in nothing, as in the desktop's own search.
    if (part.empty()) return false;
    return std::search(text.begin(), text.end(), part.begin(), part.end(),
                       [](char a, char b) { return folded(a) == folded(b); }) != text.end();
}

}  // namespace

bool containsAnyIgnoringCase(std::string_view name, std::span<const std::string> entries) {
    return std::any_of(entries.begin(), entries.end(),
                       [name](const std::string& entry) { return containsIgnoringCase(name, entry); });
}

bool isExcludedApplication(std::string_view name, std::span<const std::string> builtIn,
                           std::span<const std::string> usersList) {
    return containsAnyIgnoringCase(name, builtIn) ||
           std::find(usersList.begin(), usersList.end(), name) != usersList.end();
}

}  // namespace pintle
