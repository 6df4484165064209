// Names that belong to a desktop, handed in by the root: the names every desktop shares first and in this
// order, a desktop's own after them. What the names mean is decided in apply/.
#pragma once

#include <string>
#include <vector>

namespace pintle {

struct DesktopNames {
    /// Remote-desktop and virtual-machine clients; an application is one when its name contains an entry in
    /// any letter case.
    std::vector<std::string> remoteDesktops = {
        "Windows App", "Microsoft Remote Desktop", "Citrix", "TeamViewer", "AnyDesk", "Parallels"};
    /// Processes of the desktop itself, by exact name.
    std::vector<std::string> systemProcesses = {"Dock", "loginwindow", "SecurityAgent", "ControlCenter"};
    /// Owners of windows over which the desktop's own pointer shows, by exact name.
    std::vector<std::string> protectedOwners = {"loginwindow", "SecurityAgent", "ScreenSaverEngine",
                                                "coreautha", "LocalAuthenticationRemoteService"};
};

}  // namespace pintle
