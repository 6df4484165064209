#include "app/context_menu.h"

#include <string>
#include <string_view>

#include "app/user_text.h"

namespace pintle {

Menu makeContextMenu(const ContextMenuCommands& commands) {
    const auto item = [](std::string_view title, const char* key, const std::function<void()>& action) {
        return MenuItem{std::string(title), key, action, false};
    };
    return {{
        item(translatable("Pintle", "Settings..."), ",", commands.openSettings),
        item(translatable("Pintle", "About Pintle"), "", commands.showAbout),
        item(translatable("Pintle", "Check for Updates..."), "", commands.checkForUpdates),
        {"", "", nullptr, true},
        item(translatable("Pintle", "Quit Pintle"), "q", commands.quitApp),
    }};
}

}  // namespace pintle
