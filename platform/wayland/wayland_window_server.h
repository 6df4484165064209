// The cursor registry in a Wayland session: registrations make a theme, which the desktop is asked to use.
// Main thread only.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "base/subscription.h"
#include "platform/background_tasks.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/wayland/settings_provider.h"
#include "platform/wayland/theme_folder.h"
#include "platform/window_server.h"

namespace pintle {

/// What a compositor may report by itself.
enum class CompositorNews {
    /// It shows the user's own theme again, whatever was registered.
    forgotTheme,
    /// Outputs came, went or have another scale.
    changedOutputs,
};

struct WaylandWindowServerOptions {
    /// All three outlive the window server.
    MainQueue& queue;
    BackgroundTasks& background;
    Log& log;
    wayland::Environment environment;
    wayland::IconFolders icons;
    /// What the user had before; see StateFile.
    std::filesystem::path stateFile;
    std::vector<std::unique_ptr<wayland::SettingsProvider>> providers;
    /// Called on some other thread, also once at the end. Empty: every output has scale 1.
    std::function<std::vector<double>()> outputScales;
    /// Calls the handler on the main thread at each report, until the handle ends. Empty: nothing is
    /// reported.
    std::function<Subscription(std::function<void(CompositorNews)> handler)> observeCompositor = {};
    /// The user's scale of pointers.
    std::function<double()> cursorScale;
    /// Pixels that a point of the session's X server has each way; empty: 1.
    std::function<double()> xPixelsPerPoint = {};
    /// Makes what reaches the programs of the X server in this session; `desktopTheme` answers what they show
    /// without us: the user's own theme, and its size in pixels there. Empty or null: there is none.
    std::function<std::unique_ptr<WindowServer>(std::function<std::pair<std::string, int>()> desktopTheme)>
        makeXServer;
};

/// Never null. Without a provider that reaches running programs every function is missing. The theme follows
/// a flush() in the background, at most once in 300 ms. The end of the object waits until what was flushed is
/// done.
std::unique_ptr<WindowServer> makeWaylandWindowServer(WaylandWindowServerOptions options);

}  // namespace pintle
