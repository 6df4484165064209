// The kinds of session that freedesktop.org's desktops have, as one table: who draws the windows decides how
// a pointer is changed. A new kind is one module of platform/ and one row.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "app/root/desktop_session.h"
#include "platform/background_tasks.h"
#include "platform/freedesktop/user_directories.h"
#include "platform/log.h"
#include "platform/main_queue.h"

namespace pintle {

/// What a session is made with. All outlive it.
struct SessionContext {
    MainQueue& queue;
    BackgroundTasks& background;
    Log& log;
    Environment environment;
    UserDirectories directories;
    /// Ends the process: the session's server is gone for good.
    std::function<void()> serverDied;
};

struct SessionKind {
    std::string_view name;
    bool (*detect)(const Environment& environment);
    DesktopSession (*make)(const SessionContext& context);
};

/// In the order of asking; the last one is always detected.
std::span<const SessionKind> sessionKinds();

/// The first kind that is detected.
const SessionKind& detectSession(const Environment& environment);

}  // namespace pintle
