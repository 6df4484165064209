#include "platform/freedesktop/user_directories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>
#include <vector>

namespace pintle {
namespace {

namespace fs = std::filesystem;

fs::path homeFromUserList() {
    std::vector<char> buffer(16384);
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
        found->pw_dir && *found->pw_dir == '/')
        return found->pw_dir;
    return "/";
}

std::optional<fs::path> absolute(const Environment& environment, const char* name) {
    const auto value = environment(name);
    if (!value || !value->starts_with('/')) return std::nullopt;
    return fs::path(*value);
}

fs::path home(const Environment& environment) {
    const auto named = absolute(environment, "HOME");
    return named ? *named : homeFromUserList();
}

}  // namespace

Environment processEnvironment() {
    return [](const char* name) -> std::optional<std::string> {
        const char* value = std::getenv(name);
        if (!value) return std::nullopt;
        return value;
    };
}

UserDirectories makeUserDirectories(const Environment& environment) {
    UserDirectories directories;
    directories.home = home(environment);
    directories.applicationSupport =
        absolute(environment, "XDG_DATA_HOME").value_or(directories.home / ".local" / "share");
    directories.temporary = absolute(environment, "TMPDIR").value_or("/tmp");
    return directories;
}

fs::path makePreferencePath(const Environment& environment, const Bundle& bundle) {
    const fs::path folder = absolute(environment, "XDG_CONFIG_HOME").value_or(home(environment) / ".config");
    return folder / (bundle.identifier + ".plist");
}

Bundle makeBundle(const Environment& environment) {
    Bundle bundle;
    bundle.shortVersion = PINTLE_VERSION;
    bundle.build = PINTLE_BUILD;
    std::error_code error;
    std::string executable = fs::read_symlink("/proc/self/exe", error).string();
    // What the system adds when an update has replaced the file.
    constexpr std::string_view kReplaced = " (deleted)";
    if (executable.ends_with(kReplaced) && !fs::exists(executable, error))
        executable.resize(executable.size() - kReplaced.size());
    bundle.executable = executable;
    // A terminal that was itself started from such a package hands its variables down; only a program inside
    // the mounted folder is meant.
    const auto package = absolute(environment, "APPIMAGE");
    const auto mounted = absolute(environment, "APPDIR");
    if (package && mounted && executable.starts_with((*mounted / "").string())) bundle.executable = *package;
    return bundle;
}

}  // namespace pintle
