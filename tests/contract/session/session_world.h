// What a workspace tells in a real event loop.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/qt/qt_socket_watch.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "tests/contract/session/loop_world.h"

namespace pintle {

class SessionWorld : public LoopWorld {
  public:
    std::unique_ptr<Workspace> makeWorkspace(const std::string& display) {
        auto workspace = makeX11Workspace({display, *queue, [this](int descriptor, auto readable) {
                                               watchedDescriptor = descriptor;
                                               return watchReadable(*queue, descriptor, std::move(readable));
                                           }});
        for (int i = 0; i <= static_cast<int>(WorkspaceEvent::pixelDensityDidChange); ++i)
            observers_.push_back(workspace->observe(
                static_cast<WorkspaceEvent>(i), [this](const WorkspaceNotification& notification) {
                    reported.push_back(notification.name + nameIn(notification));
                    applications.push_back(notification.application);
                }));
        observers_.push_back(
            workspace->observeDisplayReconfiguration([this](DisplayId, DisplayChangeFlags flags) {
                reported.push_back("display " + std::to_string(flags));
                applications.emplace_back();
            }));
        return workspace;
    }
    bool wasReported(const std::string& what) const {
        return std::find(reported.begin(), reported.end(), what) != reported.end();
    }
    bool untilReported(const std::string& what) const {
        return until([&] { return wasReported(what); });
    }

    /// The events' names in order; an activation with the application's name behind a colon.
    std::vector<std::string> reported;
    std::vector<std::optional<RunningApplication>> applications;
    /// Of the workspace's connection to the X server.
    int watchedDescriptor = -1;

  private:
    static std::string nameIn(const WorkspaceNotification& notification) {
        if (!notification.application) return "";
        return ": " + notification.application->name.value_or("(none)");
    }

    std::vector<Subscription> observers_;
};

}  // namespace pintle
