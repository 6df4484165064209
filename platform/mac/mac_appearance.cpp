#include "platform/mac/mac_appearance.h"

#include <utility>

#include "base/lifetime.h"
#include "base/signal.h"
#include "platform/mac/appkit_appearance.h"
#include "platform/mac/appkit_workspace.h"

namespace pintle {
namespace {

class MacAppearance : public Appearance {
  public:
    explicit MacAppearance(MainQueue& queue)
        : queue_(queue),
          look_(readDesktopLook()),
          colours_(observeEffectiveAppearance([this] { changed(); })),
          wishes_(observeNotification(NotificationSource::workspace,
                                      "NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification",
                                      [this](const std::optional<RunningApplication>&) { changed(); })) {}

    const DesktopLook& look() const override { return look_; }
    Subscription observe(std::function<void()> changed) override {
        return changes_.observe(std::move(changed));
    }

  private:
    /// Read a turn later, when the desktop has finished changing.
    void changed() {
        queue_.post(lifetime_.weakly([this] {
            const DesktopLook now = readDesktopLook();
            if (std::exchange(look_, now) != now) changes_.emit();
        }));
    }

    MainQueue& queue_;
    DesktopLook look_;
    Signal<> changes_;
    Subscription colours_;
    Subscription wishes_;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<Appearance> makeMacAppearance(MainQueue& queue) {
    return std::make_unique<MacAppearance>(queue);
}

}  // namespace pintle
