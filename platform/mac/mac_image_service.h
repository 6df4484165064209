// PNG files by Image I/O. Any thread.
#pragma once

#include <memory>

#include "platform/image_service.h"

namespace pintle {

std::unique_ptr<ImageService> makeMacImageService();

}  // namespace pintle
