// A desktop whose look the test chooses.
#pragma once

#include <utility>

#include "base/signal.h"
#include "platform/appearance.h"

namespace pintle {

class FakeAppearance : public Appearance {
  public:
    const DesktopLook& look() const override { return look_; }
    Subscription observe(std::function<void()> changed) override {
        return changed_.observe(std::move(changed));
    }

    /// Announced at once when it is another one.
    void become(const DesktopLook& look) {
        if (look == look_) return;
        look_ = look;
        changed_.emit();
    }

  private:
    DesktopLook look_;
    Signal<> changed_;
};

}  // namespace pintle
