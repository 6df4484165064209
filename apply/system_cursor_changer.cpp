#include "apply/system_cursor_changer.h"

#include <fmt/format.h>

#include <cstdlib>
#include <utility>

#include "apply/cursor_identifiers.h"

namespace pintle {
namespace {

SystemCursorChanger* installed = nullptr;

}  // namespace

SystemCursorChanger::SystemCursorChanger(WindowServer& windowServer, CursorSnapshots& snapshots, Log& log)
    : windowServer_(windowServer), snapshots_(snapshots), log_(log) {}

SystemCursorChanger::~SystemCursorChanger() {
    if (installed == this) installed = nullptr;
}

SystemCursorChanger& SystemCursorChanger::shared() {
    if (!installed) std::abort();
    return *installed;
}

void SystemCursorChanger::install(SystemCursorChanger& instance) { installed = &instance; }

bool SystemCursorChanger::applyPreloaded(const std::vector<PreloadedCursor>& cursors) {
    if (!canRegister()) {
        log_.system("[SystemCursorChanger] CGS symbols unavailable");
        return false;
    }
    const auto connection = windowServer_.mainConnectionID();

    const auto plan = planRegistration(cursors);
    if (!plan) {
        log_.system("[SystemCursorChanger] No arrow cursor in theme - refusing partial apply");
        return false;
    }

    // Before anything is unregistered, so that the backup sees the desktop's cursors as they are now.
    snapshots_.snapshotOriginalsIfNeeded(plan->arrowSize);
    unregisterAll(connection);

    bool arrowRegistered = false;
    std::vector<RegisteredImage> registered;
    for (const auto& image : plan->images) {
        const auto answer = windowServer_.registerCursorWithImages(connection, image.toRegisteredCursor(),
                                                                   RegistrationPurpose::theme);
        if (answer == kRegistrationSkipped) continue;
        if (*answer != 0) {
            log_.system(
                fmt::format("[SystemCursorChanger] register {} failed: {}", image.identifier, *answer));
            continue;
        }
        if (image.identifier == kArrowIdentifier) arrowRegistered = true;
        registered.push_back(image);
    }

    if (!arrowRegistered) {
        unregisterAll(connection);
        isActive_ = false;
        log_.system("[SystemCursorChanger] Arrow registration failed - rolled back");
        return false;
    }
    isActive_ = true;
    lastApplied_ = std::move(registered);
    log_.system(
        fmt::format("[SystemCursorChanger] Registered {} system cursor identifiers", lastApplied_.size()));
    return true;
}

void SystemCursorChanger::applyRegistered(const std::vector<RegisteredImage>& images) {
    if (!canRegister()) return;
    const auto connection = windowServer_.mainConnectionID();
    unregisterAll(connection);
    for (const auto& image : images)
        windowServer_.registerCursorWithImages(connection, image.toRegisteredCursor(),
                                               RegistrationPurpose::theme);
    isActive_ = true;
}

void SystemCursorChanger::setSuspendedForExcludedApp(bool suspended) {
    if (std::exchange(suspendedForExcludedApp_, suspended) && !suspended) suspensionEnded.emit();
}

void SystemCursorChanger::restoreSystemState() {
    if (!windowServer_.provides(WindowServerFunction::mainConnectionID) ||
        !windowServer_.provides(WindowServerFunction::coreCursorUnregisterAll))
        return;
    const int error = windowServer_.coreCursorUnregisterAll(windowServer_.mainConnectionID());
    snapshots_.snapshotOriginalsIfNeeded(std::nullopt);
    snapshots_.restoreOriginals();
    log_.system(fmt::format("[SystemCursorChanger] Unregistered all custom cursors (err={})", error));
}

void SystemCursorChanger::forgetApplied() {
    lastApplied_.clear();
    setSuspendedForExcludedApp(false);
    isActive_ = false;
}

bool SystemCursorChanger::canRegister() {
    return windowServer_.provides(WindowServerFunction::mainConnectionID) &&
           windowServer_.provides(WindowServerFunction::registerCursorWithImages);
}

int SystemCursorChanger::unregisterAll(ConnectionId connection) {
    if (!windowServer_.provides(WindowServerFunction::coreCursorUnregisterAll)) return 0;
    return windowServer_.coreCursorUnregisterAll(connection);
}

}  // namespace pintle
