#include "platform/mac/mac_workspace.h"

#include <CoreGraphics/CoreGraphics.h>

#include <memory>
#include <utility>

#include "platform/mac/appkit_workspace.h"
#include "platform/mac/cf_notifications.h"

namespace pintle {
namespace {

enum class Centre { workspace, application, distributed, none };

Centre centreOf(WorkspaceEvent event) {
    switch (event) {
        case WorkspaceEvent::willSleep:
        case WorkspaceEvent::didWake:
        case WorkspaceEvent::screensDidSleep:
        case WorkspaceEvent::screensDidWake:
        case WorkspaceEvent::sessionDidBecomeActive:
        case WorkspaceEvent::didActivateApplication:
            return Centre::workspace;
        case WorkspaceEvent::screenIsLocked:
        case WorkspaceEvent::screenIsUnlocked:
            return Centre::distributed;
        case WorkspaceEvent::screenParametersDidChange:
            return Centre::application;
        case WorkspaceEvent::pointerDidChange:
        case WorkspaceEvent::pixelDensityDidChange:
            return Centre::none;
    }
    return Centre::none;
}

struct DisplayObserver {
    Workspace::DisplayHandler handler;
};

extern "C" void displayReconfigured(CGDirectDisplayID display, CGDisplayChangeSummaryFlags flags,
                                    void* userInfo) {
    // The handler may end its own subscription.
    const auto handler = static_cast<DisplayObserver*>(userInfo)->handler;
    handler(display, flags);
}

class MacWorkspace : public Workspace {
  public:
    std::optional<RunningApplication> frontmostApplication() override { return readFrontmostApplication(); }
    /// The window server draws points at each display's own density.
    double pixelsPerPoint() override { return 1; }

    Subscription observe(WorkspaceEvent event, Handler handler) override {
        const std::string name(notificationName(event));
        switch (centreOf(event)) {
            case Centre::workspace:
                return observeNotification(NotificationSource::workspace, name,
                                           notifying(name, std::move(handler)));
            case Centre::application:
                return observeNotification(NotificationSource::application, name,
                                           notifying(name, std::move(handler)));
            case Centre::distributed:
                return observeDistributed(name, [name, handler = std::move(handler)] {
                    handler({name, std::nullopt});
                });
            case Centre::none:
                break;
        }
        return {};
    }

    Subscription observeDisplayReconfiguration(DisplayHandler handler) override {
        const auto observer = std::make_shared<DisplayObserver>(DisplayObserver{std::move(handler)});
        if (CGDisplayRegisterReconfigurationCallback(displayReconfigured, observer.get()) != kCGErrorSuccess)
            return {};
        return Subscription(
            [observer] { CGDisplayRemoveReconfigurationCallback(displayReconfigured, observer.get()); });
    }

  private:
    static std::function<void(std::optional<RunningApplication>)> notifying(const std::string& name,
                                                                            Handler handler) {
        return [name, handler = std::move(handler)](std::optional<RunningApplication> application) {
            handler({name, std::move(application)});
        };
    }
};

}  // namespace

std::unique_ptr<Workspace> makeMacWorkspace() { return std::make_unique<MacWorkspace>(); }

}  // namespace pintle
