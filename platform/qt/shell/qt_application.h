// The process as the toolkit runs it: its end, the end of the desktop session, addresses and messages.
// Made by the root after the toolkit's application object. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/application.h"

namespace pintle {

struct QtApplicationOptions {
    /// Shows a passing message; may be empty.
    std::function<void(const std::string& title, const std::string& text)> notify;
};

std::unique_ptr<Application> makeQtApplication(QtApplicationOptions options);

}  // namespace pintle
