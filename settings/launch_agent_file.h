// The launch-agent property list of the user, "Library/LaunchAgents/com.pintle.app.plist". Main thread only.
#pragma once

#include <memory>

#include "platform/login_agent.h"
#include "platform/property_list_coder.h"

namespace pintle {

/// `home` is the user's home directory; the coder must outlive the result.
std::unique_ptr<LoginAgent> makeLaunchAgentFile(const std::filesystem::path& home, PropertyListCoder& coder);

}  // namespace pintle
