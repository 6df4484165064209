// The menu of the status item as a value. Built anew for each showing; main thread only.
#pragma once

#include <functional>

#include "platform/menu.h"

namespace pintle {

struct ContextMenuCommands {
    std::function<void()> openSettings;
    std::function<void()> showAbout;
    std::function<void()> checkForUpdates;
    std::function<void()> quitApp;
};

Menu makeContextMenu(const ContextMenuCommands& commands);

}  // namespace pintle
