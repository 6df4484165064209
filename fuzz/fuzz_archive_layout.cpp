// The input describes a tree as an archive may hold it: folders, files, pipes, and links to anywhere. It is
// made in memory, judged by the rules and by what the kernel says of it, and made self-contained and moved.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "fuzz/choices.h"
#include "fuzz/input_file.h"
#include "themes/archive_layout.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 8> kNames = {"cursors", "Banana",   "banana", "a",
                                               "b",       "left_ptr", "x",      "ba nana"};
constexpr std::size_t kMostEntries = 16;

struct Tree {
    fs::path base = inputFolder();
    fs::path root = base / "x";
    fs::path outside = base / "outside";
    fs::path place = base / "theme" / "cursors";
    std::vector<fs::path> folders{root};
    bool hasLinks = false;
    /// A link of the tree names what lies outside.
    bool namesOutside = false;
};

std::optional<struct stat> statOf(const fs::path& path, bool follow) {
    struct stat info = {};
    if ((follow ? ::stat(path.c_str(), &info) : ::lstat(path.c_str(), &info)) != 0) return std::nullopt;
    return info;
}

bool isFile(const fs::path& path, bool follow) {
    const auto info = statOf(path, follow);
    return info && S_ISREG(info->st_mode);
}

std::string linkText(Choices& choices, Tree& tree) {
    std::string text;
    switch (choices.byte() % 16) {
        case 0:
            text = tree.root.string() + "/";
            break;
        case 1:
            text = tree.base.string() + "/";
            break;
        case 2:
            text = tree.outside.string() + "/";
            tree.namesOutside = true;
            break;
        case 3:
            text = "/";
            tree.namesOutside = true;
            break;
        default:
            break;
    }
    const auto parts = 1 + choices.below(6);
    for (std::size_t i = 0; i < parts; ++i) {
        const auto part = choices.below(16);
        if (part < kNames.size())
            text += kNames[part];
        else if (part == 15)
            text += '.';
        else if (part == 14) {
            text += "outside";
            tree.namesOutside = true;
        } else
            text += "..";
        if (i + 1 < parts || choices.byte() % 8 == 0) text += '/';
    }
    return text;
}

void makeEntry(Choices& choices, Tree& tree) {
    const auto kind = choices.byte();
    const auto& folder = tree.folders[choices.below(tree.folders.size())];
    const auto path = folder / kNames[choices.below(kNames.size())];
    if (statOf(path, false)) return;
    switch (kind % 8) {
        case 0:
        case 1:
            ::mkdir(path.c_str(), 0700);
            tree.folders.push_back(path);
            break;
        case 2:
        case 3:
            writeFile(path, std::string_view("Xcur"));
            ::chmod(path.c_str(), static_cast<mode_t>((choices.byte() * 16U) | 0400U));
            break;
        case 4:
            writeFile(path, std::string_view("text"));
            break;
        case 5:
            ::mkfifo(path.c_str(), 0600);
            break;
        default:
            tree.hasLinks = true;
            require(::symlink(linkText(choices, tree).c_str(), path.c_str()) == 0);
    }
}

/// What the kernel finds at a path: device and inode, or nothing.
using Identity = std::pair<dev_t, ino_t>;
std::optional<Identity> identityOf(const fs::path& path, bool follow) {
    const auto info = statOf(path, follow);
    if (!info) return std::nullopt;
    return Identity(info->st_dev, info->st_ino);
}

std::string contentOfLink(const fs::path& path) { return isFile(path, true) ? contentOf(path) : ""; }

bool isBelow(const fs::path& path, const fs::path& folder) {
    const auto relative = path.lexically_relative(folder);
    return !relative.empty() && relative != "." && *relative.begin() != "..";
}

/// Every entry below a folder, not through links, with its path from there.
std::map<std::string, fs::path> entriesBelow(const fs::path& folder) {
    std::map<std::string, fs::path> entries;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        entries.emplace(entry.path().lexically_relative(folder).string(), entry.path());
    return entries;
}

struct Keys {
    bool matches = false;
    bool isNamedCursors = false;
    int count = 0;
    auto operator<=>(const Keys&) const = default;
};

/// Links count as far as the kernel says that they may lead to a cursor.
Keys keysOf(const Tree& tree, const fs::path& folder, bool withLinks) {
    Keys keys;
    for (const auto& part : folder.lexically_relative(tree.root))
        keys.matches |= part == "banana" || part == "Banana";
    keys.isNamedCursors = folder.filename() == "cursors";
    for (const auto& entry : fs::directory_iterator(folder))
        if (isFile(entry.path(), false) || (withLinks && isFile(entry.path(), true)))
            keys.count += contentOfLink(entry.path()).starts_with("Xcur") ? 1 : 0;
    return keys;
}

void checkChoice(const Tree& tree, const std::optional<fs::path>& chosen) {
    if (chosen) {
        require(isBelow(*chosen, tree.root) && statOf(*chosen, false) &&
                S_ISDIR(statOf(*chosen, false)->st_mode));
        require(keysOf(tree, *chosen, true).count > 0);
    }
    for (const auto& folder : tree.folders) {
        if (folder == tree.root) continue;
        const auto certain = keysOf(tree, folder, false);
        if (certain.count == 0) continue;
        // Only regular files: with links, counts may differ by those that lead out.
        require(chosen.has_value());
        require(keysOf(tree, *chosen, true) >= certain);
    }
}

/// What stood at a path before, as the kernel followed it.
struct Before {
    bool isLink = false;
    bool isFile = false;
    bool isFolder = false;
    std::optional<Identity> identity;
    std::optional<Identity> target;
    std::string content;
    fs::path canonical;
};

std::map<std::string, Before> look(const fs::path& chosen) {
    std::map<std::string, Before> all;
    for (const auto& [name, path] : entriesBelow(chosen)) {
        Before before;
        const auto own = statOf(path, false);
        const auto target = statOf(path, true);
        before.isLink = S_ISLNK(own->st_mode);
        before.isFile = target && S_ISREG(target->st_mode);
        before.isFolder = target && S_ISDIR(target->st_mode);
        before.identity = identityOf(path, false);
        before.target = identityOf(path, true);
        before.content = contentOfLink(path);
        std::error_code ignored;
        before.canonical = fs::canonical(path, ignored);
        all.emplace(name, before);
    }
    return all;
}

void checkMoved(const Tree& tree, const fs::path& chosen, const std::map<std::string, Before>& before) {
    for (const auto& [name, path] : entriesBelow(tree.place)) {
        const auto info = *statOf(path, false);
        require(S_ISDIR(info.st_mode) || S_ISREG(info.st_mode) || S_ISLNK(info.st_mode));
        if (S_ISREG(info.st_mode)) require((info.st_mode & 07600) == 0600);
        if (!S_ISLNK(info.st_mode)) continue;
        // It was one before, and leads to what it led to, which came along.
        const auto was = before.find(name);
        require(was != before.end() && was->second.isLink);
        require(identityOf(path, true) == was->second.target);
        if (was->second.target) require(isBelow(fs::canonical(path), tree.place));
    }
    for (const auto& [name, was] : before) {
        const auto path = tree.place / name;
        if (!was.isLink) {
            if (was.isFile || was.isFolder) require(identityOf(path, false) == was.identity);
            continue;
        }
        // A link to what lies in the tree is kept or replaced, whatever other links it led over.
        if (tree.namesOutside || !isBelow(was.canonical, tree.root)) continue;
        if (was.isFile) require(isFile(path, true) && contentOf(path) == was.content);
        const bool around = isBelow(chosen / name, was.canonical);
        if (was.isFolder && !around) {
            const auto now = statOf(path, true);
            require(now && S_ISDIR(now->st_mode));
        }
    }
}

void prepare(Tree& tree) {
    fs::remove_all(tree.root);
    fs::remove_all(tree.place.parent_path());
    fs::create_directory(tree.root);
    fs::create_directory(tree.place.parent_path());
    if (!statOf(tree.outside, false)) {
        writeFile(tree.outside / "left_ptr", std::string_view("Xcur"));
        ::chmod((tree.outside / "left_ptr").c_str(), 04444);
        fs::create_directory(tree.outside / "cursors");
        writeFile(tree.outside / "cursors" / "a", std::string_view("Xcur"));
    }
}

void checkOutside(const Tree& tree) {
    const auto info = statOf(tree.outside / "left_ptr", false);
    require(info && info->st_nlink == 1 && (info->st_mode & 07777) == 04444);
    require(statOf(tree.outside / "cursors" / "a", false)->st_nlink == 1);
    require(entriesBelow(tree.outside).size() == 3);
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    Choices choices({bytes, count});
    Tree tree;
    prepare(tree);
    const auto mostCopies = choices.flag() ? 1000 : choices.below(4);
    for (std::size_t i = 0; i < kMostEntries && !choices.isEmpty(); ++i) makeEntry(choices, tree);

    const auto chosen = pickCursorDirectory(tree.root, "Banana");
    checkChoice(tree, chosen);
    if (!chosen) return 0;
    const auto before = look(*chosen);
    const auto status = makeSelfContained(*chosen, tree.root, mostCopies);
    checkOutside(tree);
    require(status || mostCopies < 1000);
    if (!status) return 0;
    fs::rename(*chosen, tree.place);
    checkMoved(tree, *chosen, before);
    checkOutside(tree);
    return 0;
}
