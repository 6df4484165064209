#include "themes/unpack_error.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <system_error>
#include <vector>

namespace pintle {
namespace {

constexpr std::size_t kShown = 300;
/// More than the shown characters and the blanks behind them ever need.
constexpr std::streamoff kRead = 1 << 16;
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The length of the valid character at the start; 0 when there is none.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto first = byte(0);
    if (first < 0x80) return first >= 0x20 || first == '\n' || first == '\t' || first == '\r' ? 1 : 0;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    // Overlong forms, surrogates and what lies beyond the last plane.
    if ((first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
        (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F))
        return 0;
    // The two that no XML file can hold.
    if (first == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE) return 0;
    return length;
}

/// The error of appending a line to the file, which the archiver has met as well; 0 for none.
int appendProblem(const std::filesystem::path& file) {
    const int fd = ::open(file.c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return 0;
    const int problem = ::write(fd, "\n", 1) == 1 ? 0 : errno;
    ::close(fd);
    return problem;
}

}  // namespace

std::string lastCharacters(std::string_view text, std::size_t count) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const auto start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) return {};
    text = text.substr(start, text.find_last_not_of(blanks) - start + 1);

    std::vector<std::string_view> characters;
    while (!text.empty()) {
        const auto length = characterLength(text);
        characters.push_back(length ? text.substr(0, length) : kReplacement);
        text.remove_prefix(length ? length : 1);
    }
    std::string shown;
    for (auto i = characters.size() > count ? characters.size() - count : 0; i < characters.size(); ++i)
        shown += characters[i];
    return shown;
}

std::string unpackErrorText(const std::filesystem::path& errorFile, int status) {
    std::string text;
    if (std::ifstream file(errorFile, std::ios::binary); file) {
        file.seekg(0, std::ios::end);
        const std::streamoff size = file.tellg();
        const auto length = size < kRead ? size : kRead;
        text.resize(static_cast<std::size_t>(length));
        file.seekg(size - length);
        file.read(text.data(), length);
        text.resize(static_cast<std::size_t>(file.gcount()));
    }
    auto shown = lastCharacters(text, kShown);
    if (!shown.empty()) return shown;
    const int problem = appendProblem(errorFile);
    return problem ? std::generic_category().message(problem) : "exit code " + std::to_string(status);
}

}  // namespace pintle
