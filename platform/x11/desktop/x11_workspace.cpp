#include "platform/x11/desktop/x11_workspace.h"

#include <array>
#include <utility>

#include "base/signal.h"
#include "platform/freedesktop/session_watch.h"
#include "platform/x11/desktop/desktop_watch.h"

namespace pintle {
namespace {

class X11Workspace : public Workspace {
  public:
    explicit X11Workspace(X11WorkspaceOptions options)
        : queue_(options.queue),
          session_({[this](bool sleeping) {
                        later(sleeping ? WorkspaceEvent::willSleep : WorkspaceEvent::didWake);
                    },
                    [this] { later(WorkspaceEvent::sessionDidBecomeActive); },
                    [this](bool locked) {
                        later(locked ? WorkspaceEvent::screenIsLocked : WorkspaceEvent::screenIsUnlocked);
                    }}),
          desktop_(std::move(options),
                   {[this](const RunningApplication& application) {
                        send(WorkspaceEvent::didActivateApplication, application);
                    },
                    [this] {
                        displays_.emit(DisplayId{0}, DisplayChangeFlags{0});
                        send(WorkspaceEvent::screenParametersDidChange);
                    },
                    [this](bool asleep) {
                        send(asleep ? WorkspaceEvent::screensDidSleep : WorkspaceEvent::screensDidWake);
                    },
                    [this] { send(WorkspaceEvent::pointerDidChange); },
                    [this] { send(WorkspaceEvent::pixelDensityDidChange); }}) {}

    std::optional<RunningApplication> frontmostApplication() override { return desktop_.frontmost(); }
    double pixelsPerPoint() override { return desktop_.pixelsPerPoint(); }
    Subscription observe(WorkspaceEvent event, Handler handler) override {
        return events_[static_cast<std::size_t>(event)].observe(std::move(handler));
    }
    Subscription observeDisplayReconfiguration(DisplayHandler handler) override {
        return displays_.observe(std::move(handler));
    }

  private:
    void send(WorkspaceEvent event, std::optional<RunningApplication> application = std::nullopt) {
        events_[static_cast<std::size_t>(event)].emit(
            {std::string(notificationName(event)), std::move(application)});
    }
    // The bus delivers outside the queue, whose end of turn must follow every event.
    void later(WorkspaceEvent event) {
        queue_.post(lifetime_.weakly([this, event] { send(event); }));
    }

    static constexpr std::size_t kEvents =
        static_cast<std::size_t>(WorkspaceEvent::pixelDensityDidChange) + 1;
    MainQueue& queue_;
    std::array<Signal<const WorkspaceNotification&>, kEvents> events_;
    Signal<DisplayId, DisplayChangeFlags> displays_;
    SessionWatch session_;
    DesktopWatch desktop_;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<Workspace> makeX11Workspace(X11WorkspaceOptions options) {
    return std::make_unique<X11Workspace>(std::move(options));
}

}  // namespace pintle
