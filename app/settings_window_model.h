// What the settings window shows and does: sections of toggles, opacity, size, exclusions, reset. Built once
// by the root with the window and kept while that is hidden, so that an open entry field stays open. The user
// interface draws it and calls its operations. Main thread only.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/cursor_view_model.h"
#include "app/slider.h"
#include "app/symbols.h"
#include "app/user_text.h"
#include "base/geometry.h"
#include "base/lifetime.h"
#include "base/notification_center.h"
#include "base/signal.h"
#include "base/subscription.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/key_value_store.h"
#include "settings/cursor_settings.h"
#include "settings/launch_at_login.h"

namespace pintle {

/// In their order in the window.
enum class SettingsToggle {
    launchAtLogin,
    applyOnLaunch,
    restoreOnQuit,
    alwaysUseThemedCursor,
    useSystemCursorForMissing,
    pauseWhenScreenShared,
    glassMode,
};

struct SettingsToggleRow {
    SettingsToggle toggle = SettingsToggle::launchAtLogin;
    std::string_view icon;
    UserText title;
    UserText subtitle;
    bool isOn = false;
    /// False where this session gives it no effect; the subtitle says so then.
    bool isEnabled = true;
    friend bool operator==(const SettingsToggleRow&, const SettingsToggleRow&) = default;
};

struct SettingsScaleButton {
    double scale = 1;
    /// "125%".
    UserText title;
    /// It is the current scale.
    bool isSelected = false;
    friend bool operator==(const SettingsScaleButton&, const SettingsScaleButton&) = default;
};

enum class SettingsSectionKind { startup, behavior, interfaceStyle, cursorSize, exclusions, reset };

struct SettingsSection {
    SettingsSectionKind kind = SettingsSectionKind::startup;
    std::string_view symbol;
    UserText title;
    /// Its toggles in their order; what else it holds is known by its kind.
    std::vector<SettingsToggleRow> toggles;
    friend bool operator==(const SettingsSection&, const SettingsSection&) = default;
};

class SettingsWindowModel {
  public:
    static constexpr Size contentSize{480, 760};
    /// Below it a bright wallpaper behind dark glass would take the contrast from the texts.
    static constexpr SliderRange glassOpacityRange{0.75, 1.0, 0.05};
    static constexpr std::array scales = {0.75, 1.0, 1.25, 1.5};

    struct Dependencies {
        CursorSettings& settings;
        KeyValueStore& preferences;
        LaunchAtLogin& launchAtLogin;
        NotificationCenter& notifications;
        CursorViewModel& viewModel;
        Alerts& alerts;
        Application& application;
        /// Whether the session shows which application is in front and lets others draw above it.
        bool seesApplications = true;
    };

    explicit SettingsWindowModel(const Dependencies& dependencies);
    SettingsWindowModel(const SettingsWindowModel&) = delete;
    SettingsWindowModel& operator=(const SettingsWindowModel&) = delete;

    /// Each time the window is shown.
    void appear();

    /// All six, from the top.
    std::vector<SettingsSection> sections() const;
    SettingsToggleRow toggle(SettingsToggle toggle) const;
    /// Flips it and runs what follows from that; nothing when it has that value already.
    void setToggle(SettingsToggle toggle, bool isOn);

    // Interface style.
    UserText glassOpacityText() const { return percentText(deps_.settings.glassOpacity()); }
    double glassOpacity() const { return deps_.settings.glassOpacity(); }
    /// Without the glass look there is nothing that the slider would change.
    bool glassOpacityEnabled() const { return deps_.settings.glassMode(); }
    /// On every value the slider takes; put on its grid. One that is not new does nothing.
    void setGlassOpacity(double value);

    // Cursor size.
    double cursorScale() const;
    UserText cursorScaleText() const { return percentText(cursorScale()); }
    std::array<SettingsScaleButton, 4> scaleButtons() const;
    /// Stores the scale; a new one is announced twice, one that is stored already not at all.
    void selectScale(double scale);

    // Exclusions.
    /// False where applications cannot be distinguished.
    bool exclusionsEnabled() const { return deps_.seesApplications; }
    UserText exclusionsExplanation() const;
    const std::vector<std::string>& excludedApps() const { return deps_.settings.excludedApps(); }
    /// The text of the button that removes the name, for assistive technology and as its help.
    static UserText removeLabel(const std::string& name);
    bool showAddAppField() const { return showAddAppField_; }
    /// Symbol of the button that shows or hides the entry field.
    std::string_view addButtonSymbol() const;
    void toggleAddAppField();
    const std::string& newAppName() const { return newAppName_; }
    void setNewAppName(std::string name);
    /// Enter in the entry field. A name of blanks only adds nothing and leaves the field open.
    void addExcludedApp();
    /// "Cancel": hides the field and forgets what stands in it.
    void cancelAddApp();
    void removeExcludedApp(const std::string& name);

    // Reset.
    /// Asks first; after a "yes" everything is deleted, the user is informed, and the program ends.
    void resetApplication();

    /// Anything of the above has changed.
    Signal<> changed;

  private:
    bool storedBool(const char* key, bool fallback) const;
    bool isOn(SettingsToggle toggle) const;
    void announceScale(double scale);
    void storedScaleChanged();
    void resetConfirmed();

    const Dependencies deps_;
    std::string newAppName_;
    bool showAddAppField_ = false;
    /// A button of the window is writing the scale itself.
    bool selectingScale_ = false;
    /// From the question to its "no", or for good.
    bool resetting_ = false;
    std::vector<Subscription> observers_;
    Lifetime lifetime_;
};

namespace settings_text {

inline constexpr auto windowTitle = translatable("Pintle", "Settings");
inline constexpr auto startup = translatable("Pintle", "Startup");
inline constexpr auto launchAtLogin = translatable("Pintle", "Launch at Login");
inline constexpr auto launchAtLoginSubtitle = translatable("Pintle", "Start Pintle when you log in");
inline constexpr auto behavior = translatable("Pintle", "Behavior");
inline constexpr auto applyOnLaunch = translatable("Pintle", "Apply Last Cursor on Launch");
inline constexpr auto applyOnLaunchSubtitle = translatable("Pintle", "Restore your cursor theme at startup");
inline constexpr auto restoreOnQuit = translatable("Pintle", "Restore System Cursor on Quit");
inline constexpr auto restoreOnQuitSubtitle = translatable("Pintle", "Reset to default when closing app");
/// The subtitle of what has no effect here.
inline constexpr auto noEffect = translatable("Pintle", "This kind of session does not allow it");
inline constexpr auto fullscreen = translatable("Pintle", "Use Themed Cursor in Fullscreen");
inline constexpr auto fullscreenSubtitle = translatable("Pintle", "Keep custom cursor in fullscreen apps");
inline constexpr auto missingTypes = translatable("Pintle", "Use System Cursor for Missing Types");
inline constexpr auto missingTypesSubtitle =
    translatable("Pintle", "Show system cursor (e.g., iBeam for text) when theme doesn't have it");
inline constexpr auto screenSharing = translatable("Pintle", "System Cursor During Screen Sharing");
inline constexpr auto screenSharingSubtitle =
    translatable("Pintle", "Remote viewers see the real cursor (recommended)");
inline constexpr auto interfaceStyle = translatable("Pintle", "Interface Style");
inline constexpr auto glassMode = translatable("Pintle", "Total Glass Mode");
inline constexpr auto glassModeSubtitle =
    translatable("Pintle", "Ultra-modern blurred transparency (macOS 2026)");
inline constexpr auto glassOpacity = translatable("Pintle", "Glass Opacity");
inline constexpr auto needsCompositor =
    translatable("Pintle", "The glass look needs a compositor, and none is running");
inline constexpr auto cursorSize = translatable("Pintle", "Cursor Size");
inline constexpr auto exclusions = translatable("Pintle", "Exclusions");
inline constexpr auto exclusionsExplanation =
    translatable("Pintle", "Apps where themed cursor will NOT be applied");
inline constexpr auto addHelp = translatable("Pintle", "Add app to exclusion list");
inline constexpr auto placeholder = translatable("Pintle", "App name (e.g., Safari)");
inline constexpr auto cancel = translatable("Pintle", "Cancel");
inline constexpr auto remove = translatable("Pintle", "Remove %1");
inline constexpr auto noExclusions = translatable("Pintle", "No exclusions added");
inline constexpr auto reset = translatable("Pintle", "Reset");
inline constexpr auto resetExplanation =
    translatable("Pintle", "Reset all downloaded themes, settings, and restore system cursor");
inline constexpr auto resetButton = translatable("Pintle", "Reset Application");
inline constexpr auto resetQuestion = translatable("Pintle", "Reset Application?");
inline constexpr auto resetQuestionText =
    translatable("Pintle",
                 "This will delete all downloaded themes, reset all settings to defaults, and restore the "
                 "system cursor. Pintle will quit after reset.");
inline constexpr auto resetAndQuit = translatable("Pintle", "Reset & Quit");
inline constexpr auto resetDone = translatable("Pintle", "Reset Complete");
inline constexpr auto resetDoneText = translatable(
    "Pintle", "Application has been reset. Pintle will now quit. Launch it again to start fresh.");
inline constexpr auto quit = translatable("Pintle", "Quit");
inline constexpr std::array all = {windowTitle,
                                   startup,
                                   launchAtLogin,
                                   launchAtLoginSubtitle,
                                   behavior,
                                   applyOnLaunch,
                                   applyOnLaunchSubtitle,
                                   restoreOnQuit,
                                   restoreOnQuitSubtitle,
                                   noEffect,
                                   fullscreen,
                                   fullscreenSubtitle,
                                   missingTypes,
                                   missingTypesSubtitle,
                                   screenSharing,
                                   screenSharingSubtitle,
                                   interfaceStyle,
                                   glassMode,
                                   glassModeSubtitle,
                                   glassOpacity,
                                   needsCompositor,
                                   cursorSize,
                                   exclusions,
                                   exclusionsExplanation,
                                   addHelp,
                                   placeholder,
                                   cancel,
                                   remove,
                                   noExclusions,
                                   reset,
                                   resetExplanation,
                                   resetButton,
                                   resetQuestion,
                                   resetQuestionText,
                                   resetAndQuit,
                                   resetDone,
                                   resetDoneText,
                                   quit};

}  // namespace settings_text
}  // namespace pintle
