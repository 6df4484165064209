#include "themes/cursor_theme_info.h"

#include "themes/catalog_rows.h"

namespace pintle {

const std::vector<CursorThemeInfo>& CursorThemeInfo::catalog() {
    static const auto themes = [] {
        std::vector<CursorThemeInfo> made;
        for (const auto& row : catalogRows()) {
            CursorThemeInfo theme;
            theme.id = row.id;
            theme.name = row.name;
            theme.author = row.author;
            theme.license = row.license;
            theme.downloadURL = row.downloadURL;
            theme.handedness = row.handedness;
            made.push_back(std::move(theme));
        }
        return made;
    }();
    return themes;
}

}  // namespace pintle
