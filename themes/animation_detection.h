// Finds out which downloaded themes are animated, and keeps the answers in the preference store, so that each
// theme is examined once. The view model runs the steps: what to examine (main thread), the examination (a
// background task), the record (main thread).
#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/key_value_store.h"
#include "themes/theme_list.h"
#include "themes/theme_store.h"

namespace pintle {

inline constexpr auto animatedThemesKey = "animatedThemeCheckV2";
inline constexpr std::array<std::string_view, 3> animationCandidates = {"left_ptr", "default", "arrow"};

/// By theme id.
using AnimationAnswers = std::map<std::string, bool>;

struct ThemeToExamine {
    std::string id;
    std::filesystem::path folder;
    friend bool operator==(const ThemeToExamine&, const ThemeToExamine&) = default;
};

/// Whether some size of one of the candidates has at least two images, one of them with a delay. Looks only
/// into the folder "cursors" of the theme's folder, wherever else its cursors may lie. Any thread.
bool themeHasAnimation(const std::filesystem::path& themeFolder);

/// The answers on record; entries that are no bool do not count.
AnimationAnswers animationAnswers(const KeyValueStore& defaults);

/// The downloaded themes of the list without an answer on record, in list order.
std::vector<ThemeToExamine> themesToExamine(const KeyValueStore& defaults, const ThemeList& list,
                                            const ThemeStore& store);

/// themeHasAnimation for each. Any thread.
AnimationAnswers examineThemes(const std::vector<ThemeToExamine>& themes);

/// Adds the answers to those that are on record now, writes the record back and marks the rows by it. Answers
/// of themes that are no longer downloaded are dropped.
void recordAnimationAnswers(const AnimationAnswers& answers, KeyValueStore& defaults, ThemeList& list);

/// Drops the answer of a theme whose files have changed, so that it is examined anew.
void forgetAnimationAnswer(const std::string& themeId, KeyValueStore& defaults);

}  // namespace pintle
