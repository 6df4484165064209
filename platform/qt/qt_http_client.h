// HTTP through the toolkit, on a thread of its own. Made by the root after the main queue; main thread only.
#pragma once

#include <memory>

#include "platform/http_client.h"
#include "platform/main_queue.h"

namespace pintle {

/// The desktop's proxy settings apply, except to this machine. The queue must outlive the client.
std::unique_ptr<HttpClient> makeQtHttpClient(MainQueue& queue);

}  // namespace pintle
