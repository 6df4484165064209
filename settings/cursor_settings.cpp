#include "settings/cursor_settings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "settings/notification_names.h"
#include "settings/typed_defaults.h"

namespace pintle {
namespace {

CursorSettings* installed = nullptr;

}  // namespace

CursorSettings::CursorSettings(KeyValueStore& defaults, NotificationCenter& notifications)
    : defaults_(defaults), notifications_(notifications) {
    defaults_.registerDefaults({
        {scaleKey, 1.0},
        {applyOnLaunchKey, true},
        {restoreOnQuitKey, false},
        {alwaysUseThemedCursorKey, false},
        {useSystemCursorForMissingKey, true},
        {excludedAppsKey, PropertyArray{}},
        {glassModeKey, true},
        {glassOpacityKey, 0.85},
        {pauseWhenScreenSharedKey, true},
    });
    cursorScale_ = storedScale(defaults_);
    currentThemeId_ = stringValue(defaults_, themeIdKey);
    applyOnLaunch_ = boolValue(defaults_, applyOnLaunchKey);
    restoreOnQuit_ = boolValue(defaults_, restoreOnQuitKey);
    alwaysUseThemedCursor_ = boolValue(defaults_, alwaysUseThemedCursorKey);
    useSystemCursorForMissing_ = boolValue(defaults_, useSystemCursorForMissingKey);
    excludedApps_ = stringArrayValue(defaults_, excludedAppsKey).value_or(std::vector<std::string>{});
    glassMode_ = boolValue(defaults_, glassModeKey);
    glassOpacity_ = doubleValue(defaults_, glassOpacityKey);
    pauseWhenScreenShared_ = boolValue(defaults_, pauseWhenScreenSharedKey);
}

CursorSettings::~CursorSettings() {
    if (installed == this) installed = nullptr;
}

bool CursorSettings::canScale(double scale) {
    // Times the widest image of any file it fits 64 bits. A NaN fails the comparison.
    constexpr double kBeyond = 0x1p31;
    return std::abs(scale) < kBeyond;
}

double CursorSettings::storedScale(const KeyValueStore& defaults) {
    const double scale = doubleValue(defaults, scaleKey);
    return canScale(scale) ? scale : 0;
}

CursorSettings& CursorSettings::shared() {
    if (!installed) std::abort();
    return *installed;
}

void CursorSettings::install(CursorSettings& settings) { installed = &settings; }

// The setters store and post what the property holds after the observers have run: one of them may have set
// it again.

void CursorSettings::setCursorScale(double value) {
    cursorScale_ = value;
    changed.emit();
    defaults_.set(scaleKey, cursorScale_);
    notifications_.post(notification::cursorScaleChanged, cursorScale_);
}

void CursorSettings::setCurrentThemeId(std::optional<std::string> value) {
    currentThemeId_ = std::move(value);
    changed.emit();
    if (currentThemeId_)
        defaults_.set(themeIdKey, *currentThemeId_);
    else
        defaults_.remove(themeIdKey);
}

void CursorSettings::setApplyOnLaunch(bool value) {
    applyOnLaunch_ = value;
    changed.emit();
    defaults_.set(applyOnLaunchKey, applyOnLaunch_);
}

void CursorSettings::setRestoreOnQuit(bool value) {
    restoreOnQuit_ = value;
    changed.emit();
}

void CursorSettings::setAlwaysUseThemedCursor(bool value) {
    alwaysUseThemedCursor_ = value;
    changed.emit();
    defaults_.set(alwaysUseThemedCursorKey, alwaysUseThemedCursor_);
    notifications_.post(notification::alwaysUseThemedCursorChanged, alwaysUseThemedCursor_);
}

void CursorSettings::setUseSystemCursorForMissing(bool value) {
    useSystemCursorForMissing_ = value;
    changed.emit();
    defaults_.set(useSystemCursorForMissingKey, useSystemCursorForMissing_);
}

void CursorSettings::setExcludedApps(std::vector<std::string> value) {
    excludedApps_ = std::move(value);
    changed.emit();
    defaults_.set(excludedAppsKey, PropertyArray(excludedApps_.begin(), excludedApps_.end()));
    notifications_.post(notification::excludedAppsChanged, excludedApps_);
}

void CursorSettings::setGlassMode(bool value) {
    glassMode_ = value;
    changed.emit();
    defaults_.set(glassModeKey, glassMode_);
    notifications_.post(notification::glassModeChanged, glassMode_);
}

void CursorSettings::setGlassOpacity(double value) {
    glassOpacity_ = value;
    changed.emit();
    defaults_.set(glassOpacityKey, glassOpacity_);
}

void CursorSettings::setPauseWhenScreenShared(bool value) {
    pauseWhenScreenShared_ = value;
    changed.emit();
    defaults_.set(pauseWhenScreenSharedKey, pauseWhenScreenShared_);
}

void CursorSettings::addExcludedApp(const std::string& name) {
    if (std::find(excludedApps_.begin(), excludedApps_.end(), name) != excludedApps_.end()) return;
    auto apps = excludedApps_;
    apps.push_back(name);
    setExcludedApps(std::move(apps));
}

void CursorSettings::removeExcludedApp(const std::string& name) {
    auto apps = excludedApps_;
    const auto found = std::find(apps.begin(), apps.end(), name);
    if (found == apps.end()) return;
    apps.erase(found);
    setExcludedApps(std::move(apps));
}

void CursorSettings::setThemeError(const std::string& themeId, const std::string& error) {
    auto errors = themeErrors();
    errors.insert_or_assign(themeId, error);
    writeThemeErrors(errors);
}

void CursorSettings::clearThemeError(const std::string& themeId) {
    auto errors = themeErrors();
    errors.erase(themeId);
    writeThemeErrors(errors);
}

std::optional<std::string> CursorSettings::themeError(const std::string& themeId) const {
    const auto errors = themeErrors();
    const auto found = errors.find(themeId);
    if (found == errors.end()) return std::nullopt;
    return found->second;
}

std::map<std::string, std::string> CursorSettings::themeErrors() const {
    return stringDictionaryValue(defaults_, themeErrorsKey).value_or(std::map<std::string, std::string>{});
}

void CursorSettings::writeThemeErrors(const std::map<std::string, std::string>& errors) {
    defaults_.set(themeErrorsKey, PropertyDictionary(errors.begin(), errors.end()));
}

}  // namespace pintle
