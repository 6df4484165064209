// The languages that the interface speaks beside English, and which of them a user gets. Pure; any thread.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pintle {

/// Named as their files of translations are. Chinese is the one in simplified characters.
inline constexpr std::array<std::string_view, 7> languages = {"ar", "de", "es", "fr", "ja", "pt", "zh"};

/// `wanted` are names of locales as "pt-BR" or "zh_Hans_CN", the best first. The first that is English or has
/// a translation decides; absent: the texts stay English.
std::optional<std::string_view> languageFor(const std::vector<std::string>& wanted);

}  // namespace pintle
