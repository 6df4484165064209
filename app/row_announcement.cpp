#include "app/row_announcement.h"

namespace pintle {
namespace {

bool isOnDisk(const ThemeRow& row) {
    return row.tile == RowTile::preview || row.tile == RowTile::pendingPreview;
}

}  // namespace

std::vector<UserText> announcement(const ThemeRow& before, const ThemeRow& now) {
    if (before.status == now.status) return {};
    if (now.status == RowStatus::error) {
        const auto error = UserText::verbatim(now.errorTooltip.value_or(std::string()));
        return {now.name, now.statusText, now.errorSentence.empty() ? error : now.errorSentence};
    }
    if (before.status == RowStatus::downloading && isOnDisk(now))
        return {now.name, UserText(announcement_text::downloaded)};
    if (before.status == RowStatus::applying && now.isActive)
        return {now.name, UserText(announcement_text::applied)};
    return {};
}

}  // namespace pintle
