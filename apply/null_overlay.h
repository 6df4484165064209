// The overlay of a program that cannot draw one: it keeps the active mark as the applier expects and leaves
// the desktop's own cursor alone. Made by the root. Main thread only.
#pragma once

#include "apply/cursor_overlay.h"
#include "platform/log.h"

namespace pintle {

class NullOverlay : public CursorOverlay {
  public:
    /// Says in the log that nothing will be drawn.
    explicit NullOverlay(Log& log);

    bool isActive() const override { return isActive_; }
    void start() override { isActive_ = true; }
    void loadCursorsFromPreloaded(const std::vector<PreloadedCursor>&, double) override {}
    void updateOverlayWindows() override {}
    void deactivate() override { isActive_ = false; }
    /// Nothing of this program hides the hardware cursor.
    void showSystemCursorGuaranteed() override { isActive_ = false; }
    void destroyWindows() override {}

  private:
    bool isActive_ = false;
};

}  // namespace pintle
