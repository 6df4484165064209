// The 16 × 16 alpha mask by which identification recognises a shape. Made on a tick of the overlay, so it is
// computed in single precision and only doubtful bytes in double: the result is the double-precision one.
#pragma once

#include <map>
#include <memory>

#include "apply/cursor_identification.h"
#include "apply/mask_sums.h"
#include "base/bitmap.h"

namespace pintle {

/// Keeps the filter weights of the image sizes it has met. One thread at a time.
class AlphaSignatureMaker {
  public:
    /// The alpha mask of the image drawn with bicubic interpolation into 16 × 16 pixels. Images of a side
    /// above 1024 give all zeros: no platform has such a cursor.
    AlphaSignature of(const Bitmap& image);

  private:
    struct Weights;
    const Weights& weightsFor(int length);
    std::map<int, std::shared_ptr<const Weights>> known_;
    MaskScratch scratch_;
};

/// The same mask computed in double precision throughout.
AlphaSignature alphaSignatureReference(const Bitmap& image);

}  // namespace pintle
