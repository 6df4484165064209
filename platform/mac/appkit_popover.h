// A popover of AppKit without Objective-C. Used by the popovers' backend; main thread only.
#pragma once

#include <functional>
#include <memory>

#include "platform/mac/native_layers.h"
#include "platform/popover.h"

namespace pintle {

/// Ending it closes the popover without calling back.
class NativePopover : public NativeLayers {
  public:
    /// From the moment it is shown until it is closed, while the closing is still played too: false.
    virtual bool isShown() const = 0;
    /// Whether the item has a button in a window. In a full menu bar it has none, and showing would throw.
    virtual bool canShow(const StatusItem& item) const = 0;
    /// On the lower edge of the item's button; canShow(item) must hold.
    virtual void show(const StatusItem& item) = 0;
    /// Gives the keyboard to the popover's window and, in it, to the view. Nothing while it is not shown.
    virtual void makeKey(NativeView view) = 0;
    virtual void close() = 0;
};

/// `didClose` is called once the closing was played, whoever closed it: it may be shown again by then.
std::unique_ptr<NativePopover> makeNativePopover(const PopoverSpec& spec, std::function<void()> didClose);

}  // namespace pintle
