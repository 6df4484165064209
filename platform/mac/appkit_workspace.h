// What AppKit reports of applications, and its notifications, without Objective-C. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/subscription.h"
#include "platform/workspace.h"

namespace pintle {

enum class NotificationSource { workspace, application };

std::optional<RunningApplication> readFrontmostApplication();
/// Process ids of the running copies of a program, this process included, without those that have ended.
std::vector<std::int32_t> readRunningCopies(const std::string& bundleIdentifier);
/// Calls `posted` on the main thread at each notification `name`, with the application that it carries, until
/// the handle ends.
Subscription observeNotification(NotificationSource source, const std::string& name,
                                 std::function<void(std::optional<RunningApplication>)> posted);

}  // namespace pintle
