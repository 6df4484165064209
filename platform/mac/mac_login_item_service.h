// The login item of this program's bundle. Made by the root in its first stage; main thread only.
#pragma once

#include <memory>

#include "platform/login_item_service.h"

namespace pintle {

std::unique_ptr<LoginItemService> makeMacLoginItemService();

}  // namespace pintle
