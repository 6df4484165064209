#include "platform/x11/cursors/wanted_cursors.h"

#include "platform/x11/cursors/cursor_names.h"

namespace pintle::x11 {
namespace {

PicturePtr found(const std::map<std::string_view, PicturePtr>& pictures, std::string_view name) {
    const auto at = pictures.find(name);
    return at == pictures.end() ? nullptr : at->second;
}

}  // namespace

void WantedCursors::wantTheme(std::span<const std::string_view> names, const PicturePtr& picture) {
    for (const auto name : names) theme_[name] = picture;
}

void WantedCursors::wantDesktop(std::span<const std::string_view> names) {
    for (const auto name : names) theme_.erase(name);
}

void WantedCursors::wantDesktopEverywhere() { theme_.clear(); }

PicturePtr WantedCursors::themePicture(std::string_view name) const { return found(theme_, name); }

PicturePtr WantedCursors::sentPicture(std::string_view name) const { return found(sent_, name); }

std::vector<WantedCursors::Change> WantedCursors::changes(const DesktopPicture& desktop) const {
    std::vector<Change> result;
    for (const auto name : allCursorNames()) {
        auto wanted = themePicture(name);
        if (!wanted) wanted = desktop(name);
        if (wanted && !samePicture(wanted, sentPicture(name))) result.push_back({name, std::move(wanted)});
    }
    return result;
}

}  // namespace pintle::x11
