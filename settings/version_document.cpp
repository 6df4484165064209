#include "settings/version_document.h"

#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>

namespace pintle {
namespace {

std::optional<std::int64_t> integer(const nlohmann::json& value) {
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return std::nullopt;
        return static_cast<std::int64_t>(number);
    }
    if (value.is_number_integer()) return value.get<std::int64_t>();
    return std::nullopt;
}

}  // namespace

std::optional<RemoteVersion> decodeVersionDocument(std::string_view json) {
    // The library takes a NUL for the end, whatever follows.
    if (json.find('\0') != std::string_view::npos) return std::nullopt;
    const auto document =
        nlohmann::json::parse(json.begin(), json.end(), nullptr, /*allow_exceptions=*/false);
    if (!document.is_object()) return std::nullopt;
    const auto version = document.find("version");
    const auto build = document.find("build");
    if (version == document.end() || !version->is_string() || build == document.end()) return std::nullopt;
    const auto number = integer(*build);
    if (!number) return std::nullopt;
    return RemoteVersion{version->get<std::string>(), *number};
}

std::int64_t parseBuildNumber(std::string_view text) {
    // from_chars takes a minus sign but no plus sign.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return 0;
    }
    std::int64_t number = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? number : 0;
}

}  // namespace pintle
