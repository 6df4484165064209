// The table of what is wanted per X11 name, and what was sent: registering and unregistering edit it, a flush
// sends the difference. Knows nothing of the server. Main thread.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "platform/x11/cursors/cursor_picture.h"

namespace pintle::x11 {

class WantedCursors {
  public:
    struct Change {
        std::string_view name;
        PicturePtr picture;
        friend bool operator==(const Change&, const Change&) = default;
    };
    /// The desktop's own picture for a name; absent when the desktop has none.
    using DesktopPicture = std::function<PicturePtr(std::string_view name)>;

    /// All names must be of the table of names, which outlives everything.
    void wantTheme(std::span<const std::string_view> names, const PicturePtr& picture);
    void wantDesktop(std::span<const std::string_view> names);
    void wantDesktopEverywhere();

    /// What a theme gave the name; absent while the name shows the desktop's own.
    PicturePtr themePicture(std::string_view name) const;
    bool hasTheme() const { return !theme_.empty(); }
    /// What was sent last; absent when that is not known.
    PicturePtr sentPicture(std::string_view name) const;

    /// Every name of the table, also those that no theme gave anything, whose wanted picture is not the one
    /// that was sent. A name that shows the desktop's own is left out when the desktop has no picture for it.
    std::vector<Change> changes(const DesktopPicture& desktop) const;
    void sent(const Change& change) { sent_[change.name] = change.picture; }
    /// After this nothing is known of what the server shows.
    void forgetSent() { sent_.clear(); }

  private:
    std::map<std::string_view, PicturePtr> theme_;
    std::map<std::string_view, PicturePtr> sent_;
};

}  // namespace pintle::x11
