// A real main queue with a deadline for everything that is waited for, and what a workspace told in it.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/workspace/linux_workspace.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_socket_watch.h"

namespace pintle {

class ComegoWorld {
  public:
    ComegoWorld() { wakeUp_.start(5); }

    /// Runs the event loop until `reached`; false when it does not get there in time.
    static bool until(const std::function<bool()>& reached) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!reached()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

    std::unique_ptr<Workspace> makeWorkspace(const std::string& display) {
        auto workspace =
            makeLinuxWorkspace({display, *queue, [this](int descriptor, auto readable) {
                                    watchedDescriptor = descriptor;
                                    return watchReadable(*queue, descriptor, std::move(readable));
                                }});
        for (int i = 0; i <= static_cast<int>(WorkspaceEvent::pointerDidChange); ++i)
            observers_.push_back(workspace->observe(
                static_cast<WorkspaceEvent>(i), [this](const WorkspaceNotification& notification) {
                    told.push_back(notification.name + nameIn(notification));
                    applications.push_back(notification.application);
                }));
        observers_.push_back(
            workspace->observeDisplayReconfiguration([this](DisplayId, DisplayChangeFlags flags) {
                told.push_back("display " + std::to_string(flags));
                applications.emplace_back();
            }));
        return workspace;
    }
    bool heard(const std::string& what) const {
        return std::find(told.begin(), told.end(), what) != told.end();
    }
    bool untilHeard(const std::string& what) const {
        return until([&] { return heard(what); });
    }

    std::unique_ptr<MainQueue> queue = makeQtMainQueue();
    /// The events' names in order; an activation with the application's name behind a colon.
    std::vector<std::string> told;
    std::vector<std::optional<RunningApplication>> applications;
    /// Of the workspace's connection to the X server.
    int watchedDescriptor = -1;

  private:
    static std::string nameIn(const WorkspaceNotification& notification) {
        if (!notification.application) return "";
        return ": " + notification.application->name.value_or("(none)");
    }

    QTimer wakeUp_;
    std::vector<Subscription> observers_;
};

}  // namespace pintle
