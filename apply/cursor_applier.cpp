#include "apply/cursor_applier.h"

#include <fmt/format.h>

#include <cstdlib>

#include "base/text.h"
#include "cursor/cursor_roles.h"

namespace pintle {
namespace {

CursorApplier* installed = nullptr;

}  // namespace

CursorApplier::CursorApplier(HardwareCursor& hardware, SystemCursorChanger& changer, CursorOverlay& overlay,
                             Log& log, Fallback fallback)
    : hardware_(hardware),
      changer_(changer),
      overlay_(overlay),
      log_(log),
      useOverlayMode_(fallback == Fallback::overlay),
      replacement_(hardware, log) {}

CursorApplier::~CursorApplier() {
    if (installed == this) installed = nullptr;
}

CursorApplier& CursorApplier::shared() {
    if (!installed) std::abort();
    return *installed;
}

void CursorApplier::install(CursorApplier& instance) { installed = &instance; }

bool CursorApplier::applyCursorsFromPreloaded(const std::vector<PreloadedCursor>& cursors, double scale) {
    appliedCursors_.clear();
    currentScale_ = scale;
    const auto* const arrow = arrowOf(cursors);
    arrowSize_ = arrow ? std::optional(arrow->image.size()) : std::nullopt;
    for (const auto& cursor : cursors)
        appliedCursors_.insert_or_assign(cursor.name, hardware_.makeCursor(cursor.image, cursor.hotspot));
    log_.system(fmt::format("[CursorApplier] Applied {} pre-loaded cursors at scale {}",
                            appliedCursors_.size(), shortestDouble(scale)));

    if (changer_.applyPreloaded(cursors)) {
        stopOverlay();
        log_.system("[CursorApplier] System-wide registration active");
        return true;
    }
    if (useOverlayMode_) {
        overlay_.loadCursorsFromPreloaded(cursors, scale);
        if (overlay_.isActive())
            overlay_.updateOverlayWindows();
        else
            overlay_.start();
        return true;
    }
    return showInProcess();
}

void CursorApplier::resetToSystemDefaults() {
    changer_.restoreSystemState();
    changer_.forgetApplied();

    // Shown both before and after the windows go, on purpose.
    stopOverlay();
    overlay_.showSystemCursorGuaranteed();

    appliedCursors_.clear();
    arrowSize_.reset();
    customCursors().clear();
    hardware_.set(hardware_.standardCursor(StandardCursor::arrow));
    currentScale_ = 1.0;
}

void CursorApplier::restoreUnlessRegistered() {
    if (!changer_.isActive()) changer_.restoreSystemState();
}

void CursorApplier::mapCursorsToSystemTypes() {
    pintle::mapCursorsToSystemTypes(appliedCursors_, customCursors());
}

std::optional<DesktopCursor> CursorApplier::cursor(const std::string& name) const {
    const auto found = appliedCursors_.find(name);
    if (found == appliedCursors_.end()) return std::nullopt;
    return found->second;
}

void CursorApplier::stopOverlay() {
    overlay_.deactivate();
    overlay_.showSystemCursorGuaranteed();
    overlay_.destroyWindows();
}

bool CursorApplier::showInProcess() {
    replacement_.enable();
    mapCursorsToSystemTypes();
    for (const auto* name : {"default", "left_ptr", "arrow"}) {
        if (const auto arrow = cursor(name)) {
            hardware_.set(*arrow);
            break;
        }
    }
    return !appliedCursors_.empty();
}

}  // namespace pintle
