#include "themes/animation_detection.h"

#include "cursor/xcursor_parser.h"

namespace pintle {

bool themeHasAnimation(const std::filesystem::path& themeFolder) {
    struct Frames {
        std::size_t count = 0;
        bool delayed = false;
    };
    for (const auto& name : animationCandidates) {
        const auto headers = XCursorParser::parseHeaders(themeFolder / "cursors" / name);
        if (!headers) continue;
        std::map<std::int64_t, Frames> bySize;
        for (const auto& header : *headers) {
            auto& frames = bySize[header.size];
            ++frames.count;
            frames.delayed = frames.delayed || header.delay != 0;
        }
        for (const auto& [size, frames] : bySize)
            if (frames.count >= 2 && frames.delayed) return true;
    }
    return false;
}

AnimationAnswers animationAnswers(const KeyValueStore& defaults) {
    AnimationAnswers answers;
    const auto stored = defaults.object(animatedThemesKey);
    const auto* dictionary = stored ? stored->as<PropertyDictionary>() : nullptr;
    if (!dictionary) return answers;
    for (const auto& [id, value] : *dictionary)
        if (const auto* animated = value.as<bool>()) answers.emplace(id, *animated);
    return answers;
}

std::vector<ThemeToExamine> themesToExamine(const KeyValueStore& defaults, const ThemeList& list,
                                            const ThemeStore& store) {
    const auto answers = animationAnswers(defaults);
    std::vector<ThemeToExamine> themes;
    for (const auto& theme : list.themes()) {
        if (!theme.isDownloaded || answers.contains(theme.id)) continue;
        if (auto folder = store.themeDirectory(theme.id)) themes.push_back({theme.id, std::move(*folder)});
    }
    return themes;
}

AnimationAnswers examineThemes(const std::vector<ThemeToExamine>& themes) {
    AnimationAnswers answers;
    for (const auto& theme : themes) answers.insert_or_assign(theme.id, themeHasAnimation(theme.folder));
    return answers;
}

void recordAnimationAnswers(const AnimationAnswers& answers, KeyValueStore& defaults, ThemeList& list) {
    auto record = animationAnswers(defaults);
    for (const auto& [id, animated] : answers) {
        const auto* theme = list.find(id);
        if (theme && theme->isDownloaded) record.insert_or_assign(id, animated);
    }
    defaults.set(animatedThemesKey, PropertyDictionary(record.begin(), record.end()));
    list.setAnimated(record);
}

void forgetAnimationAnswer(const std::string& themeId, KeyValueStore& defaults) {
    auto record = animationAnswers(defaults);
    if (record.erase(themeId) > 0)
        defaults.set(animatedThemesKey, PropertyDictionary(record.begin(), record.end()));
}

}  // namespace pintle
