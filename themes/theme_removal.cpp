#include "themes/theme_removal.h"

#include <utility>

#include "themes/animation_detection.h"
#include "themes/scratch.h"

namespace pintle {

void ThemeRemoval::deleteTheme(const CursorThemeInfo& theme) {
    const auto entry = removals_.insert(removals_.end(), run(theme.id));
    entry->start([this, entry] { removals_.erase(entry); });
}

Flow ThemeRemoval::run(std::string id) {
    const auto folder = deps_.store.themeDirectory(id);
    const auto permit = deps_.work.permit();
    Answer<ThemeWork::Turn> next;
    deps_.work.begin(id, next.resolver());
    const auto turn = co_await next;
    auto removed = inBackground(deps_.background, deps_.mainQueue, Priority::userInitiated,
                                [permit, folder]() -> Status {
                                    auto error = std::make_error_code(std::errc::no_such_file_or_directory);
                                    permit->use([&] {
                                        if (folder) error = removeWhole(*folder);
                                    });
                                    if (error) return fileError(error);
                                    return Done{};
                                });
    const auto status = co_await removed;
    // Not when a reset has come in between.
    if (permit == deps_.work.permit()) finish(id, status);
}

void ThemeRemoval::finish(const std::string& id, const Status& status) {
    const auto prefix = "[DELETE] [" + id + "] ";
    const auto* found = deps_.themes.find(id);
    auto row = found ? std::optional(*found) : std::nullopt;
    if (!status) {
        deps_.log.system(prefix + "Error: " + status.error().description);
        if (!row) return;
        row->downloadError = "Delete failed: " + status.error().description;
        deps_.themes.replace(std::move(*row));
        return;
    }
    deps_.log.system(prefix + "Deleted successfully");
    deps_.settings.clearThemeError(id);
    forgetAnimationAnswer(id, deps_.preferences);
    if (row) {
        row->isDownloaded = false;
        // As in the record of examined themes, from which it was just removed.
        row->isAnimated = false;
        row->previewImage.reset();
        row->downloadError.reset();
        deps_.themes.replace(std::move(*row));
    }
    deleted.emit(id);
}

}  // namespace pintle
