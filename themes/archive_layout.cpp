#include "themes/archive_layout.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <set>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

namespace pintle {
namespace {

namespace fs = std::filesystem;
using Components = std::vector<std::string>;

constexpr auto kCursors = "cursors";
constexpr std::string_view kMagic = "Xcur";
constexpr int kMostLinks = 40;
/// Many times what the largest themes need, and seconds at most.
constexpr std::uint64_t kMostSteps = 1'000'000;

/// What following links may still cost: each link may lead over hundreds of others.
class Steps {
  public:
    bool take() {
        if (left_ == 0) return false;
        --left_;
        return true;
    }
    bool gone() const { return left_ == 0; }

  private:
    std::uint64_t left_ = kMostSteps;
};

Components split(const std::string& path) {
    Components parts;
    std::size_t start = 0;
    while (start <= path.size()) {
        const auto end = std::min(path.find('/', start), path.size());
        const auto part = path.substr(start, end - start);
        if (!part.empty() && part != ".") parts.push_back(part);
        start = end + 1;
    }
    return parts;
}

fs::path join(const fs::path& root, const Components& parts, std::size_t first = 0) {
    fs::path path = root;
    for (std::size_t i = first; i < parts.size(); ++i) path /= parts[i];
    return path;
}

bool isInside(const Components& path, const Components& folder) {
    return path.size() > folder.size() && std::equal(folder.begin(), folder.end(), path.begin());
}

std::optional<struct stat> statOf(const fs::path& path) {
    struct stat info = {};
    if (::lstat(path.c_str(), &info) != 0) return std::nullopt;
    return info;
}

std::optional<std::string> linkText(const fs::path& path) {
    const auto info = statOf(path);
    if (!info || !S_ISLNK(info->st_mode)) return std::nullopt;
    std::error_code error;
    const auto text = fs::read_symlink(path, error);
    if (error) return std::nullopt;
    return text.string();
}

/// Resolves the text of a link in the folder `at`: a walk over components that follows every link it meets.
/// `place` maps components to the entry on disk and is absent where the walk may not go. Absent when the walk
/// leads there, or in circles, or no steps are left. A component that does not exist is passed like a folder.
using Place = std::function<std::optional<fs::path>(const Components&)>;
std::optional<Components> walk(Components at, const std::string& text, bool mayStartAtTop, Steps& steps,
                               const Place& place) {
    Components todo = split(text);
    if (text.starts_with('/')) {
        if (!mayStartAtTop) return std::nullopt;
        at.clear();
    }
    std::reverse(todo.begin(), todo.end());
    // The kernel counts the first link, whose text this is, as well.
    int links = 1;
    while (!todo.empty()) {
        if (!steps.take()) return std::nullopt;
        const auto part = std::move(todo.back());
        todo.pop_back();
        if (part == "..") {
            if (!at.empty())
                at.pop_back();
            else if (!mayStartAtTop)
                return std::nullopt;
            continue;
        }
        at.push_back(part);
        const auto entry = place(at);
        if (!entry) return std::nullopt;
        const auto next = linkText(*entry);
        if (!next) continue;
        if (++links > kMostLinks) return std::nullopt;
        at.pop_back();
        if (next->starts_with('/')) {
            if (!mayStartAtTop) return std::nullopt;
            at.clear();
        }
        auto parts = split(*next);
        todo.insert(todo.end(), parts.rbegin(), parts.rend());
    }
    return at;
}

/// The walk over the disk as it is, below `root` and along the folders that lead to it. A link out of an
/// archive is followed nowhere else: asking for an entry can mount a volume, or wait for a dead server.
std::optional<Components> resolve(const Components& folder, const std::string& text, const Components& root,
                                  Steps& steps) {
    return walk(folder, text, true, steps, [&](const Components& at) -> std::optional<fs::path> {
        if (at != root && !isInside(at, root) && !isInside(root, at)) return std::nullopt;
        return join("/", at);
    });
}

/// Whether the entry is a file that begins as Xcursor files do; links lead no further than `root`.
bool isXcursorFile(const fs::path& entry, const Components& root, Steps& steps) {
    auto info = statOf(entry);
    if (!info) return false;
    fs::path file = entry;
    if (S_ISLNK(info->st_mode)) {
        const auto text = linkText(entry);
        const auto target =
            text ? resolve(split(entry.parent_path().string()), *text, root, steps) : std::nullopt;
        if (!target || !isInside(*target, root)) return false;
        // The kernel walks through no file, and by now it is known to leave the tree nowhere.
        struct stat followed = {};
        if (::stat(entry.c_str(), &followed) != 0) return false;
        file = join("/", *target);
        info = statOf(file);
        if (!info) return false;
    }
    // Opening a FIFO would wait for a writer, and opening a device may do anything.
    if (!S_ISREG(info->st_mode)) return false;
    const int fd = ::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    char head[kMagic.size()];
    const auto got = ::pread(fd, head, sizeof head, 0);
    ::close(fd);
    return got == static_cast<ssize_t>(sizeof head) && std::memcmp(head, kMagic.data(), sizeof head) == 0;
}

std::string lowerCased(std::string text) {
    for (auto& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::vector<fs::path> entriesOf(const fs::path& folder, std::error_code& error) {
    std::vector<fs::path> entries;
    fs::directory_iterator entry(folder, error);
    while (!error && entry != fs::directory_iterator{}) {
        entries.push_back(entry->path());
        entry.increment(error);
    }
    return entries;
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::error_code ignored;
    return entriesOf(folder, ignored);
}

/// The tree below a folder, the links and odd files in it by their paths.
struct Inside {
    std::vector<fs::path> links;
    std::vector<fs::path> odd;
    /// Set when there may be more than was seen.
    std::error_code error;
};

/// The right of the owner to use and to remove a file, and none that no cursor needs.
void setUsualMode(const fs::path& file) {
    if (const auto info = statOf(file); info && S_ISREG(info->st_mode))
        ::chmod(file.c_str(), (info->st_mode & 0777) | S_IRUSR | S_IWUSR);
}

/// Also gives everything its usual mode.
Inside survey(const fs::path& top) {
    Inside inside;
    std::vector<fs::path> folders{top};
    while (!folders.empty()) {
        const auto folder = std::move(folders.back());
        folders.pop_back();
        if (const auto info = statOf(folder)) ::chmod(folder.c_str(), (info->st_mode & 0777) | S_IRWXU);
        const auto entries = entriesOf(folder, inside.error);
        if (inside.error) return inside;
        for (const auto& entry : entries) {
            const auto info = statOf(entry);
            if (!info && errno != ENOENT) inside.error = {errno, std::generic_category()};
            if (inside.error) return inside;
            if (!info) continue;
            if (S_ISDIR(info->st_mode))
                folders.push_back(entry);
            else if (S_ISLNK(info->st_mode))
                inside.links.push_back(entry);
            else if (S_ISREG(info->st_mode))
                setUsualMode(entry);
            else
                inside.odd.push_back(entry);
        }
    }
    return inside;
}

class Copier {
  public:
    Copier(Components root, std::uint64_t most, Steps& steps)
        : root_(std::move(root)), left_(most), steps_(steps) {}

    /// Puts a copy of what lies at `target` to where nothing is.
    std::error_code copy(const Components& target, const fs::path& to) {
        const auto from = join("/", target);
        const auto info = statOf(from);
        if (!info) return {};
        if (S_ISREG(info->st_mode)) return copyFile(from, to);
        // It would be copied into itself.
        const bool around = isInside(split(to.string()), target);
        if (S_ISDIR(info->st_mode) && !around) return copyFolder(from, to);
        return {};
    }

  private:
    std::error_code spend() {
        if (left_ == 0) return std::make_error_code(std::errc::file_too_large);
        --left_;
        return {};
    }
    std::error_code copyFile(const fs::path& from, const fs::path& to) {
        if (const auto error = spend()) return error;
        // A second name is as good as a copy, because the first one goes or is never written to again. It
        // also keeps a thousand links to one large file from filling the disk.
        std::error_code error;
        fs::create_hard_link(from, to, error);
        if (error) {
            error.clear();
            fs::copy_file(from, to, error);
        }
        if (!error) setUsualMode(to);
        return error;
    }
    /// Links in it are followed to files only: no theme needs more, and so the copy has an end.
    std::error_code copyFolder(const fs::path& from, const fs::path& to) {
        std::vector<std::pair<fs::path, fs::path>> todo{{from, to}};
        while (!todo.empty()) {
            const auto [source, place] = std::move(todo.back());
            todo.pop_back();
            if (const auto error = spend()) return error;
            if (::mkdir(place.c_str(), 0755) != 0) return {errno, std::generic_category()};
            for (const auto& entry : entriesOf(source)) {
                if (!steps_.take()) return std::make_error_code(std::errc::file_too_large);
                const auto info = statOf(entry);
                if (!info) continue;
                std::error_code error;
                if (S_ISDIR(info->st_mode)) {
                    todo.emplace_back(entry, place / entry.filename());
                } else if (S_ISREG(info->st_mode)) {
                    error = copyFile(entry, place / entry.filename());
                } else if (const auto text = linkText(entry)) {
                    const auto target = resolve(split(source.string()), *text, root_, steps_);
                    const auto path = target && isInside(*target, root_) ? join("/", *target) : fs::path();
                    const auto at = path.empty() ? std::nullopt : statOf(path);
                    if (at && S_ISREG(at->st_mode)) error = copyFile(path, place / entry.filename());
                }
                if (error) return error;
            }
        }
        return {};
    }

    const Components root_;
    std::uint64_t left_;
    Steps& steps_;
};

Error errorOf(const std::error_code& code) {
    if (code == std::errc::file_too_large)
        return {"Pintle", -1, "Extraction failed: the archive holds links that lead to too much"};
    return {"Pintle", code.value(), code.message()};
}

}  // namespace

std::optional<fs::path> pickCursorDirectory(const fs::path& root, const std::string& themeId) {
    std::error_code error;
    const auto top = fs::canonical(root, error);
    if (error) return std::nullopt;
    const auto topParts = split(top.string());
    const auto id = lowerCased(themeId);

    struct Candidate {
        fs::path path;
        bool matches = false;
        bool isNamedCursors = false;
        std::size_t count = 0;
    };
    std::optional<Candidate> best;
    struct Folder {
        fs::path path;
        bool matches;
    };
    // The last one is visited next, so the folders of one listing go in from the back.
    std::vector<Folder> folders{{top, false}};
    Steps steps;
    while (!folders.empty()) {
        const auto folder = std::move(folders.back());
        folders.pop_back();
        Candidate candidate{folder.path, folder.matches, folder.path.filename() == kCursors, 0};
        std::vector<Folder> inner;
        for (const auto& entry : entriesOf(folder.path)) {
            const auto info = statOf(entry);
            if (!info) continue;
            if (S_ISDIR(info->st_mode))
                inner.push_back({entry, folder.matches || lowerCased(entry.filename().string()) == id});
            else if (isXcursorFile(entry, topParts, steps))
                ++candidate.count;
        }
        folders.insert(folders.end(), inner.rbegin(), inner.rend());
        if (folder.path == top || candidate.count == 0) continue;
        const auto keys = [](const Candidate& of) {
            return std::tuple(of.matches, of.isNamedCursors, of.count);
        };
        if (!best || keys(candidate) > keys(*best)) best = std::move(candidate);
    }
    if (!best) return std::nullopt;
    return root / best->path.lexically_relative(top);
}

Status makeSelfContained(const fs::path& chosen, const fs::path& root, std::uint64_t mostCopies) {
    std::error_code error;
    const auto rootParts = split(fs::canonical(root, error).string());
    if (error) return errorOf(error);
    const auto folder = fs::canonical(chosen, error);
    if (error) return errorOf(error);
    const auto folderParts = split(folder.string());

    // Without the right to write to them, nothing can be moved out of the folders around it.
    for (auto around = folder; isInside(split(around.string()), rootParts); around = around.parent_path())
        ::chmod(around.parent_path().c_str(), S_IRWXU);
    const auto inside = survey(folder);
    // An entry whose path is too long here would have a shorter one after the move.
    if (inside.error) return errorOf(inside.error);
    for (const auto& odd : inside.odd)
        if (!fs::remove(odd, error)) return errorOf(error);
    const std::set<std::string> odds(inside.odd.begin(), inside.odd.end());

    struct Link {
        fs::path path;
        std::string text;
        /// What takes its place when it does not stay; absent: nothing.
        std::optional<Components> copied;
        /// What it leads to in the theme's folder as it will be, with "cursors" as its only entry. Absent:
        /// the link does not stay.
        std::optional<Components> moved;
    };
    const auto below = [&](const Components& of) {
        Components path{kCursors};
        path.insert(path.end(), of.begin() + static_cast<std::ptrdiff_t>(folderParts.size()), of.end());
        return path;
    };
    // All decided before the first one is changed: links lead through each other.
    std::vector<Link> links;
    std::set<std::string> goes;
    Steps steps;
    for (const auto& path : inside.links) {
        const auto text = linkText(path);
        const auto at = split(path.parent_path().string());
        const auto target = text ? resolve(at, *text, rootParts, steps) : std::nullopt;
        if (steps.gone()) return errorOf(std::make_error_code(std::errc::file_too_large));
        const auto found = target ? statOf(join("/", *target)) : std::nullopt;
        // A FIFO is gone by now, and so is whatever led to it.
        const bool gone = target && odds.contains(join("/", *target).string());
        Link link{path, text.value_or(""), std::nullopt, std::nullopt};
        if (found && isInside(*target, rootParts)) link.copied = target;
        if (target && !gone && isInside(*target, folderParts)) link.moved = below(*target);
        if (!link.moved) goes.insert(path.string());
        links.push_back(std::move(link));
    }
    const auto leadsThereAfterTheMove = [&](const Link& link) {
        const auto at = below(split(link.path.parent_path().string()));
        const auto place = [&](const Components& parts) -> std::optional<fs::path> {
            if (parts.front() != kCursors) return std::nullopt;
            auto entry = join(folder, parts, 1);
            if (goes.contains(entry.string())) return std::nullopt;
            return entry;
        };
        return walk(at, link.text, false, steps, place) == link.moved;
    };
    // Until none leads over one that goes.
    for (bool again = true; again;) {
        again = false;
        for (auto& link : links) {
            if (!link.moved || leadsThereAfterTheMove(link)) continue;
            if (steps.gone()) return errorOf(std::make_error_code(std::errc::file_too_large));
            link.moved.reset();
            goes.insert(link.path.string());
            again = true;
        }
    }
    std::erase_if(links, [](const Link& link) { return link.moved.has_value(); });

    Copier copier(rootParts, mostCopies, steps);
    for (const auto& link : links)
        if (!fs::remove(link.path, error)) return errorOf(error);
    // A target may lie behind a link that has just gone, but never is one itself.
    for (const auto& link : links)
        if (link.copied)
            if (const auto failed = copier.copy(*link.copied, link.path)) return errorOf(failed);
    return Done{};
}

}  // namespace pintle
