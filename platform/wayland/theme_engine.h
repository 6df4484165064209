// Brings the table of wishes onto the disk and into the desktop's settings, or takes everything back. What it
// does may take a second, so it is asked from the background; the last request wins whatever the order of
// threads.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/log.h"
#include "platform/registered_cursor.h"
#include "platform/wayland/settings_channel.h"
#include "platform/wayland/theme_folder.h"

namespace pintle::wayland {

/// By identifier.
using Wishes = std::map<std::string, RegisteredCursor>;

struct ThemeRequest {
    /// Counts up; a request that is older than one that was carried out is left out.
    std::uint64_t serial = 0;
    /// Empty: the user's own theme comes back.
    Wishes wishes;
    /// Nominal of the pictures as they are, and what the settings are set to.
    int size = 0;
    /// Left out when the theme that was written last has what the outputs need.
    bool onlyForOtherOutputs = false;
};

/// Any thread; requests wait for each other. The log outlives the engine.
class ThemeEngine {
  public:
    ThemeEngine(IconFolders icons, std::vector<std::unique_ptr<SettingsProvider>> providers,
                StateFile stateFile, std::function<std::vector<double>()> outputScales, Log& log);

    bool reachesAnybody() const { return reachesAnybody_; }

    /// False when the user sees another theme than he should; the log has the reason.
    bool carryOut(const ThemeRequest& request);

    /// The user's own theme and size, as last seen.
    PointerSetting usersOwn() const;

  private:
    bool put(const ThemeRequest& request);
    bool restore();
    void noteUsersOwn();

    const IconFolders icons_;
    const std::function<std::vector<double>()> outputScales_;
    Log& log_;
    bool reachesAnybody_ = false;

    /// Held while a request is carried out.
    std::mutex working_;
    SettingsChannel channel_;
    std::uint64_t lastSerial_ = 0;
    bool leftoversRemoved_ = false;
    /// Of the theme that is in force; empty while none of this process is.
    std::vector<int> nominals_;

    mutable std::mutex ownMutex_;
    PointerSetting usersOwn_;
};

/// For sessions of another kind: puts the user's own theme back where an earlier session has left one of ours
/// in the settings, which would pass for the user's choice there. Without a state file nothing is touched and
/// `providers` is not called. True when nothing of ours is left.
bool putBackLeftTheme(const IconFolders& icons, const std::filesystem::path& stateFile,
                      const std::function<std::vector<std::unique_ptr<SettingsProvider>>()>& providers,
                      Log& log);

}  // namespace pintle::wayland
