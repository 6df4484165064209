// Starts the program at login: by the desktop's login-item service or, where that refuses, by a file. Used by
// the settings window and at start-up. Main thread only.
#pragma once

#include <optional>
#include <string>

#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/login_agent.h"
#include "platform/login_item_service.h"

namespace pintle {

/// Where this program lies.
struct ProgramLocation {
    /// What the login-item service records: the bundle, or the program file where there are no bundles.
    std::string bundlePath;
    /// Absent when it cannot be determined.
    std::optional<std::string> executablePath;
};

enum class LoginAgentRole {
    /// The service exists; the file is only a fallback, which the start-up does not check.
    fallback,
    /// The desktop has no such service: the file is the mechanism, and the start-up keeps its program right.
    standsInForService,
};

class LaunchAtLogin {
  public:
    LaunchAtLogin(LoginItemService& service, LoginAgent& agent, KeyValueStore& defaults, Log& log,
                  ProgramLocation program, LoginAgentRole role);

    /// After the toggle has stored the new value.
    void setLaunchAtLogin(bool enabled);
    void setLaunchAtLoginViaLaunchAgent(bool enabled);
    bool launchAgentPlistExists() const;
    /// Stores as the toggle's value whether either mechanism is in place.
    void syncLaunchAtLoginState();
    /// Once during start-up: registers again when the program has been moved.
    void refreshLoginItemLocation();

  private:
    std::optional<std::string> registeredPath() const;
    void storeRegisteredPath();

    LoginItemService& service_;
    LoginAgent& agent_;
    KeyValueStore& defaults_;
    Log& log_;
    ProgramLocation program_;
    LoginAgentRole role_;
};

}  // namespace pintle
