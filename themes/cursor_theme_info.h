// One theme of the catalog and at the same time the live state of its row in the theme list. A value; the
// theme list (themes/theme_list.h) owns the rows that are shown.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "themes/cursor_handedness.h"

namespace pintle {

struct CursorThemeInfo {
    /// Lower case, words joined by "-". Names the theme's folder on disk and the theme in the settings.
    std::string id;
    std::string name;
    std::string author;
    /// In the style of SPDX identifiers.
    std::string license;
    /// Address of the archive; its suffix gives the kind.
    std::string downloadURL;
    CursorHandedness handedness = CursorHandedness::universal;

    /// A valid cursors folder has been found on disk.
    bool isDownloaded = false;
    bool isDownloading = false;
    bool isApplying = false;
    /// The last error of a download or of its check; absent when there is none to show.
    std::optional<std::string> downloadError;
    /// The theme's arrow; absent when not downloaded or not readable.
    std::optional<Bitmap> previewImage;
    /// 0.0 to 1.0, the part of the archive received.
    double downloadProgress = 0;
    bool isAnimated = false;
    /// Short text under the row during a download.
    std::string downloadStatus;

    friend bool operator==(const CursorThemeInfo&, const CursorThemeInfo&) = default;

    /// All themes there are, in the order in which they are listed. Built on first use, never changed.
    static const std::vector<CursorThemeInfo>& catalog();
};

}  // namespace pintle
