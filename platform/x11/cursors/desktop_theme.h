// The pictures of the desktop's own cursor theme, read from the theme files of the machine. Files are
// strangers' work: links in circles, themes that inherit each other, pipes and broken images are survived.
// Main thread.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/cursors/cursor_picture.h"
#include "platform/x11/cursors/desktop_settings.h"

namespace pintle::x11 {

class DesktopTheme {
  public:
    explicit DesktopTheme(Environment environment) : environment_(std::move(environment)) {}

    /// What the following questions are about. Forgets everything read before.
    void choose(const CursorThemeChoice& choice);
    const CursorThemeChoice& choice() const { return choice_; }

    /// The picture a program gets that asks for this very name; absent when the theme and those it inherits
    /// have none. Each name is read once.
    PicturePtr exact(std::string_view name);
    /// The picture of the name, else of the first other name of its row that has one, one that is not the
    /// arrow's before one that is.
    PicturePtr picture(std::string_view name);
    /// The name whose picture an image is; empty when it is none. Reads the whole theme the first time.
    std::string_view nameOf(Fingerprint fingerprint);

  private:
    std::vector<std::filesystem::path> searchPath() const;
    /// Where the files of the chosen theme and of those it inherits may be, in the order of asking.
    std::vector<std::filesystem::path> cursorFolders() const;

    Environment environment_;
    CursorThemeChoice choice_;
    std::vector<std::filesystem::path> folders_;
    std::map<std::string, PicturePtr, std::less<>> pictures_;
    std::map<Fingerprint, std::string_view> index_;
    bool indexed_ = false;
};

}  // namespace pintle::x11
