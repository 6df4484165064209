#include "app/context_menu.h"

namespace pintle {

Menu makeContextMenu(const ContextMenuCommands& commands) {
    return {{
        {"Settings...", ",", commands.openSettings, false},
        {"About Pintle", "", commands.showAbout, false},
        {"Check for Updates...", "", commands.checkForUpdates, false},
        {"", "", nullptr, true},
        {"Quit Pintle", "q", commands.quitApp, false},
    }};
}

}  // namespace pintle
