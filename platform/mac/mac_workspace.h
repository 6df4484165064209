// Applications, sleep, sessions, locks and displays. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/workspace.h"

namespace pintle {

std::unique_ptr<Workspace> makeMacWorkspace();

}  // namespace pintle
