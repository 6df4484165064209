// Alerts, one after another. Made by the root; main thread only.
#pragma once

#include <memory>

#include "platform/alerts.h"
#include "platform/main_queue.h"

namespace pintle {

std::unique_ptr<Alerts> makeMacAlerts(MainQueue& queue);

}  // namespace pintle
