// What fills a window or a panel, without Objective-C. Used by the backends of windows and popover; main
// thread only.
#pragma once

#include "platform/mac/native_views.h"

namespace pintle {

/// The desktop's blurred backgrounds, by its own numbers.
enum class NativeMaterial { popover = 6, underWindowBackground = 21 };

class NativeLayers {
  public:
    virtual ~NativeLayers() = default;
    /// Cuts off what a layer draws outside of the content, which is not done by itself.
    virtual void clip() = 0;
    /// Each further layer covers the ones before it. All of them fill the content and follow its size.
    virtual void addMaterial(NativeMaterial material) = 0;
    virtual void addView(NativeView view) = 0;
    /// From 0 to 1; 0 takes the material away.
    virtual void setMaterialOpacity(double opacity) = 0;
};

}  // namespace pintle
