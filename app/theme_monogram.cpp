#include "app/theme_monogram.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>
#include <vector>

namespace pintle {
namespace {

struct ColourWord {
    std::string_view word;
    TileTint tint;
};

constexpr auto colourWords = std::to_array<ColourWord>({
    {"amber", TileTint::amber},
    {"banana", TileTint::amber},
    {"bee", TileTint::amber},
    {"black", TileTint::graphite},
    {"blue", TileTint::blue},
    {"classic", TileTint::graphite},
    {"dark", TileTint::slate},
    {"graphite", TileTint::slate},
    {"gray", TileTint::slate},
    {"green", TileTint::green},
    {"ice", TileTint::ice},
    {"light", TileTint::ice},
    {"pop", TileTint::violet},
    {"radioactive", TileTint::green},
    {"rainbow", TileTint::violet},
    {"red", TileTint::red},
    {"white", TileTint::ice},
    {"zebra", TileTint::slate},
});

/// What families without a colour of their own are spread over.
constexpr std::array familyTints = {TileTint::teal, TileTint::violet, TileTint::blue, TileTint::green,
                                    TileTint::red};

/// The words outside of parentheses, in lower case.
std::vector<std::string> wordsOf(std::string_view name) {
    std::vector<std::string> words;
    std::string word;
    int depth = 0;
    const auto end = [&] {
        if (!word.empty()) words.push_back(std::exchange(word, {}));
    };
    for (const char byte : name) {
        const auto character = static_cast<unsigned char>(byte);
        if (byte == '(') ++depth;
        // What is not ASCII belongs to a word, byte by byte.
        const bool inWord = depth == 0 && (std::isalnum(character) != 0 || character >= 0x80);
        if (inWord)
            word.push_back(static_cast<char>(std::tolower(character)));
        else
            end();
        if (byte == ')') depth = std::max(0, depth - 1);
    }
    end();
    return words;
}

/// The first character of `word`, which is not empty, in upper case; whole, however many bytes it has.
std::string initial(const std::string& word) {
    const auto first = static_cast<unsigned char>(word[0]);
    if (first < 0x80) return {static_cast<char>(std::toupper(first))};
    std::size_t length = 1;
    while (length < word.size() && (static_cast<unsigned char>(word[length]) & 0xC0) == 0x80) ++length;
    return word.substr(0, length);
}

TileTint tintOfFamily(const std::string& word) {
    unsigned sum = 0;
    for (const char byte : word) sum = sum * 31 + static_cast<unsigned char>(byte);
    return familyTints[sum % familyTints.size()];
}

/// Every theme is one of cursors.
bool tellsNothing(std::string_view word) { return word == "cursor" || word == "cursors"; }

}  // namespace

ThemeMonogram themeMonogram(std::string_view name) {
    const auto words = wordsOf(name);
    if (words.empty()) return {};
    ThemeMonogram monogram{initial(words.front()), tintOfFamily(words.front())};
    std::string second;
    for (const auto& word : words) {
        const auto colour = std::ranges::find(colourWords, word, &ColourWord::word);
        if (colour != colourWords.end())
            monogram.tint = colour->tint;
        else if (&word != &words.front() && !tellsNothing(word))
            second = initial(word);
    }
    monogram.letters += second;
    return monogram;
}

}  // namespace pintle
