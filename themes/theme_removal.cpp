#include "themes/theme_removal.h"

#include <utility>

#include "themes/animation_detection.h"
#include "themes/scratch.h"

namespace pintle {

void ThemeRemoval::deleteTheme(const CursorThemeInfo& theme) {
    const auto folder = to_.store.themeDirectory(theme.id);
    auto permit = to_.work.permit();
    auto remove = [this, id = theme.id, folder, permit](ThemeWork::Turn turn) {
        runInBackground(
            to_.background, to_.mainQueue, lifetime_, Priority::userInitiated,
            [permit, folder]() -> Status {
                auto error = std::make_error_code(std::errc::no_such_file_or_directory);
                permit->use([&] {
                    if (folder) error = removeWhole(*folder);
                });
                if (error) return fileError(error);
                return Done{};
            },
            [this, id, permit, turn = std::move(turn)](const Status& status) mutable {
                const auto held = std::exchange(turn, nullptr);
                // A reset has come in between.
                if (permit == to_.work.permit()) finish(id, status);
            });
    };
    to_.work.begin(theme.id, lifetime_.weakly(std::move(remove)));
}

void ThemeRemoval::finish(const std::string& id, const Status& status) {
    const auto prefix = "[DELETE] [" + id + "] ";
    const auto* found = to_.themes.find(id);
    auto row = found ? std::optional(*found) : std::nullopt;
    if (!status) {
        to_.log.system(prefix + "Error: " + status.error().description);
        if (!row) return;
        row->downloadError = "Delete failed: " + status.error().description;
        to_.themes.replace(std::move(*row));
        return;
    }
    to_.log.system(prefix + "Deleted successfully");
    to_.settings.clearThemeError(id);
    forgetAnimationAnswer(id, to_.preferences);
    if (row) {
        row->isDownloaded = false;
        // As the record of examined themes says from now on.
        row->isAnimated = false;
        row->previewImage.reset();
        row->downloadError.reset();
        to_.themes.replace(std::move(*row));
    }
    deleted.emit(id);
}

}  // namespace pintle
