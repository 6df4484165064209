// The installed themes that the benches read, and the check that both sides of a bench read the same.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bench/library_anchor.h"

namespace pintle::bench {

inline constexpr std::uint32_t kLimit = 48;

struct Theme {
    /// As it appears in the bench's name.
    std::string name;
    std::filesystem::path cursors;
    std::vector<AnchorFile> files;
    /// Pixel bytes of the wanted images.
    std::size_t pixelBytes = 0;
};

/// Those of Bibata, DMZ and Adwaita that are installed; the others are named on standard error.
const std::vector<Theme>& installedThemes();

/// Ends the program with a line when the product's images differ from the library's in anything.
void verifySameImages(const Theme& theme);

}  // namespace pintle::bench
