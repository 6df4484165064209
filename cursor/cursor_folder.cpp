#include "cursor/cursor_folder.h"

#include <sys/stat.h>

#include <system_error>

#include "cursor/xcursor_parser.h"

namespace pintle {

CursorFolder::CursorFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

std::vector<std::string> CursorFolder::names() const {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

XCursorImages CursorFolder::read(const std::string& name, std::int64_t maxNominalSize) {
    const auto file = folder_ / name;
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    const auto [known, isNew] =
        known_.try_emplace({static_cast<std::uint64_t>(status.st_dev),
                            static_cast<std::uint64_t>(status.st_ino), maxNominalSize});
    if (isNew)
        if (auto images = XCursorParser::parseFile(file, maxNominalSize, pixels_))
            known->second = std::make_shared<const std::vector<XCursorImage>>(*std::move(images));
    return known->second;
}

}  // namespace pintle
