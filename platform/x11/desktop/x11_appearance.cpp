#include "platform/x11/desktop/x11_appearance.h"

#include <utility>

#include "base/lifetime.h"
#include "base/signal.h"
#include "platform/freedesktop/look_rules.h"
#include "platform/freedesktop/portal_watch.h"
#include "platform/x11/desktop/screen_look_watch.h"

namespace pintle {
namespace {

class X11Appearance : public Appearance {
  public:
    explicit X11Appearance(X11AppearanceOptions options) : options_(std::move(options)) {
        options_.queue.post(lifetime_.weakly([this] { listen(); }));
    }

    const DesktopLook& look() const override { return look_; }
    Subscription observe(std::function<void()> changed) override {
        return changed_.observe(std::move(changed));
    }

  private:
    void listen() {
        screenWatch_ = std::make_unique<ScreenLookWatch>(
            ScreenLookWatch::Options{options_.display, options_.queue, options_.watchReadable},
            [this](const ScreenLook& look) {
                screen_ = look;
                combine();
            });
        portalWatch_ = std::make_unique<PortalWatch>([this](const PortalLook& look) {
            // The bus delivers outside the queue, whose end of turn must follow every event.
            options_.queue.post(lifetime_.weakly([this, look] {
                portal_ = look;
                combine();
            }));
        });
    }
    void combine() {
        const auto look =
            desktopLook(portal_, screen_.published, screen_.composited, options_.toolkitScalesByDpi);
        if (std::exchange(look_, look) != look) changed_.emit();
    }

    X11AppearanceOptions options_;
    DesktopLook look_;
    Signal<> changed_;
    PortalLook portal_;
    ScreenLook screen_;
    std::unique_ptr<ScreenLookWatch> screenWatch_;
    std::unique_ptr<PortalWatch> portalWatch_;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<Appearance> makeX11Appearance(X11AppearanceOptions options) {
    return std::make_unique<X11Appearance>(std::move(options));
}

}  // namespace pintle
