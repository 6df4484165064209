// The windows of this process as the desktop holds them: what a test sees of them, and what a user and the
// desktop do to them. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace pintle::mac_fake {

struct FakeWindow {
    enum class Kind { window, popover, overlay };
    Kind kind = Kind::window;
    /// On the screen, as far as this program has asked for it.
    bool ordered = false;
    bool canHide = true;
    /// Taken off the screen by the desktop, for whatever reason.
    bool takenAway = false;
    bool hasKeys = false;
    Rect frame;
    double alpha = 1;
    int level = 0;
    unsigned long collectionBehavior = 0;
    /// "material N" and "view", the backmost first.
    std::vector<std::string> layers;
    bool clips = false;
    double materialOpacity = 1;
    const void* focused = nullptr;
    std::optional<Bitmap> image;

    bool isVisible() const;
};

/// Those that live, in the order in which they were made.
std::vector<FakeWindow*> fakeWindows();
/// The one of a kind; it must be there.
FakeWindow& theWindow(FakeWindow::Kind kind);

/// Command-H, and a click on one of the program's windows afterwards.
void hideProgram();
void showProgram();
/// What becoming the active program does: a transient popover whose window has no keys closes.
void programBecameActive();
/// The user closes the window by its button, or the popover by a press outside.
void closeByUser(FakeWindow& window);
/// The closings of popovers that are being played come to their end.
void finishClosings();
std::size_t liveWindows();

}  // namespace pintle::mac_fake
