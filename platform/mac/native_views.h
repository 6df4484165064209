// The user interface's views as this backend's windows hold them: the root hands in an implementation. Main
// thread only.
#pragma once

#include <functional>

#include "platform/windows.h"

namespace pintle {

/// An NSView that lives as long as the NativeViews it came from; null where it cannot be made.
using NativeView = void*;

class NativeViews {
  public:
    virtual ~NativeViews() = default;
    /// Made at the first call, once.
    virtual NativeView popover() = 0;
    /// The opacity of the material behind the popover's view, which is seen through then; 0: the view is
    /// opaque. Asked before each showing.
    virtual double popoverMaterial() = 0;
    /// Made at the first call for each content, once.
    virtual NativeView window(WindowContent content) = 0;
    /// The upper part of a window's view, in points, that lies under the window's title bar.
    virtual void setTitleStrip(NativeView view, double height) = 0;
    /// Right before and right after the view's window comes to the screen, and right after it went. From
    /// didShow on the view stands in that window, and draws.
    virtual void willShow(NativeView view, bool animates) = 0;
    virtual void didShow(NativeView view) = 0;
    virtual void didHide(NativeView view) = 0;
    /// `close` is called when the view itself wants its window to go away.
    virtual void setClose(NativeView view, std::function<void()> close) = 0;
};

}  // namespace pintle
