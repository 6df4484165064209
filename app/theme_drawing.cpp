#include "app/theme_drawing.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <span>
#include <utility>

#include "app/folded_text.h"

namespace pintle {
namespace {

using Fill = ThemeDrawing::Fill;
using Shape = ThemeDrawing::Shape;

constexpr std::uint32_t black = 0x16191A;
constexpr std::uint32_t white = 0xFFFFFF;

struct ColourWord {
    std::string_view word;
    Fill fill;
    std::array<std::uint32_t, 2> colours;
};

constexpr auto plain(std::string_view word, std::uint32_t colour) {
    return ColourWord{word, Fill::plain, {colour, 0}};
}

constexpr auto colourWords = std::to_array<ColourWord>({
    plain("amber", 0xF59A0C),     plain("banana", 0xF7D038), {"bee", Fill::stripes, {0xF7C325, black}},
    plain("black", black),        plain("blue", 0x2F7DE1),   plain("brown", 0x8A5A3B),
    plain("classic", black),      plain("cyan", 0x22B8CF),   plain("dark", 0x2B3033),
    plain("fuchsia", 0xD9358F),   plain("gold", 0xD4A72C),   plain("graphite", 0x4A5055),
    plain("gray", 0x8A9196),      plain("green", 0x43A047),  plain("grey", 0x8A9196),
    plain("ice", white),          plain("light", 0xF1F3F4),  plain("orange", 0xF2761C),
    plain("pink", 0xF28DB2),      plain("purple", 0x8E5BD0), plain("radioactive", 0x8BDB1D),
    {"rainbow", Fill::blend, {}}, plain("red", 0xE5373A),    plain("rose", 0xE8A7B5),
    plain("silver", 0xC4CACE),    plain("teal", 0x1A9E96),   plain("violet", 0x8E5BD0),
    plain("white", white),        plain("yellow", 0xF7D038), {"zebra", Fill::stripes, {white, black}},
});

constexpr auto rainbow =
    std::to_array<std::uint32_t>({0xE5373A, 0xF59A0C, 0xF7D038, 0x43A047, 0x2F7DE1, 0x8E5BD0});

/// Each family of themes gets one of these.
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

/// Words that any theme's name may have.
bool saysNothing(std::string_view word) { return word == "cursor" || word == "cursors"; }

std::optional<Shape> shapeOf(std::string_view word) {
    if (word == "modern") return Shape::rounded;
    if (word == "original") return Shape::angular;
    return std::nullopt;
}

/// Bright from dark, as the eye weighs the colours, in 256ths.
std::uint32_t brightness(std::uint32_t colour) {
    return ((colour >> 16 & 0xFF) * 77 + (colour >> 8 & 0xFF) * 150 + (colour & 0xFF) * 29) >> 8;
}

std::vector<std::uint32_t> coloursOf(const ColourWord& colour) {
    if (colour.fill == Fill::blend) return {rainbow.begin(), rainbow.end()};
    if (colour.fill == Fill::stripes) return {colour.colours.begin(), colour.colours.end()};
    return {colour.colours[0]};
}

void setLetters(ThemeDrawing& drawing, const std::vector<std::string>& words) {
    if (words.empty()) return;
    drawing.letters = initial(words.front());
    drawing.tint = tintOfFamily(words.front());
    const auto rest = std::span(words).subspan(1);
    const auto last =
        std::find_if(rest.rbegin(), rest.rend(), [](const auto& word) { return !saysNothing(word); });
    if (last != rest.rend()) drawing.letters += initial(*last);
}

}  // namespace

ThemeDrawing themeDrawing(std::string_view name, CursorHandedness handedness) {
    const auto words = wordsOf(name);
    const ColourWord* colour = nullptr;
    std::optional<Shape> shape;
    for (const auto& word : words) {
        const auto folded = foldedText(word);
        const auto known = std::ranges::find(colourWords, folded, &ColourWord::word);
        if (known != colourWords.end()) colour = &*known;
        if (const auto named = shapeOf(folded)) shape = named;
    }

    ThemeDrawing drawing;
    if (!colour && !shape) {
        setLetters(drawing, words);
        return drawing;
    }
    drawing.kind = ThemeDrawing::Kind::pointer;
    drawing.shape = shape.value_or(Shape::plain);
    drawing.mirrored = handedness == CursorHandedness::leftHanded;
    drawing.outline = black;
    if (colour) {
        drawing.fill = colour->fill;
        drawing.colours = coloursOf(*colour);
        const bool isDark = brightness(drawing.colours.front()) < 0x60;
        if (isDark) drawing.outline = white;
    }
    return drawing;
}

}  // namespace pintle
