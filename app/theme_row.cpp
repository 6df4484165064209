#include "app/theme_row.h"

#include <algorithm>

#include "app/error_sentence.h"
#include "app/symbols.h"

namespace pintle {
namespace {

RowStatus statusOf(const CursorThemeInfo& theme) {
    if (theme.isApplying) return RowStatus::applying;
    if (theme.isDownloading) return RowStatus::downloading;
    if (theme.downloadError) return RowStatus::error;
    if (!theme.isDownloaded) return RowStatus::notDownloaded;
    return RowStatus::none;
}

/// The status of a download as its writer gives it, taken apart again where a part of it is a number.
UserText downloadText(const std::string& status) {
    constexpr std::string_view kDownloading = "Downloading ";
    if (status.empty()) return UserText(row_text::starting);
    if (status == row_text::connecting || status == row_text::extracting) return UserText(status);
    if (status.starts_with(kDownloading))
        return UserText(row_text::downloading, status.substr(kDownloading.size()));
    return UserText::verbatim(status);
}

UserText statusText(RowStatus status, const CursorThemeInfo& theme) {
    switch (status) {
        case RowStatus::applying:
            return UserText(row_text::applying);
        case RowStatus::downloading:
            return downloadText(theme.downloadStatus);
        case RowStatus::error:
            return UserText(row_text::error);
        case RowStatus::notDownloaded:
            return UserText(row_text::clickToDownload);
        case RowStatus::none:
            break;
    }
    return {};
}

RowTone toneOf(RowStatus status) {
    switch (status) {
        case RowStatus::applying:
        case RowStatus::downloading:
            return RowTone::accent;
        case RowStatus::error:
            return RowTone::danger;
        case RowStatus::notDownloaded:
        case RowStatus::none:
            break;
    }
    return RowTone::quiet;
}

void setTile(ThemeRow& row, const CursorThemeInfo& theme) {
    if (theme.isDownloaded) {
        row.preview = theme.previewImage;
        row.tile = row.preview ? RowTile::preview : RowTile::pendingPreview;
        if (!row.preview) row.tileSymbol = symbol::pointer;
        return;
    }
    const bool failed = row.status == RowStatus::error;
    row.tile = failed ? RowTile::warning : RowTile::download;
    row.tileSymbol = failed ? symbol::warning : symbol::download;
    row.tileTone = row.statusTone;
}

void setHand(ThemeRow& row, CursorHandedness handedness) {
    if (handedness == CursorHandedness::rightHanded) {
        row.handSymbol = symbol::handRight;
        row.handHelp = UserText(row_text::forRightHand);
    } else if (handedness == CursorHandedness::leftHanded) {
        row.handSymbol = symbol::handLeft;
        row.handHelp = UserText(row_text::forLeftHand);
    }
}

void setProgress(ThemeRow& row, const CursorThemeInfo& theme) {
    if (!theme.isDownloading) return;
    const bool measured = !theme.downloadStatus.empty() && theme.downloadProgress > 0;
    row.progress = measured ? RowProgress::value : RowProgress::indeterminate;
    if (measured) row.progressValue = std::min(theme.downloadProgress, 1.0);
}

void describe(ThemeRow& row, const CursorThemeInfo* theme) {
    auto& words = row.accessibleDescription;
    if (theme) {
        words.push_back(UserText::verbatim(theme->author));
        words.push_back(UserText::verbatim(theme->license));
        words.emplace_back(cursor_handedness::rawValue(theme->handedness));
        if (theme->isAnimated) words.emplace_back(row_text::animatedHelp);
    }
    words.push_back(row.statusText);
    words.push_back(row.errorSentence);
    if (row.errorTooltip) words.push_back(UserText::verbatim(*row.errorTooltip));
    std::erase_if(words, [](const auto& word) { return word.empty(); });
}

}  // namespace

CursorThemeInfo unknownTheme(const std::string& id) {
    CursorThemeInfo theme;
    theme.id = id;
    theme.name = row_text::unknown;
    return theme;
}

ThemeRow themeRow(const CursorThemeInfo* known, const std::string& id, bool isActive) {
    const auto& theme = known ? *known : unknownTheme(id);
    ThemeRow row;
    row.id = id;
    row.name = known ? UserText::verbatim(theme.name) : UserText(row_text::unknown);
    row.author = theme.author;
    row.license = theme.license;
    setHand(row, theme.handedness);

    row.status = statusOf(theme);
    row.statusText = statusText(row.status, theme);
    row.statusTone = toneOf(row.status);
    if (row.status == RowStatus::error) {
        row.errorTooltip = theme.downloadError;
        row.errorSentence = errorSentence(*theme.downloadError);
    }
    setTile(row, theme);
    if (known && !row.preview) row.drawing = themeDrawing(theme.name, theme.handedness);
    setProgress(row, theme);

    row.isActive = isActive;
    if (theme.isDownloaded) row.nameWeight = RowWeight::medium;
    if (isActive) row.nameWeight = RowWeight::demiBold;
    if (theme.isApplying) {
        row.mark = RowMark::spinner;
    } else {
        row.mark = isActive ? RowMark::check : RowMark::circle;
        row.markSymbol = isActive ? symbol::active : symbol::notActive;
    }
    row.isAnimated = theme.isAnimated;
    const bool busy = theme.isApplying || theme.isDownloading;
    row.canDelete = theme.isDownloaded && !busy;
    row.acceptsTap = !theme.isDownloading;
    describe(row, known);
    return row;
}

}  // namespace pintle
