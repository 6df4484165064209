// What one kind of session gives the program: the part of the platform that depends on who draws the windows.
// A null member is a value: the session does not give that.
#pragma once

#include <functional>
#include <memory>

#include "app/root/shell_backend.h"
#include "platform/appearance.h"
#include "platform/overlay_desktop.h"
#include "platform/qt/shell/shell_views.h"
#include "platform/window_server.h"
#include "platform/workspace.h"

namespace pintle {

struct DesktopSession {
    /// Whatever the other members refer to; ends last.
    std::shared_ptr<void> connection;
    /// Never null; where no pointer can be changed every function is missing.
    std::unique_ptr<WindowServer> windowServer;
    /// Never null.
    std::unique_ptr<Workspace> workspace;
    /// Null: nothing can be drawn above other programs' windows.
    std::unique_ptr<OverlayDesktop> overlay;
    /// False: the workspace does not know which application is in front, nothing may be drawn above others,
    /// and running programs follow the pointer only as far as they follow the desktop's setting.
    bool seesApplications = true;
    /// Never null.
    std::unique_ptr<Appearance> appearance;
    /// Makes what puts the views on the desktop. Called once, with views that outlive the result.
    std::function<ShellBackend(ShellViews& views, Appearance& appearance)> makeShell;
};

}  // namespace pintle
