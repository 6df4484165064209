#include "app/folded_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace pintle {
namespace {

/// The plain letters of U+00C0 to U+017F, one for each; a blank where there is none.
constexpr std::string_view plainLatin =
    "aaaaaaaceeeeiiiidnooooo ouuuuytsaaaaaaaceeeeiiiidnooooo ouuuuyty"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkklllllll"
    "lllnnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(plainLatin.size() == 0x180 - 0xC0);

/// The code point of a character of two bytes; 0 for any other.
char32_t ofTwoBytes(std::string_view character) {
    if (character.size() != 2) return 0;
    return static_cast<char32_t>((static_cast<unsigned char>(character[0]) & 0x1F) << 6 |
                                 (static_cast<unsigned char>(character[1]) & 0x3F));
}

char32_t smallLetter(char32_t letter) {
    if (letter >= 0x0391 && letter <= 0x03A9) return letter + 0x20;
    if (letter >= 0x0410 && letter <= 0x042F) return letter + 0x20;
    if (letter >= 0x0400 && letter <= 0x040F) return letter + 0x50;
    return letter;
}

bool isAccent(char32_t letter) { return letter >= 0x0300 && letter <= 0x036F; }

void append(std::string& text, char32_t ofTwo) {
    text.push_back(static_cast<char>(0xC0 | ofTwo >> 6));
    text.push_back(static_cast<char>(0x80 | (ofTwo & 0x3F)));
}

}  // namespace

std::size_t firstCharacterLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t wanted = first < 0xC2 || first > 0xF4 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    std::size_t length = 1;
    while (length < wanted && length < text.size() &&
           (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        ++length;
    return length == wanted ? length : 1;
}

std::string foldedText(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    while (!text.empty()) {
        const auto character = text.substr(0, firstCharacterLength(text));
        text.remove_prefix(character.size());
        const auto letter = ofTwoBytes(character);
        if (character.size() == 1 && character[0] >= 'A' && character[0] <= 'Z')
            folded.push_back(static_cast<char>(character[0] - 'A' + 'a'));
        else if (letter >= 0xC0 && letter < 0x180 && plainLatin[letter - 0xC0] != ' ')
            folded.push_back(plainLatin[letter - 0xC0]);
        else if (letter != 0 && isAccent(letter))
            continue;
        else if (letter != 0)
            append(folded, smallLetter(letter));
        else
            folded += character;
    }
    return folded;
}

}  // namespace pintle
