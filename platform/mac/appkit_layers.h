// The layers of a window's or a panel's content as views of AppKit. For the Objective-C++ files of this
// folder; main thread only.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/mac/native_layers.h"

namespace pintle {

static_assert(static_cast<NSInteger>(NativeMaterial::popover) == NSVisualEffectMaterialPopover);
static_assert(static_cast<NSInteger>(NativeMaterial::underWindowBackground) ==
              NSVisualEffectMaterialUnderWindowBackground);

/// Fills `content`, which it keeps.
class AppKitLayers {
  public:
    explicit AppKitLayers(NSView* content) : content_(content) {}
    void clip() { content_.clipsToBounds = YES; }
    void addMaterial(NativeMaterial material) {
        material_ = [[NSVisualEffectView alloc] initWithFrame:content_.bounds];
        material_.material = static_cast<NSVisualEffectMaterial>(material);
        material_.blendingMode = NSVisualEffectBlendingModeBehindWindow;
        material_.state = NSVisualEffectStateActive;
        add(material_);
    }
    void addView(NativeView view) { add((__bridge NSView*)view); }
    void setMaterialOpacity(double opacity) {
        material_.hidden = opacity <= 0;
        material_.alphaValue = opacity;
    }

  private:
    void add(NSView* layer) {
        layer.frame = content_.bounds;
        layer.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
        [content_ addSubview:layer];
    }

    NSView* content_;
    NSVisualEffectView* material_ = nil;
};

}  // namespace pintle
