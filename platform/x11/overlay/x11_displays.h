// Displays from the monitors of RandR, and the pointer's place. Main thread.
#pragma once

#include <functional>
#include <utility>

#include "platform/displays.h"
#include "platform/x11/overlay/overlay_connection.h"

namespace pintle::overlay {

class X11Displays : public Displays {
  public:
    /// `pixelsPerPoint` is asked with each question; empty: 1.
    explicit X11Displays(OverlayConnection& connection, std::function<double()> pixelsPerPoint = {})
        : connection_(connection), askDensity_(std::move(pixelsPerPoint)) {}

    const std::vector<Screen>& screens() override;
    DisplayId mainDisplayID() override;
    /// Asks the server when the pointer's devices reported motion, and otherwise on one question in sixteen:
    /// a program that moves the pointer by itself makes no report.
    Point mouseLocation() override;

    /// The next question about screens asks the server.
    void invalidate() { known_ = 0; }

    double pixelsPerPoint() { return screens(), density_; }
    /// Left edge of the origin's screen and the first row below it, in root window pixels.
    int originX() { return screens(), originX_; }
    int originBottom() { return screens(), originBottom_; }
    int originTop() { return screens(), originTop_; }
    /// A place on the root window in points.
    Point pointAt(int x, int y) {
        screens();
        return {(x - originX_) / density_, (originBottom_ - y) / density_};
    }

  private:
    void refresh();

    OverlayConnection& connection_;
    std::uint64_t known_ = 0;
    std::vector<Screen> screens_;
    DisplayId main_ = 0;
    int originX_ = 0;
    int originBottom_ = 0;
    int originTop_ = 0;
    std::function<double()> askDensity_;
    double density_ = 1;
    std::uint64_t motionsSeen_ = 0;
    int questionsSince_ = 0;
    Point mouse_;
};

}  // namespace pintle::overlay
