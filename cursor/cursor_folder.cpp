#include "cursor/cursor_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <new>
#include <string_view>

#include "cursor/xcursor_reader.h"

namespace pintle {

CursorFolder::CursorFolder(const std::filesystem::path& folder, double density)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), density_(density) {}

CursorFolder::~CursorFolder() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::vector<std::string> CursorFolder::names() {
    std::vector<std::string> names;
    const int listing = ::openat(descriptor_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (listing < 0) return names;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(listing), ::closedir);
    if (!entries) {
        ::close(listing);
        return names;
    }
    while (const auto* entry = ::readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        names.emplace_back(name);
        if (entry->d_type == DT_REG) plainFiles_.emplace(name);
    }
    return names;
}

XCursorImages CursorFolder::read(const std::string& name, std::int64_t maxNominalSize) try {
    // A link's file is mostly known already; asking costs less than opening.
    if (!plainFiles_.contains(name)) {
        struct stat status {};
        if (::fstatat(descriptor_, name.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode)) return nullptr;
        const Identity identity = {static_cast<std::uint64_t>(status.st_dev),
                                   static_cast<std::uint64_t>(status.st_ino)};
        if (const auto known = known_.find({identity, maxNominalSize}); known != known_.end())
            return known->second;
    }
    FileSource source(descriptor_, name);
    const auto [known, isNew] = known_.try_emplace({source.identity(), maxNominalSize});
    if (isNew)
        if (auto images = readImages(source, maxNominalSize, pixels_)) {
            CursorFileImages file{*std::move(images)};
            if (density_ > 1) file.sources = readDensitySources(source, file.images, density_, sourcePixels_);
            known->second = std::make_shared<const CursorFileImages>(std::move(file));
        }
    return known->second;
} catch (const std::bad_alloc&) {
    return nullptr;
}

}  // namespace pintle
