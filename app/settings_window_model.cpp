#include "app/settings_window_model.h"

#include <utility>

#include "settings/notification_names.h"
#include "settings/typed_defaults.h"

namespace pintle {
namespace {

struct ToggleTexts {
    std::string_view icon;
    std::string_view title;
    std::string_view subtitle;
};

/// By SettingsToggle.
constexpr std::array<ToggleTexts, 7> kToggles = {{
    {symbol::launchAtLogin, settings_text::launchAtLogin, settings_text::launchAtLoginSubtitle},
    {symbol::applyOnLaunch, settings_text::applyOnLaunch, settings_text::applyOnLaunchSubtitle},
    {symbol::restoreOnQuit, settings_text::restoreOnQuit, settings_text::restoreOnQuitSubtitle},
    {symbol::fullscreen, settings_text::fullscreen, settings_text::fullscreenSubtitle},
    {symbol::missingTypes, settings_text::missingTypes, settings_text::missingTypesSubtitle},
    {symbol::screenSharing, settings_text::screenSharing, settings_text::screenSharingSubtitle},
    {symbol::glassMode, settings_text::glassMode, settings_text::glassModeSubtitle},
}};

std::string withoutBlanks(const std::string& text) {
    constexpr auto kBlanks = " \t";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

SettingsWindowModel::SettingsWindowModel(const Dependencies& dependencies) : deps_(dependencies) {
    observers_.push_back(deps_.settings.changed.observe([this] { changed.emit(); }));
    for (const auto* key : {CursorSettings::launchAtLoginKey, CursorSettings::applyOnLaunchKey,
                            CursorSettings::restoreOnQuitKey})
        observers_.push_back(deps_.preferences.observe(key, [this] { changed.emit(); }));
    observers_.push_back(
        deps_.preferences.observe(CursorSettings::scaleKey, [this] { storedScaleChanged(); }));
}

void SettingsWindowModel::appear() { deps_.launchAtLogin.syncLaunchAtLoginState(); }

std::vector<SettingsSection> SettingsWindowModel::sections() const {
    using Kind = SettingsSectionKind;
    using Toggle = SettingsToggle;
    const auto section = [this](Kind kind, std::string_view symbol, std::string_view title,
                                std::initializer_list<Toggle> toggles) {
        SettingsSection made{kind, symbol, UserText(title), {}};
        for (const auto each : toggles) made.toggles.push_back(toggle(each));
        return made;
    };
    return {
        section(Kind::startup, symbol::power, settings_text::startup, {Toggle::launchAtLogin}),
        section(Kind::behavior, symbol::logo, settings_text::behavior,
                {Toggle::applyOnLaunch, Toggle::restoreOnQuit, Toggle::alwaysUseThemedCursor,
                 Toggle::useSystemCursorForMissing, Toggle::pauseWhenScreenShared}),
        section(Kind::interfaceStyle, symbol::interfaceStyle, settings_text::interfaceStyle,
                {Toggle::glassMode}),
        section(Kind::cursorSize, symbol::size, settings_text::cursorSize, {}),
        section(Kind::exclusions, symbol::exclusions, settings_text::exclusions, {}),
        section(Kind::reset, symbol::reset, settings_text::reset, {}),
    };
}

SettingsToggleRow SettingsWindowModel::toggle(SettingsToggle toggle) const {
    const auto& texts = kToggles.at(static_cast<std::size_t>(toggle));
    const bool isEnabled = deps_.seesApplications || (toggle != SettingsToggle::alwaysUseThemedCursor &&
                                                      toggle != SettingsToggle::pauseWhenScreenShared);
    const auto subtitle = isEnabled ? texts.subtitle : settings_text::noEffect;
    return {toggle, texts.icon, UserText(texts.title), UserText(subtitle), isOn(toggle), isEnabled};
}

bool SettingsWindowModel::storedBool(const char* key, bool fallback) const {
    return deps_.preferences.object(key) ? boolValue(deps_.preferences, key) : fallback;
}

bool SettingsWindowModel::isOn(SettingsToggle toggle) const {
    const auto& settings = deps_.settings;
    switch (toggle) {
        case SettingsToggle::launchAtLogin:
            return storedBool(CursorSettings::launchAtLoginKey, false);
        case SettingsToggle::applyOnLaunch:
            return storedBool(CursorSettings::applyOnLaunchKey, true);
        case SettingsToggle::restoreOnQuit:
            return storedBool(CursorSettings::restoreOnQuitKey, false);
        case SettingsToggle::alwaysUseThemedCursor:
            return settings.alwaysUseThemedCursor();
        case SettingsToggle::useSystemCursorForMissing:
            return settings.useSystemCursorForMissing();
        case SettingsToggle::pauseWhenScreenShared:
            return settings.pauseWhenScreenShared();
        case SettingsToggle::glassMode:
            return settings.glassMode();
    }
    return false;
}

void SettingsWindowModel::setToggle(SettingsToggle toggle, bool value) {
    if (isOn(toggle) == value || !this->toggle(toggle).isEnabled) return;
    auto& settings = deps_.settings;
    // The first three are written to the store directly; the settings keep the values they have loaded.
    switch (toggle) {
        case SettingsToggle::launchAtLogin:
            deps_.preferences.set(CursorSettings::launchAtLoginKey, value);
            return deps_.launchAtLogin.setLaunchAtLogin(value);
        case SettingsToggle::applyOnLaunch:
            return deps_.preferences.set(CursorSettings::applyOnLaunchKey, value);
        case SettingsToggle::restoreOnQuit:
            return deps_.preferences.set(CursorSettings::restoreOnQuitKey, value);
        case SettingsToggle::alwaysUseThemedCursor:
            return settings.setAlwaysUseThemedCursor(value);
        case SettingsToggle::useSystemCursorForMissing:
            return settings.setUseSystemCursorForMissing(value);
        case SettingsToggle::pauseWhenScreenShared:
            return settings.setPauseWhenScreenShared(value);
        case SettingsToggle::glassMode:
            return settings.setGlassMode(value);
    }
}

void SettingsWindowModel::setGlassOpacity(double value) {
    value = glassOpacityRange.nearest(value);
    if (value != deps_.settings.glassOpacity()) deps_.settings.setGlassOpacity(value);
}

double SettingsWindowModel::cursorScale() const {
    constexpr double kFallback = 1.0;
    return deps_.preferences.object(CursorSettings::scaleKey) ? CursorSettings::storedScale(deps_.preferences)
                                                              : kFallback;
}

std::array<SettingsScaleButton, 4> SettingsWindowModel::scaleButtons() const {
    std::array<SettingsScaleButton, scales.size()> buttons;
    const double current = cursorScale();
    for (std::size_t i = 0; i < scales.size(); ++i)
        buttons[i] = {scales[i], percentText(scales[i]), scales[i] == current};
    return buttons;
}

void SettingsWindowModel::selectScale(double scale) {
    if (cursorScale() == scale) return;
    selectingScale_ = true;
    deps_.preferences.set(CursorSettings::scaleKey, scale);
    selectingScale_ = false;
    announceScale(scale);
}

void SettingsWindowModel::storedScaleChanged() {
    // The settings write the key after they have taken the value, so a different value is another writer's.
    const double stored = cursorScale();
    // An unusable value reads as 0 and stays in the file as it is: taking it would overwrite it.
    const bool usable = CursorSettings::canScale(doubleValue(deps_.preferences, CursorSettings::scaleKey));
    if (usable && !selectingScale_ && !resetting_ && stored != deps_.settings.cursorScale())
        announceScale(stored);
    changed.emit();
}

void SettingsWindowModel::announceScale(double scale) {
    deps_.settings.setCursorScale(scale);
    // The settings have posted it already; the second post is intended.
    deps_.notifications.post(notification::cursorScaleChanged, scale);
}

UserText SettingsWindowModel::removeLabel(const std::string& name) {
    return UserText(settings_text::remove, name);
}

UserText SettingsWindowModel::exclusionsExplanation() const {
    return UserText(deps_.seesApplications ? settings_text::exclusionsExplanation : settings_text::noEffect);
}

std::string_view SettingsWindowModel::addButtonSymbol() const {
    return showAddAppField_ ? symbol::hideField : symbol::showField;
}

void SettingsWindowModel::toggleAddAppField() {
    showAddAppField_ = !showAddAppField_;
    changed.emit();
}

void SettingsWindowModel::setNewAppName(std::string name) {
    if (name == newAppName_) return;
    newAppName_ = std::move(name);
    changed.emit();
}

void SettingsWindowModel::addExcludedApp() {
    const auto name = withoutBlanks(newAppName_);
    if (name.empty()) return;
    deps_.settings.addExcludedApp(name);
    cancelAddApp();
}

void SettingsWindowModel::cancelAddApp() {
    newAppName_.clear();
    showAddAppField_ = false;
    changed.emit();
}

void SettingsWindowModel::removeExcludedApp(const std::string& name) {
    deps_.settings.removeExcludedApp(name);
}

void SettingsWindowModel::resetApplication() {
    if (std::exchange(resetting_, true)) return;
    const Alert question{AlertStyle::warning,
                         std::string(settings_text::resetQuestion),
                         std::string(settings_text::resetQuestionText),
                         {std::string(settings_text::resetAndQuit), std::string(settings_text::cancel)}};
    deps_.alerts.runModal(question, lifetime_.weakly([this](int button) {
        if (button == 0)
            resetConfirmed();
        else
            resetting_ = false;
    }));
}

void SettingsWindowModel::resetConfirmed() {
    deps_.viewModel.resetAllData();
    const Alert message{AlertStyle::informational,
                        std::string(settings_text::resetDone),
                        std::string(settings_text::resetDoneText),
                        {std::string(settings_text::quit)}};
    deps_.alerts.runModal(message, lifetime_.weakly([this](int) { deps_.application.terminate(); }));
}

}  // namespace pintle
