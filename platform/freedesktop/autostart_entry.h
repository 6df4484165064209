// The desktops here have no login-item service, and an entry in the autostart folder does its work. Called
// from the main thread.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/login_agent.h"
#include "platform/login_item_service.h"

namespace pintle {

/// Each call fails with "Login item service not available".
std::unique_ptr<LoginItemService> makeAbsentLoginItemService();

/// The autostart entry "autostart/com.pintle.app.desktop" in `configuration` ($XDG_CONFIG_HOME). An entry
/// that says Hidden=true counts as no file.
std::unique_ptr<LoginAgent> makeAutostartEntry(const std::filesystem::path& configuration);

}  // namespace pintle
