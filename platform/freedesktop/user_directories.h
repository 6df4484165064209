// Where this program and the user's folders lie, from the environment. Called once by the root.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/bundle.h"

namespace pintle {

/// Answers an environment variable; absent when it is not set.
using Environment = std::function<std::optional<std::string>(const char* name)>;
Environment processEnvironment();

/// Application Support is XDG_DATA_HOME or ~/.local/share, temporary files are in TMPDIR or /tmp. Values that
/// are empty or relative count as not set. Without HOME the user's entry in the system's list answers.
UserDirectories makeUserDirectories(const Environment& environment);

/// IDENTIFIER.plist in XDG_CONFIG_HOME or ~/.config.
std::filesystem::path makePreferencePath(const Environment& environment, const Bundle& bundle);

/// The executable is the package file when the program runs from one that is mounted.
Bundle makeBundle(const Environment& environment);

}  // namespace pintle
