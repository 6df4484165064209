// What is said to people who cannot see the list when a row changes. Pure; any thread.
#pragma once

#include <vector>

#include "app/theme_row.h"
#include "app/user_text.h"

namespace pintle {

/// The theme's name and what has become of it, to be joined with commas; empty when there is nothing to say.
/// Both are rows of the same theme.
std::vector<UserText> announcement(const ThemeRow& before, const ThemeRow& now);

namespace announcement_text {

inline constexpr auto downloaded = translatable("Pintle", "Downloaded");
inline constexpr auto applied = translatable("Pintle", "Applied");
inline constexpr std::array all = {downloaded, applied};

}  // namespace announcement_text
}  // namespace pintle
