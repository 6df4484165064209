// Points the desktop's settings at a theme of this program and puts the user's own back, with the state file
// written before anything is touched. Called on one background thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/log.h"
#include "platform/wayland/setting_state.h"
#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

class SettingsChannel {
  public:
    /// The log outlives the channel.
    SettingsChannel(std::vector<std::unique_ptr<SettingsProvider>> providers, StateFile file, Log& log);

    /// Whether any provider reaches running programs.
    bool reachesAnybody() const;

    /// True when at least one provider that reaches running programs took it. The user's own values are noted
    /// first; when that is impossible nothing is touched.
    bool put(const ThemeChoice& choice);

    /// Puts back what is still this program's. True when nothing of it is left anywhere; otherwise what
    /// failed stays noted for the next time.
    bool restore();

    /// The theme of this program that is in force or was about to be; absent when none is.
    std::optional<std::string> themeInForce();

    /// The user's own choice: what is noted where a theme of this program is in force, else what is set. From
    /// the first provider that has one.
    PointerSetting usersOwn();

  private:
    struct Present {
        SettingsProvider* provider = nullptr;
        PointerSetting value;
    };
    /// Of those that could be read.
    std::vector<Present> readAll();
    /// What the user himself has set, for what now stands there.
    static PointerSetting ownValue(const SettingsProvider& provider, const PointerSetting& present,
                                   const ProviderState* noted);
    SettingState loadState();
    void complain(const SettingsProvider& provider, std::string_view what, const Error& error);

    std::vector<std::unique_ptr<SettingsProvider>> providers_;
    StateFile file_;
    Log& log_;
};

}  // namespace pintle::wayland
