#include "bench/themes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "cursor/cursor_folder.h"
#include "cursor/xcursor_parser.h"

namespace pintle::bench {
namespace {

bool same(const XCursorImage& ours, const ::XcursorImage& theirs) {
    return ours.size == theirs.size && ours.width == theirs.width && ours.height == theirs.height &&
           ours.xhot == theirs.xhot && ours.yhot == theirs.yhot && ours.delay == theirs.delay &&
           std::equal(ours.pixels.values().begin(), ours.pixels.values().end(), theirs.pixels);
}

std::vector<Theme> findThemes() {
    std::vector<Theme> themes;
    for (const auto& [name, folder] : {std::pair{"bibata", "Bibata-Modern-Ice"},
                                       std::pair{"dmz", "DMZ-White"}, std::pair{"adwaita", "Adwaita"}}) {
        Theme theme{name, std::filesystem::path("/usr/share/icons") / folder / "cursors", {}, 0};
        theme.files = anchorFiles(theme.cursors, kLimit);
        if (theme.files.empty()) {
            std::fprintf(stderr, "skipped: theme %s is not installed\n", folder);
            continue;
        }
        for (const auto& file : theme.files)
            for (const auto& images : loadWithLibrary(file))
                for (int i = 0; images && i < images->nimage; ++i)
                    theme.pixelBytes += std::size_t{4} * images->images[i]->width * images->images[i]->height;
        themes.push_back(std::move(theme));
    }
    return themes;
}

}  // namespace

const std::vector<Theme>& installedThemes() {
    static const std::vector<Theme> themes = findThemes();
    return themes;
}

void verifySameImages(const Theme& theme) {
    std::size_t compared = 0;
    for (const auto& file : theme.files) {
        const auto theirs = loadWithLibrary(file);
        const auto ours = XCursorParser::parseFile(file.path, kLimit);
        std::size_t matched = 0;
        for (std::size_t i = 0; ours && i < file.sizes.size(); ++i) {
            int next = 0;
            for (const auto& image : *ours) {
                if (image.size != file.sizes[i]) continue;
                if (!theirs[i] || next >= theirs[i]->nimage || !same(image, *theirs[i]->images[next])) break;
                ++next;
            }
            if (theirs[i] && next == theirs[i]->nimage) matched += static_cast<std::size_t>(next);
        }
        if (!ours || matched != ours->size() || matched == 0) {
            std::fprintf(stderr, "%s is not read as the library reads it\n", file.path.c_str());
            std::exit(EXIT_FAILURE);
        }
        compared += matched;
    }
    std::fprintf(stderr, "%s: %zu images equal the library's, pixel by pixel\n", theme.name.c_str(),
                 compared);
}

}  // namespace pintle::bench
