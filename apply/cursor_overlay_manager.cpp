#include "apply/cursor_overlay_manager.h"

#include <fmt/format.h>

#include <algorithm>

#include "apply/cursor_alternatives.h"
#include "apply/exclusion_rules.h"
#include "apply/overlay_areas.h"
#include "apply/overlay_decision.h"

namespace pintle {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::nanoseconds kTick{1'000'000'000 / 120};
constexpr auto kWindowListAge = 500ms;
constexpr auto kWatcherAge = 1000ms;
constexpr auto kAfterSystemWake = 1000ms;
constexpr auto kAfterScreenWake = 500ms;
constexpr int kGuaranteedShows = 10;

CursorOverlayManager* installed = nullptr;

Bitmap transparentImage() {
    return *Bitmap::create(16, 16, [](std::span<std::uint8_t> out) { std::fill(out.begin(), out.end(), 0); });
}

/// Equal bytes mean equal images.
std::vector<std::uint8_t> losslessBytes(const Bitmap& image) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(image.bytes().size() + 8);
    for (const int side : {image.width(), image.height()})
        for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(side >> shift));
    bytes.insert(bytes.end(), image.bytes().begin(), image.bytes().end());
    return bytes;
}

/// Hotspots outside their image are moved onto its last pixels, as a registration has them.
Point clampedHotspot(const PreloadedCursor& cursor) {
    const auto size = cursor.size();
    const double pixel = 1 / cursor.pixelsPerPoint;
    return {std::clamp(cursor.hotspot.x, 0.0, std::max(0.0, size.width - pixel)),
            std::clamp(cursor.hotspot.y, 0.0, std::max(0.0, size.height - pixel))};
}

}  // namespace

CursorOverlayManager::CursorOverlayManager(Desktop desktop)
    : desktop_(desktop),
      transparentCursor_(desktop.cursors.makeCursor(transparentImage(), {0, 0})),
      transparentCursorTiff_(losslessBytes(transparentImage())) {
    buildTiffIndex();
    installObservers();
    updateAppState();
    installed = this;
}

CursorOverlayManager::~CursorOverlayManager() {
    if (installed == this) installed = nullptr;
}

CursorOverlayManager* CursorOverlayManager::shared() { return installed; }

void CursorOverlayManager::buildTiffIndex() {
    knownCursors_.clear();
    for (const auto& [name, image] : desktop_.pointer.standardCursors())
        knownCursors_.push_back({name, losslessBytes(image), signatures_.of(image)});
}

void CursorOverlayManager::installObservers() {
    const auto on = [this](WorkspaceEvent event, std::string line, auto action) {
        observers_.push_back(desktop_.workspace.observe(
            event, lifetime_.weakly([this, line = std::move(line), action](const WorkspaceNotification&) {
                if (!line.empty()) desktop_.log.system(line);
                action();
            })));
    };
    on(WorkspaceEvent::screenParametersDidChange, "", [this] {
        if (!isPaused_) recreateWindows();
    });
    on(WorkspaceEvent::didActivateApplication, "", [this] { updateAppState(); });
    on(WorkspaceEvent::pointerDidChange, "", [this] { buildTiffIndex(); });
    on(WorkspaceEvent::willSleep, "[CursorOverlay] System will sleep - pausing overlay",
       [this] { pauseOverlay(); });
    on(WorkspaceEvent::didWake, "[CursorOverlay] System did wake - resuming overlay",
       [this] { resumeAfter(kAfterSystemWake); });
    on(WorkspaceEvent::screensDidSleep, "[CursorOverlay] Screens did sleep - pausing overlay",
       [this] { pauseOverlay(); });
    on(WorkspaceEvent::screensDidWake, "[CursorOverlay] Screens did wake - resuming overlay",
       [this] { resumeAfter(kAfterScreenWake); });
    on(WorkspaceEvent::screenIsLocked, "[CursorOverlay] Screen locked - pausing overlay",
       [this] { pauseOverlay(); });
    on(WorkspaceEvent::screenIsUnlocked, "[CursorOverlay] Screen unlocked - resuming overlay",
       [this] { resumeAfter(kAfterScreenWake); });
}

void CursorOverlayManager::start() {
    if (isActive_) return;
    isActive_ = true;
    desktop_.pointer.setsCursorInBackground();
    recreateWindows();
    updateAppState();
    startTimer();
}

void CursorOverlayManager::startTimer() {
    positionTimer_ = desktop_.queue.every(kTick, lifetime_.weakly([this] { onTimerTick(); }));
}

void CursorOverlayManager::loadCursorsFromPreloaded(const std::vector<PreloadedCursor>& cursors, double) {
    cursorImages_.clear();
    for (const PreloadedCursor& cursor : cursors)
        cursorImages_.insert_or_assign(cursor.name,
                                       Themed{cursor.image, clampedHotspot(cursor), cursor.size()});
    chooseImage();
}

void CursorOverlayManager::updateOverlayWindows() {
    for (auto& [display, window] : windows_) {
        window.surface->setSize(currentSize_);
        window.surface->setImage(currentCursorImage_);
    }
}

void CursorOverlayManager::deactivate() {
    isActive_ = false;
    wasActiveBeforePause_ = false;
    positionTimer_.end();
}

void CursorOverlayManager::destroyWindows() { windows_.clear(); }

void CursorOverlayManager::recreateWindows() {
    destroyWindows();
    cachedFullscreenDisplays_.reset();
    for (const Screen& screen : desktop_.displays.screens()) {
        const DisplayId display = displayID(screen, desktop_.displays.mainDisplayID());
        auto surface = desktop_.surfaces.create(display, currentSize_);
        if (!surface) continue;
        surface->setImage(currentCursorImage_);
        surface->setAlpha(0);
        surface->orderFront();
        windows_.insert_or_assign(display, Window{std::move(surface), 0});
    }
}

void CursorOverlayManager::onTimerTick() {
    OverlayTickFacts facts;
    facts.paused = isPaused_;
    if (!isPaused_) {
        facts.screens = desktop_.displays.screens();
        facts.mainDisplay = desktop_.displays.mainDisplayID();
        facts.mouse = desktop_.displays.mouseLocation();
    }
    facts.isCurrentAppExcluded = isCurrentAppExcluded_;
    facts.alwaysUseThemedCursor = desktop_.settings.alwaysUseThemedCursor();
    facts.isFullscreen = [this](DisplayId display) { return isFullscreen(display); };
    facts.mouseIsInProtectedArea = [this, &facts] {
        return checkProtectionArea(windowsOnScreen(), facts.mouse, desktop_.names.protectedOwners);
    };
    facts.isScreenWatched = [this] { return isScreenWatched(); };
    facts.pauseWhenScreenShared = desktop_.settings.pauseWhenScreenShared();

    const OverlayDecision decision = decideOverlayTick(facts);
    if (decision.outcome == OverlayOutcome::nothing) return;
    if (decision.outcome == OverlayOutcome::draw) {
        checkCursorTypeChange();
        if (!overlayUsesSystemFallback_ && canDrawOn(decision.display)) {
            draw(decision.display, facts.mouse);
            return;
        }
    }
    stepAside();
}

bool CursorOverlayManager::canDrawOn(DisplayId display) const {
    if (!currentCursorImage_) return false;
    const auto found = windows_.find(display);
    return found != windows_.end() && found->second.surface->isVisible();
}

void CursorOverlayManager::draw(DisplayId under, Point mouse) {
    keepHardwareCursorsHidden();
    for (auto& [display, window] : windows_) {
        if (display == under) {
            window.surface->setOrigin(
                {mouse.x - currentHotspot_.x, mouse.y - (currentSize_.height - currentHotspot_.y)});
            setAlpha(window, 1);
        } else {
            setAlpha(window, 0);
        }
    }
}

void CursorOverlayManager::stepAside() {
    hideOverlayWindows();
    showHardwareCursors();
}

void CursorOverlayManager::setAlpha(Window& window, double alpha) {
    if (window.alpha == alpha) return;
    window.alpha = alpha;
    window.surface->setAlpha(alpha);
}

void CursorOverlayManager::hideOverlayWindows() {
    for (auto& [display, window] : windows_) setAlpha(window, 0);
}

void CursorOverlayManager::keepHardwareCursorsHidden() {
    desktop_.cursors.set(transparentCursor_);
    // The pair keeps the platform's hide counter at exactly one level instead of letting it grow.
    for (const Screen& screen : desktop_.displays.screens()) {
        const DisplayId display = displayID(screen, desktop_.displays.mainDisplayID());
        desktop_.pointer.show(display);
        desktop_.pointer.hide(display);
    }
    cursorHiddenMode_ = true;
}

void CursorOverlayManager::showOnEveryScreen(int times) {
    const auto show = [&](DisplayId display) {
        for (int i = 0; i < times; ++i) desktop_.pointer.show(display);
    };
    const DisplayId mainDisplay = desktop_.displays.mainDisplayID();
    const auto& screens = desktop_.displays.screens();
    if (screens.empty()) show(mainDisplay);
    for (const Screen& screen : screens) show(displayID(screen, mainDisplay));
    desktop_.cursors.set(desktop_.cursors.standardCursor(StandardCursor::arrow));
}

void CursorOverlayManager::showHardwareCursors() {
    if (!cursorHiddenMode_) return;
    showOnEveryScreen(1);
    cursorHiddenMode_ = false;
}

void CursorOverlayManager::showSystemCursorGuaranteed() {
    isActive_ = false;
    wasActiveBeforePause_ = false;
    cursorHiddenMode_ = false;
    showOnEveryScreen(kGuaranteedShows);
}

void CursorOverlayManager::updateAppState() {
    cachedWindowList_.reset();
    const auto frontmost = desktop_.workspace.frontmostApplication();
    if (!frontmost) return;
    const std::string name = frontmost->name.value_or("");
    frontmostAppPID_ = frontmost->pid;
    const auto& system = desktop_.names.systemProcesses;
    isCurrentAppExcluded_ =
        isExcludedApplication(name, desktop_.names.remoteDesktops, desktop_.settings.excludedApps()) ||
        std::find(system.begin(), system.end(), name) != system.end();
    if (isCurrentAppExcluded_)
        showHardwareCursors();
    else if (isActive_ && !isPaused_)
        keepHardwareCursorsHidden();
}

const std::vector<WindowInfo>& CursorOverlayManager::windowsOnScreen() {
    const auto now = desktop_.queue.now();
    if (!cachedWindowList_ || now - windowListCacheTime_ > kWindowListAge) {
        cachedWindowList_ = desktop_.windowList.onScreenWindows();
        windowListCacheTime_ = now;
        cachedFullscreenDisplays_.reset();
    }
    return *cachedWindowList_;
}

bool CursorOverlayManager::isFullscreen(DisplayId display) {
    const auto& windows = windowsOnScreen();
    if (!cachedFullscreenDisplays_)
        cachedFullscreenDisplays_ =
            fullscreenDisplayIDs(windows, desktop_.displays.screens(), desktop_.displays.mainDisplayID(),
                                 desktop_.names.systemProcesses);
    return cachedFullscreenDisplays_->contains(display);
}

bool CursorOverlayManager::isScreenWatched() {
    const auto now = desktop_.queue.now();
    if (!lastWatcherCheck_ || now - *lastWatcherCheck_ > kWatcherAge) {
        lastWatcherCheck_ = now;
        screenWatcherActive_ = desktop_.pointer.isScreenWatcherPresent().value_or(false);
    }
    return screenWatcherActive_;
}

void CursorOverlayManager::pauseOverlay() {
    if (isPaused_) return;
    isPaused_ = true;
    wasActiveBeforePause_ = isActive_;
    positionTimer_.end();
    hideOverlayWindows();
    cursorHiddenMode_ = false;
    showOnEveryScreen(1);
    desktop_.log.system(
        fmt::format("[CursorOverlay] Overlay paused (wasActive: {})", wasActiveBeforePause_ ? 1 : 0));
}

void CursorOverlayManager::resumeAfter(std::chrono::milliseconds delay) {
    resumeWorkItem_ = desktop_.queue.after(delay, lifetime_.weakly([this] { resumeOverlay(); }));
}

void CursorOverlayManager::resumeOverlay() {
    if (!isPaused_) return;
    isPaused_ = false;
    if (!wasActiveBeforePause_) {
        desktop_.log.system("[CursorOverlay] Resume skipped - overlay was not active before pause");
        return;
    }
    recreateWindows();
    updateAppState();
    startTimer();
    desktop_.log.system("[CursorOverlay] Overlay resumed");
}

void CursorOverlayManager::checkCursorTypeChange() {
    // Before the cursor: one that changes in between is encoded again under its new seed.
    const auto seed = desktop_.pointer.currentCursorSeed();
    const auto cursor = desktop_.pointer.currentSystemCursor();
    if (!cursor) return;
    if (!seed || seed != cachedCurrentCursorSeed_) {
        cachedCurrentTiff_ = losslessBytes(cursor->image);
        cachedCurrentCursorSeed_ = seed;
    }
    if (cachedCurrentTiff_ == transparentCursorTiff_) return;

    const std::string name = identify(*cursor);
    const bool changed = name != currentCursorName_;
    currentCursorName_ = name;
    overlayUsesSystemFallback_ = desktop_.settings.useSystemCursorForMissing() && !themedFor(name);
    if (!changed) return;
    chooseImage();
    updateOverlayWindows();
    desktop_.log.system(
        fmt::format("[Pintle] Cursor identified: {} (systemFallback: {})", name, overlayUsesSystemFallback_));
}

std::string CursorOverlayManager::identify(const SystemCursor& cursor) {
    if (cursor.name && (isThemeCursorName(*cursor.name) || cursorImages_.contains(*cursor.name)))
        return *cursor.name;
    const CurrentCursorFacts facts{true, cachedCurrentTiff_, cursor.hotspot, cursor.image.size()};
    return identifyByDirectComparison(
        knownCursors_, facts, currentCursorName_, [&] { return signatures_.of(cursor.image); },
        [this] { return cursorNameFromAXElementUnderMouse(); });
}

std::optional<std::string> CursorOverlayManager::cursorNameFromAXElementUnderMouse() {
    if (!desktop_.accessibility.isProcessTrusted()) return std::nullopt;
    const Point mouse = desktop_.displays.mouseLocation();
    const auto& screens = desktop_.displays.screens();
    if (screens.empty()) return std::nullopt;
    const auto role = desktop_.accessibility.roleAt({mouse.x, screens.front().frame.size.height - mouse.y});
    return role ? nameForAccessibilityRole(*role) : std::nullopt;
}

const CursorOverlayManager::Themed* CursorOverlayManager::themedFor(const std::string& name) const {
    if (const auto exact = cursorImages_.find(name); exact != cursorImages_.end()) return &exact->second;
    for (const std::string_view other : cursorAlternatives(name))
        if (const auto found = cursorImages_.find(std::string(other)); found != cursorImages_.end())
            return &found->second;
    return nullptr;
}

void CursorOverlayManager::chooseImage() {
    const Themed* themed = themedFor(currentCursorName_);
    for (const char* other : {"left_ptr", "default"}) {
        if (themed) break;
        if (const auto found = cursorImages_.find(other); found != cursorImages_.end())
            themed = &found->second;
    }
    if (!themed && !cursorImages_.empty()) themed = &cursorImages_.begin()->second;
    if (themed) {
        currentCursorImage_ = themed->image;
        currentHotspot_ = themed->hotspot;
        currentSize_ = themed->size;
    } else {
        currentCursorImage_.reset();
        currentHotspot_ = {};
        currentSize_ = {};
    }
}

}  // namespace pintle
