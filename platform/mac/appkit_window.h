// A window of AppKit without Objective-C. Used by the windows' backend; main thread only; points, y up.
#pragma once

#include <functional>
#include <memory>

#include "platform/mac/native_layers.h"
#include "platform/windows.h"

namespace pintle {

/// Ending it closes the window without calling back.
class NativeWindow : public NativeLayers {
  public:
    virtual bool isVisible() const = 0;
    virtual bool isKey() const = 0;
    virtual Rect frame() const = 0;
    virtual void setFrame(const Rect& frame) = 0;
    /// How much of the content lies under the title bar.
    virtual double titleStrip() const = 0;
    /// In front of the windows of other programs too, whichever is active.
    virtual void orderFrontRegardless() = 0;
    /// Takes the keyboard as far as this program has it.
    virtual void makeKey() = 0;
    /// The view in it that gets the keys.
    virtual void focus(NativeView view) = 0;
    virtual void close() = 0;
};

/// `willClose` is called whoever closes the window.
std::unique_ptr<NativeWindow> makeNativeWindow(const WindowSpec& spec, std::function<void()> willClose);

}  // namespace pintle
