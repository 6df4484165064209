// The program's windows and the screens they stand on. Their content is the user interface's view, given to
// the backend by the root. Main thread only; points, y up.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"

namespace pintle {

enum class WindowContent { settings, about };

struct WindowSpec {
    WindowContent content = WindowContent::settings;
    Size contentSize;
    std::string title;
    /// The parts of the frame, as bits of the platform's style mask: titled 1, closable 2, full-size content
    /// view 32768.
    unsigned styleMask = 0;
    bool titleHidden = false;
    bool titlebarTransparent = false;
    bool hasShadow = true;
    /// Of the standard window background; the view draws its own material.
    double backgroundAlpha = 1;
    bool showsMiniaturizeAndZoom = true;
};

class ShellWindow {
  public:
    virtual ~ShellWindow() = default;
    virtual bool isVisible() const = 0;
    /// Whether it has the keyboard.
    virtual bool isKey() const = 0;
    /// The whole frame. Its size is the content's where the desktop draws no title of its own.
    virtual Rect frame() const = 0;
    /// Moves it; a size smaller than the content's makes the content scroll.
    virtual void setFrame(const Rect& frame) = 0;
    virtual void makeKeyAndOrderFront() = 0;
    /// Hides it; the object and its state stay.
    virtual void close() = 0;
};

struct ScreenArea {
    Rect frame;
    /// The frame without panels and docks.
    Rect workArea;
    friend bool operator==(const ScreenArea&, const ScreenArea&) = default;
};

class Windows {
  public:
    virtual ~Windows() = default;
    /// Null when the window cannot be made.
    virtual std::unique_ptr<ShellWindow> makeWindow(const WindowSpec& spec) = 0;
    /// The first one is the main screen. Empty while there is none.
    virtual std::vector<ScreenArea> screens() const = 0;
    virtual Point mouseLocation() const = 0;
};

}  // namespace pintle
