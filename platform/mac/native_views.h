// The skin's views as this backend's windows hold them: the root hands in an implementation. Main thread
// only.
#pragma once

#include <functional>

#include "base/geometry.h"
#include "platform/windows.h"

namespace pintle {

/// An NSView that lives as long as the NativeViews it came from; null where it cannot be made.
using NativeView = void*;

class NativeViews {
  public:
    virtual ~NativeViews() = default;
    /// Made at the first call, once.
    virtual NativeView popover() = 0;
    /// Where the popover's view lies in a panel of that size, from the panel's lower-left corner: larger than
    /// the panel by what the view draws around itself, which the panel cuts off.
    virtual Rect popoverFrame(Size panel) = 0;
    /// Made at the first call for each content, once.
    virtual NativeView window(WindowContent content) = 0;
    /// Right before and right after the view's window comes to the screen, and right after it went. From
    /// didShow on the view stands in that window, and draws.
    virtual void willShow(NativeView view, bool animates) = 0;
    virtual void didShow(NativeView view) = 0;
    virtual void didHide(NativeView view) = 0;
    /// `close` is called when the view itself wants its window to go away.
    virtual void setClose(NativeView view, std::function<void()> close) = 0;
};

}  // namespace pintle
