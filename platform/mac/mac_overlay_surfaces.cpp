#include "platform/mac/mac_overlay_surfaces.h"

#include <CoreGraphics/CoreGraphics.h>

#include "platform/mac/appkit_overlay.h"
#include "platform/mac/cg_image.h"

namespace pintle {
namespace {

constexpr unsigned long kBehavior = kCanJoinAllSpaces | kStationary | kIgnoresCycle | kFullScreenAuxiliary;
static_assert(kBehavior == 0x151);

class MacOverlaySurface : public OverlaySurface {
  public:
    explicit MacOverlaySurface(Size size)
        : window_(makeNativeOverlayWindow({.size = size,
                                           .level = CGWindowLevelForKey(kCGMaximumWindowLevelKey),
                                           .collectionBehavior = kBehavior,
                                           // The hardware pointer stays hidden when the program is hidden.
                                           .canHide = false})) {}

    bool isVisible() const override { return window_->isVisible(); }
    void setSize(Size size) override { window_->setSize(size); }
    void setImage(const std::optional<Bitmap>& image) override {
        const auto picture = image ? toCgImage(*image) : CfRef<CGImageRef>();
        window_->setImage(picture.get(), image ? image->size() : Size{});
    }
    void setOrigin(Point origin) override { window_->setOrigin(origin); }
    void setAlpha(double alpha) override { window_->setAlpha(alpha); }
    void orderFront() override { window_->orderFrontRegardless(); }

  private:
    const std::unique_ptr<NativeOverlayWindow> window_;
};

class MacOverlaySurfaces : public OverlaySurfaces {
  public:
    // A window stands on the display that its origin is on.
    std::unique_ptr<OverlaySurface> create(DisplayId, Size size) override {
        return std::make_unique<MacOverlaySurface>(size);
    }
};

}  // namespace

std::unique_ptr<OverlaySurfaces> makeMacOverlaySurfaces() { return std::make_unique<MacOverlaySurfaces>(); }

}  // namespace pintle
