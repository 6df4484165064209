// The user's preferences: each kept in the preference store and mirrored in a property that views observe.
// Used by every module above; made once by the root. Takes no locks: main thread only.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/notification_center.h"
#include "base/signal.h"
#include "platform/key_value_store.h"

namespace pintle {

/// No value is checked or limited: what is set is stored and announced. Every setter first calls the
/// observers of `changed`, then stores the value, then posts the notification of the property where it has
/// one. It does so even when the new value equals the old one.
class CursorSettings {
  public:
    static constexpr auto scaleKey = "cursorScale";
    static constexpr auto themeIdKey = "currentThemeId";
    static constexpr auto applyOnLaunchKey = "applyOnLaunch";
    static constexpr auto restoreOnQuitKey = "restoreOnQuit";
    static constexpr auto alwaysUseThemedCursorKey = "alwaysUseThemedCursor";
    static constexpr auto useSystemCursorForMissingKey = "useSystemCursorForMissing";
    static constexpr auto excludedAppsKey = "excludedApps";
    static constexpr auto glassModeKey = "glassMode";
    static constexpr auto glassOpacityKey = "glassOpacity";
    /// Neither registered nor mirrored here; others read and write it.
    static constexpr auto launchAtLoginKey = "launchAtLogin";
    static constexpr auto pauseWhenScreenSharedKey = "pauseWhenScreenShared";
    static constexpr auto themeErrorsKey = "themeDownloadErrors";

    /// Registers the defaults and loads every property. Both must outlive the settings.
    CursorSettings(KeyValueStore& defaults, NotificationCenter& notifications);
    CursorSettings(const CursorSettings&) = delete;
    CursorSettings& operator=(const CursorSettings&) = delete;
    ~CursorSettings();

    /// The instance that the root installed. Ends the program when there is none. Not for the core, which
    /// takes the settings by reference.
    static CursorSettings& shared();
    /// Makes `settings` the answer of shared() until it ends.
    static void install(CursorSettings& settings);

    /// Factor applied to every cursor image; 1.0 is the desktop's normal size.
    double cursorScale() const { return cursorScale_; }
    /// Whether images can be drawn at this scale at all, in whatever size; what builds them ends the program
    /// at others.
    static bool canScale(double scale);
    /// The scale in the store as this class reads it at the start: 0.0 for what is no number or a number at
    /// which nothing can be drawn.
    static double storedScale(const KeyValueStore& defaults);
    void setCursorScale(double value);
    /// The theme last applied; absent when the system cursor is in use.
    const std::optional<std::string>& currentThemeId() const { return currentThemeId_; }
    /// Absent removes the stored value.
    void setCurrentThemeId(std::optional<std::string> value);
    /// Apply the last theme again at start-up.
    bool applyOnLaunch() const { return applyOnLaunch_; }
    void setApplyOnLaunch(bool value);
    /// As loaded at the start. The quit path reads the key itself, because the settings window writes the key
    /// itself.
    bool restoreOnQuit() const { return restoreOnQuit_; }
    /// Calls the observers and stores nothing.
    void setRestoreOnQuit(bool value);
    /// Keep the themed cursor where it would otherwise be given up.
    bool alwaysUseThemedCursor() const { return alwaysUseThemedCursor_; }
    void setAlwaysUseThemedCursor(bool value);
    /// Roles that the theme lacks show the system cursor.
    bool useSystemCursorForMissing() const { return useSystemCursorForMissing_; }
    void setUseSystemCursorForMissing(bool value);
    /// Names of the applications in front of which the theme is suspended.
    const std::vector<std::string>& excludedApps() const { return excludedApps_; }
    void setExcludedApps(std::vector<std::string> value);
    /// Translucent look of the popover.
    bool glassMode() const { return glassMode_; }
    void setGlassMode(bool value);
    /// Opacity of that look.
    double glassOpacity() const { return glassOpacity_; }
    void setGlassOpacity(double value);
    /// Suspend the theme while the screen is shared or recorded.
    bool pauseWhenScreenShared() const { return pauseWhenScreenShared_; }
    void setPauseWhenScreenShared(bool value);

    /// Appends the name unless the list holds exactly it.
    void addExcludedApp(const std::string& name);
    /// Removes the first entry that is exactly the name.
    void removeExcludedApp(const std::string& name);

    /// The map from theme id to the message of its last failed download is read from the store every time.
    void setThemeError(const std::string& themeId, const std::string& error);
    /// Writes the map back also when it held nothing for the theme.
    void clearThemeError(const std::string& themeId);
    std::optional<std::string> themeError(const std::string& themeId) const;

    /// A property has a new value, which is not stored yet.
    Signal<> changed;

  private:
    std::map<std::string, std::string> themeErrors() const;
    void writeThemeErrors(const std::map<std::string, std::string>& errors);

    KeyValueStore& defaults_;
    NotificationCenter& notifications_;
    double cursorScale_ = 0;
    std::optional<std::string> currentThemeId_;
    bool applyOnLaunch_ = false;
    bool restoreOnQuit_ = false;
    bool alwaysUseThemedCursor_ = false;
    bool useSystemCursorForMissing_ = false;
    std::vector<std::string> excludedApps_;
    bool glassMode_ = false;
    double glassOpacity_ = 0;
    bool pauseWhenScreenShared_ = false;
};

}  // namespace pintle
