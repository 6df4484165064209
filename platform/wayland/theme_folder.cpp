#include "platform/wayland/theme_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <set>
#include <system_error>
#include <utility>

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOwnPrefix = "Pintle-";
constexpr std::string_view kMarker = ".pintle";
constexpr int kMostNames = 100;

Error errorOf(int code) { return {"errno", code, std::generic_category().message(code)}; }
Error errorOf(const std::error_code& code) { return {"errno", code.value(), code.message()}; }

bool isPlainFileName(std::string_view name) {
    return !name.empty() && name.size() <= 255 && !name.starts_with('.') &&
           std::none_of(name.begin(), name.end(),
                        [](char c) { return c == '/' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

/// An index file separates themes by these.
bool canBeInherited(std::string_view name) {
    return isPlainFileName(name) && name.find_first_of(" \t;,:") == std::string_view::npos;
}

bool isFolderItself(const fs::path& path) {
    struct stat facts {};
    return ::lstat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

bool isThere(const fs::path& path) {
    struct stat facts {};
    return ::lstat(path.c_str(), &facts) == 0;
}

bool isOurs(const fs::path& theme) {
    struct stat facts {};
    return isFolderItself(theme) && ::lstat((theme / kMarker).c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

fs::path leftoverStart(const fs::path& folder, std::string_view name) {
    return folder / ("." + std::string(name) + ".new-");
}

/// A folder of its own that nobody else uses.
std::optional<fs::path> makeBeside(const fs::path& start) {
    std::random_device random;
    for (int i = 0; i < kMostNames; ++i) {
        fs::path name = start;
        name += std::to_string(random());
        if (::mkdir(name.c_str(), 0777) == 0) return name;
        if (errno != EEXIST) break;
    }
    return std::nullopt;
}

/// 0, or the error's number.
int syncFolder(const fs::path& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return errno;
    const int code = ::fsync(fd) == 0 ? 0 : errno;
    ::close(fd);
    return code;
}

int writeFile(const fs::path& file, std::span<const std::uint8_t> bytes) {
    const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0) return errno;
    int code = 0;
    while (code == 0 && !bytes.empty()) {
        const auto wrote = ::write(fd, bytes.data(), bytes.size());
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0)
            code = wrote < 0 ? errno : ENOSPC;
        else
            bytes = bytes.subspan(static_cast<std::size_t>(wrote));
    }
    if (code == 0 && ::fsync(fd) != 0) code = errno;
    if (::close(fd) != 0 && code == 0) code = errno;
    return code;
}

int writeText(const fs::path& file, std::string_view text) {
    return writeFile(file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::string indexText(std::string_view name, std::span<const std::string> inherits) {
    std::string parents;
    for (const auto& each : inherits) {
        if (!canBeInherited(each) || isOwnThemeName(each)) continue;
        if (!parents.empty()) parents += ',';
        parents += each;
    }
    std::string text = "[Icon Theme]\nName=" + std::string(name) +
                       "\nComment=Written by Pintle, and written anew at each change\nHidden=true\n";
    if (!parents.empty()) text += "Inherits=" + parents + "\n";
    return text;
}

int fill(const fs::path& theme, std::string_view name, std::span<const std::string> inherits,
         std::span<const ThemeFile> files) {
    const auto cursors = theme / "cursors";
    if (::mkdir(cursors.c_str(), 0777) != 0) return errno;
    if (const int code = writeText(theme / kMarker, "Pintle made this folder and removes it again.\n"))
        return code;
    if (const int code = writeText(theme / "index.theme", indexText(name, inherits))) return code;
    std::set<std::string_view> taken;
    for (const auto& file : files) {
        const std::string* target = nullptr;
        for (const auto& alias : file.names) {
            if (!isPlainFileName(alias) || !taken.insert(alias).second) continue;
            if (!target) {
                if (const int code = writeFile(cursors / alias, file.bytes)) return code;
                target = &alias;
            } else if (::symlink(target->c_str(), (cursors / alias).c_str()) != 0) {
                return errno;
            }
        }
    }
    if (const int code = syncFolder(cursors)) return code;
    return syncFolder(theme);
}

std::optional<Error> link(const IconFolders& folders, std::string_view name) {
    std::error_code error;
    fs::create_directories(folders.home, error);
    if (error) return errorOf(error);
    if (fs::equivalent(folders.home, folders.data, error)) return std::nullopt;
    const auto theme = folders.data / name;
    const auto place = folders.home / name;
    if (::symlink(theme.c_str(), place.c_str()) == 0) return std::nullopt;
    const int code = errno;
    if (code == EEXIST && fs::read_symlink(place, error) == theme) return std::nullopt;
    return errorOf(code);
}

/// Takes the name away first, so that nobody sees a folder that is half removed.
void removeFolder(const fs::path& folder, std::string_view name) {
    std::error_code ignored;
    if (const auto aside = makeBeside(leftoverStart(folder, name))) {
        if (::rename((folder / name).c_str(), aside->c_str()) == 0) syncFolder(folder);
        fs::remove_all(*aside, ignored);
    }
}

}  // namespace

bool isOwnThemeName(std::string_view name) { return name.starts_with(kOwnPrefix); }

std::string_view nextThemeName(std::string_view inForce) {
    return inForce == kThemeNames[0] ? kThemeNames[1] : kThemeNames[0];
}

Result<WrittenTheme> writeTheme(const IconFolders& folders, std::string_view name,
                                std::span<const std::string> inherits, std::span<const ThemeFile> files) {
    std::error_code error;
    fs::create_directories(folders.data, error);
    if (error) return errorOf(error);
    const auto place = folders.data / name;
    if (isThere(place) && !isOurs(place)) return errorOf(EEXIST);

    const auto beside = makeBeside(leftoverStart(folders.data, name));
    if (!beside) return errorOf(errno);
    int code = fill(*beside, name, inherits, files);
    if (code == 0) {
        if (isThere(place)) removeFolder(folders.data, name);
        if (::rename(beside->c_str(), place.c_str()) != 0) code = errno;
    }
    if (code != 0) {
        fs::remove_all(*beside, error);
        return errorOf(code);
    }
    if (const int synced = syncFolder(folders.data)) return errorOf(synced);
    return WrittenTheme{link(folders, name)};
}

void removeTheme(const IconFolders& folders, std::string_view name) {
    const auto place = folders.data / name;
    if (!isOurs(place)) return;
    std::error_code error;
    const auto linkPlace = folders.home / name;
    if (fs::read_symlink(linkPlace, error) == place) ::unlink(linkPlace.c_str());
    removeFolder(folders.data, name);
}

void removeThemeLeftovers(const IconFolders& folders) {
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator each(folders.data, error), end; !error && each != end; each.increment(error))
        for (const auto name : kThemeNames) {
            const auto start = leftoverStart(folders.data, name).filename().string();
            if (each->path().filename().string().starts_with(start) && isFolderItself(each->path()))
                found.push_back(each->path());
        }
    for (const auto& each : found) fs::remove_all(each, error);
}

bool hasTheme(const IconFolders& folders, std::string_view name) { return isOurs(folders.data / name); }

}  // namespace pintle::wayland
