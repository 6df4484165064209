// Displays from the monitors of RandR, and the pointer's place. Main thread.
#pragma once

#include "platform/displays.h"
#include "platform/x11/overlay/overlay_connection.h"

namespace pintle::overlay {

class X11Displays : public Displays {
  public:
    explicit X11Displays(OverlayConnection& connection) : connection_(connection) {}

    const std::vector<Screen>& screens() override;
    DisplayId mainDisplayID() override;
    /// Asks the server when the pointer's devices reported motion, and otherwise on one question in sixteen:
    /// a program that moves the pointer by itself makes no report.
    Point mouseLocation() override;

    /// The next question about screens asks the server.
    void invalidate() { known_ = 0; }

    /// Left edge of the origin's screen and the first row below it, in root window pixels.
    int originX() { return screens(), originX_; }
    int originBottom() { return screens(), originBottom_; }
    int originTop() {
        return screens().empty() ? 0 : originBottom_ - static_cast<int>(screens_[0].frame.size.height);
    }

  private:
    void refresh();

    OverlayConnection& connection_;
    std::uint64_t known_ = 0;
    std::vector<Screen> screens_;
    DisplayId main_ = 0;
    int originX_ = 0;
    int originBottom_ = 0;
    std::uint64_t motionsSeen_ = 0;
    int questionsSince_ = 0;
    Point mouse_;
};

}  // namespace pintle::overlay
