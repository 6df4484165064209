#include "app/full_reset.h"

#include "themes/folder_tree.h"

namespace pintle {

void FullReset::run() {
    deps_.work.endAll();
    deps_.pipeline.cancelRequests();

    deps_.log.standardOutput("[RESET] ━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━");
    deps_.log.standardOutput("[RESET] Starting full app reset...");

    deleteThemes();

    deps_.preferences.removeDomain();
    deps_.log.standardOutput("[RESET] ✅ Cleared UserDefaults");

    deps_.settings.setCursorScale(1.0);
    // The change has asked for the current theme at its new scale.
    deps_.pipeline.cancelRequests();
    deps_.log.standardOutput("[RESET] ✅ Reset CursorSettings");

    deps_.applier.customCursors().clear();
    deps_.applier.resetToSystemDefaults();
    // Runs a second time when the applier's own reset has done it; both are intended.
    deps_.changer.restoreSystemState();
    deps_.changer.forgetApplied();
    deps_.log.standardOutput("[RESET] ✅ Reset cursor to system default");

    deps_.log.standardOutput("[RESET] Full reset completed!");
}

void FullReset::deleteThemes() {
    const auto& folder = deps_.store.themesDirectory();
    std::error_code ignored;
    if (!std::filesystem::exists(folder, ignored)) return;
    if (const auto error = removeTree(folder))
        deps_.log.standardOutput("[RESET] ❌ Failed to delete themes: " + error.message());
    else
        deps_.log.standardOutput("[RESET] ✅ Deleted all themes from: " + folder.string());
}

}  // namespace pintle
