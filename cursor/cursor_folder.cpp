#include "cursor/cursor_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

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

std::optional<CursorFolder::Identity> CursorFolder::identityOfLink(const std::string& name) {
    struct stat status {};
    if (::fstatat(descriptor_, name.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return Identity(static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino));
}

XCursorImages CursorFolder::read(const std::string& name, std::int64_t maxNominalSize) try {
    if (!plainFiles_.contains(name)) {
        const auto identity = identityOfLink(name);
        if (!identity) return nullptr;
        if (const auto known = known_.find({*identity, maxNominalSize}); known != known_.end())
            return known->second;
    }
    FileSource source(descriptor_, name);
    return readWhole(source, maxNominalSize);
} catch (const std::bad_alloc&) {
    return nullptr;
}

XCursorImages CursorFolder::readShown(const std::string& name, std::int64_t nominalSize,
                                      std::int64_t maxNominalSize) try {
    // The sharper pictures of a dense screen may come from any size.
    if (density_ > 1) return read(name, maxNominalSize);
    if (!plainFiles_.contains(name)) {
        const auto identity = identityOfLink(name);
        if (!identity) return nullptr;
        if (const auto known = shown_.find(*identity); known != shown_.end()) return known->second;
    }
    auto source = std::make_unique<FileSource>(descriptor_, name);
    const auto [known, isNew] = shown_.try_emplace(source->identity());
    if (!isNew) return known->second;
    if (auto share = OpenFileShare::take())
        if (auto images = readNearestSize(*source, nominalSize, maxNominalSize, shownPixels_)) {
            auto file = std::make_shared<OpenCursorFile>(std::move(source), *std::move(share), maxNominalSize,
                                                         wholePixels_);
            known->second = std::make_shared<const CursorFileImages>(
                CursorFileImages{*std::move(images), {}, std::move(file)});
            return known->second;
        }
    known->second = readWhole(*source, maxNominalSize);
    return known->second;
} catch (const std::bad_alloc&) {
    return nullptr;
}

XCursorImages CursorFolder::readWhole(FileSource& source, std::int64_t maxNominalSize) {
    const auto [known, isNew] = known_.try_emplace({source.identity(), maxNominalSize});
    if (!isNew) return known->second;
    const std::lock_guard lock(wholePixels_->mutex);
    if (auto images = readImages(source, maxNominalSize, wholePixels_->pool)) {
        CursorFileImages file{*std::move(images)};
        if (density_ > 1) file.sources = readDensitySources(source, file.images, density_, sourcePixels_);
        known->second = std::make_shared<const CursorFileImages>(std::move(file));
    }
    return known->second;
}

XCursorImages allImagesOf(const XCursorImages& shown) {
    return shown && shown->file ? shown->file->all() : shown;
}

}  // namespace pintle
