// A desktop whose events the test sends.
#pragma once

#include <map>

#include "base/signal.h"
#include "platform/workspace.h"

namespace pintle {

class FakeWorkspace : public Workspace {
  public:
    std::optional<RunningApplication> frontmostApplication() override { return frontmost; }
    double pixelsPerPoint() override { return density; }
    Subscription observe(WorkspaceEvent event, Handler handler) override {
        return events_[event].observe(std::move(handler));
    }
    Subscription observeDisplayReconfiguration(DisplayHandler handler) override {
        return displays_.observe(std::move(handler));
    }

    void send(WorkspaceEvent event) {
        events_[event].emit({std::string(notificationName(event)), std::nullopt});
    }
    /// Puts an application in front and announces it. Without a name it has none.
    void activate(std::optional<std::string> name, std::int32_t pid = 100) {
        frontmost = RunningApplication{std::move(name), pid};
        events_[WorkspaceEvent::didActivateApplication].emit(
            {std::string(notificationName(WorkspaceEvent::didActivateApplication)), frontmost});
    }
    /// An activation that does not say of what.
    void activateUnknown() { send(WorkspaceEvent::didActivateApplication); }
    void reconfigureDisplay(DisplayId display, DisplayChangeFlags flags) { displays_.emit(display, flags); }

    void changeDensity(double now) {
        density = now;
        send(WorkspaceEvent::pixelDensityDidChange);
    }

    std::optional<RunningApplication> frontmost;
    double density = 1;

  private:
    std::map<WorkspaceEvent, Signal<const WorkspaceNotification&>> events_;
    Signal<DisplayId, DisplayChangeFlags> displays_;
};

}  // namespace pintle
