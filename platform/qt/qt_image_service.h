// PNG files through the toolkit's image class; needs no display and no application object. Any thread.
#pragma once

#include <memory>

#include "platform/image_service.h"

namespace pintle {

/// PNG holds straight alpha and a Bitmap premultiplied colour: opaque and empty pixels come back as they
/// were, translucent ones within one level. Decoding knows PNG alone, takes the first image, and refuses
/// files above 64 MiB and images above 32 million pixels or 65535 pixels a side.
std::unique_ptr<ImageService> makeQtImageService();

}  // namespace pintle
