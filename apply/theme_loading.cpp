#include "apply/theme_loading.h"

#include <iterator>
#include <map>

#include "cursor/cursor_roles.h"
#include "cursor/scaled_size.h"

namespace pintle {

EssentialSet loadEssentialSet(const std::filesystem::path& cursorsFolder, double scale, double density) {
    EssentialSet set;
    set.folder = std::make_shared<CursorFolder>(cursorsFolder, density);
    set.nominalSize = nominalSizeAt(scale);
    for (auto& name : set.folder->names()) {
        set.listed = true;
        if (!essentialCursors().contains(name))
            set.rest.push_back(std::move(name));
        else if (auto images = set.folder->readShown(name, set.nominalSize, kMaxNominalSize))
            set.images.emplace_back(std::move(name), std::move(images));
    }
    set.cursors = makePreloadedSet(set.images, scale, density);
    return set;
}

NamedImages loadRemainingImages(const EssentialSet& essential) {
    auto all = essential.images;
    for (const auto& name : essential.rest)
        if (auto images = essential.folder->readShown(name, essential.nominalSize, kMaxNominalSize))
            all.emplace_back(name, std::move(images));
    return all;
}

NamedImages loadAllImages(const NamedImages& shown) {
    NamedImages all;
    all.reserve(shown.size());
    for (const auto& [name, images] : shown)
        if (auto whole = allImagesOf(images))
            all.emplace_back(name, std::move(whole));
        else
            return {};
    return all;
}

std::vector<PreloadedCursor> completeSet(const EssentialSet& essential, const NamedImages& images,
                                         double scale, double density) {
    auto cursors = essential.cursors;

    // A name that is a link to a file of the first pass takes that file's cursor: same pixels, no work.
    std::map<std::string, const PreloadedCursor*> builtByName;
    for (const auto& cursor : essential.cursors) builtByName.emplace(cursor.name, &cursor);
    std::map<XCursorImages, const PreloadedCursor*> builtByFile;
    for (const auto& [name, file] : essential.images)
        if (const auto built = builtByName.find(name); built != builtByName.end())
            builtByFile.emplace(file, built->second);

    NamedImages unbuilt;
    for (std::size_t i = essential.images.size(); i < images.size(); ++i) {
        const auto& [name, file] = images[i];
        if (const auto built = builtByFile.find(file); built != builtByFile.end()) {
            cursors.push_back(*built->second);
            cursors.back().name = name;
        } else {
            unbuilt.push_back(images[i]);
        }
    }
    auto others = makePreloadedSet(unbuilt, scale, density);
    cursors.insert(cursors.end(), std::make_move_iterator(others.begin()),
                   std::make_move_iterator(others.end()));
    return cursors;
}

}  // namespace pintle
