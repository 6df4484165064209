#include "platform/mac/mac_displays.h"

#include <CoreGraphics/CoreGraphics.h>

#include "platform/mac/appkit_screens.h"

namespace pintle {
namespace {

class MacDisplays : public Displays {
  public:
    // Read anew each time: the order in which observers are notified of a change is not defined, and none of
    // them may see the old screens.
    const std::vector<Screen>& screens() override {
        screens_.clear();
        for (const ScreenReading& screen : readScreens()) screens_.push_back({screen.frame, screen.number});
        return screens_;
    }
    DisplayId mainDisplayID() override { return CGMainDisplayID(); }
    Point mouseLocation() override { return readMouseLocation(); }

  private:
    std::vector<Screen> screens_;
};

}  // namespace

std::unique_ptr<Displays> makeMacDisplays() { return std::make_unique<MacDisplays>(); }

}  // namespace pintle
