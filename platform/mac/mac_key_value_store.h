// The preferences in a domain of the desktop's preference service. Made by the root in its first stage; main
// thread only.
#pragma once

#include <memory>
#include <string>

#include "platform/key_value_store.h"

namespace pintle {

/// Over the current user's domain `domain` for any host, and over nothing else: neither the global domain nor
/// another program's is searched. Each write is handed to the service at once.
std::unique_ptr<KeyValueStore> makeMacKeyValueStore(const std::string& domain);

}  // namespace pintle
