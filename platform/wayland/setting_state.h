// What the desktop's pointer settings were before this program changed them, and what it wrote: the file by
// which the user gets them back, also after the program was killed. Any thread, one call at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/result.h"

namespace pintle::wayland {

/// The two values that a desktop keeps, as the text that it keeps them in. Absent: not set.
struct PointerSetting {
    std::optional<std::string> theme;
    /// Nominal, in pixels.
    std::optional<std::string> size;
    friend bool operator==(const PointerSetting&, const PointerSetting&) = default;
};

struct ProviderState {
    /// The user's own.
    PointerSetting previous;
    /// What this program was about to write last.
    PointerSetting written;
    /// The size of this program that stood there before that; after a crash either may stand.
    std::optional<std::string> sizeBefore;
    friend bool operator==(const ProviderState&, const ProviderState&) = default;
};

/// By the provider's name.
using SettingState = std::map<std::string, ProviderState, std::less<>>;

/// Absent when a value is no UTF-8 text or longer than a state file may hold: then it could not be put back.
std::optional<std::string> encodeSettingState(const SettingState& state);

/// Absent when the text is damaged in any way.
std::optional<SettingState> decodeSettingState(std::string_view text);

class StateFile {
  public:
    /// The file and a copy beside it, readable by the user alone.
    explicit StateFile(std::filesystem::path file);

    struct Loaded {
        /// Empty when there is none.
        SettingState state;
        /// The file, or the file and its copy, cannot be read; the state comes from the copy or is lost.
        bool wasDamaged = false;
    };
    Loaded load() const;
    /// Waits until it is on the disk. On an error the earlier state is as it was. Makes the folder.
    Status save(const SettingState& state) const;
    /// Both files; none is no error.
    void remove() const;

  private:
    std::filesystem::path file_;
    std::filesystem::path copy_;
};

}  // namespace pintle::wayland
