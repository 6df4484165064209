// One row of the popover's list as a value: every text, mark and rule of what is shown for a theme in its
// state. Pure; used by the popover's model and, through it, by the user interface, which only lays out. Any
// thread.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/theme_drawing.h"
#include "app/user_text.h"
#include "base/bitmap.h"
#include "themes/cursor_theme_info.h"

namespace pintle {

/// What decides the row's status text: of several that hold, the first.
enum class RowStatus { applying, downloading, error, notDownloaded, none };
enum class RowTone { quiet, accent, danger };
enum class RowTile {
    /// Not on disk: the tile is the download sign.
    download,
    /// Not on disk, and the last download failed.
    warning,
    /// On disk, but there is no picture of it (yet).
    pendingPreview,
    preview,
};
enum class RowWeight { regular, medium, demiBold };
enum class RowMark { circle, check, spinner };
enum class RowProgress {
    none,
    /// The download has not said anything yet that could be measured.
    indeterminate,
    value,
};

struct ThemeRow {
    std::string id;
    UserText name;
    RowWeight nameWeight = RowWeight::regular;
    /// Both empty for an unknown theme.
    std::string author;
    std::string license;
    /// Absent for themes that suit either hand, so that the mark stands out where it matters.
    std::optional<std::string_view> handSymbol;
    /// The help of that symbol. Empty together with it.
    UserText handHelp;

    RowTile tile = RowTile::download;
    /// Empty for `preview`, which shows the bitmap.
    std::string_view tileSymbol;
    RowTone tileTone = RowTone::quiet;
    /// Present for `preview` only.
    std::optional<Bitmap> preview;
    /// What stands for a known theme that has no preview; of no lines for any other row.
    ThemeDrawing drawing;

    RowStatus status = RowStatus::none;
    /// Empty for `none`; then the author's line also holds the licence.
    UserText statusText;
    RowTone statusTone = RowTone::quiet;

    RowProgress progress = RowProgress::none;
    /// 0.0 to 1.0, for `value`.
    double progressValue = 0;

    bool isActive = false;
    RowMark mark = RowMark::circle;
    /// Empty for the spinner.
    std::string_view markSymbol;
    bool isAnimated = false;
    /// On hover and focus; the button replaces an error text at the same place.
    bool canDelete = false;
    /// The whole error, untranslated; absent when no error is shown.
    std::optional<std::string> errorTooltip;
    /// What that error means in plain words; empty where nobody knows.
    UserText errorSentence;
    /// Downloaded since the user last looked.
    bool isNew = false;
    /// A tap does nothing while the theme is downloaded: the download runs to its end, and a second one
    /// would only follow it.
    bool acceptsTap = true;

    /// Author, licence, hand, "Animated cursors", status, error: those that there are. To be joined with
    /// commas.
    std::vector<UserText> accessibleDescription;
    static constexpr AccessibleRole accessibleRole = AccessibleRole::listItem;
    /// Checkable always, checked when active; the name is the theme's.
    bool accessibleChecked() const { return isActive; }

    friend bool operator==(const ThemeRow&, const ThemeRow&) = default;
};

namespace row_text {

inline constexpr auto unknown = translatable("Pintle", "Unknown");
inline constexpr auto clickToDownload = translatable("Pintle", "Click to download");
inline constexpr auto starting = translatable("Pintle", "Starting...");
inline constexpr auto connecting = translatable("Pintle", "Connecting...");
inline constexpr auto downloading = translatable("Pintle", "Downloading %1");
inline constexpr auto extracting = translatable("Pintle", "Extracting...");
inline constexpr auto applying = translatable("Pintle", "Applying...");
inline constexpr auto error = translatable("Pintle", "Error - Tap to retry");
inline constexpr auto animatedHelp = translatable("Pintle", "Animated cursors");
inline constexpr auto deleteHelp = translatable("Pintle", "Delete downloaded theme");
inline constexpr auto isNew = translatable("Pintle", "new");
inline constexpr auto universal = translatable("Pintle", "Universal");
inline constexpr auto right = translatable("Pintle", "Right");
inline constexpr auto left = translatable("Pintle", "Left");
inline constexpr auto forRightHand = translatable("Pintle", "For the right hand");
inline constexpr auto forLeftHand = translatable("Pintle", "For the left hand");
inline constexpr std::array all = {
    unknown,      clickToDownload, starting, connecting, downloading, extracting, applying,     error,
    animatedHelp, deleteHelp,      isNew,    universal,  right,       left,       forRightHand, forLeftHand};

}  // namespace row_text

/// The entry that stands for an id that no theme has.
CursorThemeInfo unknownTheme(const std::string& id);

/// `theme` may be null: the row of an unknown theme. `isActive`: it is the current theme.
ThemeRow themeRow(const CursorThemeInfo* theme, const std::string& id, bool isActive);

}  // namespace pintle
