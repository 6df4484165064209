#include "app/full_reset.h"

#include "themes/folder_tree.h"

namespace pintle {

void FullReset::run() {
    to_.work.endAll();
    to_.pipeline.cancelRequests();

    to_.log.standardOutput("[RESET] ━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━");
    to_.log.standardOutput("[RESET] Starting full app reset...");

    deleteThemes();

    to_.preferences.removeDomain();
    to_.log.standardOutput("[RESET] ✅ Cleared UserDefaults");

    to_.settings.setCursorScale(1.0);
    // The change has asked for the current theme at its new scale.
    to_.pipeline.cancelRequests();
    to_.log.standardOutput("[RESET] ✅ Reset CursorSettings");

    to_.applier.customCursors().clear();
    to_.applier.resetToSystemDefaults();
    // A second time when the applier's own reset has done it: both are meant.
    to_.changer.restoreSystemState();
    to_.changer.forgetApplied();
    to_.log.standardOutput("[RESET] ✅ Reset cursor to system default");

    to_.log.standardOutput("[RESET] Full reset completed!");
}

void FullReset::deleteThemes() {
    const auto& folder = to_.store.themesDirectory();
    std::error_code ignored;
    if (!std::filesystem::exists(folder, ignored)) return;
    if (const auto error = removeTree(folder))
        to_.log.standardOutput("[RESET] ❌ Failed to delete themes: " + error.message());
    else
        to_.log.standardOutput("[RESET] ✅ Deleted all themes from: " + folder.string());
}

}  // namespace pintle
