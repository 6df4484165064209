// One place where a desktop keeps its pointer's theme and size. Each is found by itself, and what goes wrong
// with one leaves the others alone. Called on one background thread at a time; may wait for a few seconds.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/result.h"
#include "platform/wayland/setting_state.h"

namespace pintle::wayland {

/// Answers an environment variable; absent when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

struct ThemeChoice {
    std::string theme;
    /// Nominal, in pixels.
    int size = 0;
    friend bool operator==(const ThemeChoice&, const ThemeChoice&) = default;
};

class SettingsProvider {
  public:
    virtual ~SettingsProvider() = default;

    /// The name under which the state file knows it; never another thing's.
    virtual std::string_view name() const = 0;
    /// Whether running programs follow it. One that reaches only later ones does not count as success.
    virtual bool reachesRunningPrograms() const = 0;
    /// False where read() answers what was set when the session began, because nobody can be asked.
    virtual bool knowsPresentValue() const = 0;
    virtual Result<PointerSetting> read() = 0;
    /// Sets both values, or unsets them where they are absent; the desktop sees one change where it can.
    virtual Status write(const PointerSetting& setting) = 0;
};

}  // namespace pintle::wayland
