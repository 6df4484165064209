#include "app/error_sentence.h"

#include <array>
#include <charconv>
#include <optional>

namespace pintle {
namespace {

struct Known {
    std::string_view part;
    std::string_view sentence;
};

/// The first one whose part the error has.
constexpr auto known = std::to_array<Known>({
    {"No space left on device", error_text::diskFull},
    {"Disk quota exceeded", error_text::diskFull},
    {"Permission denied", error_text::notAllowed},
    {"Read-only file system", error_text::notAllowed},
    {"No XCursor files in archive", error_text::noCursors},
    {"the archive unpacks to more", error_text::tooLarge},
    {"the archive holds more", error_text::tooLarge},
    {"The answer is longer than", error_text::tooLarge},
    {"Extraction failed", error_text::damaged},
    {"Invalid URL", error_text::badAddress},
    {"SSL handshake failed", error_text::distrusted},
    {"certificate", error_text::distrusted},
    {"closed", error_text::broken},
    {"timed out", error_text::broken},
    {"not found", error_text::noConnection},
    {"refused", error_text::noConnection},
    {"unreachable", error_text::noConnection},
    {"No response", error_text::noConnection},
    {"etwork", error_text::noConnection},
});

std::optional<int> httpStatus(std::string_view error) {
    constexpr std::string_view kStart = "HTTP ";
    if (!error.starts_with(kStart)) return std::nullopt;
    const auto digits = error.substr(kStart.size());
    int status = 0;
    const auto* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, status);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return status;
}

}  // namespace

UserText errorSentence(std::string_view error) {
    if (const auto status = httpStatus(error)) {
        if (*status == 404 || *status == 410) return UserText(error_text::noSuchFile);
        if (*status >= 500) return UserText(error_text::serverTrouble);
        return UserText(error_text::refused);
    }
    for (const auto& each : known)
        if (error.find(each.part) != std::string_view::npos) return UserText(each.sentence);
    return {};
}

}  // namespace pintle
